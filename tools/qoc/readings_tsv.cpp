#include "readings.hpp"

#include "page_document.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <array>

namespace qoc::program {
namespace {

constexpr std::string_view head =
    "level\tpage_num\tblock_num\tpar_num\tline_num\tword_num\tleft\ttop\twidth\theight\tconf\ttext";
enum Field { level, pageNumber, blockNumber, parNumber, lineNumber, wordNumber, left, top, width, height, conf, text };
constexpr std::size_t numFields = text + 1;
constexpr std::string_view wordLevel = "5";

/// A row of the table.
struct Row {
  std::array<std::string, numFields> fields;
  std::uint64_t line = 0;
  std::string place;

  double number(Field field, const char *what) const { return parseNumber(fields[field], place, what); }
  Box box() const {
    const double x = number(left, "left, a number"), y = number(top, "top, a number");
    return {x, y, x + number(width, "width, a number"), y + number(height, "height, a number")};
  }
  /// The page, block, paragraph and line; and the word, where it is to tell words apart.
  std::string key(bool withWord) const {
    std::string key = fields[pageNumber];
    for (int field = blockNumber; field <= (withWord ? wordNumber : lineNumber); ++field) {
      key += "." + fields[static_cast<std::size_t>(field)];
    }
    return key;
  }
};

/// Puts the words of a line together as they come.
class TsvReader : public FormatReader {
public:
  TsvReader(LineReader &lines, ReadingUnit unit) : lines_(lines), unit_(unit) {}

  bool next(Reading &reading) override {
    if (!hasRow_ && !nextWord()) return false;
    reading.line = row_.line;
    reading.id = row_.key(unit_ == ReadingUnit::word);
    if (unit_ == ReadingUnit::word) {
      addWord(reading);
      hasRow_ = false;
      return true;
    }
    const std::string key = row_.key(false);
    for (double scoreBefore = 0; hasRow_ && row_.key(false) == key; hasRow_ = nextWord()) {
      const double score = row_.number(conf, "conf, a number");
      if (!reading.positions.empty()) {
        reading.positions.push_back({makeCandidate(' ', std::min(scoreBefore, score), row_.place)});
        reading.boxes.emplace_back();
      }
      addWord(reading);
      scoreBefore = score;
    }
    return true;
  }

private:
  /// Goes to the next row that is a word with characters.
  bool nextWord() {
    for (std::string line; lines_.next(line);) {
      dropCarriageReturn(line);
      if (line.empty()) continue;
      readRow(line);
      const bool isBlank = row_.fields[text].find_first_not_of(' ') == std::string::npos;
      if (row_.fields[level] == wordLevel && !isBlank) return hasRow_ = true;
    }
    return hasRow_ = false;
  }

  void readRow(const std::string &line) {
    row_.line = lines_.lineNumber();
    row_.place = lines_.place();
    checkUtf8(line, row_.place);
    std::size_t at = 0;
    for (std::size_t i = 0; i < numFields; ++i) {
      const std::size_t end = std::min(line.find('\t', at), line.size());
      if (i + 1 < numFields ? end == line.size() : end != line.size()) {
        throw Trouble(row_.place + ": expected " + std::to_string(numFields) + " fields with tabs between them");
      }
      row_.fields[i] = line.substr(at, end - at);
      at = end + 1;
    }
  }

  void addWord(Reading &reading) {
    const double score = row_.number(conf, "conf, a number");
    const Box box = row_.box();
    for (const Char32 code : decodeUtf8(row_.fields[text])) {
      reading.positions.push_back({makeCandidate(code, score, row_.place)});
      reading.boxes.emplace_back();
    }
    if (!reading.box) reading.box = box;
    Box &all = *reading.box;
    all = {std::min(all.left, box.left), std::min(all.top, box.top), std::max(all.right, box.right),
           std::max(all.bottom, box.bottom)};
  }

  LineReader &lines_;
  ReadingUnit unit_;
  Row row_;
  bool hasRow_ = false;
};

} // namespace

bool isTsvHead(std::string line) {
  dropCarriageReturn(line);
  return line == head;
}

std::unique_ptr<FormatReader> readTsv(LineReader &lines, ReadingUnit unit) {
  return std::make_unique<TsvReader>(lines, unit);
}

} // namespace qoc::program
