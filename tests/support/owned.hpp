#pragma once
// Objects of the C face with the lifetime of a C++ variable, and the list of all vector families.

#include <qoc/ocr_dictionary.h>

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace qoc::test {

/// Ends the test with the status's name when a call that the test only builds on has failed.
inline void require(qsys_status status) {
  if (status < 0) {
    throw std::runtime_error(std::string("a call failed with ") + qoc_status_getName(status));
  }
}

/// Every typed vector family: X(vector, element).
#define QOC_TEST_FAMILIES(X)                                                            \
  X(qstd_vector32s, int32_t)                                                            \
  X(qstd_vectorChar32, Char32)                                                          \
  X(qstd_vectorb, uint8_t)                                                              \
  X(qstd_vector_tchar, CharT)                                                           \
  X(qstd_vector_vector32s, qstd_vector32s)                                              \
  X(qstd_vector_vectorChar32, qstd_vectorChar32)                                        \
  X(qstd_vector_vectorb, qstd_vectorb)                                                  \
  X(qstd_string, CharT)                                                                 \
  X(qstd_vector_qstd_string, qstd_string)                                               \
  X(qstd_wstring, wchar_t)                                                              \
  X(qstd_vector_qstd_wstring, qstd_wstring)                                             \
  X(qstd_vector_qstd_span32, qstd_span32)                                               \
  X(qstd_vector_qstd_token, qstd_token)                                                 \
  X(qstd_vector_qstd_tokenMulti, qstd_tokenMulti)                                       \
  X(qstd_vector_qstd_tokenMatcherResult, qstd_tokenMatcherResult)                       \
  X(qstd_vector_qstd_tokenMatcherResultWord, qstd_tokenMatcherResultWord)               \
  X(qstd_vector_qoc_ocrDictionaryChar, qoc_ocrDictionaryChar)                           \
  X(qstd_vector_vector_qoc_ocrDictionaryChar, qstd_vector_qoc_ocrDictionaryChar)        \
  X(qstd_vector_qoc_ocrDictionaryCharMulti, qoc_ocrDictionaryCharMulti)                 \
  X(qstd_vector_qoc_ocrDictionaryString, qoc_ocrDictionaryString)                       \
  X(qstd_vector_qoc_ocrDictionaryStringMulti, qoc_ocrDictionaryStringMulti)             \
  X(qstd_vector_qoc_ocrDictionaryPositionStatus, qoc_ocrDictionaryPositionStatus)       \
  X(qstd_vector_qoc_swapChar, qoc_swapChar)                                             \
  X(qstd_vector_qoc_stringExpandOneToTwo_, qoc_stringExpandOneToTwo_)                   \
  X(qstd_vector_qoc_stringExpandTwoToTwo_, qoc_stringExpandTwoToTwo_)                   \
  X(qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon)                     \
  X(qstd_vector_qoc_ocrDictionaryPositionFielding, qoc_ocrDictionaryPositionFielding)   \
  X(qstd_vector_qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding)           \
  X(qstd_vector_qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryRegularExpression) \
  X(qstd_vector_qoc_ocrDictionaryResult, qoc_ocrDictionaryResult)                       \
  X(qstd_vector_vector_qoc_ocrDictionaryResult, qstd_vector_qoc_ocrDictionaryResult)    \
  X(qstd_vector_qoc_ocrDictionaryResultSet, qoc_ocrDictionaryResultSet)                 \
  X(qstd_vector_qoc_checkDigitRule, qoc_checkDigitRule)                                 \
  X(qstd_vector_qoc_ocrDictionaryConfusion, qoc_ocrDictionaryConfusion)                 \
  X(qstd_vector_qoc_ocrDictionaryEntryCheck, qoc_ocrDictionaryEntryCheck)               \
  X(qstd_vector_qoc_ocrDictionaryResolvedText, qoc_ocrDictionaryResolvedText)

/// Every object type with a default constructor.
#define QOC_TEST_OBJECTS(X)             \
  X(qstd_span32)                        \
  X(qstd_token)                         \
  X(qstd_tokenMulti)                    \
  X(qstd_tokenMatcherResult)            \
  X(qstd_tokenMatcherResultWord)        \
  X(qstd_regex)                         \
  X(qoc_ocrDictionaryChar)              \
  X(qoc_ocrDictionaryCharMulti)         \
  X(qoc_ocrDictionaryString)            \
  X(qoc_ocrDictionaryStringMulti)       \
  X(qoc_ocrDictionaryRunParams)         \
  X(qoc_ocrDictionaryFieldingRunParams) \
  X(qoc_ocrDictionaryResult)            \
  X(qoc_ocrDictionaryResultSet)         \
  X(qoc_swapChar)                       \
  X(qoc_swapCharSet)                    \
  X(qoc_stringExpandOneToTwo_)          \
  X(qoc_stringExpandTwoToTwo_)          \
  X(qoc_stringExpand_)                  \
  X(qoc_ocrDictionaryLexicon)           \
  X(qoc_ocrDictionaryPositionFielding)  \
  X(qoc_ocrDictionaryLineFielding)      \
  X(qoc_ocrDictionaryRegularExpression) \
  X(qoc_ocrDictionary)                  \
  X(qoc_checkDigitRule)                 \
  X(qoc_ocrDictionaryConfusion)         \
  X(qoc_ocrDictionaryEntryCheck)        \
  X(qoc_ocrDictionaryResolverRules)     \
  X(qoc_ocrDictionaryResolvedText)      \
  X(qoc_ocrDictionaryResolution)        \
  X(qoc_ocrDictionaryResolver)

/// The members of the vector family of V, by name: Family<V>::pushBack(vector, element).
template <class V>
struct Family;

#define QOC_TEST_FAMILY_MEMBER(V, member, parameters, coreOperation, arguments) \
  static constexpr auto member = V##_##member;
#define QOC_TEST_FAMILY(V, T)                        \
  template <>                                        \
  struct Family<V> {                                 \
    using Vector = V;                                \
    using Element = T;                               \
    static constexpr const char *name = #V;          \
    QOC_VECTOR_MEMBERS(QOC_TEST_FAMILY_MEMBER, V, T) \
  };
QOC_TEST_FAMILIES(QOC_TEST_FAMILY)
#undef QOC_TEST_FAMILY
#undef QOC_TEST_FAMILY_MEMBER

/// How an object of T lives.
template <class T>
struct Life;

#define QOC_TEST_LIFE(T, Default)                            \
  template <>                                                \
  struct Life<T> {                                           \
    static constexpr auto construct = T##_##Default;         \
    static constexpr auto constructCopy = T##_constructCopy; \
    static constexpr auto assign = T##_assign;               \
    static constexpr auto destruct = T##_destruct;           \
  };
#define QOC_TEST_OBJECT_LIFE(T) QOC_TEST_LIFE(T, construct)
#define QOC_TEST_FAMILY_LIFE(V, T) QOC_TEST_LIFE(V, constructEmpty)
QOC_TEST_OBJECTS(QOC_TEST_OBJECT_LIFE)
QOC_TEST_FAMILIES(QOC_TEST_FAMILY_LIFE)
#undef QOC_TEST_FAMILY_LIFE
#undef QOC_TEST_OBJECT_LIFE
#undef QOC_TEST_LIFE

/// A constructed object of T that is destructed with the variable. It passes for a pointer to the object in calls.
template <class T>
class Owned {
 public:
  Owned() { require(Life<T>::construct(&object_)); }

  /// Constructed by a constructor of one's own: construct(T *) returns its status.
  template <class Construct>
  requires requires(Construct construct, T *object) { construct(object); }
  explicit Owned(Construct &&construct) { require(construct(&object_)); }
  explicit Owned(const T &source) { require(Life<T>::constructCopy(&object_, &source)); }
  Owned(const Owned &other) { require(Life<T>::constructCopy(&object_, &other.object_)); }
  Owned &operator=(const Owned &other) {
    require(Life<T>::assign(&object_, &other.object_));
    return *this;
  }
  ~Owned() { Life<T>::destruct(&object_); }

  operator T *() { return &object_; }
  operator const T *() const { return &object_; }
  T &operator*() { return object_; }
  const T &operator*() const { return object_; }
  T *operator->() { return &object_; }
  const T *operator->() const { return &object_; }

 private:
  T object_;
};

/// The elements of a vector, until it changes.
template <class V, class Element = typename Family<V>::Element>
std::span<const Element> elements(const V &vector) {
  const Element *first = nullptr;
  int32_t n = 0;
  require(Family<V>::getBeginSizeConst(&vector, &first, &n));
  return {first, static_cast<std::size_t>(n)};
}
template <class V>
auto elements(const Owned<V> &vector) {
  return elements(*vector);
}

/// A copy of the elements, for comparisons.
template <class V>
auto values(const V &vector) {
  const auto view = elements(vector);
  return std::vector<typename Family<V>::Element>(view.begin(), view.end());
}
template <class V>
auto values(const Owned<V> &vector) {
  return values(*vector);
}

/// A vector of copies of the given plain elements or objects.
template <class V>
Owned<V> vectorOf(const std::vector<typename Family<V>::Element> &list) {
  return Owned<V>(
      [&](V *vector) { return Family<V>::constructFromBlock(vector, list.data(), static_cast<int32_t>(list.size())); });
}

}  // namespace qoc::test
