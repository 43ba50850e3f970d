#pragma once
// What multi-character swaps allow at each position of a reading, apart from the variants that are made of it.

#include <qoc/string_expand.h>

#include <span>
#include <vector>

namespace qoc {

/// One way to go on at a position: keep the input's character, or read one or two positions as other characters.
struct ExpansionChoice {
  std::int32_t numRead;      ///< Input positions that the choice takes.
  std::int32_t numInserted;  ///< Characters that it puts in their place; 0 when it keeps the input's own.
  Char32 inserted[2];        ///< Their codes.

  bool isKept() const noexcept { return numInserted == 0; }
};

/// The choices at every position, in the order in which their variants come: keeping, one to two, two to two, two to
/// one.
class ExpansionChoices {
 public:
  std::span<const ExpansionChoice> at(std::int32_t position) const {
    const auto index = static_cast<std::size_t>(position);
    return std::span(choices_).subspan(ends_[index], ends_[index + 1] - ends_[index]);
  }

  /// Finds the choices for a reading; `set` decides what matches and may be null. Polls once for each position.
  qsys_status find(const qoc_stringExpand_ &expansion, const qoc_ocrDictionaryStringMulti &input,
                   const qoc_swapCharSet *set);

 private:
  std::vector<ExpansionChoice> choices_;
  std::vector<std::size_t> ends_ = {0};  // Where the choices of each position end in choices_, after a leading 0.
};

/// Appends what a choice at a position of the input makes of it to a variant, and where that comes from to its positions.
qsys_status appendChoice(const ExpansionChoice &choice, std::int32_t position, const qoc_ocrDictionaryStringMulti &input,
                         qoc_ocrDictionaryStringMulti *variant, qstd_vector32s *positions);

}  // namespace qoc
