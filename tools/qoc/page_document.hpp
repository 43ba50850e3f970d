#pragma once

/// @file A page that an OCR engine wrote as XML: its lines as readings, and itself with their texts corrected.

#include "readings.hpp"
#include "xml_document.hpp"

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qoc::program {

/// A half-open range of a line's positions.
struct PositionRange {
  std::size_t begin, end;
};

/// A place of the document that says what stands at some positions of a line.
struct TextPlace {
  PositionRange positions;
  std::vector<TextSlot> slots; ///< The first takes the text; the others, its further pieces, become empty.
};

struct PageWord {
  PositionRange positions;
  std::string id;
  std::uint64_t line = 0;
  std::optional<Box> box;
};

/// A line of text: its words' positions, with a space between each two.
struct PageLine {
  std::string id, image;
  std::uint64_t line = 0; ///< Of the file.
  std::optional<Box> box;
  std::vector<std::vector<Candidate>> positions;
  std::vector<std::optional<Box>> boxes;
  std::vector<PageWord> words;
  std::vector<TextPlace> places;
};

/// A place that says what stands on several lines, with line ends between them.
struct TextBlock {
  std::size_t firstLine, endLine;
  TextSlot slot;
};

/// What an engine says of one place of a text: a text, and how sure it is of it.
struct ScoredText {
  std::string text;
  double score;
};

/// One document, its lines, and what has been corrected of it.
class PageDocument {
public:
  PageDocument(std::string bytes, const std::string &name, ReadingFormat format);

  const XmlDocument &xml() const { return xml_; }
  ReadingFormat format() const { return format_; }

  /// Adds a line, to which words are then added. Lines that stay empty give no reading.
  PageLine &addLine(pugi::xml_node element);
  /// Begins a word of the last line; where the line has one before, a space stands between.
  /// @param score how sure the engine is of the word; the space has the lower one of its neighbours
  void beginWord(pugi::xml_node element, double score);
  /// Adds what an engine printed at one place of the last word, a character in most cases, and the alternatives that
  /// are as long as that. Alternatives of score 0 and further ones of the same character are left out.
  /// @return the positions added
  PositionRange addText(pugi::xml_node element, const ScoredText &printed, std::vector<ScoredText> alternatives,
                        const std::optional<Box> &box);
  /// Ends the word; one without characters is taken back with its space.
  /// @return its positions
  PositionRange endWord();
  /// Adds a text as words that white space parts, for a line without words of its own.
  void addPlainText(pugi::xml_node element, const ScoredText &printed);
  void addBlock(const TextBlock &block) { blocks_.push_back(block); }
  std::size_t numLines() const { return lines_.size(); }

  /// Makes lines or words the document's readings. To be called once, when the document is complete.
  void finish(ReadingUnit unit);
  std::size_t numReadings() const { return readings_.size(); }
  /// Fills in a reading, but for its link to this document.
  void getReading(std::size_t index, Reading &reading) const;

  /// Says what stands at each position of a reading instead of what was read.
  void correct(std::size_t index, std::vector<std::string> texts);
  /// The document with its corrections, otherwise byte by byte as it came.
  std::string corrected() const;

private:
  struct ReadingPlace {
    std::size_t line;
    PositionRange positions;
    std::size_t word; ///< Index of the word, or npos for the whole line.
  };
  struct OpenWord {
    std::size_t begin;
    double score;
  };

  XmlDocument xml_;
  ReadingFormat format_;
  std::vector<PageLine> lines_;
  std::vector<double> wordScores_; ///< Of the last line's words.
  OpenWord open_{};
  std::vector<TextBlock> blocks_;
  std::vector<ReadingPlace> readings_;
  std::vector<std::vector<std::string>> texts_; ///< By line: the text at each position; empty where nothing changed.
};

/// Which of the formats an XML document is; Trouble where it is none of them.
ReadingFormat detectXml(const XmlDocument &xml);

/// Each reads one format's lines into the document.
void readHocr(PageDocument &page);
void readAlto(PageDocument &page);
void readPage(PageDocument &page);

/// Reads a number of an attribute or title. Throws Trouble "PLACE: …, expected WHAT".
double parseNumber(std::string_view text, const std::string &place, const std::string &what);

/// An attribute's value as a number from 0 to 1, in per cent; `otherwise` where the element does not have it.
double confidenceOf(const PageDocument &page, pugi::xml_node element, const char *attribute, double otherwise);

} // namespace qoc::program
