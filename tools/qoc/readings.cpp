#include "readings.hpp"

#include "page_document.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <cmath>
#include <filesystem>
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

/// A score as the library gets it, where it can.
std::optional<std::int32_t> inUnits(double score) {
  const double scaled = std::round(score * scoreUnitsPerPoint);
  if (!(scaled >= std::numeric_limits<std::int32_t>::min() && scaled <= std::numeric_limits<std::int32_t>::max())) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(scaled);
}

constexpr const char *scoreRange = "a score from -21474836.48 to 21474836.47";

std::int32_t readScore(const JsonNode &node) {
  if (!node.isNumber()) node.failExpected("a score, as a number");
  const std::optional<std::int32_t> units = inUnits(node.scalar().get<double>());
  if (!units) node.failExpected(scoreRange);
  return *units;
}

Candidate readCandidate(const JsonNode &node) {
  const std::string shape = "a candidate, as [\"CHARACTER\", SCORE]";
  if (node.requireArray(shape) != 2) node.failExpected(shape + " with nothing more and nothing less");
  const JsonNode character = node.element(0);
  const std::vector<Char32> codes = decodeUtf8(character.string("a single character, as a string"));
  if (codes.size() != 1) character.failExpected("a single character, as a string");
  requireAllowed(codes[0], character.where());
  const JsonNode score = node.element(1);
  return {codes[0], readScore(score), score.scalar()};
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

Box readBox(const JsonNode &node) {
  const std::string shape = "a box, as [LEFT, TOP, RIGHT, BOTTOM]";
  if (node.requireArray(shape) != 4) node.failExpected(shape);
  double sides[4];
  for (std::size_t i = 0; i < 4; ++i) {
    const JsonNode side = node.element(i);
    if (!side.isNumber()) side.failExpected("a number");
    sides[i] = side.scalar().get<double>();
  }
  return {sides[0], sides[1], sides[2], sides[3]};
}

/// What comes beside the characters: boxes, the picture, and what stood there.
void readCompanions(const JsonNode &root, Reading &reading) {
  if (root.has("box")) reading.box = readBox(root.member("box"));
  if (root.has("boxes")) {
    const JsonNode boxes = root.member("boxes");
    const std::size_t n = boxes.requireArray("an array with a box or null for each position");
    if (n != reading.positions.size()) {
      boxes.fail("found " + std::to_string(n) + " boxes; expected one for each of the " +
                 std::to_string(reading.positions.size()) + " positions");
    }
    for (std::size_t i = 0; i < n; ++i) {
      const JsonNode box = boxes.element(i);
      reading.boxes.push_back(box.isNull() ? std::nullopt : std::optional(readBox(box)));
    }
  }
  if (root.has("image")) {
    reading.image = pathBeside(reading.file, root.member("image").string("the path of a picture, as a string"));
  }
  // These two are people's own keys; what does not look like ours is passed over as any other key is.
  for (const auto &[key, target] : {std::pair("truth", &reading.truth), std::pair("kind", &reading.kind)}) {
    if (root.has(key) && root.member(key).isString()) *target = root.member(key).scalar();
  }
}

void readObject(const std::string &line, const LineReader &reader, Reading &reading) {
  const JsonDocument document = parseJson(line, reader.name(), reader.lineNumber());
  const JsonNode root(document, reader.place());
  root.requireObject("a reading, as an object with \"positions\" or \"text\"");
  if (root.has("id") && !root.member("id").isNull()) {
    const JsonNode id = root.member("id");
    if (!id.isString() && !id.isNumber()) id.failExpected("a string or a number");
    reading.id = id.scalar();
  }
  if (root.has("positions")) {
    readPositions(root.member("positions"), reading);
  } else if (root.has("text")) {
    const JsonNode text = root.member("text");
    readText(text.string("the reading, as a string"), text.where(), reading);
  } else {
    root.fail("neither \"positions\" nor \"text\"; expected one of them");
  }
  readCompanions(root, reading);
}

/// A reading a line.
class LinesReader : public FormatReader {
public:
  /// @param first the line that was read to see what the file is
  LinesReader(LineReader &lines, bool isJson, std::string first)
      : lines_(lines), isJson_(isJson), line_(std::move(first)) {}

  bool next(Reading &reading) override {
    while (hasLine_ || lines_.next(line_)) {
      hasLine_ = false;
      if (isJson_ && line_.find_first_not_of(whiteSpace) == std::string::npos) continue;
      reading.line = lines_.lineNumber();
      if (isJson_) {
        readObject(line_, lines_, reading);
      } else {
        dropCarriageReturn(line_);
        readText(line_, lines_.place(), reading);
      }
      return true;
    }
    return false;
  }

private:
  LineReader &lines_;
  bool isJson_;
  std::string line_;
  bool hasLine_ = true;
};

/// The lines or words of a document.
class DocumentReader : public FormatReader {
public:
  explicit DocumentReader(std::shared_ptr<PageDocument> document) : document_(std::move(document)) {}

  bool next(Reading &reading) override {
    if (index_ == document_->numReadings()) return false;
    document_->getReading(index_++, reading);
    reading.document = document_;
    return true;
  }

private:
  std::shared_ptr<PageDocument> document_;
  std::size_t index_ = 0;
};

/// Whether a first line begins a document of XML rather than a reading that happens to begin with "<".
bool isXmlStart(const std::string &line) {
  if (line.starts_with("\xFF\xFE") || line.starts_with("\xFE\xFF")) return true; // Refused later, with a reason.
  const std::size_t first = line.find_first_not_of(whiteSpace);
  if (first == std::string::npos || line[first] != '<') return false;
  for (const char *start : {"<?xml", "<!DOCTYPE", "<!doctype", "<!--", "<html", "<alto", "<PcGts"}) {
    if (line.compare(first, std::string_view(start).size(), start) == 0) return true;
  }
  const std::size_t colon = line.find(':', first); // A root element with a namespace's prefix.
  return colon != std::string::npos &&
         (line.compare(colon + 1, 4, "alto") == 0 || line.compare(colon + 1, 5, "PcGts") == 0);
}

std::shared_ptr<PageDocument> readDocument(LineReader &lines, std::string first, const ReadingOptions &options) {
  std::string bytes = std::move(first);
  bytes += '\n';
  const std::string tooLarge = lines.name() + ": the document is too large; expected at most " +
                               std::to_string(maxDocumentBytes) + " bytes";
  for (std::string line; lines.next(line);) {
    bytes += line;
    bytes += '\n';
    if (bytes.size() > maxDocumentBytes) throw Trouble(tooLarge);
  }
  if (!lines.endedWithFeed()) bytes.pop_back();
  if (lines.hadByteOrderMark()) bytes.insert(0, byteOrderMark);
  auto document = std::make_shared<PageDocument>(std::move(bytes), lines.name(), options.format);
  switch (document->format()) {
  case ReadingFormat::hocr: readHocr(*document); break;
  case ReadingFormat::alto: readAlto(*document); break;
  default: readPage(*document);
  }
  document->finish(options.unit);
  return document;
}

bool isXml(ReadingFormat format) {
  return format == ReadingFormat::hocr || format == ReadingFormat::alto || format == ReadingFormat::page;
}

ReadingFormat detectFormat(const std::string &line) {
  const std::size_t first = line.find_first_not_of(whiteSpace);
  if (first != std::string::npos && line[first] == '{') return ReadingFormat::ndjson;
  if (isTsvHead(line)) return ReadingFormat::tsv;
  return ReadingFormat::text;
}

} // namespace

Candidate makeCandidate(Char32 code, double score, const std::string &place) {
  requireAllowed(code, place);
  const std::optional<std::int32_t> units = inUnits(score);
  if (!units) throw Trouble(place + ": expected " + scoreRange);
  return {code, *units, score};
}

std::array<JsonScalar, 4> describeBox(const Box &box) {
  const auto describe = [](double side) -> JsonScalar {
    constexpr double exact = 9007199254740992.0; // Whole numbers up to here stand as themselves.
    if (std::trunc(side) == side && std::abs(side) < exact) return static_cast<std::int64_t>(side);
    return side;
  };
  return {describe(box.left), describe(box.top), describe(box.right), describe(box.bottom)};
}

std::string Reading::text() const {
  std::string text;
  for (const std::vector<Candidate> &candidates : positions) appendUtf8(text, candidates.front().code);
  return text;
}

std::string Reading::name() const {
  if (id.is_null()) return std::to_string(line);
  return id.is_string() ? id.get<std::string>() : id.dump();
}

std::string pathBeside(const std::string &naming, const std::string &path) {
  return path.empty() ? path : (std::filesystem::path(naming).parent_path() / path).string();
}

ReadingSource::ReadingSource(std::vector<std::string> paths, ReadingOptions options, std::function<void()> beforeWait)
    : paths_(std::move(paths)), options_(options), beforeWait_(std::move(beforeWait)) {}

void ReadingSource::open(const std::string &path) {
  lines_ = std::make_unique<LineReader>(path, beforeWait_);
  std::string first;
  if (!lines_->next(first)) return; // An empty file has no readings, whatever it is.
  const bool isDetected = options_.format == ReadingFormat::detect;
  if (isXml(options_.format) || (isDetected && isXmlStart(first))) {
    const std::shared_ptr<PageDocument> document = readDocument(*lines_, std::move(first), options_);
    if (onDocument_) onDocument_(document);
    reader_ = std::make_unique<DocumentReader>(document);
    return;
  }
  const ReadingFormat format = isDetected ? detectFormat(first) : options_.format;
  if (format != ReadingFormat::tsv) {
    reader_ = std::make_unique<LinesReader>(*lines_, format == ReadingFormat::ndjson, std::move(first));
    return;
  }
  if (!isTsvHead(first)) {
    throw Trouble(lines_->place() + ": expected the head of a table of words: \"level\", \"page_num\", … \"text\"");
  }
  reader_ = readTsv(*lines_, options_.unit);
}

bool ReadingSource::next(Reading &reading) {
  for (;;) {
    if (reader_) {
      reading = Reading();
      reading.file = lines_->name();
      if (reader_->next(reading)) return true;
      reader_.reset();
    }
    if (lines_) numFinishedBytes_ += lines_->numBytes();
    lines_.reset();
    if (nextPath_ == paths_.size()) return false;
    open(paths_[nextPath_++]);
  }
}

} // namespace qoc::program
