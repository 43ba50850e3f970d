#ifndef QOC_CPP_ATTENTION_HPP
#define QOC_CPP_ATTENTION_HPP

/// @file Interrupts: what the library asks during long work.

#include <qoc/system.h>

#include <concepts>
#include <exception>
#include <utility>

#if __has_include(<stop_token>)
#include <stop_token>
#endif

namespace qoc {
inline namespace v0 {

#if defined(__cpp_lib_jthread)
/// What interrupts a run from outside.
using StopToken = std::stop_token;
#else
/// Stands in where the standard library has no stop tokens: interrupts nothing. AttentionScope interrupts there, too.
struct StopToken {
  static constexpr bool stop_possible() noexcept { return false; }
  static constexpr bool stop_requested() noexcept { return false; }
};
#endif

/**
 * While it lives, the library's work in this thread is interrupted as soon as `shallStop` gives true or throws.
 *
 *     qoc::AttentionScope scope([&] { return std::chrono::steady_clock::now() > deadline; });
 *     auto results = dictionary.run(reading);   // throws Error, status QSYS_STATUS_INTERRUPTED, when it takes too long
 *
 * Scopes nest: an outer one is asked first. A scope belongs to the thread that made it.
 */
template <std::predicate ShallStop>
class [[nodiscard]] AttentionScope {
 public:
  explicit AttentionScope(ShallStop shallStop) : shallStop_(std::move(shallStop)) {
    // These two never fail.
    (void)qsys_attention_getHandler(&outer_, &outerContext_);
    (void)qsys_attention_setHandler(ask, this);
  }
  AttentionScope(const AttentionScope &) = delete;
  AttentionScope &operator=(const AttentionScope &) = delete;
  ~AttentionScope() { (void)qsys_attention_setHandler(outer_, outerContext_); }

  /// Throws again what `shallStop` threw, if it did: no exception passes through the library.
  void rethrow() const {
    if (raised_) std::rethrow_exception(raised_);
  }

 private:
  static qsys_status ask(void *context) noexcept {
    auto &scope = *static_cast<AttentionScope *>(context);
    if (scope.outer_ != nullptr) {
      const qsys_status status = scope.outer_(scope.outerContext_);
      if (status < 0) return status;
    }
    try {
      return scope.shallStop_() ? qsys_status{QSYS_STATUS_INTERRUPTED} : qsys_status{QSYS_STATUS_OK};
    } catch (...) {
      scope.raised_ = std::current_exception();
      return QSYS_STATUS_INTERRUPTED;
    }
  }

  ShallStop shallStop_;
  std::exception_ptr raised_;
  qsys_attentionHandler outer_ = nullptr;
  void *outerContext_ = nullptr;
};

namespace detail {

/// Calls a function of the library so that the token interrupts it.
template <std::invocable F>
auto interruptible(const StopToken &stop, F &&call) {
  if (!stop.stop_possible()) return call();
  const AttentionScope scope([&stop] { return stop.stop_requested(); });
  return call();
}

}  // namespace detail
}  // namespace v0
}  // namespace qoc

#endif
