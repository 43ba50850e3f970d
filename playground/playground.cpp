// What the page calls: a dictionary and a reading as JSON in, explained results as JSON out.

#include "dictionary_file.hpp"
#include "json_output.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <emscripten/emscripten.h>

#include <cmath>
#include <memory>
#include <string>

namespace qoc::program {
namespace {

/// A page has one thread and must stay alive: a run ends after this time.
constexpr std::uint64_t maxRunNs = 5'000'000'000;
constexpr double scoreUnitsPerPoint = 100.0;

/// The dictionary that was read last, so that typing a reading does not read it again.
struct Held {
  std::string text;
  std::unique_ptr<DictionaryFile> file;
};
Held held;

const DictionaryFile &dictionaryOf(const std::string &text) {
  if (!held.file || held.text != text) {
    held.file.reset();
    auto file = std::make_unique<DictionaryFile>();
    readDictionaryText(text, "dictionary", {}, *file);
    requireEntries(*file);
    held = {text, std::move(file)};
  }
  return *held.file;
}

void requireAllowed(Char32 code, const std::string &place) {
  const std::string refusal = whyRefused(code);
  if (!refusal.empty()) throw Trouble(place + ": " + refusal);
}

qoc_ocrDictionaryChar candidateOf(const JsonNode &node) {
  const std::string shape = "a candidate, as [\"CHARACTER\", SCORE]";
  if (node.requireArray(shape) != 2 || !node.element(1).isNumber()) node.failExpected(shape);
  const auto codes = decodeUtf8(node.element(0).string("a single character, as a string"));
  if (codes.size() != 1) node.element(0).failExpected("a single character, as a string");
  requireAllowed(codes[0], node.where());
  const double units = std::round(node.element(1).scalar().get<double>() * scoreUnitsPerPoint);
  if (!(std::abs(units) < 2147483648.0)) node.failExpected("a score within 21474836");
  return {codes[0], static_cast<std::int32_t>(units)};
}

void append(MultiString &reading, const std::vector<qoc_ocrDictionaryChar> &candidates) {
  auto *positions = &reading->positions;
  std::int32_t n = 0;
  check(qstd_vector_qoc_ocrDictionaryCharMulti_getSize32(positions, &n), "reading");
  check(qstd_vector_qoc_ocrDictionaryCharMulti_resize(positions, n + 1), "reading");
  qoc_ocrDictionaryCharMulti *position = nullptr;
  check(qstd_vector_qoc_ocrDictionaryCharMulti_getElement(positions, n, &position), "reading");
  check(qstd_vector_qoc_ocrDictionaryChar_assignElements(&position->candidates, candidates.data(),
                                                         static_cast<std::int32_t>(candidates.size())),
        "reading");
}

/// A reading as text, or as the array "positions" of a reading's JSON. Fieldings know 7-bit characters only.
void setReading(const std::string &text, bool isOnly7Bits, MultiString &reading) {
  const auto add = [&](std::vector<qoc_ocrDictionaryChar> candidates) {
    if (isOnly7Bits) std::erase_if(candidates, [](const auto &candidate) { return candidate.code > max7Bits; });
    if (candidates.empty()) candidates.push_back({QOC_CHAR_EMPTY, 0});
    append(reading, candidates);
  };
  if (text.empty() || text[0] != '[') {
    for (const Char32 code : decodeUtf8(text)) {
      requireAllowed(code, "reading");
      add({{code, 0}});
    }
    return;
  }
  const JsonDocument document = parseJson(text, "reading");
  const JsonNode root(document, "reading");
  const std::size_t n = root.requireArray("an array of positions");
  for (std::size_t i = 0; i < n; ++i) {
    const JsonNode position = root.element(i);
    std::vector<qoc_ocrDictionaryChar> candidates;
    const std::size_t numCandidates = position.requireArray("a position, as an array of candidates");
    if (numCandidates == 0) position.fail("the position has no candidate; expected at least one");
    for (std::size_t k = 0; k < numCandidates; ++k) candidates.push_back(candidateOf(position.element(k)));
    add(candidates);
  }
}

const char *statusName(qoc_ocrDictionaryPositionStatus status) {
  switch (status) {
#define QOC_STATUS_NAME(name, value)                                                                                   \
  case value: return #name;
    QOC_POSITION_STATUS_LIST(QOC_STATUS_NAME)
#undef QOC_STATUS_NAME
  default: return "none";
  }
}

const char *modeName(qoc_ocrDictionaryMode mode) {
  switch (mode) {
#define QOC_MODE_NAME(name, value)                                                                                     \
  case value: return #name;
    QOC_MODE_LIST(QOC_MODE_NAME)
#undef QOC_MODE_NAME
  default: return "none";
  }
}

JsonText statusesOf(const qstd_vector_qoc_ocrDictionaryPositionStatus &statuses) {
  JsonText list = JsonText::array();
  for (const auto status : elements(statuses)) list.push(statusName(status));
  return list;
}

/// The characters of a result; empty where a position is open.
JsonText charactersOf(const qoc_ocrDictionaryResult &result) {
  JsonText list = JsonText::array();
  const auto add = [&](Char32 code) {
    std::string text;
    if (code != QOC_CHAR_EMPTY && code != QOC_CHAR_ANY && code != QOC_CHAR_ANY_NONSPACE) appendUtf8(text, code);
    list.push(text);
  };
  if (result.mode == qoc_ocrDictionaryMode_lexicon) {
    for (const auto &character : elements(result.dictionaryString.characters)) add(character.code);
    return list;
  }
  for (const auto &position : elements(result.valid.positions)) {
    const auto candidates = elements(position.candidates);
    add(candidates.empty() ? Char32{QOC_CHAR_EMPTY} : candidates.front().code);
  }
  return list;
}

JsonText describe(const qoc_ocrDictionaryResult &result) {
  JsonText described = JsonText::object();
  described.set("characters", charactersOf(result));
  described.set("edits", result.numEdits);
  described.set("mode", modeName(result.mode));
  described.set("statuses", statusesOf(result.resultStringStatus));
  described.set("readingStatuses", statusesOf(result.statusWRTInputStringSwapChar));
  return described;
}

JsonText run(const std::string &dictionary, const std::string &text) {
  const DictionaryFile &file = dictionaryOf(dictionary);
  MultiString reading;
  setReading(text, !file.lines().empty(), reading);
  ResultSet results;
  std::uint64_t deadline = qsys_attention_getTimeNs() + maxRunNs;
  qsys_attention_setHandler(qsys_attention_deadlineHandler, &deadline);
  const qsys_status status =
      qoc_ocrDictionary_runMulti(file.dictionary.get(), reading.get(), file.params.get(), results.get());
  qsys_attention_setHandler(nullptr, nullptr);
  check(status, "reading");
  JsonText list = JsonText::array();
  for (const qoc_ocrDictionaryResult &result : elements(results->results)) list.push(describe(result));
  return JsonText::object({{"results", list}});
}

} // namespace
} // namespace qoc::program

/// @return JSON with "results" or "error"; valid until the next call
extern "C" EMSCRIPTEN_KEEPALIVE const char *qoc_playground_run(const char *dictionary, const char *reading) {
  static std::string answer;
  const auto refuse = [](const char *error) { answer = qoc::program::JsonText::object({{"error", error}}).text(); };
  try {
    qoc::program::checkUtf8(reading, "reading");
    answer = qoc::program::run(dictionary, reading).text();
  } catch (const qoc::program::Interrupted &) {
    refuse("the reading takes longer than five seconds; fewer edits or a shorter reading would help");
  } catch (const std::exception &problem) {
    refuse(problem.what());
  }
  return answer.c_str();
}
