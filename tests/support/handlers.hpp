#pragma once
// Listeners to what the library tells a program: failed checks, printed text, polls. Each listens as long as it lives.

#include <qoc/system.h>

#include <cstdint>
#include <string>
#include <vector>

namespace qoc::test {

/// Collects the lines of failed checks instead of printing them.
class FailedChecks {
 public:
  FailedChecks() {
    qsys_assert_setHandler([](void *self, int32_t line) { static_cast<FailedChecks *>(self)->lines_.push_back(line); },
                           this);
  }
  ~FailedChecks() { qsys_assert_setHandler(nullptr, nullptr); }
  FailedChecks(const FailedChecks &) = delete;
  FailedChecks &operator=(const FailedChecks &) = delete;

  const std::vector<int32_t> &lines() const { return lines_; }
  /// The number of reports since the last call.
  int numNew() {
    const int n = static_cast<int>(lines_.size() - numSeen_);
    numSeen_ = lines_.size();
    return n;
  }

 private:
  std::vector<int32_t> lines_;
  std::size_t numSeen_ = 0;
};

/// Collects what the calling thread prints; from piece `failFrom` on, printing fails with `failure`.
class PrintedText {
 public:
  explicit PrintedText(int64_t failFrom = -1, qsys_status failure = QSYS_STATUS_PRINT_FAILED)
      : failFrom_(failFrom), failure_(failure) {
    qsys_print_setHandler(
        [](void *context, const char *text, size_t size) -> qsys_status {
          auto *self = static_cast<PrintedText *>(context);
          if (self->failFrom_ >= 0 && self->numPieces_ >= self->failFrom_) {
            return self->failure_;
          }
          ++self->numPieces_;
          self->text_.append(text, size);
          return QSYS_STATUS_OK;
        },
        this);
  }
  ~PrintedText() { qsys_print_setHandler(nullptr, nullptr); }
  PrintedText(const PrintedText &) = delete;
  PrintedText &operator=(const PrintedText &) = delete;

  const std::string &text() const { return text_; }

 private:
  std::string text_;
  int64_t numPieces_ = 0, failFrom_;
  qsys_status failure_;
};

/// Counts the calling thread's polls; after `numAllowed` of them the work is interrupted with `interrupt`.
class Polls {
 public:
  explicit Polls(int64_t numAllowed = -1, qsys_status interrupt = QSYS_STATUS_INTERRUPTED)
      : numAllowed_(numAllowed), interrupt_(interrupt) {
    qsys_attention_setHandler(
        [](void *context) -> qsys_status {
          auto *self = static_cast<Polls *>(context);
          ++self->count_;
          return self->numAllowed_ >= 0 && self->count_ > self->numAllowed_ ? self->interrupt_ : QSYS_STATUS_OK;
        },
        this);
  }
  ~Polls() { qsys_attention_setHandler(nullptr, nullptr); }
  Polls(const Polls &) = delete;
  Polls &operator=(const Polls &) = delete;

  int64_t count() const { return count_; }

 private:
  int64_t count_ = 0, numAllowed_;
  qsys_status interrupt_;
};

}  // namespace qoc::test
