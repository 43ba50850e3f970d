#pragma once
// Which plain characters the texts of an entry may have at each place.

#include <qoc/regular_expression.h>

#include <bitset>
#include <cstddef>
#include <vector>

namespace qoc {

/// What an expression admits at a place from the start, whatever stands at the others: no less than its texts have.
class AdmittedCodes {
 public:
  explicit AdmittedCodes(const qoc_ocrDictionaryRegularExpression &expression);

  bool admits(std::size_t place, Char32 code) const {
    return code >= numPlain || (place < places_.size() ? places_[place][code] : isOpenEnded_);
  }

 private:
  static constexpr std::size_t numPlain = 128, maxPlaces = 64;

  std::vector<std::bitset<numPlain>> places_;
  bool isOpenEnded_ = true;  // Whether anything counts as admitted behind them.
};

}  // namespace qoc
