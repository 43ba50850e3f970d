#include "random/regex_ways.hpp"

#include "reference/records.hpp"

namespace random_cases {

using qoc::test::elements;
using qoc::test::Owned;
using qoc::test::require;
using reference::MatchedPlace;
using reference::MatchedWay;
using reference::TokenCodes;

namespace {

Owned<qstd_vector_qstd_tokenMulti> tokensOf(const std::vector<TokenCodes> &sequence) {
  Owned<qstd_vector_qstd_tokenMulti> tokens;
  for (const TokenCodes &codes : sequence) {
    Owned<qstd_tokenMulti> multi;
    // A place that is any character is also what a multi is that was never set.
    if (codes != TokenCodes{reference::anyCode}) {
      require(qstd_tokenMulti_setChar32(multi, codes.at(0)));
      for (size_t k = 1; k < codes.size(); ++k) {
        Owned<qstd_token> token;
        require(qstd_token_setChar32(token, codes[k]));
        require(qstd_vector_qstd_token_pushBack(&multi->alternatives, token));
      }
    }
    require(qstd_vector_qstd_tokenMulti_pushBack(tokens, multi));
  }
  return tokens;
}

}  // namespace

Owned<qstd_regex> compiled(const std::string &source) {
  return Owned<qstd_regex>([&](qstd_regex *regex) {
    const auto text = Owned<qstd_string>([&](qstd_string *string) {
      return qstd_string_constructFromBlock(string, source.data(), static_cast<int32_t>(source.size()));
    });
    return qstd_regex_constructString(regex, text);
  });
}

std::vector<MatchedWay> waysOf(const Owned<qstd_regex> &regex, const std::vector<TokenCodes> &sequence) {
  Owned<qstd_vector_qstd_tokenMatcherResultWord> words;
  require(qstd_regex_parseTokenMulti(regex, tokensOf(sequence), words));
  std::vector<MatchedWay> ways;
  for (const qstd_tokenMatcherResultWord &word : elements(words)) {
    MatchedWay way;
    for (const qstd_tokenMatcherResult &result : elements(word.positions)) {
      MatchedPlace place;
      place.isPrimary = result.isPrimary != 0;
      for (const qstd_token &token : elements(result.tokens)) {
        Char32 code = 0;
        require(qstd_token_getChar(&token, &code));
        place.codes.push_back(code);
      }
      way.push_back(place);
    }
    ways.push_back(way);
  }
  return ways;
}

std::string toText(const std::vector<MatchedWay> &ways) {
  std::string out;
  for (const MatchedWay &way : ways) {
    out += "\n   ";
    for (const MatchedPlace &place : way) {
      out += place.isPrimary ? " !" : " ";
      for (const uint32_t code : place.codes) {
        out += code < 128 ? std::string(1, static_cast<char>(code)) : "{" + std::to_string(code) + "}";
      }
    }
  }
  return out;
}

}  // namespace random_cases
