// What the program does with JSON and threads while memory runs out, at every use of operator new: it tells of it, and
// goes on.

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>

#include "dictionary_file.hpp"
#include "library_reading.hpp"
#include "ordered_work.hpp"
#include "output.hpp"
#include "readings.hpp"
#include "support/heap.hpp"

namespace {

using namespace qoc::program;
using qoc::test::FaultMode;
using qoc::test::HeapFault;

/// Does it with every single allocation failing, and with every one and all that follow; then with all that it asks
/// for. Every failure has to end as an exception that tells of it: an end of the process fails the test.
void doShortOfMemory(const std::function<void()> &act) {
  for (const FaultMode mode : {FaultMode::once, FaultMode::from}) {
    int numFailures = 0;
    for (bool isShort = true; isShort; ++numFailures) {
      const HeapFault fault(numFailures, mode);
      bool isToldOf = false;
      try {
        act();
      } catch (const std::bad_alloc &) {
        isToldOf = true;
      } catch (const Trouble &) {
        isToldOf = true;
      }
      isShort = fault.hasFailed();
      ASSERT_TRUE(isShort || !isToldOf) << "after " << numFailures;
    }
    EXPECT_GT(numFailures, 10);
  }
}

constexpr const char *dictionaryText = R"({
  "lexicons": [{"words": ["word", "a word that is longer than others"]}],
  "fieldings": ["AA99", [["upper", "digit"], {"classes": ["lower"], "characters": "xy"}]],
  "regularExpressions": ["[a-c]{2}"],
  "shapes": ["iso-date", {"regularExpressions": ["[0-9]{4}"], "checks": [{"method": "luhn", "parts": [[0, 4]]}]}],
  "swaps": {"groups": ["0O"], "sequences": [["rn", "m"]]},
  "parameters": {"maxEdits": 2},
  "resolving": {"freeWord": {"base": 1}, "confusions": [{"read": "a", "meant": "b"}]}
})";

constexpr const char *readingText =
    R"({"id": "an id that is longer than others", "truth": "word", "boxes": [[1, 2, 3, 4.5], null, null, null],)"
    R"("positions": [[["w", 90.5], ["v", 80]], [["o", 90], ["0", 85.25]], [["r", 90]], [["d", 90], ["a", 1]]],)"
    R"("else": [[[[{"a": {"b": [{}, [], [[1, "a string that is longer than others"]]]}}]]]]})";

/// A reading of positions and a box for each.
Reading makeReading() {
  Reading reading;
  reading.file = "a file's name that is longer than others";
  reading.id = "an id that is longer than others";
  reading.box = Box{1, 2, 3, 4.5};
  for (const Char32 code : {U'w', U'o', U'r', U'd'}) {
    reading.positions.push_back({makeCandidate(code, 90.5, "here"), makeCandidate(U'\u00E4', 80, "here")});
    reading.boxes.emplace_back(Box{1, 2, 3, 4});
  }
  return reading;
}

TEST(MemoryOfTheProgram, EndsInADocument) {
  doShortOfMemory([] { parseJson(readingText, "reading"); });
  doShortOfMemory([] { parseJson(dictionaryText, "dictionary"); });
}

TEST(MemoryOfTheProgram, EndsInADocumentThatIsRefused) {
  for (const char *end : {"", "]", "1e999", R"({"a": 1, "a")"}) {
    const std::string text = std::string(R"([{"a": [[1, 2], {"b": ["a string that is longer than others"]}]}, )") + end;
    doShortOfMemory([&] {
      try {
        parseJson(text, "text");
        FAIL() << text;
      } catch (const Trouble &trouble) {
        if (std::string_view(trouble.what()).starts_with("text:1:")) return;
        throw;
      }
    });
  }
}

TEST(MemoryOfTheProgram, EndsInADictionaryFile) {
  doShortOfMemory([] {
    DictionaryFile file;
    readDictionaryText(dictionaryText, "dictionary", {}, file);
  });
}

TEST(MemoryOfTheProgram, EndsInADictionaryFileOfFaults) {
  doShortOfMemory([] {
    DictionaryFile file;
    std::vector<std::string> faults;
    readDictionaryText(R"({"lexicons": [{"words": [[["a"]], {"b": [1, {}]}]}], "swaps": {"groups": [{"c": [[]]}]}})",
                       "dictionary", {}, file, &faults);
    if (faults.size() != 3) throw Trouble("not all faults");
  });
}

TEST(MemoryOfTheProgram, EndsInWhatIsWritten) {
  DictionaryFile file;
  readDictionaryText(dictionaryText, "dictionary", {}, file);
  const Reading reading = makeReading();
  Answer answer;
  MultiString string;
  setReading(reading, true, string, answer.leftOut);
  check(qoc_ocrDictionary_runMulti(file.dictionary.get(), string.get(), file.params.get(), answer.results.get()),
        "run");
  ASSERT_FALSE(elements(answer.results->results).empty());
  const std::string expected = describeAsJson(reading, answer);
  doShortOfMemory([&] {
    if (describeAsJson(reading, answer) != expected) throw Trouble("not the same");
  });
}

TEST(MemoryOfTheProgram, EndsWhereThreadsStart) {
  doShortOfMemory([] {
    int sum = 0;
    OrderedWork<int, int> work(
        3, [] { return [](int &item) { return item; }; }, [&](int &, int &outcome) { sum += outcome; },
        [](const int &) { return std::size_t{1}; });
    for (int i = 0; i < 100; ++i) work.add(i);
    work.drain();
    if (sum != 4950) throw Trouble("not everything");
  });
}

TEST(MemoryOfTheProgram, IsEnoughForNestingBeyondTheStack) {
  constexpr std::size_t depth = 1000000;
  const std::string text = std::string(depth, '[') + std::string(depth, ']');
  const JsonDocument document = parseJson(text, "text");
  EXPECT_EQ(JsonNode(document, "text").dump(), text);
}

TEST(JsonText, IsIndentedForPeople) {
  const JsonText text = JsonText::object({{"a [\"", JsonText::array({1, "\\\"}", 2.5})},
                                          {"b", JsonText::object()},
                                          {"c", JsonText::array({JsonText::array(), true})}});
  EXPECT_EQ(text.text(), R"({"a [\"":[1,"\\\"}",2.5],"b":{},"c":[[],true]})");
  EXPECT_EQ(text.indented(), R"({
  "a [\"": [
    1,
    "\\\"}",
    2.5
  ],
  "b": {},
  "c": [
    [],
    true
  ]
})");
}

TEST(JsonText, StandsForWhatIsNotUtf8) {
  EXPECT_EQ(JsonText("a\xFFz\n").text(), "\"a\uFFFDz\\n\"");
  EXPECT_EQ(JsonText("\u00E4/\x7F").text(), "\"\u00E4/\x7F\"");
}

}  // namespace
