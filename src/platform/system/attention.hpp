#pragma once
// The attention checks of a stretch of work that is passed over in one go.

#include <qoc/system.h>

#include <cstdint>

namespace qoc {

/// As `times` calls of qsys_attention_check in a row, up to the first that answers no.
///
/// Without a handler nobody can tell them apart, and the ready handlers look at a flag or at a clock: between checks
/// that follow each other without work nothing needs to have changed, so one look stands for all. A program's own
/// handler is asked every time.
qsys_status checkAttention(std::int64_t times);

/// Whether the calling thread has a program's own handler, which is asked every single time.
bool isAttentionCounted() noexcept;

}  // namespace qoc
