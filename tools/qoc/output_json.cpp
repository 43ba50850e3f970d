#include "output.hpp"

#include "text.hpp"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <vector>

namespace qoc::program {
namespace {

using OrderedJson = nlohmann::ordered_json;

constexpr int formatVersion = 1;
constexpr std::int32_t scoreUnitsPerPoint = 100;

/// Finds the scores that a reading came with for those that the library works with.
class GivenScores {
public:
  explicit GivenScores(const Reading &reading) : reading_(reading) {}

  /// @param position the input position that the character comes from, or -1 where that is not known
  OrderedJson find(std::int32_t position, const qoc_ocrDictionaryChar &character) {
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
  static OrderedJson inPoints(std::int32_t units) {
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
  std::unordered_map<std::int32_t, const Json *> scores_;
};

OrderedJson characterOf(Char32 code) {
  if (code == QOC_CHAR_EMPTY) return nullptr;
  if (!isEncodable(code)) return code;
  std::string text;
  appendUtf8(text, code);
  return text;
}

OrderedJson candidatesOf(const qstd_vector_qoc_ocrDictionaryChar &characters, std::int32_t position,
                         GivenScores &scores) {
  OrderedJson list = OrderedJson::array();
  for (const qoc_ocrDictionaryChar &character : elements(characters)) {
    list.push_back(OrderedJson::array({characterOf(character.code), scores.find(position, character)}));
  }
  return list;
}

/// @param indices by position of the string: its input position, or -1; where it is too short, positions are their own
OrderedJson positionsOf(const qoc_ocrDictionaryStringMulti &string, std::span<const std::int32_t> indices,
                        GivenScores &scores) {
  OrderedJson list = OrderedJson::array();
  std::int32_t position = 0;
  for (const qoc_ocrDictionaryCharMulti &multi : elements(string.positions)) {
    const auto i = static_cast<std::size_t>(position);
    list.push_back(candidatesOf(multi.candidates, i < indices.size() ? indices[i] : position, scores));
    ++position;
  }
  return list;
}

/// The characters of a dictionary string, each with its score; positions as in positionsOf.
OrderedJson charactersOf(const qoc_ocrDictionaryString &string, std::span<const std::int32_t> indices,
                         GivenScores &scores) {
  OrderedJson list = OrderedJson::array();
  std::size_t i = 0;
  for (const qoc_ocrDictionaryChar &character : elements(string.characters)) {
    const std::int32_t position = i < indices.size() ? indices[i] : -1;
    list.push_back(OrderedJson::array({characterOf(character.code), scores.find(position, character)}));
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

OrderedJson statusOf(qoc_ocrDictionaryPositionStatus status) {
  switch (status) {
#define QOC_STATUS_NAME(name, value)                                                                                   \
  case value: return #name;
    QOC_POSITION_STATUS_LIST(QOC_STATUS_NAME)
#undef QOC_STATUS_NAME
  default: return status;
  }
}

OrderedJson statusesOf(const qstd_vector_qoc_ocrDictionaryPositionStatus &statuses) {
  OrderedJson list = OrderedJson::array();
  for (const qoc_ocrDictionaryPositionStatus status : elements(statuses)) list.push_back(statusOf(status));
  return list;
}

OrderedJson modeOf(qoc_ocrDictionaryMode mode) {
  switch (mode) {
#define QOC_MODE_NAME(name, value)                                                                                     \
  case value: return #name;
    QOC_MODE_LIST(QOC_MODE_NAME)
#undef QOC_MODE_NAME
  default: return mode;
  }
}

OrderedJson numbersOf(const qstd_vector32s &numbers) {
  OrderedJson list = OrderedJson::array();
  for (const std::int32_t number : elements(numbers)) list.push_back(number);
  return list;
}

/// The result's text, or null where a position is left open.
OrderedJson wholeTextOf(const qoc_ocrDictionaryResult &result) {
  std::string text;
  for (const Char32 code : resultText(result)) {
    if (code == QOC_CHAR_EMPTY) return nullptr;
    appendUtf8(text, code);
  }
  return text;
}

/// What was not handed to the library.
OrderedJson leftOutOf(const Reading &reading, const Answer &answer) {
  OrderedJson list = OrderedJson::array();
  for (const LeftOut &leftOut : answer.leftOut) {
    const Candidate &candidate = reading.positions[leftOut.position][leftOut.index];
    OrderedJson entry;
    entry["position"] = leftOut.position;
    entry["candidate"] = OrderedJson::array({characterOf(candidate.code), OrderedJson(candidate.givenScore)});
    list.push_back(std::move(entry));
  }
  return list;
}

/// What a fielding run did at each position of the line.
/// @param places by position of the line: where it stands in the reading, or -1
OrderedJson linePositionsOf(const qoc_ocrDictionaryResult &result, const Reading &reading,
                            std::span<const std::int32_t> places) {
  const auto statuses = elements(result.resultStringStatus);
  const std::vector<Char32> text = resultText(result);
  OrderedJson list = OrderedJson::array();
  for (std::size_t i = 0; i < std::min(statuses.size(), text.size()); ++i) {
    const bool isRead = i < places.size() && places[i] >= 0;
    const auto input = isRead ? static_cast<std::size_t>(places[i]) : 0;
    OrderedJson entry;
    entry["input"] = isRead ? OrderedJson(input) : OrderedJson(nullptr);
    entry["read"] = isRead ? characterOf(reading.positions[input].front().code) : OrderedJson(nullptr);
    entry["character"] = characterOf(text[i]);
    entry["status"] = statusOf(statuses[i]);
    list.push_back(std::move(entry));
  }
  return list;
}

/// @param line the index of the line that a fielding run placed; null for other runs
OrderedJson resultOf(const qoc_ocrDictionaryResult &result, const Reading &reading, const std::size_t *line,
                     GivenScores &scores) {
  Integers indices; // By position of the result: where it stands in the input.
  if (result.isComputed) {
    check(qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters(&result, indices.get()), "a result");
  }
  const std::span<const std::int32_t> places = elements(*indices.get());
  OrderedJson object;
  if (line != nullptr) object["fielding"] = *line;
  object["text"] = wholeTextOf(result);
  if (line != nullptr) object["positions"] = linePositionsOf(result, reading, places);
  object["isComputed"] = result.isComputed != 0;
  object["mode"] = modeOf(result.mode);
  object["dictionaryString"] = textOf(result.dictionaryString);
  object["dictionaryCharacters"] = charactersOf(result.dictionaryString, places, scores);
  object["given"] = positionsOf(result.given, {}, scores);
  object["givenSwap"] = positionsOf(result.givenSwap, {}, scores);
  object["valid"] = positionsOf(result.valid, places, scores);
  object["resultStringStatus"] = statusesOf(result.resultStringStatus);
  object["statusWRTInputStringSwapChar"] = statusesOf(result.statusWRTInputStringSwapChar);
  object["resultStringLineStatus"] = statusOf(result.resultStringLineStatus);
  object["deleted"] = numbersOf(result.deleted);
  object["inputIndices"] = numbersOf(result.inputIndices);
  object["numEdits"] = result.numEdits;
  object["numIgnoredPrefixCharacters"] = result.numIgnoredPrefixCharacters;
  object["numIgnoredSuffixCharacters"] = result.numIgnoredSuffixCharacters;
  object["startFieldIndex"] = result.startFieldIndex;
  object["overlapInputString"] = result.overlapInputString;
  object["ignoreDeletedSpaces"] = result.ignoreDeletedSpaces != 0;
  object["scoreStatusMask"] = result.scoreStatusMask;
  object["scoreIsCached"] = result.scoreIsCached != 0;
  object["score"] = GivenScores::inPoints(result.score);
  object["numInsertedIsCached"] = result.numInsertedIsCached != 0;
  object["numInserted"] = result.numInserted;
  object["orderIndex"] = result.orderIndex;
  object["numMatchedPositionsIsCached"] = result.numMatchedPositionsIsCached != 0;
  object["numMatchedPositions"] = result.numMatchedPositions;
  return object;
}

/// A text that the reading can be, and how it came about.
/// @param hasScores false: no margin can be told
OrderedJson resolvedTextOf(const qoc_ocrDictionaryResolvedText &text, bool hasScores) {
  OrderedJson object;
  object["text"] = textOf(text.text);
  object["total"] = GivenScores::inPoints(text.total);
  object["margin"] = hasScores ? GivenScores::inPoints(text.margin) : OrderedJson();
  object["mode"] = modeOf(text.mode);
  object["result"] = text.resultIndex < 0 ? OrderedJson() : OrderedJson(text.resultIndex);
  object["check"] = text.hasCheck == 0 ? OrderedJson() : OrderedJson(text.passesCheck != 0);
  object["open"] = text.numOpen;
  object["inputs"] = numbersOf(text.inputIndices);
  object["candidates"] = numbersOf(text.candidateIndices);
  return object;
}

/// What came of resolving: the best text with the outcome, and the others.
OrderedJson resolvedOf(const qoc_ocrDictionaryResolution &resolution) {
  const std::span<const qoc_ocrDictionaryResolvedText> texts = elements(resolution.texts);
  OrderedJson object;
  object["outcome"] = qoc_ocrDictionaryOutcome_getName(resolution.outcome);
  const bool hasScores = resolution.hasScores != 0;
  if (!texts.empty()) object.update(resolvedTextOf(texts.front(), hasScores));
  OrderedJson &list = object["alternatives"] = OrderedJson::array();
  for (std::size_t i = 1; i < texts.size(); ++i) list.push_back(resolvedTextOf(texts[i], hasScores));
  return object;
}

} // namespace

void addCompanions(nlohmann::ordered_json &object, const Reading &reading) {
  if (reading.box) object["box"] = describeBox(*reading.box);
  if (!reading.boxes.empty()) {
    OrderedJson &boxes = object["boxes"] = OrderedJson::array();
    for (const std::optional<Box> &box : reading.boxes) {
      boxes.push_back(box ? OrderedJson(describeBox(*box)) : OrderedJson());
    }
  }
  if (!reading.image.empty()) object["image"] = reading.image;
}

std::string describeAsJson(const Reading &reading, const Answer &answer) {
  GivenScores scores(reading);
  OrderedJson object;
  object["type"] = "reading";
  object["version"] = formatVersion;
  object["file"] = reading.file;
  object["line"] = reading.line;
  object["id"] = reading.id;
  object["text"] = reading.text();
  addCompanions(object, reading);
  object["leftOut"] = leftOutOf(reading, answer);
  if (answer.isResolved) object["resolved"] = resolvedOf(*answer.resolution.get());
  OrderedJson &list = object["results"] = OrderedJson::array();
  for (const qoc_ocrDictionaryResult &result : elements(answer.results->results)) {
    const std::size_t i = list.size();
    const std::size_t *line = i < answer.lines.size() ? &answer.lines[i] : nullptr;
    list.push_back(resultOf(result, reading, line, scores));
  }
  // A file's name need not be UTF-8; everything else is.
  return object.dump(-1, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

} // namespace qoc::program
