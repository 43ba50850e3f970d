#include "page_document.hpp"

namespace qoc::program {
namespace {

std::optional<Box> boxOf(const PageDocument &page, pugi::xml_node element) {
  double numbers[4];
  const char *const names[] = {"HPOS", "VPOS", "WIDTH", "HEIGHT"};
  for (std::size_t i = 0; i < 4; ++i) {
    const pugi::xml_attribute value = element.attribute(names[i]);
    if (!value) return std::nullopt;
    numbers[i] = parseNumber(value.value(), page.xml().placeOf(element), std::string(names[i]) + ", a number");
  }
  return Box{numbers[0], numbers[1], numbers[0] + numbers[2], numbers[1] + numbers[3]};
}

TextPlace contentOf(const PageDocument &page, pugi::xml_node element, PositionRange positions) {
  return {positions, {page.xml().slotOf(element, "CONTENT")}};
}

/// A string: its glyphs with their variants, or the characters of its content.
void addString(PageDocument &page, PageLine &line, pugi::xml_node string) {
  const double score = confidenceOf(page, string, "WC", 0);
  page.beginWord(string, score);
  bool hasGlyphs = false;
  for (const pugi::xml_node glyph : string.children()) {
    if (localName(glyph) != "Glyph" || !glyph.attribute("CONTENT")) continue;
    hasGlyphs = true;
    std::vector<ScoredText> variants;
    for (const pugi::xml_node variant : glyph.children()) {
      if (localName(variant) != "Variant") continue;
      variants.push_back({variant.attribute("CONTENT").value(), confidenceOf(page, variant, "VC", 0)});
    }
    const ScoredText printed{glyph.attribute("CONTENT").value(), confidenceOf(page, glyph, "GC", score)};
    line.places.push_back(contentOf(page, glyph, page.addText(glyph, printed, variants, boxOf(page, glyph))));
  }
  if (!hasGlyphs) page.addText(string, {string.attribute("CONTENT").value(), score}, {}, std::nullopt);
  const PositionRange positions = page.endWord();
  if (positions.begin == positions.end) return;
  line.words.back().id = string.attribute("ID").value();
  line.words.back().box = boxOf(page, string);
  if (string.attribute("CONTENT")) line.places.push_back(contentOf(page, string, positions));
}

} // namespace

void readAlto(PageDocument &page) {
  std::string image;
  bool isInPixels = true;
  visitElements(page.xml().root(), [&](pugi::xml_node element) {
    const std::string_view name = localName(element);
    if (name == "MeasurementUnit") isInPixels = std::string_view(element.text().get()) == "pixel";
    if (name == "fileName") image = pathBeside(page.xml().name(), element.text().get());
    if (name != "TextLine") return true;
    PageLine &line = page.addLine(element);
    line.id = element.attribute("ID").value();
    line.box = boxOf(page, element);
    if (isInPixels) line.image = image;
    for (const pugi::xml_node child : element.children()) {
      if (localName(child) == "String") addString(page, line, child);
    }
    return false;
  });
}

} // namespace qoc::program
