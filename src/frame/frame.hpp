#pragma once
// The frame of an operation: what it has constructed, and what becomes of that on the way out.

#include <qoc/system.h>

#include "platform/system/exceptions.hpp"
#include "platform/system/present.hpp"

namespace qoc {

/// The cleanup stack of one operation. Objects are registered as they are constructed; on the way out of its scope the
/// frame destroys what is due for the status that the operation ends with: locals always, the caller's output only
/// after a failure.
template <std::int32_t Capacity>
class Frame {
 public:
  explicit Frame(qsys_status &status) noexcept : status_(status), tag_(qsys_cleanup_getNextTag()) {}
  ~Frame() {
    if (QOC_NEVER(count_ < 0 || count_ > Capacity)) {  // add() sees to it.
      qstd_assert_(__LINE__);
      return;
    }
    qsys_cleanupExecute_(entries_, &count_, &status_, tag_);
  }
  Frame(const Frame &) = delete;
  Frame &operator=(const Frame &) = delete;

  template <auto Destruct, class T>
  void output(T *object, int line = __builtin_LINE()) noexcept {
    add<Destruct>(QSYS_CLEANUP_OUTPUT, object, line);
  }
  template <auto Destruct, class T>
  void local(T *object, int line = __builtin_LINE()) noexcept {
    add<Destruct>(QSYS_CLEANUP_LOCAL, object, line);
  }
  /// Constructs a local without contents, which takes no memory and cannot fail.
  template <auto Construct, auto Destruct, class T>
  void emptyLocal(T *object, int line = __builtin_LINE()) noexcept {
    const qsys_status status = Construct(object);
    if (QOC_NEVER(status < 0)) {  // There is nothing in it that could not be had.
      qstd_assert_(line);
      return;
    }
    local<Destruct>(object, line);
  }

 private:
  // The lambda keeps the call well defined: no destructor is called through a pointer of another function type.
  template <auto Destruct, class T>
  void add(std::uint32_t kind, T *object, int line) noexcept {
    if (QOC_NEVER(count_ < 0) || count_ >= Capacity) {  // It only counts up.
      qstd_assert_(line);
      return;
    }
    if (QOC_NEVER(sequence_ > 0xFFFFFFFEu)) {  // No frame has so much room.
      sequence_ = 0;
    }
    entries_[count_++] = {sequence_++, kind, object, [](void *address) { return Destruct(static_cast<T *>(address)); }};
  }

  qsys_status &status_;
  std::uint32_t tag_, sequence_ = 0;
  std::int32_t count_ = 0;
  qsys_cleanupEntry entries_[Capacity] = {};
};

/// Runs body(frame) in a fresh frame. In the body a plain `return status` is right on every path; no exception gets
/// out.
///
/// The frame destroys its locals after the body has returned, so they are declared before it and captured: a record
/// declared inside the body would be gone by then.
template <std::int32_t Capacity, class Body>
qsys_status inFrame(Body &&body) noexcept {
  qsys_status status = QSYS_STATUS_OK;
  {
    Frame<Capacity> frame(status);
    try {
      status = body(frame);
    } catch (...) {
      status = statusOfException();  // Before the frame is left: it decides by the status.
    }
  }
  return status;
}

/// A constructor with contents: the default object, then what set() makes of it; nothing is left of it on failure.
template <auto Construct, auto Destruct, class T, class Set>
qsys_status constructThen(T *object, Set set) noexcept {
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(Construct(object));
    frame.template output<Destruct>(object);
    return set();
  });
}

/// The usual copy constructor: the default object, then assigned from the source.
template <auto Construct, auto Assign, auto Destruct, class T>
qsys_status constructThenAssign(T *object, const T *source, int line = __builtin_LINE()) noexcept {
  if (!present({object, source}, line)) {
    return QSYS_STATUS_OK;
  }
  return constructThen<Construct, Destruct>(object, [&] { return Assign(object, source); });
}

}  // namespace qoc
