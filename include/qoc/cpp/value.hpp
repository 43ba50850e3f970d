#ifndef QOC_CPP_VALUE_HPP
#define QOC_CPP_VALUE_HPP

/// @file The pattern of all wrapped types: Value owns a record of the library, View looks at one that another owns.

#include <qoc/dictionary.h>
#include <qoc/fielding_run.h>
#include <qoc/resolver.h>
#include <qoc/cpp/status.hpp>

#include <concepts>
#include <limits>
#include <span>
#include <type_traits>
#include <utility>

namespace qoc {
inline namespace v0 {
namespace detail {

/// The life of a record: the library's functions for it.
template <class Record>
struct Life;
/// The comparison of two records.
template <class Record>
struct Equality;

#define QOC_CPP_LIFE(T, constructDefault)                                                                             \
  static qsys_status construct(T *record) noexcept { return constructDefault(record); }                               \
  static qsys_status constructCopy(T *record, const T *source) noexcept { return T##_constructCopy(record, source); } \
  static qsys_status assign(T *record, const T *source) noexcept { return T##_assign(record, source); }               \
  static void destruct(T *record) noexcept { T##_destruct(record); }

#define QOC_CPP_OBJECT(T)          \
  template <>                      \
  struct Life<T> {                 \
    QOC_CPP_LIFE(T, T##_construct) \
  };

#define QOC_CPP_VECTOR(V, T)                                                                                    \
  template <>                                                                                                   \
  struct Life<V> {                                                                                              \
    QOC_CPP_LIFE(V, V##_constructEmpty)                                                                         \
    using Element = T;                                                                                          \
    static qsys_status begin(V *vector, T **first) noexcept { return V##_getBegin(vector, first); }             \
    static qsys_status elements(const V *vector, const T **first, std::int32_t *n) noexcept {                   \
      return V##_getBeginSizeConst(vector, first, n);                                                           \
    }                                                                                                           \
    static qsys_status assignElements(V *vector, const T *first, std::int32_t n) noexcept {                     \
      return V##_assignElements(vector, first, n);                                                              \
    }                                                                                                           \
    static qsys_status pushBack(V *vector, const T *element) noexcept { return V##_pushBack(vector, element); } \
  };

#define QOC_CPP_EQUALITY(T)                                                           \
  template <>                                                                         \
  struct Equality<T> {                                                                \
    static qsys_status compare(const T *a, const T *b, qsys_bool *isEqual) noexcept { \
      return T##_compareEqual(a, b, isEqual);                                         \
    }                                                                                 \
  };

QOC_CPP_OBJECT(qoc_ocrDictionary)
QOC_CPP_OBJECT(qoc_ocrDictionaryCharMulti)
QOC_CPP_OBJECT(qoc_ocrDictionaryLexicon)
QOC_CPP_OBJECT(qoc_ocrDictionaryLineFielding)
QOC_CPP_OBJECT(qoc_ocrDictionaryPositionFielding)
QOC_CPP_OBJECT(qoc_ocrDictionaryRegularExpression)
QOC_CPP_OBJECT(qoc_ocrDictionaryResolution)
QOC_CPP_OBJECT(qoc_ocrDictionaryResolver)
QOC_CPP_OBJECT(qoc_ocrDictionaryResolverRules)
QOC_CPP_OBJECT(qoc_ocrDictionaryResult)
QOC_CPP_OBJECT(qoc_ocrDictionaryResultSet)
QOC_CPP_OBJECT(qoc_ocrDictionaryString)
QOC_CPP_OBJECT(qoc_ocrDictionaryStringMulti)
QOC_CPP_OBJECT(qoc_swapChar)
QOC_CPP_OBJECT(qoc_swapCharSet)

QOC_CPP_VECTOR(qstd_string, CharT)
QOC_CPP_VECTOR(qstd_vector32s, std::int32_t)
QOC_CPP_VECTOR(qstd_vectorChar32, Char32)
QOC_CPP_VECTOR(qstd_vector_vectorChar32, qstd_vectorChar32)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryChar, qoc_ocrDictionaryChar)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryCharMulti, qoc_ocrDictionaryCharMulti)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryPositionFielding, qoc_ocrDictionaryPositionFielding)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryPositionStatus, qoc_ocrDictionaryPositionStatus)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryRegularExpression)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryResolvedText, qoc_ocrDictionaryResolvedText)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryResult, qoc_ocrDictionaryResult)
QOC_CPP_VECTOR(qstd_vector_qoc_ocrDictionaryString, qoc_ocrDictionaryString)
QOC_CPP_VECTOR(qstd_vector_qoc_swapChar, qoc_swapChar)

QOC_CPP_EQUALITY(qoc_ocrDictionary)
QOC_CPP_EQUALITY(qoc_ocrDictionaryLexicon)
QOC_CPP_EQUALITY(qoc_ocrDictionaryLineFielding)
QOC_CPP_EQUALITY(qoc_ocrDictionaryPositionFielding)
QOC_CPP_EQUALITY(qoc_ocrDictionaryRegularExpression)
QOC_CPP_EQUALITY(qoc_ocrDictionaryResult)
QOC_CPP_EQUALITY(qoc_ocrDictionaryString)
QOC_CPP_EQUALITY(qoc_ocrDictionaryStringMulti)
QOC_CPP_EQUALITY(qoc_swapCharSet)

#undef QOC_CPP_LIFE
#undef QOC_CPP_OBJECT
#undef QOC_CPP_VECTOR
#undef QOC_CPP_EQUALITY

/// A size as the library counts. Throws Error where it is too large.
inline std::int32_t count(std::size_t n) {
  if (n > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    throw Error(QSTD_STATUS_SIZE_INVALID);
  }
  return static_cast<std::int32_t>(n);
}

}  // namespace detail

template <class C>
class View;

/**
 * A record of the library with the life of a C++ value: constructed, copied, moved and destroyed with this object.
 *
 * A value that was moved from is empty, as if newly constructed. (Where not even the memory for that is left, it can
 * only be assigned to or destroyed.)
 */
template <class C>
class Value {
 public:
  using Record = C;

  /// As the library constructs it: empty. Throws Error where memory is out, like the copies.
  Value() { hold(detail::Life<C>::construct(&record_)); }
  /// A copy of the library's record.
  explicit Value(const C &source) { hold(detail::Life<C>::constructCopy(&record_, &source)); }
  /// A copy of what the view shows.
  explicit Value(View<C> source) : Value(*source.c()) {}
  Value(const Value &other) : Value(other.record_) {}
  /// The library's records may be moved byte by byte.
  Value(Value &&other) noexcept : record_(other.record_), isHeld_(std::exchange(other.isHeld_, false)) {
    other.isHeld_ = detail::Life<C>::construct(&other.record_) >= 0;
  }
  Value &operator=(const Value &other) {
    if (this == &other) return *this;
    if (isHeld_)
      require(detail::Life<C>::assign(&record_, &other.record_));
    else
      hold(detail::Life<C>::constructCopy(&record_, &other.record_));
    return *this;
  }
  Value &operator=(Value &&other) noexcept {
    if (this == &other) return *this;
    Value taken(std::move(other));
    taken.swap(*this);
    return *this;
  }
  ~Value() {
    if (isHeld_) detail::Life<C>::destruct(&record_);
  }

  void swap(Value &other) noexcept {
    std::swap(record_, other.record_);
    std::swap(isHeld_, other.isHeld_);
  }
  friend void swap(Value &a, Value &b) noexcept { a.swap(b); }

  /// The library's record, for its C functions.
  C *c() noexcept { return &record_; }
  const C *c() const noexcept { return &record_; }

 private:
  void hold(Status status) {
    require(status);
    isHeld_ = true;
  }

  C record_{};
  bool isHeld_ = false;
};

/// A record that someone else owns, to be read. Valid as long as the owner keeps it unchanged.
template <class C>
class View {
 public:
  using Record = C;

  View(const C &record) noexcept : record_(&record) {}
  View(const Value<C> &value) noexcept : record_(value.c()) {}

  const C *c() const noexcept { return record_; }

 private:
  const C *record_;
};

/// What wraps a record: a Value or a View.
template <class T>
concept Wrapper = requires(const T &wrapper) {
  typename T::Record;
  { wrapper.c() } -> std::same_as<const typename T::Record *>;
};

/// Compares as the library does: characters by their codes, never by their scores.
template <Wrapper A, Wrapper B>
requires std::same_as<typename A::Record, typename B::Record> && requires {
  sizeof(detail::Equality<typename A::Record>);
}
bool operator==(const A &a, const B &b) {
  qsys_bool isEqual = 0;
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.Move): what was moved from is empty, and may be compared.
  require(detail::Equality<typename A::Record>::compare(a.c(), b.c(), &isEqual));
  return isEqual != 0;
}

namespace detail {

/// The elements of a vector of the library; valid until it changes.
template <class V>
std::span<const typename Life<V>::Element> elements(const V &vector) noexcept {
  const typename Life<V>::Element *first = nullptr;
  std::int32_t n = 0;
  // Fails only for null pointers.
  Life<V>::elements(&vector, &first, &n);
  return {first, static_cast<std::size_t>(n)};
}

/// Replaces the elements of a vector of the library by copies.
template <class V>
void assign(V &vector, std::span<const typename Life<V>::Element> elements) {
  require(Life<V>::assignElements(&vector, elements.data(), count(elements.size())));
}

/// Moves a value's record to the end of a vector of the library. Nothing changes on failure.
template <class V>
void moveInto(V &vector, Value<typename Life<V>::Element> &&value) {
  const Value<typename Life<V>::Element> empty;
  require(Life<V>::pushBack(&vector, empty.c()));
  typename Life<V>::Element *first = nullptr;
  require(Life<V>::begin(&vector, &first));
  std::swap(first[elements(vector).size() - 1], *value.c());
}

/// The flag that a query of the library writes.
template <class Query, class... Arguments>
bool flag(Query query, Arguments... arguments) {
  qsys_bool isSet = 0;
  require(query(arguments..., &isSet));
  return isSet != 0;
}

}  // namespace detail
}  // namespace v0
}  // namespace qoc

#endif
