#pragma once
// What a resolver keeps of a dictionary.

#include <memory>
#include <vector>

#include "resolve/admitted_codes.hpp"
#include "resolve/reading_costs.hpp"
#include "resolve/word_index.hpp"

namespace qoc {

/// An object of the C face with the life of this one; construct and destruct are its own. Without contents it takes no
/// memory, so that constructing it cannot fail.
template <class T, auto Construct, auto Destruct>
class Held {
 public:
  // cppcheck-suppress uninitMemberVar ; Construct fills the object
  Held() { Construct(&object_); }
  Held(const Held &) = delete;
  Held &operator=(const Held &) = delete;
  ~Held() { Destruct(&object_); }
  T *get() { return &object_; }
  const T *get() const { return &object_; }
  T *operator->() { return &object_; }
  const T *operator->() const { return &object_; }

 private:
  T object_;
};

using HeldFieldings =
    Held<qstd_vector_qoc_ocrDictionaryLineFielding, qstd_vector_qoc_ocrDictionaryLineFielding_constructEmpty,
         qstd_vector_qoc_ocrDictionaryLineFielding_destruct>;
using HeldExpressions =
    Held<qstd_vector_qoc_ocrDictionaryRegularExpression, qstd_vector_qoc_ocrDictionaryRegularExpression_constructEmpty,
         qstd_vector_qoc_ocrDictionaryRegularExpression_destruct>;
using HeldResults =
    Held<qoc_ocrDictionaryResultSet, qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>;
using HeldReading =
    Held<qoc_ocrDictionaryStringMulti, qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>;

/// The characters that a text may have, place by place.
using CodesByPlace = std::vector<std::vector<Char32>>;

/// A dictionary as the resolver needs it. Immutable once made.
struct Knowledge {
  WordIndex words;
  HeldFieldings fieldings;
  HeldExpressions expressions;
  std::vector<AdmittedCodes> admitted;  ///< By expression.
  /// By fielding and by expression, what is tried where an edit leaves a place open: the characters of ASCII that can
  /// be printed, and as many others as it takes to see whether a place admits none, one or several.
  std::vector<std::vector<Char32>> triedByFielding, triedByExpression;

  /// @return 0 or a failure to copy
  qsys_status take(const qoc_ocrDictionary &dictionary);
  std::int32_t numShapes() const { return fieldings->core.size + expressions->core.size; }
  /// Whether there is such a fielding or expression.
  bool has(qoc_ocrDictionaryMode mode, std::int32_t entry) const {
    return entry < (mode == qoc_ocrDictionaryMode_fielding ? fieldings->core.size : expressions->core.size);
  }
  std::span<const Char32> tried(qoc_ocrDictionaryMode mode, std::int32_t entry) const {
    return (mode == qoc_ocrDictionaryMode_fielding ? triedByFielding
                                                   : triedByExpression)[static_cast<std::size_t>(entry)];
  }
  /// Whether some fielding or expression may have texts of that many characters.
  bool admitsLength(std::int64_t length) const;
  /// Whether some fielding or expression may have the character at that place of a text.
  bool admits(std::size_t place, Char32 code) const;
  /// Matches a reading with one fielding or expression.
  qsys_status match(qoc_ocrDictionaryMode mode, std::int32_t entry, const qoc_ocrDictionaryStringMulti &reading,
                    const qoc_ocrDictionaryRunParams &params, const qoc_swapCharSet *set,
                    qoc_ocrDictionaryResultSet &results) const;
  /// Finds what an entry admits at one place of a text, given what may stand there and at the others; ascending.
  qsys_status findAdmitted(qoc_ocrDictionaryMode mode, std::int32_t entry, const CodesByPlace &codes, std::size_t place,
                           std::vector<Char32> &admitted) const;

 private:
  qsys_status findByMatch(qoc_ocrDictionaryMode mode, std::int32_t entry, const CodesByPlace &codes, std::size_t place,
                          std::vector<Char32> &admitted) const;
};

using SharedKnowledge = std::shared_ptr<const Knowledge>;

/// What a resolver keeps beside its rules; behind its field `knowledge`, or null where there is nothing to keep.
struct Kept {
  SharedKnowledge dictionary;                    ///< Null where it knows none.
  std::shared_ptr<const Confusions> confusions;  ///< Those of its rules; null where they have none.
};

inline const Kept *keptBy(const qoc_ocrDictionaryResolver &resolver) {
  return static_cast<const Kept *>(resolver.knowledge);
}

}  // namespace qoc
