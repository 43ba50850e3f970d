#include "library_reading.hpp"

#include "text.hpp"
#include "trouble.hpp"

namespace qoc::program {

void setReading(const Reading &reading, bool isOnly7Bits, MultiString &multi, std::vector<LeftOut> &leftOut) {
  const std::string where = reading.place();
  auto *positions = &multi->positions;
  check(qstd_vector_qoc_ocrDictionaryCharMulti_resize(positions, static_cast<std::int32_t>(reading.positions.size())),
        where);
  qoc_ocrDictionaryCharMulti *position = nullptr;
  check(qstd_vector_qoc_ocrDictionaryCharMulti_getBegin(positions, &position), where);
  leftOut.clear();
  std::vector<qoc_ocrDictionaryChar> characters;
  for (std::size_t i = 0; i < reading.positions.size(); ++i) {
    const std::vector<Candidate> &candidates = reading.positions[i];
    characters.clear();
    for (std::size_t k = 0; k < candidates.size(); ++k) {
      if (isOnly7Bits && candidates[k].code > max7Bits) leftOut.push_back({i, k});
      else characters.push_back({candidates[k].code, candidates[k].score});
    }
    if (characters.empty()) characters.push_back({QOC_CHAR_EMPTY, 0});
    check(qstd_vector_qoc_ocrDictionaryChar_assignElements(&position[i].candidates, characters.data(),
                                                           static_cast<std::int32_t>(characters.size())),
          where);
  }
}

} // namespace qoc::program
