#include "output.hpp"

#include "text.hpp"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <vector>

namespace qoc::program {
namespace {

constexpr std::int32_t scoreUnitsPerPoint = 100;

/// Finds the scores that a reading came with for those that the library works with.
class GivenScores {
public:
  explicit GivenScores(const Reading &reading) : reading_(reading) {}

  /// @param position the input position that the character comes from, or -1 where that is not known
  JsonText find(std::int32_t position, const qoc_ocrDictionaryChar &character) {
    if (position >= 0 && static_cast<std::size_t>(position) < reading_.positions.size()) {
      for (const Candidate &candidate : reading_.positions[static_cast<std::size_t>(position)]) {
        if (candidate.code == character.code && candidate.score == character.score) return candidate.givenScore;
      }
    }
    if (character.score == 0) return 0;
    if (!isIndexed_) index();
    const auto found = scores_.find(character.score);
    if (found != scores_.end()) return *found->second;
    return inPoints(character.score);
  }

  /// A sum of scores, in the scale of the reading.
  static JsonText inPoints(std::int32_t units) {
    if (units % scoreUnitsPerPoint == 0) return units / scoreUnitsPerPoint;
    return static_cast<double>(units) / scoreUnitsPerPoint;
  }

private:
  void index() {
    for (const auto &candidates : reading_.positions) {
      for (const Candidate &candidate : candidates) scores_.try_emplace(candidate.score, &candidate.givenScore);
    }
    isIndexed_ = true;
  }

  const Reading &reading_;
  bool isIndexed_ = false;
  std::unordered_map<std::int32_t, const JsonScalar *> scores_;
};

JsonText characterOf(Char32 code) {
  if (code == QOC_CHAR_EMPTY) return nullptr;
  if (!isEncodable(code)) return code;
  std::string text;
  appendUtf8(text, code);
  return text;
}

JsonText candidatesOf(const qstd_vector_qoc_ocrDictionaryChar &characters, std::int32_t position,
                         GivenScores &scores) {
  JsonText list = JsonText::array();
  for (const qoc_ocrDictionaryChar &character : elements(characters)) {
    list.push(JsonText::array({characterOf(character.code), scores.find(position, character)}));
  }
  return list;
}

/// @param indices by position of the string: its input position, or -1; where it is too short, positions are their own
JsonText positionsOf(const qoc_ocrDictionaryStringMulti &string, std::span<const std::int32_t> indices,
                        GivenScores &scores) {
  JsonText list = JsonText::array();
  std::int32_t position = 0;
  for (const qoc_ocrDictionaryCharMulti &multi : elements(string.positions)) {
    const auto i = static_cast<std::size_t>(position);
    list.push(candidatesOf(multi.candidates, i < indices.size() ? indices[i] : position, scores));
    ++position;
  }
  return list;
}

/// The characters of a dictionary string, each with its score; positions as in positionsOf.
JsonText charactersOf(const qoc_ocrDictionaryString &string, std::span<const std::int32_t> indices,
                         GivenScores &scores) {
  JsonText list = JsonText::array();
  std::size_t i = 0;
  for (const qoc_ocrDictionaryChar &character : elements(string.characters)) {
    const std::int32_t position = i < indices.size() ? indices[i] : -1;
    list.push(JsonText::array({characterOf(character.code), scores.find(position, character)}));
    ++i;
  }
  return list;
}

/// The string without its empty characters.
std::string textOf(const qoc_ocrDictionaryString &string) {
  std::string text;
  for (const qoc_ocrDictionaryChar &character : elements(string.characters)) {
    if (character.code != QOC_CHAR_EMPTY) appendUtf8(text, character.code);
  }
  return text;
}

JsonText statusOf(qoc_ocrDictionaryPositionStatus status) {
  switch (status) {
#define QOC_STATUS_NAME(name, value)                                                                                   \
  case value: return #name;
    QOC_POSITION_STATUS_LIST(QOC_STATUS_NAME)
#undef QOC_STATUS_NAME
  default: return status;
  }
}

JsonText statusesOf(const qstd_vector_qoc_ocrDictionaryPositionStatus &statuses) {
  JsonText list = JsonText::array();
  for (const qoc_ocrDictionaryPositionStatus status : elements(statuses)) list.push(statusOf(status));
  return list;
}

JsonText modeOf(qoc_ocrDictionaryMode mode) {
  switch (mode) {
#define QOC_MODE_NAME(name, value)                                                                                     \
  case value: return #name;
    QOC_MODE_LIST(QOC_MODE_NAME)
#undef QOC_MODE_NAME
  default: return mode;
  }
}

JsonText numbersOf(const qstd_vector32s &numbers) {
  JsonText list = JsonText::array();
  for (const std::int32_t number : elements(numbers)) list.push(number);
  return list;
}

/// The result's text, or null where a position is left open.
JsonText wholeTextOf(const qoc_ocrDictionaryResult &result) {
  std::string text;
  for (const Char32 code : resultText(result)) {
    if (code == QOC_CHAR_EMPTY) return nullptr;
    appendUtf8(text, code);
  }
  return text;
}

/// What was not handed to the library.
JsonText leftOutOf(const Reading &reading, const Answer &answer) {
  JsonText list = JsonText::array();
  for (const LeftOut &leftOut : answer.leftOut) {
    const Candidate &candidate = reading.positions[leftOut.position][leftOut.index];
    JsonText entry = JsonText::object();
    entry.set("position", leftOut.position);
    entry.set("candidate", JsonText::array({characterOf(candidate.code), candidate.givenScore}));
    list.push(entry);
  }
  return list;
}

/// What a fielding run did at each position of the line.
/// @param places by position of the line: where it stands in the reading, or -1
JsonText linePositionsOf(const qoc_ocrDictionaryResult &result, const Reading &reading,
                            std::span<const std::int32_t> places) {
  const auto statuses = elements(result.resultStringStatus);
  const std::vector<Char32> text = resultText(result);
  JsonText list = JsonText::array();
  for (std::size_t i = 0; i < std::min(statuses.size(), text.size()); ++i) {
    const bool isRead = i < places.size() && places[i] >= 0;
    const auto input = isRead ? static_cast<std::size_t>(places[i]) : 0;
    JsonText entry = JsonText::object();
    entry.set("input", isRead ? JsonText(input) : nullptr);
    entry.set("read", isRead ? characterOf(reading.positions[input].front().code) : nullptr);
    entry.set("character", characterOf(text[i]));
    entry.set("status", statusOf(statuses[i]));
    list.push(entry);
  }
  return list;
}

/// @param line the index of the line that a fielding run placed; null for other runs
JsonText resultOf(const qoc_ocrDictionaryResult &result, const Reading &reading, const std::size_t *line,
                     GivenScores &scores) {
  Integers indices; // By position of the result: where it stands in the input.
  if (result.isComputed) {
    check(qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters(&result, indices.get()), "a result");
  }
  const std::span<const std::int32_t> places = elements(*indices.get());
  JsonText object = JsonText::object();
  if (line != nullptr) object.set("fielding", *line);
  object.set("text", wholeTextOf(result));
  if (line != nullptr) object.set("positions", linePositionsOf(result, reading, places));
  object.set("isComputed", result.isComputed != 0);
  object.set("mode", modeOf(result.mode));
  object.set("dictionaryString", textOf(result.dictionaryString));
  object.set("dictionaryCharacters", charactersOf(result.dictionaryString, places, scores));
  object.set("given", positionsOf(result.given, {}, scores));
  object.set("givenSwap", positionsOf(result.givenSwap, {}, scores));
  object.set("valid", positionsOf(result.valid, places, scores));
  object.set("resultStringStatus", statusesOf(result.resultStringStatus));
  object.set("statusWRTInputStringSwapChar", statusesOf(result.statusWRTInputStringSwapChar));
  object.set("resultStringLineStatus", statusOf(result.resultStringLineStatus));
  object.set("deleted", numbersOf(result.deleted));
  object.set("inputIndices", numbersOf(result.inputIndices));
  object.set("numEdits", result.numEdits);
  object.set("numIgnoredPrefixCharacters", result.numIgnoredPrefixCharacters);
  object.set("numIgnoredSuffixCharacters", result.numIgnoredSuffixCharacters);
  object.set("startFieldIndex", result.startFieldIndex);
  object.set("overlapInputString", result.overlapInputString);
  object.set("ignoreDeletedSpaces", result.ignoreDeletedSpaces != 0);
  object.set("scoreStatusMask", result.scoreStatusMask);
  object.set("scoreIsCached", result.scoreIsCached != 0);
  object.set("score", GivenScores::inPoints(result.score));
  object.set("numInsertedIsCached", result.numInsertedIsCached != 0);
  object.set("numInserted", result.numInserted);
  object.set("orderIndex", result.orderIndex);
  object.set("numMatchedPositionsIsCached", result.numMatchedPositionsIsCached != 0);
  object.set("numMatchedPositions", result.numMatchedPositions);
  return object;
}

/// Adds a text that the reading can be, and how it came about.
/// @param hasScores false: no margin can be told
void addResolvedText(JsonText &object, const qoc_ocrDictionaryResolvedText &text, bool hasScores) {
  object.set("text", textOf(text.text));
  object.set("total", GivenScores::inPoints(text.total));
  object.set("margin", hasScores ? GivenScores::inPoints(text.margin) : nullptr);
  object.set("mode", modeOf(text.mode));
  object.set("result", text.resultIndex < 0 ? nullptr : JsonText(text.resultIndex));
  object.set("check", text.hasCheck == 0 ? nullptr : JsonText(text.passesCheck != 0));
  object.set("open", text.numOpen);
  object.set("inputs", numbersOf(text.inputIndices));
  object.set("candidates", numbersOf(text.candidateIndices));
}

/// What came of resolving: the best text with the outcome, and the others.
JsonText resolvedOf(const qoc_ocrDictionaryResolution &resolution) {
  const std::span<const qoc_ocrDictionaryResolvedText> texts = elements(resolution.texts);
  JsonText object = JsonText::object();
  object.set("outcome", qoc_ocrDictionaryOutcome_getName(resolution.outcome));
  const bool hasScores = resolution.hasScores != 0;
  if (!texts.empty()) addResolvedText(object, texts.front(), hasScores);
  JsonText list = JsonText::array();
  for (std::size_t i = 1; i < texts.size(); ++i) {
    JsonText other = JsonText::object();
    addResolvedText(other, texts[i], hasScores);
    list.push(other);
  }
  object.set("alternatives", list);
  return object;
}

} // namespace

JsonText aboutReading(std::string_view type, const Reading &reading) {
  JsonText object = JsonText::object({{"type", type}});
  object.set("version", formatVersion);
  object.set("file", reading.file);
  object.set("line", reading.line);
  object.set("id", reading.id);
  object.set("text", reading.text());
  return object;
}

void addCompanions(JsonText &object, const Reading &reading) {
  if (reading.box) object.set("box", JsonText::array(describeBox(*reading.box)));
  if (!reading.boxes.empty()) {
    JsonText boxes = JsonText::array();
    for (const std::optional<Box> &box : reading.boxes) {
      boxes.push(box ? JsonText::array(describeBox(*box)) : nullptr);
    }
    object.set("boxes", boxes);
  }
  if (!reading.image.empty()) object.set("image", reading.image);
}

std::string describeAsJson(const Reading &reading, const Answer &answer) {
  GivenScores scores(reading);
  JsonText object = aboutReading("reading", reading);
  addCompanions(object, reading);
  object.set("leftOut", leftOutOf(reading, answer));
  if (answer.isResolved) object.set("resolved", resolvedOf(*answer.resolution.get()));
  JsonText list = JsonText::array();
  std::size_t i = 0;
  for (const qoc_ocrDictionaryResult &result : elements(answer.results->results)) {
    const std::size_t *line = i < answer.lines.size() ? &answer.lines[i] : nullptr;
    list.push(resultOf(result, reading, line, scores));
    ++i;
  }
  object.set("results", list);
  return object.text() + "\n";
}

} // namespace qoc::program
