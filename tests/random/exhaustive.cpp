#include "random/exhaustive.hpp"

namespace random_cases {

std::vector<Word> allWords(size_t longest) {
  std::vector<reference::Character> letters;
  for (uint32_t a = 0; a < bounds().numLetters; ++a) {
    letters.push_back({'a' + a, 0});
  }
  return sequences(letters, longest);
}

std::vector<Reading> allReadings(size_t longest) {
  std::vector<Position> positions;
  for (uint32_t a = 0; a < bounds().numLetters; ++a) {
    positions.push_back({{'a' + a, 0}});
    for (uint32_t b = 0; b < bounds().numLetters; ++b) {
      if (a != b) {
        positions.push_back({{'a' + a, 7}, {'a' + b, 3}});
      }
    }
  }
  std::vector<Reading> readings = sequences(positions, longest);
  readings.emplace_back();
  return readings;
}

std::vector<RunParams> parameterGrid() {
  std::vector<RunParams> all;
  for (const int32_t maxEdits : {0, 1, 2}) {
    for (const int allowed : {7, 1, 2, 4, 0}) {  // Substitution, a missing and an extra character, as bits.
      for (const int32_t windows : {0, 1}) {
        for (const int32_t bestOnly : {0, 1}) {
          for (const int32_t shortest : {1, 3}) {
            if (maxEdits == 0 && allowed != 7) {
              continue;
            }
            RunParams params = {};
            qoc_ocrDictionaryRunParams_construct(&params);
            params.maxEdits = maxEdits;
            params.matchOption1 = allowed & 1;
            params.matchOption2 = allowed >> 1 & 1;
            params.matchOption4 = allowed >> 2 & 1;
            params.matchOption9 = windows;
            params.returnBestOnly = bestOnly;
            params.minStringLength = shortest;
            all.push_back(params);
          }
        }
      }
    }
  }
  return all;
}

}  // namespace random_cases
