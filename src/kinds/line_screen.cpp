#include "kinds/line_screen.hpp"

#include <algorithm>

#include "kinds/fielding_classes.hpp"
#include "kinds/line_alignment.hpp"
#include "swap/equivalents.hpp"

namespace qoc {

namespace {

constexpr std::uint32_t numClassSets = 32;
constexpr Char32 numKeptCharacters = 128;

// Of longer readings the lengths alone are looked at: nobody is asked for attention here. A line that may fit is hardly
// longer than its reading.
constexpr std::size_t mostPositions = 1024;

/// Whether a code is that of a text character, which all others are a failure for.
bool isText(Char32 code) noexcept { return codeOf(static_cast<CharT>(code & 0xFF)) == code; }

void insert(std::vector<std::uint64_t> &row, std::size_t index) noexcept {
  row[index / 64] |= std::uint64_t{1} << (index % 64);
}

bool hasAny(const std::vector<std::uint64_t> &row) noexcept {
  return std::ranges::any_of(row, [](std::uint64_t word) { return word != 0; });
}

/// A word of a row moved on by one place.
std::uint64_t shifted(const std::uint64_t *row, std::size_t word) noexcept {
  return row[word] << 1 | (word > 0 ? row[word - 1] >> 63 : 0);
}

}  // namespace

void LineScreen::prepare() {
  if (!any_.empty()) {
    return;
  }
  classes_.resize(reading_.size());
  undecided_.resize(numWords_);
  rowsOfClasses_.resize(numClassSets);
  rowsOfCharacters_.resize(numKeptCharacters);
  row_.resize(numWords_);
  exact_.resize(numWords_);
  edited_.resize(numWords_);
  any_.assign(numWords_, ~Word{0});
  for (std::size_t i = 0; i < reading_.size(); ++i) {
    const auto take = [&](Char32 code) {
      if (isText(code)) {
        classes_[i] |= classesOf(code);
      } else {  // A swap set holds no reserved codes.
        insert(undecided_, i);
      }
    };
    for (const qoc_ocrDictionaryChar &candidate : view(reading_[i])) {
      if (candidate.code != QOC_CHAR_EMPTY) {
        take(candidate.code);
        forEachEquivalent(set_, candidate.code, take);
      }
    }
    workPerRow_ += 1 + view(reading_[i]).size();
  }
  work_ += 4 * workPerRow_;
}

const LineScreen::Word *LineScreen::rowOfClasses(std::uint32_t bits) {
  std::vector<Word> &row = rowsOfClasses_[bits % numClassSets];
  if (row.empty()) {
    row.resize(numWords_);
    work_ += workPerRow_;
    for (std::size_t i = 0; i < reading_.size(); ++i) {
      if ((classes_[i] & bits) != 0) {
        insert(row, i);
      }
    }
  }
  return row.data();
}

const LineScreen::Word *LineScreen::rowOfCharacter(Char32 code) {
  if (code >= numKeptCharacters) {
    return any_.data();
  }
  std::vector<Word> &row = rowsOfCharacters_[code];
  if (row.empty()) {
    row.resize(numWords_);
    work_ += workPerRow_;
    for (std::size_t i = 0; i < reading_.size(); ++i) {
      const bool isRead = std::ranges::any_of(view(reading_[i]), [&](const qoc_ocrDictionaryChar &candidate) {
        return isMatch(set_, code, candidate.code);
      });
      if (isRead) {
        insert(row, i);
      }
    }
  }
  return row.data();
}

/// The positions of the reading that a position of the line may admit.
const LineScreen::Word *LineScreen::rowOf(const qoc_ocrDictionaryPositionFielding &position) {
  const auto listed = viewAs<Char32>(position.fieldingCharacters);
  if (listed.empty()) {
    constexpr std::uint32_t both = QOC_FIELDING_SPACE | QOC_FIELDING_NONSPACE;
    // Any character at all: also the empty one.
    return (position.fieldingBits & both) == both ? any_.data() : rowOfClasses(position.fieldingBits);
  }
  if (listed.size() == 1 && position.fieldingBits == 0) {
    return rowOfCharacter(listed.front());
  }
  if (answerOf<qoc_ocrDictionaryPositionFielding_isAnyCharacter>(position)) {
    return any_.data();
  }
  const Word *classes = rowOfClasses(position.fieldingBits);
  std::copy(classes, classes + numWords_, row_.begin());
  for (const Char32 code : listed) {
    const Word *row = rowOfCharacter(code);
    for (std::size_t w = 0; w < numWords_; ++w) {
      row_[w] |= row[w];
    }
  }
  return row_.data();
}

bool LineScreen::mayFit(const qoc_ocrDictionaryLineFielding &line, const qoc_ocrDictionaryRunParams *params) {
  const auto positions = view(line);
  const auto numPositions = static_cast<std::int64_t>(positions.size());
  const auto n = static_cast<std::int64_t>(reading_.size());
  const bool hasWindows = searchesWindows(params);
  const bool mayEdit = params != nullptr && params->maxEdits != 0;
  const bool mayMiss = mayEdit && params->matchOption2 != 0;
  const bool mayBeExtra = mayEdit && params->matchOption4 != 0;
  const bool maySubstitute = mayEdit && params->matchOption1 != 0;
  const bool isLengthPossible =
      numPositions <= n + (mayMiss ? 1 : 0) && (hasWindows || numPositions >= n - (mayBeExtra ? 1 : 0));
  if (!isLengthPossible || !lengthPasses(params, static_cast<std::int32_t>(numPositions))) {
    return false;
  }
  if (reading_.size() > mostPositions) {
    return true;
  }
  prepare();
  const std::size_t last = numWords_ - 1;
  const Word end = Word{1} << (n % 64);
  std::ranges::fill(exact_, hasWindows ? ~Word{0} : Word{0});
  std::ranges::fill(edited_, Word{0});
  exact_[0] |= 1;
  if (hasWindows) {
    exact_[last] = end | (end - 1);
  }
  for (const qoc_ocrDictionaryPositionFielding &position : positions) {
    const Word *row = rowOf(position);
    Word someLeft = 0;
    for (std::size_t w = 0; w < numWords_; ++w) {
      edited_[w] |= mayBeExtra ? shifted(exact_.data(), w) : 0;
      if (((exact_[w] | edited_[w]) & undecided_[w]) != 0) {
        return true;  // An alignment asks here.
      }
    }
    // From the last word down, so that what a word takes from the one before it is not moved on yet.
    Word admitted = exact_[last] & row[last];
    Word admittedEdited = edited_[last] & row[last];
    for (std::size_t w = numWords_; w-- > 0;) {
      const Word before = exact_[w];
      const Word beforeShifted = shifted(exact_.data(), w);
      Word next = admitted << 1;
      Word nextEdited = admittedEdited << 1;
      if (w > 0) {
        admitted = exact_[w - 1] & row[w - 1];
        admittedEdited = edited_[w - 1] & row[w - 1];
        next |= admitted >> 63;
        nextEdited |= admittedEdited >> 63;
      }
      exact_[w] = next;
      edited_[w] = nextEdited | (mayMiss ? before : 0) | (maySubstitute ? beforeShifted : 0);
      someLeft |= exact_[w] | edited_[w];
    }
    exact_[last] &= end | (end - 1);
    edited_[last] &= end | (end - 1);
    if (someLeft == 0) {
      return false;
    }
  }
  if (hasWindows) {
    return hasAny(exact_) || hasAny(edited_);
  }
  return ((exact_[last] | edited_[last]) & end) != 0;
}

}  // namespace qoc
