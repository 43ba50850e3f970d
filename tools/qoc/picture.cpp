#include "picture.hpp"

#include "text.hpp"

#include <qoc/position_fielding.h>

#include <algorithm>

namespace qoc::program {
namespace {

struct Sign {
  Char32 sign;
  std::uint32_t bits;
};

constexpr Sign signs[] = {
    {U'A', QOC_FIELDING_UPPER},    {U'a', QOC_FIELDING_LOWER},
    {U'9', QOC_FIELDING_DIGIT},    {U'*', QOC_FIELDING_NONSPACE},
    {U'_', QOC_FIELDING_SPACE},    {U'?', QOC_FIELDING_SPACE | QOC_FIELDING_NONSPACE},
};

} // namespace

void requireFieldingCharacter(Char32 code, const JsonNode &node, const std::string &at) {
  const std::string refusal = whyRefused(code);
  if (!refusal.empty()) node.fail(at + ": " + refusal);
  if (code > max7Bits) {
    node.fail(at + ": \"" + encodeUtf8(code) +
              "\" lies beyond 7 bits; fieldings know the characters up to U+007F only");
  }
}

std::vector<PositionShape> readPicture(const JsonNode &node) {
  const std::vector<Char32> codes = decodeUtf8(node.string("a line, as a picture or an array of positions"));
  if (codes.empty()) node.fail("the picture is empty; expected at least one position");
  std::vector<PositionShape> shapes;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const auto *sign = std::find_if(std::begin(signs), std::end(signs),
                                    [&](const Sign &candidate) { return candidate.sign == codes[i]; });
    if (sign != std::end(signs)) {
      shapes.push_back({sign->bits, {}});
      continue;
    }
    if (codes[i] == U'\\' && ++i == codes.size()) {
      node.fail("character " + std::to_string(i) +
                ": the backslash at the end marks nothing; expected a character behind it");
    }
    requireFieldingCharacter(codes[i], node, "character " + std::to_string(i + 1));
    shapes.push_back({0, {codes[i]}});
  }
  return shapes;
}

} // namespace qoc::program
