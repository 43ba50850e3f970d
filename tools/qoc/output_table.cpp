#include "output.hpp"

#include "marks.hpp"
#include "text.hpp"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace qoc::program {
namespace {

constexpr std::size_t idWidth = 8, textWidth = 27, editsWidth = 5;
constexpr std::size_t maxShown = 60; ///< Longer texts are cut, so that a line stays a line.

/// A text that is built cell by cell; counts characters, not bytes, and leaves colours out of the count.
class Row {
public:
  explicit Row(bool isColored) : isColored_(isColored) {}

  /// Adds a character, in its visible form.
  void add(Char32 code, const char *color = nullptr) {
    if (isColored_ && color != color_) {
      text_ += color ? std::string("\x1b[") + color + "m" : "\x1b[0m";
      color_ = color;
    }
    appendUtf8(text_, visible(code));
    ++size_;
  }
  void add(const std::string &text) {
    for (const Char32 code : decodeUtf8(text)) add(code);
  }
  /// Ends a cell that began at `start`.
  void endCell(std::size_t start, std::size_t width) {
    do add(' ');
    while (size_ < start + width + 1);
  }
  std::size_t size() const { return size_; }
  std::string finish() {
    if (isColored_ && color_) text_ += "\x1b[0m";
    while (!text_.empty() && text_.back() == ' ') text_.pop_back();
    return text_ + "\n";
  }

private:
  bool isColored_;
  const char *color_ = nullptr;
  std::string text_;
  std::size_t size_ = 0;
};

using Statuses = std::span<const qoc_ocrDictionaryPositionStatus>;

/// A text in a cell, its characters coloured by status where there is one for each.
void addText(Row &row, const std::vector<Char32> &codes, Statuses statuses, std::size_t width) {
  const std::size_t start = row.size();
  for (std::size_t i = 0; i < std::min(codes.size(), maxShown); ++i) {
    row.add(codes[i], statuses.size() == codes.size() ? markOf(statuses[i]).color : nullptr);
  }
  if (codes.size() > maxShown) row.add(0x2026);
  row.endCell(start, width);
}

void addMarks(Row &row, Statuses statuses) {
  for (std::size_t i = 0; i < std::min(statuses.size(), maxShown); ++i) {
    const Mark &mark = markOf(statuses[i]);
    row.add(static_cast<Char32>(mark.mark), mark.color);
  }
  if (statuses.size() > maxShown) row.add(0x2026);
}

void addCell(Row &row, const std::string &text, std::size_t width) {
  const std::size_t start = row.size();
  row.add(text);
  row.endCell(start, width);
}

std::vector<Char32> shownText(const qoc_ocrDictionaryResult &result) {
  std::vector<Char32> codes = resultText(result);
  std::replace(codes.begin(), codes.end(), Char32{QOC_CHAR_EMPTY}, Char32{0x2205});
  return codes;
}

/// A line that names what was not handed to the library; none where that is nothing.
std::string describeLeftOut(const Reading &reading, const Answer &answer) {
  if (answer.leftOut.empty()) return "";
  Row row(false);
  addCell(row, "", idWidth);
  row.add("left out, beyond 7 bits:");
  for (const LeftOut &leftOut : answer.leftOut) {
    row.add(&leftOut == &answer.leftOut.front() ? " " : ", ");
    row.add(reading.positions[leftOut.position][leftOut.index].code);
    row.add(" at " + std::to_string(leftOut.position + 1));
  }
  return row.finish();
}

/// Points with two decimals at most.
std::string pointsOf(std::int32_t units) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", units / 100.0);
  std::string points = text;
  while (points.back() == '0') points.pop_back();
  if (points.back() == '.') points.pop_back();
  return points;
}

/// The texts that the reading can be, best first: the best one with the outcome.
std::string describeResolution(const Answer &answer) {
  std::string lines;
  if (!answer.isResolved) return lines;
  for (const qoc_ocrDictionaryResolvedText &text : elements(answer.resolution->texts)) {
    Row row(false);
    addCell(row, "", idWidth);
    addCell(row, lines.empty() ? qoc_ocrDictionaryOutcome_getName(answer.resolution->outcome) : "or", textWidth);
    std::vector<Char32> codes;
    for (const qoc_ocrDictionaryChar &character : elements(text.text.characters)) codes.push_back(character.code);
    addText(row, codes, {}, textWidth);
    row.add("margin " + (answer.resolution->hasScores != 0 ? pointsOf(text.margin) : "-"));
    if (text.hasCheck != 0) row.add(text.passesCheck != 0 ? ", check passed" : ", check failed");
    lines += row.finish();
  }
  return lines;
}

} // namespace

std::string tableHead() {
  Row row(false);
  addCell(row, "reading", idWidth);
  addCell(row, "text", textWidth);
  addCell(row, "result", textWidth);
  addCell(row, "edits", editsWidth);
  row.add("from      reading / result, position by position");
  return row.finish();
}

std::string describeAsTable(const Reading &reading, const Answer &answer, bool isColored) {
  std::vector<Char32> text;
  for (const std::vector<Candidate> &candidates : reading.positions) text.push_back(candidates.front().code);
  std::string lines;
  std::size_t i = 0;
  for (const qoc_ocrDictionaryResult &result : elements(answer.results->results)) {
    Row row(isColored);
    addCell(row, lines.empty() ? reading.name() : "", idWidth);
    const Statuses inputStatuses = elements(result.statusWRTInputStringSwapChar);
    const Statuses resultStatuses = elements(result.resultStringStatus);
    addText(row, text, inputStatuses, textWidth);
    addText(row, shownText(result), resultStatuses, textWidth);
    addCell(row, std::to_string(result.numEdits), editsWidth);
    addCell(row, i < answer.lines.size() ? "line " + std::to_string(answer.lines[i] + 1) : sourceName(result.mode), 9);
    ++i;
    addMarks(row, inputStatuses);
    row.add(" / ");
    addMarks(row, resultStatuses);
    lines += row.finish();
  }
  if (lines.empty()) {
    Row row(isColored);
    addCell(row, reading.name(), idWidth);
    addText(row, text, {}, textWidth);
    row.add("no result");
    lines = row.finish();
  }
  return lines + describeResolution(answer) + describeLeftOut(reading, answer);
}

const char *sourceName(qoc_ocrDictionaryMode mode) {
  switch (mode) {
  case qoc_ocrDictionaryMode_lexicon: return "words";
  case qoc_ocrDictionaryMode_fielding: return "fielding";
  case qoc_ocrDictionaryMode_regularExpression: return "pattern";
  default: return "";
  }
}

} // namespace qoc::program
