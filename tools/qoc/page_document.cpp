#include "page_document.hpp"

#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace qoc::program {
namespace {

constexpr auto noIndex = static_cast<std::size_t>(-1);
constexpr Char32 space = ' ';

/// The codes of what a document says; Trouble where references have made something of it that is no text.
std::vector<Char32> codesOf(const std::string &text, const std::string &place) {
  checkUtf8(text, place);
  return decodeUtf8(text);
}

/// A replacement of bytes.
struct Edit {
  TextSlot slot;
  std::string text;
};

} // namespace

PageDocument::PageDocument(std::string bytes, const std::string &name, ReadingFormat format)
    : xml_(std::move(bytes), name), format_(format == ReadingFormat::detect ? detectXml(xml_) : format) {}

PageLine &PageDocument::addLine(pugi::xml_node element) {
  wordScores_.clear();
  PageLine &line = lines_.emplace_back();
  line.line = xml_.lineOf(element);
  return line;
}

void PageDocument::beginWord(pugi::xml_node element, double score) {
  PageLine &line = lines_.back();
  open_ = {line.positions.size(), score};
  if (!line.words.empty()) {
    const double lower = std::min(wordScores_.back(), score);
    line.positions.push_back({makeCandidate(space, lower, xml_.placeOf(element))});
    line.boxes.emplace_back();
  }
  line.words.push_back({{line.positions.size(), line.positions.size()}, {}, xml_.lineOf(element), {}});
}

PositionRange PageDocument::addText(pugi::xml_node element, const ScoredText &printed,
                                    std::vector<ScoredText> alternatives, const std::optional<Box> &box) {
  PageLine &line = lines_.back();
  const std::string place = xml_.placeOf(element);
  const std::size_t begin = line.positions.size();
  for (const Char32 code : codesOf(printed.text, place)) {
    line.positions.push_back({makeCandidate(code, printed.score, place)});
    line.boxes.push_back(box);
  }
  const std::size_t length = line.positions.size() - begin;
  std::stable_sort(alternatives.begin(), alternatives.end(),
                   [](const ScoredText &a, const ScoredText &b) { return a.score > b.score; });
  for (const ScoredText &alternative : alternatives) {
    const std::vector<Char32> codes = codesOf(alternative.text, place);
    if (codes.size() != length || alternative.score == 0) continue;
    for (std::size_t i = 0; i < length; ++i) {
      std::vector<Candidate> &candidates = line.positions[begin + i];
      const bool isKnown = std::any_of(candidates.begin(), candidates.end(),
                                       [&](const Candidate &candidate) { return candidate.code == codes[i]; });
      if (!isKnown) candidates.push_back(makeCandidate(codes[i], alternative.score, place));
    }
  }
  return {begin, line.positions.size()};
}

PositionRange PageDocument::endWord() {
  PageLine &line = lines_.back();
  PositionRange &positions = line.words.back().positions;
  positions.end = line.positions.size();
  if (positions.begin < positions.end) {
    wordScores_.push_back(open_.score);
    return positions;
  }
  line.words.pop_back();
  line.positions.resize(open_.begin);
  line.boxes.resize(open_.begin);
  return {open_.begin, open_.begin};
}

void PageDocument::addPlainText(pugi::xml_node element, const ScoredText &printed) {
  const std::string place = xml_.placeOf(element);
  const std::vector<Char32> codes = codesOf(printed.text, place);
  PageLine &line = lines_.back();
  for (const Char32 code : codes) {
    const bool isSpace = code == '\n' || code == '\r' || code == '\t' || code == space;
    const bool isInWord = !line.words.empty() && line.words.back().positions.end == line.positions.size();
    if (!isSpace && !isInWord) {
      line.words.push_back({{line.positions.size(), line.positions.size()}, {}, xml_.lineOf(element), {}});
    }
    line.positions.push_back({makeCandidate(isSpace ? space : code, printed.score, place)});
    line.boxes.emplace_back();
    if (!isSpace) line.words.back().positions.end = line.positions.size();
  }
}

void PageDocument::finish(ReadingUnit unit) {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    PageLine &line = lines_[i];
    const bool hasBox = std::any_of(line.boxes.begin(), line.boxes.end(), [](const auto &box) { return bool(box); });
    if (!hasBox) line.boxes.clear();
    if (unit == ReadingUnit::line && !line.words.empty()) readings_.push_back({i, {0, line.positions.size()}, noIndex});
    if (unit != ReadingUnit::word) continue;
    for (std::size_t k = 0; k < line.words.size(); ++k) readings_.push_back({i, line.words[k].positions, k});
  }
  texts_.resize(lines_.size());
}

void PageDocument::getReading(std::size_t index, Reading &reading) const {
  const ReadingPlace &place = readings_[index];
  const PageLine &line = lines_[place.line];
  const bool isWord = place.word != noIndex;
  const std::string &id = isWord ? line.words[place.word].id : line.id;
  const auto begin = static_cast<std::ptrdiff_t>(place.positions.begin);
  const auto end = static_cast<std::ptrdiff_t>(place.positions.end);
  reading.line = isWord ? line.words[place.word].line : line.line;
  if (!id.empty()) reading.id = id;
  reading.positions.assign(line.positions.begin() + begin, line.positions.begin() + end);
  if (!line.boxes.empty()) reading.boxes.assign(line.boxes.begin() + begin, line.boxes.begin() + end);
  reading.box = isWord ? line.words[place.word].box : line.box;
  reading.image = line.image;
  reading.indexInDocument = index;
}

void PageDocument::correct(std::size_t index, std::vector<std::string> texts) {
  const ReadingPlace &place = readings_[index];
  const PageLine &line = lines_[place.line];
  std::vector<std::string> &all = texts_[place.line];
  if (all.empty()) {
    for (const std::vector<Candidate> &candidates : line.positions) {
      appendUtf8(all.emplace_back(), candidates.front().code);
    }
  }
  std::move(texts.begin(), texts.end(), all.begin() + static_cast<std::ptrdiff_t>(place.positions.begin));
}

std::string PageDocument::corrected() const {
  std::vector<Edit> edits;
  std::vector<std::string> before(lines_.size()), after(lines_.size());
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const PageLine &line = lines_[i];
    std::vector<std::string> old;
    for (const std::vector<Candidate> &candidates : line.positions) {
      appendUtf8(old.emplace_back(), candidates.front().code);
      before[i] += old.back();
    }
    std::vector<std::string> now = texts_[i].empty() ? old : texts_[i];
    // The space between two words belongs to neither of them: where it went, the next word moves to the one before, and
    // what came in beside it goes to the words.
    for (std::size_t k = 1; k < line.words.size(); ++k) {
      std::string &wordBefore = now[line.words[k - 1].positions.end - 1];
      const std::size_t gapBegin = line.words[k - 1].positions.end;
      const auto [begin, end] = line.words[k].positions;
      std::string gap;
      for (std::size_t p = gapBegin; p < begin; ++p) gap += std::exchange(now[p], {});
      const std::size_t left = gap.find(' '), right = gap.rfind(' ');
      wordBefore += gap.substr(0, left);
      if (left != std::string::npos) {
        now[begin].insert(0, gap.substr(right + 1));
        now[gapBegin] = gap.substr(left, right + 1 - left);
      } else {
        for (std::size_t p = begin; p < end; ++p) wordBefore += std::exchange(now[p], {});
      }
    }
    for (const std::string &text : now) after[i] += text;
    for (const TextPlace &place : line.places) {
      std::string oldText, text;
      for (std::size_t p = place.positions.begin; p < place.positions.end; ++p) {
        oldText += old[p];
        text += now[p];
      }
      if (text == oldText) continue;
      for (std::size_t s = 0; s < place.slots.size(); ++s) edits.push_back({place.slots[s], s == 0 ? text : ""});
    }
  }
  for (const TextBlock &block : blocks_) {
    std::string oldText, text;
    for (std::size_t i = block.firstLine; i < block.endLine; ++i) {
      oldText += (i > block.firstLine ? "\n" : "") + before[i];
      text += (i > block.firstLine ? "\n" : "") + after[i];
    }
    const std::string raw = xml_.bytes().substr(block.slot.begin, block.slot.end - block.slot.begin);
    if (text != oldText && raw == escapeXml(oldText)) edits.push_back({block.slot, text});
  }
  std::sort(edits.begin(), edits.end(), [](const Edit &a, const Edit &b) { return a.slot.begin < b.slot.begin; });
  std::string result;
  std::size_t done = 0;
  for (const Edit &edit : edits) {
    result.append(xml_.bytes(), done, edit.slot.begin - done);
    result += escapeXml(edit.text);
    done = edit.slot.end;
  }
  return result.append(xml_.bytes(), done);
}

ReadingFormat detectXml(const XmlDocument &xml) {
  const std::string_view name = localName(xml.root());
  if (name == "html") return ReadingFormat::hocr;
  if (name == "alto") return ReadingFormat::alto;
  if (name == "PcGts") return ReadingFormat::page;
  throw Trouble(xml.placeOf(xml.root()) + ": the document's element is \"" + std::string(xml.root().name()) +
                "\"; expected \"html\" (hOCR), \"alto\" or \"PcGts\" (PAGE XML)");
}

double parseNumber(std::string_view text, const std::string &place, const std::string &what) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
    throw Trouble(place + ": found \"" + std::string(text.substr(0, 40)) + "\"; expected " + what);
  }
  return value;
}

double confidenceOf(const PageDocument &page, pugi::xml_node element, const char *attribute, double otherwise) {
  const pugi::xml_attribute value = element.attribute(attribute);
  if (!value) return otherwise;
  const std::string what = std::string(attribute) + ", a number from 0 to 1";
  const std::string place = page.xml().placeOf(element);
  const double confidence = parseNumber(value.value(), place, what);
  if (confidence < 0 || confidence > 1) {
    throw Trouble(place + ": found \"" + value.value() + "\"; expected " + what);
  }
  constexpr double keptFractions = 1e6; // What multiplying adds in far digits is no part of the number.
  return std::round(confidence * 100 * keptFractions) / keptFractions;
}

} // namespace qoc::program
