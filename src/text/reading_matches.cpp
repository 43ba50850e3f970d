#include "text/reading_matches.hpp"

#include "platform/system/present.hpp"

namespace qoc {

qsys_status ReadingMatches::row(Char32 code, const std::uint64_t *&bits) {
  if (code < std::size(small_) && small_[code] != nullptr) {
    bits = small_[code];
    return QSYS_STATUS_OK;
  }
  const auto found = rows_.find(code);
  if (found != rows_.end()) {
    bits = found->second.data();
    return QSYS_STATUS_OK;
  }
  std::vector<std::uint64_t> row(numWords_ + 1);  // Never empty, so that its address tells that it is there.
  const qoc_ocrDictionaryChar character = {code, 0};
  const Positions positions = view(reading_);
  for (std::size_t j = 0; j < positions.size(); ++j) {
    qsys_bool isMatch = 0;
    QOC_TRY(qoc_ocrDictionaryChar_isMatchMulti(&character, &positions[j].candidates, set_, &isMatch));
    row[j / 64] |= static_cast<std::uint64_t>(isMatch != 0) << (j % 64);
  }
  bits = rows_.emplace(code, std::move(row)).first->second.data();
  if (code < std::size(small_)) {
    small_[code] = bits;
  }
  return QSYS_STATUS_OK;
}

qsys_status WordRows::set(Characters word, ReadingMatches &matches) {
  rows_.resize(word.size());
  for (std::size_t i = 0; i < word.size(); ++i) {
    QOC_TRY(matches.row(word[i].code, rows_[i]));
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
