#include "reference/position_fielding.hpp"

#include <algorithm>

#include "reference/alignment.hpp"

namespace reference {

namespace {

constexpr int32_t noTextStatus = wrap(0x800013A0);
constexpr int32_t bitsStatus = wrap(0x800013AB);
constexpr int32_t emptyStatus = wrap(0x80001405);
constexpr int32_t duplicateStatus = wrap(0x80001406);

/** Whether a code is the sign extension of its own low byte. */
bool isText(uint32_t code) { return code <= 0x7F || code >= 0xFFFFFF80; }

bool isInClass(uint32_t c, uint32_t bits) {
  bool answer = false;
  if ((bits & 16) != 0 && c != 32) answer = true;
  if ((bits & 8) != 0 && c == 32) answer = true;
  if ((bits & 1) != 0 && c >= 65 && c <= 90) answer = true;
  if ((bits & 2) != 0 && c >= 97 && c <= 122) answer = true;
  if ((bits & 4) != 0 && c >= 48 && c <= 57) answer = true;
  return answer;
}

/** Converts characters to codes; the empty character is taken over as it stands. */
int32_t convert(const Word &characters, std::vector<uint32_t> &codes) {
  for (const Character &character : characters) {
    if (character.code != emptyCode && !isText(character.code)) return noTextStatus;
    codes.push_back(character.code);
  }
  return 0;
}

void appendRange(std::vector<uint32_t> &codes, uint32_t first, uint32_t last) {
  for (uint32_t code = first; code <= last; ++code) codes.push_back(code);
}

void appendMatches(const PositionFielding &fielding, const Character &character, const Swaps *swaps, Position &out) {
  if (fielding.isMatch(character, nullptr)) out.push_back(character);
  for (uint32_t code : equivalents(character.code, swaps))
    if (fielding.isMatch(Character{code, 0}, nullptr)) out.push_back({code, 0});
}

}  // namespace

int32_t PositionFielding::setFieldingBits(uint32_t newBits) {
  if ((newBits & 31) != newBits) return bitsStatus;
  bits = newBits;
  return 0;
}

int32_t PositionFielding::setFieldingCharacters(const std::vector<uint32_t> &codes) {
  for (size_t i = 0; i < codes.size(); ++i)
    for (size_t j = i + 1; j < codes.size(); ++j)
      if (codes[i] == codes[j]) return duplicateStatus;
  for (uint32_t code : codes)
    if (code == emptyCode) return emptyStatus;
  listed = codes;
  return 0;
}

int32_t PositionFielding::setFieldingCharactersAndFieldingBits(const std::vector<uint32_t> &codes, uint32_t newBits) {
  int32_t status = setFieldingBits(newBits);
  return status < 0 ? status : setFieldingCharacters(codes);
}

int32_t PositionFielding::setDictCharacters(const Word &characters) {
  std::vector<uint32_t> codes;
  int32_t status = convert(characters, codes);
  if (status < 0) return status;
  listed = codes;
  return 0;
}

int32_t PositionFielding::setDictCharactersAndFieldingBits(const Word &characters, uint32_t newBits) {
  std::vector<uint32_t> codes;
  int32_t status = convert(characters, codes);
  return status < 0 ? status : setFieldingCharactersAndFieldingBits(codes, newBits);
}

bool PositionFielding::lists(uint32_t code) const {
  return std::find(listed.begin(), listed.end(), code) != listed.end();
}

bool PositionFielding::isEmpty() const { return bits == 0 && listed.empty(); }

bool PositionFielding::isAnyCharacter() const {
  if ((bits & 8) != 0 && (bits & 16) != 0) return true;
  if (lists(anyCode)) return true;
  return lists(space) && ((bits & 16) != 0 || lists(anyNonspaceCode));
}

bool PositionFielding::isAnyNonspaceCharacter() const {
  if ((bits & 8) != 0 || lists(space)) return false;
  return (bits & 16) != 0 || lists(anyNonspaceCode);
}

bool PositionFielding::isSingleCharacter() const {
  return (bits == 8 && listed.empty()) || (bits == 0 && listed.size() == 1);
}

uint32_t PositionFielding::singleCharacter() const {
  if (bits == 8 && listed.empty()) return space;
  if (bits == 0 && listed.size() == 1) return listed[0];
  return emptyCode;
}

bool PositionFielding::allowsSpace() const { return (bits & 8) != 0 || lists(space); }

bool PositionFielding::isMatch(const Character &character, const Swaps *swaps) const {
  if (character.code == emptyCode) return false;
  if (!isText(character.code)) throw Failed{noTextStatus};
  if (isInClass(character.code, bits)) return true;
  if (lists(character.code)) return true;
  for (uint32_t code : equivalents(character.code, swaps)) {
    if (!isText(code)) throw Failed{noTextStatus};
    if (isInClass(code, bits)) return true;
  }
  for (uint32_t code : listed) {
    bool answer =
        code == anyNonspaceCode ? character.code != space : reference::isMatch(character, Character{code, 0}, swaps);
    if (answer) return true;
  }
  return false;
}

bool PositionFielding::isMatchMulti(const Position &candidates, const Swaps *swaps) const {
  for (const Character &candidate : candidates)
    if (isMatch(candidate, swaps)) return true;
  return false;
}

bool PositionFielding::isMatchMultiStatus(const Position &candidates, const Swaps *swaps, int32_t &status) const {
  if (candidates.empty()) return false;
  status = primary;
  if (isAnyCharacter()) return true;
  if (isMatch(candidates[0], swaps)) return true;
  status = secondary;
  for (size_t i = 1; i < candidates.size(); ++i)
    if (isMatch(candidates[i], swaps)) return true;
  return false;
}

Position PositionFielding::match(const Character &character, const Swaps *swaps) const {
  Position out;
  appendMatches(*this, character, swaps, out);
  return out;
}

Position PositionFielding::matchMulti(const Position &candidates, const Swaps *swaps) const {
  Position all;
  for (const Character &candidate : candidates) appendMatches(*this, candidate, swaps, all);
  Position out;
  for (const Character &character : all) {
    bool isNew = true;
    for (const Character &kept : out) isNew = kept.code != character.code && isNew;
    if (isNew) out.push_back(character);
  }
  return out;
}

std::vector<uint32_t> PositionFielding::allFieldingCharacters() const {
  if (isAnyCharacter()) return {anyCode};
  if (isAnyNonspaceCharacter()) return {lists(space) ? anyCode : anyNonspaceCode};
  std::vector<uint32_t> out = listed;
  if ((bits & 8) != 0) out.push_back(space);
  if ((bits & 1) != 0) appendRange(out, 65, 90);
  if ((bits & 2) != 0) appendRange(out, 97, 122);
  if ((bits & 4) != 0) appendRange(out, 48, 57);
  std::sort(out.begin(), out.end());
  out.erase(std::unique(out.begin(), out.end()), out.end());
  return out;
}

}  // namespace reference
