#include "reference/expansion.hpp"

#include "reference/alignment.hpp"

namespace reference {

namespace {

bool isMulti(const Swap &swap, size_t first, size_t second) {
  return swap.first.size() == first && swap.second.size() == second;
}

struct OneToTwo {
  uint32_t single, pairFirst, pairSecond;
};

/** Swaps of one and two characters, which know no direction. */
std::vector<OneToTwo> oneToTwoRecords(const Swaps &swaps) {
  std::vector<OneToTwo> records;
  for (const Swap &swap : swaps.swaps) {
    if (isMulti(swap, 1, 2)) records.push_back({swap.first[0], swap.second[0], swap.second[1]});
    if (isMulti(swap, 2, 1)) records.push_back({swap.second[0], swap.first[0], swap.first[1]});
  }
  return records;
}

bool reads(const Position &position, uint32_t code, const Swaps &swaps) {
  return isMatchMulti(Character{code, 0}, position, &swaps);
}

/** A swapped-in character, which never is the primary candidate. */
Position insertedPosition(uint32_t code) { return {Character{emptyCode, 0}, Character{code, 0}}; }

/** Appends the head before every tail. */
void append(std::vector<Variant> &variants, const Variant &head, const std::vector<Variant> &tails) {
  for (const Variant &tail : tails) {
    Variant variant = head;
    variant.reading.insert(variant.reading.end(), tail.reading.begin(), tail.reading.end());
    variant.positions.insert(variant.positions.end(), tail.positions.begin(), tail.positions.end());
    variants.push_back(variant);
  }
}

/** The variants of a reading of which the first character stands at position p. */
std::vector<Variant> variantsOf(const Reading &s, int32_t p, const Swaps &swaps) {
  std::vector<Variant> out;
  if (s.empty()) return {Variant()};
  const std::vector<Variant> tails = variantsOf(Reading(s.begin() + 1, s.end()), p + 1, swaps);
  append(out, {{s[0]}, {p}}, tails);
  const std::vector<OneToTwo> oneToTwo = oneToTwoRecords(swaps);
  for (const OneToTwo &record : oneToTwo)
    if (reads(s[0], record.single, swaps))
      append(out, {{insertedPosition(record.pairFirst), insertedPosition(record.pairSecond)}, {p, p}}, tails);
  if (s.size() < 2) return out;
  const std::vector<Variant> farTails = variantsOf(Reading(s.begin() + 2, s.end()), p + 2, swaps);
  for (const Swap &swap : swaps.swaps)
    if (isMulti(swap, 2, 2) && reads(s[0], swap.first[0], swaps) && reads(s[1], swap.first[1], swaps))
      append(out, {{insertedPosition(swap.second[0]), insertedPosition(swap.second[1])}, {p, p + 1}}, farTails);
  for (const OneToTwo &record : oneToTwo)
    if (reads(s[0], record.pairFirst, swaps) && reads(s[1], record.pairSecond, swaps))
      append(out, {{insertedPosition(record.single)}, {p}}, farTails);
  return out;
}

}  // namespace

bool hasMultiSwap(const Swaps *swaps) {
  if (!swaps) return false;
  for (const Swap &swap : swaps->swaps)
    if (isMulti(swap, 1, 2) || isMulti(swap, 2, 1) || isMulti(swap, 2, 2)) return true;
  return false;
}

std::vector<Variant> expand(const Reading &reading, const Swaps &swaps, Polls &polls) {
  if (reading.empty()) return {Variant()};
  for (size_t i = 0; i < reading.size(); ++i) polls.poll();
  const std::vector<Variant> variants = variantsOf(reading, 0, swaps);
  for (size_t i = 0; i < variants.size(); ++i) polls.poll();
  return variants;
}

}  // namespace reference
