#ifndef QOC_CPP_STATUS_HPP
#define QOC_CPP_STATUS_HPP

/// @file Failure in C++: the status as a value, the one exception type, and the form that throws nothing.

#include <qoc/base.h>

#include <concepts>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace qoc {
// The face has a name of its own inside qoc, so that it never meets the names of the library's inside.
inline namespace v0 {

/// The outcome of an operation.
class [[nodiscard]] Status {
 public:
  constexpr Status() noexcept = default;
  constexpr Status(qsys_status value) noexcept : value_(value) {}

  constexpr qsys_status value() const noexcept { return value_; }
  constexpr bool isSuccess() const noexcept { return value_ >= 0; }
  constexpr bool isInterrupt() const noexcept { return value_ == QSYS_STATUS_INTERRUPTED; }
  /// The sentence that describes it.
  const char *text() const noexcept { return qoc_status_getText(value_); }
  /// The name of its constant, such as "QOC_STATUS_STRING_EMPTY"; "" where it has none.
  const char *name() const noexcept { return qoc_status_getName(value_); }

  friend constexpr bool operator==(Status, Status) noexcept = default;

 private:
  qsys_status value_ = QSYS_STATUS_OK;
};

/// What every failing call throws: the status, and a message that says more where more is known.
class Error : public std::runtime_error {
 public:
  explicit Error(Status status) : std::runtime_error(status.text()), status_(status) {}
  Error(Status status, const std::string &where) : std::runtime_error(where + ": " + status.text()), status_(status) {}

  Status status() const noexcept { return status_; }

 private:
  Status status_;
};

/// Throws Error where the status is a failure.
inline void require(Status status) {
  if (!status.isSuccess()) throw Error(status);
}

/// A value, or the failure that kept it from being; the part of C++23's std::expected that callers need.
template <class T>
class [[nodiscard]] Expected {
 public:
  using value_type = T;

  Expected(T value) noexcept(std::is_nothrow_move_constructible_v<T>) : value_(std::move(value)) {}
  /// @param error a failure
  Expected(Status error) noexcept : error_(error) {}

  bool has_value() const noexcept { return value_.has_value(); }
  explicit operator bool() const noexcept { return has_value(); }

  /// The value. Throws Error where there is none.
  const T &value() const & { return checked().value_.value(); }
  T &value() & { return checked(), *value_; }
  T &&value() && { return checked(), std::move(*value_); }

  /// The value, which must be there.
  const T &operator*() const &noexcept { return *value_; }
  T &operator*() &noexcept { return *value_; }
  T &&operator*() &&noexcept { return std::move(*value_); }
  const T *operator->() const noexcept { return &*value_; }
  T *operator->() noexcept { return &*value_; }

  /// The failure; success where there is a value.
  Status error() const noexcept { return error_; }
  template <class U>
  T value_or(U &&other) const & {
    return has_value() ? *value_ : static_cast<T>(std::forward<U>(other));
  }
  template <class U>
  T value_or(U &&other) && {
    return has_value() ? std::move(*value_) : static_cast<T>(std::forward<U>(other));
  }

  /// Goes on with the value, where there is one: `next` takes it and gives another Expected.
  template <class F>
  auto and_then(F &&next) && -> std::invoke_result_t<F, T &&> {
    if (!has_value()) return error_;
    return std::forward<F>(next)(std::move(*value_));
  }
  /// Goes on with the value, where there is one: `change` takes it and gives another value.
  template <class F>
  auto transform(F &&change) && -> Expected<std::invoke_result_t<F, T &&>> {
    if (!has_value()) return error_;
    return std::forward<F>(change)(std::move(*value_));
  }

 private:
  const Expected &checked() const {
    if (!has_value()) throw Error(error_);
    return *this;
  }

  std::optional<T> value_;
  Status error_;
};

/**
 * The form of every call that throws no Error: runs `call` and gives what it returned, or the status of its failure.
 *
 *     auto lexicon = qoc::attempt([&] { return qoc::Lexicon(words); });
 *     if (!lexicon) log(lexicon.error().text());
 *
 * @return Expected of the call's type; for a call that returns nothing, a Status
 */
template <std::invocable F>
auto attempt(F &&call) {
  using T = std::remove_cvref_t<std::invoke_result_t<F>>;
  using Outcome =
      typename std::conditional_t<std::is_void_v<T>, std::type_identity<Status>, std::type_identity<Expected<T>>>::type;
  try {
    if constexpr (std::is_void_v<T>) {
      std::forward<F>(call)();
      return Outcome(Status(QSYS_STATUS_OK));
    } else {
      return Outcome(std::forward<F>(call)());
    }
  } catch (const Error &error) {
    return Outcome(error.status());
  } catch (const std::bad_alloc &) {
    return Outcome(Status(QSYS_STATUS_OUT_OF_MEMORY));
  }
}

}  // namespace v0
}  // namespace qoc

#endif
