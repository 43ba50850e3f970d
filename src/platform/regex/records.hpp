#pragma once
// The records of the token library, as the rest of the regular expressions reads them.

#include <qoc/regex.h>

#include "platform/containers/view.hpp"

namespace qoc {

inline bool isWildcard(const qstd_token &token) noexcept { return token.flags != 0; }

/// The number of a position's tokens, the primary one included.
inline std::size_t numTokens(const qstd_tokenMulti &multi) noexcept {
  return 1 + static_cast<std::size_t>(multi.alternatives.core.size);
}

/// A position's token: the primary one at index 0, then the alternatives.
inline const qstd_token &tokenAt(const qstd_tokenMulti &multi, std::size_t index) noexcept {
  return index == 0 ? multi.primary : viewAs<qstd_token>(multi.alternatives)[index - 1];
}

}  // namespace qoc
