// Regular expressions as values: their life, their sources, and what they match.

#include "qoc/regex.h"

#include <memory>
#include <string>

#include "platform/containers/vector_family.hpp"
#include "platform/regex/records.hpp"
#include "platform/regex/shared_expression.hpp"
#include "platform/regex/ways.hpp"
#include "platform/system/exceptions.hpp"

QOC_DEFINE_TYPE_CHECKS(qstd_regex)

using namespace qoc;

namespace {

void release(const SharedExpression *shared) noexcept {
  if (shared != nullptr && shared->numHolders.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    const std::unique_ptr<const SharedExpression> last(shared);
  }
}

/// Text characters as codes: each a signed byte.
std::vector<Char32> codesOf(const qstd_string *text) {
  std::vector<Char32> codes;
  codes.reserve(static_cast<std::size_t>(text->core.size));
  for (const CharT character : viewAs<CharT>(*text)) {
    codes.push_back(static_cast<Char32>(static_cast<std::int32_t>(static_cast<std::int8_t>(character))));
  }
  return codes;
}

std::vector<Char32> codesOf(const wchar_t *text) {
  std::vector<Char32> codes;
  for (; *text != L'\0'; ++text) {
    codes.push_back(static_cast<Char32>(*text));
  }
  return codes;
}

/// Appends a code as text: the byte that it is the sign extension of, or else in UTF-8, whose scheme is carried on
/// beyond its last character for codes that are none.
void appendText(Char32 code, std::string &text) {
  if (code < 0x80 || code >= 0xFFFFFF80) {
    text += static_cast<char>(static_cast<std::uint8_t>(code));
    return;
  }
  int numFollowing = 1;
  while ((static_cast<std::uint64_t>(code) >> (5 * numFollowing + 6)) != 0) {  // Up to 6, which hold any code.
    ++numFollowing;
  }
  const unsigned lead = 0xFF00u >> (numFollowing + 1);
  text += static_cast<char>(static_cast<std::uint8_t>(lead | (static_cast<std::uint64_t>(code) >> (6 * numFollowing))));
  for (int i = numFollowing - 1; i >= 0; --i) {
    text += static_cast<char>(static_cast<std::uint8_t>(0x80 | (code >> (6 * i) & 0x3F)));
  }
}

/// Compiles a source; the empty one gives null.
qsys_status compile(std::vector<Char32> &&source, std::unique_ptr<const SharedExpression> &compiled,
                    std::int32_t &errorPlace) {
  errorPlace = -1;
  compiled = nullptr;
  if (source.size() > QSTD_REGEX_MAX_SOURCE) {
    errorPlace = 0;
    return QSTD_STATUS_REGEX_TOO_LARGE;
  }
  if (source.empty()) {
    return QSYS_STATUS_OK;
  }
  Syntax syntax;
  const SyntaxError error = parseExpression(source, syntax);
  if (error.status < 0) {
    errorPlace = error.place;
    return error.status;
  }
  auto made = std::make_unique<SharedExpression>();
  const qsys_status status = made->expression.compile(std::move(syntax));
  if (status < 0) {
    errorPlace = status == QSTD_STATUS_REGEX_TOO_LARGE ? 0 : -1;
    return status;
  }
  made->source = std::move(source);
  compiled = std::move(made);
  return QSYS_STATUS_OK;
}

template <class Source>
qsys_status set(qstd_regex *regex, Source source) {
  if (!present({regex, source})) {
    return QSYS_STATUS_OK;
  }
  return withoutExceptions([&]() -> qsys_status {
    std::unique_ptr<const SharedExpression> compiled;
    std::int32_t place = -1;
    QOC_TRY(compile(codesOf(source), compiled, place));
    release(sharedOf(*regex));
    regex->shared = compiled.release();
    return QSYS_STATUS_OK;
  });
}

template <class Source>
qsys_status construct(qstd_regex *regex, Source source) {
  if (!present({regex, source})) {
    return QSYS_STATUS_OK;
  }
  regex->shared = nullptr;
  return set(regex, source);
}

template <class Source>
qsys_status findError(Source source, std::int32_t *place) {
  if (!present({source, place})) {
    return QSYS_STATUS_OK;
  }
  *place = -1;
  return withoutExceptions([&] {
    std::unique_ptr<const SharedExpression> compiled;
    return compile(codesOf(source), compiled, *place);
  });
}

/// Makes what a way tells of one place.
qsys_status fill(qstd_tokenMatcherResult &result, const qstd_tokenMulti &multi, MatchedTokens matched) {
  QOC_TRY(qstd_vector_qstd_token_reserve(&result.tokens, static_cast<std::int32_t>(matched.size())));
  for (const std::int32_t index : matched) {
    qstd_vector_qstd_token_pushBack(&result.tokens, &tokenAt(multi, static_cast<std::size_t>(index)));
  }
  result.isPrimary = matched.front() == 0 ? 1 : 0;  // Where nothing matched there is no way.
  return QSYS_STATUS_OK;
}

/// Appends a way, filled in place so that nothing is copied.
template <class Way>
qsys_status append(const Way &way, std::span<const qstd_tokenMulti> sequence,
                   qstd_vector_qstd_tokenMatcherResultWord &words) {
  qstd_tokenMatcherResultWord empty;
  qstd_tokenMatcherResultWord_construct(&empty);
  QOC_TRY(qstd_vector_qstd_tokenMatcherResultWord_pushBack(&words, &empty));
  qstd_vector_qstd_tokenMatcherResult &positions = editAs<qstd_tokenMatcherResultWord>(words).back().positions;
  QOC_TRY(qstd_vector_qstd_tokenMatcherResult_resize(&positions, static_cast<std::int32_t>(way.size())));
  for (std::size_t i = 0; i < way.size(); ++i) {
    QOC_TRY(fill(editAs<qstd_tokenMatcherResult>(positions)[i], sequence[i], way[i]));
  }
  return QSYS_STATUS_OK;
}

/// The codes of the tokens of a sequence, place by place.
struct SequenceCodes {
  std::vector<Char32> codes;
  std::vector<std::size_t> ends;

  explicit SequenceCodes(std::span<const qstd_tokenMulti> sequence) {
    for (const qstd_tokenMulti &multi : sequence) {
      for (std::size_t k = 0; k < numTokens(multi); ++k) {
        const qstd_token &token = tokenAt(multi, k);
        codes.push_back(isWildcard(token) ? QOC_CHAR_ANY : token.code);
      }
      ends.push_back(codes.size());
    }
  }
  Codes at(std::size_t place) const {
    const std::size_t first = place > 0 ? ends[place - 1] : 0;
    return Codes(codes).subspan(first, ends[place] - first);
  }
};

template <class States>
qsys_status parse(States &states, std::span<const qstd_tokenMulti> sequence,
                  qstd_vector_qstd_tokenMatcherResultWord &words) {
  const SequenceCodes codes(sequence);
  std::vector<typename WayFinder<States>::Place> places(sequence.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    places[i].codes = codes.at(i);
  }
  return WayFinder(states).find(places, [&](const auto &way) { return append(way, sequence, words); });
}

}  // namespace

qsys_status qstd_regex_construct(qstd_regex *object) {
  if (present({object})) {
    object->shared = nullptr;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_regex_constructCopy(qstd_regex *object, const qstd_regex *source) {
  if (!present({object, source})) {
    return QSYS_STATUS_OK;
  }
  object->shared = nullptr;
  return qstd_regex_assign(object, source);
}

qsys_status qstd_regex_assign(qstd_regex *object, const qstd_regex *source) {
  if (!present({object, source})) {
    return QSYS_STATUS_OK;
  }
  const SharedExpression *shared = sharedOf(*source);
  if (shared != nullptr) {
    shared->numHolders.fetch_add(1, std::memory_order_relaxed);
  }
  release(sharedOf(*object));
  object->shared = shared;
  return QSYS_STATUS_OK;
}

qsys_status qstd_regex_destruct(qstd_regex *object) {
  if (present({object})) {
    release(sharedOf(*object));
    object->shared = nullptr;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_regex_constructString(qstd_regex *regex, const qstd_string *source) {
  return construct(regex, source);
}
qsys_status qstd_regex_constructStringT(qstd_regex *regex, const wchar_t *source) { return construct(regex, source); }
qsys_status qstd_regex_setString(qstd_regex *regex, const qstd_string *source) { return set(regex, source); }
qsys_status qstd_regex_setStringT(qstd_regex *regex, const wchar_t *source) { return set(regex, source); }

qsys_status qstd_regex_getString(const qstd_regex *regex, qstd_string *source) {
  if (!present({regex, source})) {
    return QSYS_STATUS_OK;
  }
  return withoutExceptions([&] {
    std::string text;
    if (const SharedExpression *shared = sharedOf(*regex)) {
      for (const Char32 code : shared->source) {
        appendText(code, text);
      }
    }
    return qstd_string_assignElements(source, text.data(), static_cast<std::int32_t>(text.size()));
  });
}

qsys_status qstd_regex_findError(const qstd_string *source, int32_t *place) { return findError(source, place); }
qsys_status qstd_regex_findErrorT(const wchar_t *source, int32_t *place) { return findError(source, place); }

qsys_status qstd_regex_compareEqual(const qstd_regex *a, const qstd_regex *b, qsys_bool *isEqual) {
  if (present({a, b, isEqual})) {
    const SharedExpression *sharedA = sharedOf(*a);
    const SharedExpression *sharedB = sharedOf(*b);
    // No empty source is held, so null is equal to null alone.
    const bool haveSources = sharedA != nullptr && sharedB != nullptr;
    *isEqual = sharedA == sharedB || (haveSources && sharedA->source == sharedB->source) ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_regex_parseTokenMulti(const qstd_regex *regex, const qstd_vector_qstd_tokenMulti *sequence,
                                       qstd_vector_qstd_tokenMatcherResultWord *words) {
  if (!present({regex, sequence, words})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qstd_tokenMatcherResultWord_clear(words));
  const qsys_status status = withoutExceptions([&] {
    return withStates(expressionOf(*regex),
                      [&](auto &states) { return parse(states, viewAs<qstd_tokenMulti>(*sequence), *words); });
  });
  if (status < 0) {
    qstd_vector_qstd_tokenMatcherResultWord_clearAndFreeMemory(words);
  }
  return status;
}
