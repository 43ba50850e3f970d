// The positions of an expression that a text can have reached after each number of characters, and what they accept.

#include "resolve/admitted_codes.hpp"

#include <array>

#include "platform/regex/shared_expression.hpp"
#include "platform/regex/states.hpp"

namespace qoc {

AdmittedCodes::AdmittedCodes(const qoc_ocrDictionaryRegularExpression &expression) {
  const Expression &compiled = expressionOf(expression.regex);
  if (!compiled.isNarrow()) {
    return;  // Too large to be gone through beforehand.
  }
  NarrowStates states(compiled);
  std::array<NarrowStates::Set, numPlain> accepting;
  for (std::size_t code = 0; code < numPlain; ++code) {
    accepting[code] = states.none();
    states.addAccepting(static_cast<Char32>(code), accepting[code]);
  }
  NarrowStates::Set reached = states.first();
  while (reached != states.none() && places_.size() < maxPlaces) {
    auto &place = places_.emplace_back();
    for (std::size_t code = 0; code < numPlain; ++code) place[code] = (accepting[code] & reached) != states.none();
    reached = states.followersOf(reached);
  }
  isOpenEnded_ = reached != states.none();
}

}  // namespace qoc
