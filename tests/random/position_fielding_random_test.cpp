// Random comparison of position fieldings with the reference model: setters, queries and matching.

#include "random/random_cases.hpp"
#include "random/swap_record.hpp"

namespace random_cases {
namespace {

using HeldCharacters =
    reference::Held<qstd_vector_qoc_ocrDictionaryChar, qstd_vector_qoc_ocrDictionaryChar_constructEmpty,
                    qstd_vector_qoc_ocrDictionaryChar_destruct>;
using HeldCharMulti = reference::Held<qoc_ocrDictionaryCharMulti, qoc_ocrDictionaryCharMulti_construct,
                                      qoc_ocrDictionaryCharMulti_destruct>;

uint32_t randomListedCode(Random &random, const Alphabet &alphabet) {
  return random.oneIn(8) ? random.pick<uint32_t>({0xF800, 0xF801, 0xF802, 0xE9, 0xFFFFFFC3, 'Z', '0', 'z', '@', '['})
                         : randomCode(random, alphabet);
}

std::string textOfAnswer(bool isMatch, int32_t status) {
  return std::to_string(isMatch) + " with status " + std::to_string(status);
}

/** Applies one random setter to both sides, and gives the difference in the statuses. */
std::string set(Random &random, const Alphabet &alphabet, PositionFielding &fielding,
                qoc_ocrDictionaryPositionFielding *record) {
  const uint32_t bits =
      random.oneIn(8) ? random.pick<uint32_t>({32, 33, 0x80000001}) : static_cast<uint32_t>(random.below(32));
  Word characters;
  std::vector<uint32_t> codes;
  for (int32_t i = random.between(0, 3); i > 0; --i) {
    characters.push_back({randomListedCode(random, alphabet), random.between(-1, 1)});
    codes.push_back(characters.back().code);
  }
  HeldCharacters charactersRecord;
  HeldCodes codesRecord;
  reference::toRecord(characters, &charactersRecord);
  reference::toRecord(codes, &codesRecord);
  int32_t expected = 0;
  qsys_status actual = 0;
  switch (random.below(5)) {
    case 0:
      expected = fielding.setFieldingBits(bits);
      actual = qoc_ocrDictionaryPositionFielding_setFieldingBits(record, bits);
      break;
    case 1:
      expected = fielding.setFieldingCharacters(codes);
      actual = qoc_ocrDictionaryPositionFielding_setFieldingCharacters(record, &codesRecord);
      break;
    case 2:
      expected = fielding.setFieldingCharactersAndFieldingBits(codes, bits);
      actual = qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(record, &codesRecord, bits);
      break;
    case 3:
      expected = fielding.setDictCharacters(characters);
      actual = qoc_ocrDictionaryPositionFielding_setDictCharacters(record, &charactersRecord);
      break;
    default:
      expected = fielding.setDictCharactersAndFieldingBits(characters, bits);
      actual = qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(record, &charactersRecord, bits);
  }
  return expected == actual ? ""
                            : "setting " + toText(characters) + " and " + std::to_string(bits) + " gives " +
                                  std::to_string(actual) + ", not " + std::to_string(expected);
}

/** Every query of both sides, one after the other, as text. */
std::string answersOf(const PositionFielding &fielding) {
  std::string out;
  for (const bool answer : {fielding.bits != 0, !fielding.listed.empty(), fielding.isEmpty(), fielding.isAnyCharacter(),
                            fielding.isAnyNonspaceCharacter(), fielding.isSingleCharacter(), fielding.allowsSpace()}) {
    out += answer ? "1" : "0";
  }
  out += " " + std::to_string(fielding.bits) + " " + std::to_string(fielding.singleCharacter()) + " list";
  for (const uint32_t code : fielding.listed) {
    out += " " + std::to_string(code);
  }
  out += " all";
  for (const uint32_t code : fielding.allFieldingCharacters()) {
    out += " " + std::to_string(code);
  }
  return out;
}

std::string answersOf(const qoc_ocrDictionaryPositionFielding *record) {
  std::string out;
  for (const auto query :
       {qoc_ocrDictionaryPositionFielding_hasFieldingBits, qoc_ocrDictionaryPositionFielding_hasFieldingCharacters,
        qoc_ocrDictionaryPositionFielding_isEmpty, qoc_ocrDictionaryPositionFielding_isAnyCharacter,
        qoc_ocrDictionaryPositionFielding_isAnyNonspaceCharacter,
        qoc_ocrDictionaryPositionFielding_getIsSingleCharacter, qoc_ocrDictionaryPositionFielding_getAllowsSpace}) {
    qsys_bool answer = 2;
    EXPECT_EQ(query(record, &answer), 0);
    out += std::to_string(answer);
  }
  uint32_t bits = 99;
  Char32 single = 99;
  const qstd_vectorChar32 *listed = nullptr;
  HeldCodes all;
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_getFieldingBits(record, &bits), 0);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_getSingleCharacter(record, &single), 0);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_getFieldingCharacters(record, &listed), 0);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_getAllFieldingCharacters(record, &all), 0);
  out += " " + std::to_string(bits) + " " + std::to_string(single) + " list";
  for (const uint32_t code : fromRecord(*listed)) {
    out += " " + std::to_string(code);
  }
  out += " all";
  for (const uint32_t code : fromRecord(*all)) {
    out += " " + std::to_string(code);
  }
  return out;
}

TEST(PositionFieldingRandom, settersAndQueries) {
  compareCases([](Random &random) -> std::string {
    const Alphabet alphabet = randomLineAlphabet(random);
    PositionFielding fielding;
    reference::HeldPositionFielding record;
    for (int32_t step = random.between(0, 3); step > 0; --step) {
      const std::string difference = set(random, alphabet, fielding, record.get());
      if (!difference.empty()) {
        return difference;
      }
    }
    const std::string expected = answersOf(fielding);
    const std::string actual = answersOf(record.get());
    return expected == actual ? "" : "the answers are " + actual + ", not " + expected;
  });
}

/** A position fielding and what is asked of it. */
struct Case {
  explicit Case(Random &random)
      : alphabet(randomLineAlphabet(random)),
        fielding(randomPositionFielding(random, alphabet)),
        swaps(randomSwaps(random, alphabet)),
        swapRecord(swaps) {
    for (int32_t i = random.between(0, 3); i > 0; --i) {
      candidates.push_back({randomListedCode(random, alphabet), random.between(-1, 2)});
    }
    character = {randomListedCode(random, alphabet), random.between(-1, 2)};
    characterRecord = {character.code, character.score};
    toRecord(fielding, &record);
    toRecord(candidates, &candidatesRecord);
  }

  std::string described(const std::string &difference) const {
    return difference.empty()
               ? ""
               : difference + "\n  position " + toText(fielding) + "\n  candidates " + toText(candidates) +
                     "\n  character " + toText(Word{character}) + "\n  swaps " + toText(pointer(swaps));
  }

  Alphabet alphabet;
  PositionFielding fielding;
  Position candidates;
  reference::Character character;
  std::optional<Swaps> swaps;
  SwapRecord swapRecord;
  reference::HeldPositionFielding record;
  HeldCharMulti candidatesRecord;
  qoc_ocrDictionaryChar characterRecord{};
};

/** Compares what a model's operation gives, as text, with what the library's does. */
std::string compareTexts(const std::function<std::string()> &model,
                         const std::function<qsys_status(std::string &)> &library) {
  const auto expected = ofModel<std::string>(0, [&](reference::Polls &) { return model(); });
  const auto actual = ofLibrary<std::string>(0, library);
  const std::string course = courseDifference(expected, actual);
  if (!course.empty() || expected.status < 0 || expected.value == actual.value) {
    return course;
  }
  return "the answer is " + actual.value + ", not " + expected.value;
}

TEST(PositionFieldingRandom, isMatch) {
  compareCases([](Random &random) {
    Case c(random);
    qsys_bool flag = 0;
    std::string difference =
        compareTexts([&] { return textOfAnswer(c.fielding.isMatch(c.character, pointer(c.swaps)), 0); },
                     [&](std::string &value) {
                       const qsys_status status = qoc_ocrDictionaryPositionFielding_isMatch(
                           &c.record, &c.characterRecord, c.swapRecord.get(), &flag);
                       value = textOfAnswer(flag != 0, 0);
                       return status;
                     });
    if (difference.empty()) {
      difference =
          compareTexts([&] { return textOfAnswer(c.fielding.isMatchMulti(c.candidates, pointer(c.swaps)), 0); },
                       [&](std::string &value) {
                         const qsys_status status = qoc_ocrDictionaryPositionFielding_isMatchMulti(
                             &c.record, &c.candidatesRecord, c.swapRecord.get(), &flag);
                         value = textOfAnswer(flag != 0, 0);
                         return status;
                       });
    }
    if (difference.empty()) {
      difference = compareTexts(
          [&] {
            int32_t status = 77;
            const bool isMatch = c.fielding.isMatchMultiStatus(c.candidates, pointer(c.swaps), status);
            return textOfAnswer(isMatch, status);
          },
          [&](std::string &value) {
            qoc_ocrDictionaryPositionStatus positionStatus = 77;
            const qsys_status status = qoc_ocrDictionaryPositionFielding_isMatchMultiStatus(
                &c.record, &c.candidatesRecord, c.swapRecord.get(), &flag, &positionStatus);
            value = textOfAnswer(flag != 0, static_cast<int32_t>(positionStatus));
            return status;
          });
    }
    return c.described(difference);
  });
}

TEST(PositionFieldingRandom, match) {
  compareCases([](Random &random) {
    Case c(random);
    HeldCharacters matches;
    std::string difference = compareTexts([&] { return toText(c.fielding.match(c.character, pointer(c.swaps))); },
                                          [&](std::string &value) {
                                            const qsys_status status = qoc_ocrDictionaryPositionFielding_match(
                                                &c.record, &c.characterRecord, c.swapRecord.get(), &matches);
                                            value = toText(fromRecord(*matches));
                                            return status;
                                          });
    if (difference.empty()) {
      difference = compareTexts([&] { return toText(c.fielding.matchMulti(c.candidates, pointer(c.swaps))); },
                                [&](std::string &value) {
                                  const qsys_status status = qoc_ocrDictionaryPositionFielding_matchMulti(
                                      &c.record, &c.candidatesRecord, c.swapRecord.get(), &matches);
                                  value = toText(fromRecord(*matches));
                                  return status;
                                });
    }
    return c.described(difference);
  });
}

}  // namespace
}  // namespace random_cases
