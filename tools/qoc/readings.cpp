#include "readings.hpp"

#include "text.hpp"
#include "trouble.hpp"

#include <cmath>
#include <limits>

namespace qoc::program {
namespace {

constexpr double scoreUnitsPerPoint = 100.0;
constexpr const char *whiteSpace = " \t\r\n";

void requireAllowed(Char32 code, const std::string &place) {
  const std::string refusal = whyRefused(code);
  if (!refusal.empty()) throw Trouble(place + ": " + refusal);
}

void readText(const std::string &text, const std::string &place, Reading &reading) {
  checkUtf8(text, place);
  for (const Char32 code : decodeUtf8(text)) {
    requireAllowed(code, place);
    reading.positions.push_back({{code, 0, 0}});
  }
}

std::int32_t readScore(const JsonNode &node) {
  if (!node.value().is_number()) node.failExpected("a score, as a number");
  const double scaled = std::round(node.value().get<double>() * scoreUnitsPerPoint);
  if (!(scaled >= std::numeric_limits<std::int32_t>::min() && scaled <= std::numeric_limits<std::int32_t>::max())) {
    node.failExpected("a score from -21474836.48 to 21474836.47");
  }
  return static_cast<std::int32_t>(scaled);
}

Candidate readCandidate(const JsonNode &node) {
  const std::string shape = "a candidate, as [\"CHARACTER\", SCORE]";
  if (node.requireArray(shape) != 2) node.failExpected(shape + " with nothing more and nothing less");
  const JsonNode character = node.element(0);
  const std::vector<Char32> codes = decodeUtf8(character.string("a single character, as a string"));
  if (codes.size() != 1) character.failExpected("a single character, as a string");
  requireAllowed(codes[0], character.where());
  const JsonNode score = node.element(1);
  return {codes[0], readScore(score), score.value()};
}

void readPositions(const JsonNode &node, Reading &reading) {
  const std::size_t n = node.requireArray("an array of positions");
  reading.positions.resize(n);
  for (std::size_t i = 0; i < n; ++i) {
    const JsonNode position = node.element(i);
    const std::size_t numCandidates = position.requireArray("a position, as an array of candidates");
    if (numCandidates == 0) position.fail("the position has no candidate; expected at least one");
    for (std::size_t k = 0; k < numCandidates; ++k) {
      reading.positions[i].push_back(readCandidate(position.element(k)));
    }
  }
}

void readObject(const std::string &line, const LineReader &reader, Reading &reading) {
  const Json document = parseJson(line, reader.name(), reader.lineNumber());
  const JsonNode root(document, reader.place());
  root.requireObject("a reading, as an object with \"positions\" or \"text\"");
  if (root.has("id")) {
    const JsonNode id = root.member("id");
    if (!id.value().is_string() && !id.value().is_number()) id.failExpected("a string or a number");
    reading.id = id.value();
  }
  if (root.has("positions")) {
    readPositions(root.member("positions"), reading);
  } else if (root.has("text")) {
    const JsonNode text = root.member("text");
    readText(text.string("the reading, as a string"), text.where(), reading);
  } else {
    root.fail("neither \"positions\" nor \"text\"; expected one of them");
  }
}

} // namespace

std::string Reading::text() const {
  std::string text;
  for (const std::vector<Candidate> &candidates : positions) appendUtf8(text, candidates.front().code);
  return text;
}

ReadingSource::ReadingSource(std::vector<std::string> paths, ReadingFormat format, std::function<void()> beforeWait)
    : paths_(std::move(paths)), givenFormat_(format), beforeWait_(std::move(beforeWait)) {}

bool ReadingSource::nextLine() {
  for (;;) {
    if (reader_ && reader_->next(line_)) return true;
    if (reader_) numFinishedBytes_ += reader_->numBytes();
    reader_.reset();
    if (nextPath_ == paths_.size()) return false;
    reader_ = std::make_unique<LineReader>(paths_[nextPath_++], beforeWait_);
    format_ = givenFormat_;
  }
}

bool ReadingSource::next(Reading &reading) {
  while (nextLine()) {
    const std::size_t first = line_.find_first_not_of(whiteSpace);
    if (format_ == ReadingFormat::detect) {
      const bool isObject = first != std::string::npos && line_[first] == '{';
      format_ = isObject ? ReadingFormat::ndjson : ReadingFormat::text;
    }
    if (format_ == ReadingFormat::ndjson && first == std::string::npos) continue;
    reading.file = reader_->name();
    reading.line = reader_->lineNumber();
    reading.id = nullptr;
    reading.positions.clear();
    if (format_ == ReadingFormat::ndjson) {
      readObject(line_, *reader_, reading);
    } else {
      dropCarriageReturn(line_);
      readText(line_, reader_->place(), reading);
    }
    return true;
  }
  return false;
}

} // namespace qoc::program
