#include "page_document.hpp"

#include <algorithm>
#include <limits>

namespace qoc::program {
namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

/// The smallest box around an element's `Coords`.
std::optional<Box> boxOf(const PageDocument &page, pugi::xml_node element) {
  const pugi::xml_node coords = childNamed(element, "Coords");
  if (!coords || !coords.attribute("points")) return std::nullopt;
  const std::string what = "points as \"x,y x,y …\"";
  const std::string place = page.xml().placeOf(coords);
  constexpr double infinity = std::numeric_limits<double>::infinity();
  Box box{infinity, infinity, -infinity, -infinity};
  std::string_view rest = coords.attribute("points").value();
  for (rest.remove_prefix(std::min(rest.find_first_not_of(whiteSpace), rest.size())); !rest.empty();
       rest.remove_prefix(std::min(rest.find_first_not_of(whiteSpace), rest.size()))) {
    const std::string_view point = rest.substr(0, rest.find_first_of(whiteSpace));
    const std::size_t comma = std::min(point.find(','), point.size());
    const double x = parseNumber(point.substr(0, comma), place, what);
    const double y = parseNumber(point.substr(std::min(comma + 1, point.size())), place, what);
    box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), std::max(box.bottom, y)};
    rest.remove_prefix(point.size());
  }
  if (box.left > box.right) return std::nullopt;
  return box;
}

/// The text that goes into a slot has no white space at its ends.
std::string trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
  return std::string(text.substr(0, text.find_last_not_of(whiteSpace) + 1));
}

/// The pieces of text in an element, put together; comments may part them.
std::string textOf(pugi::xml_node element) {
  std::string text;
  for (const pugi::xml_node piece : element.children()) {
    if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata) text += trimmed(piece.value());
  }
  return text;
}

/// What an element's `TextEquiv`s say, the one of the lowest index first, which is the printed one.
struct Equivalents {
  ScoredText printed{"", 0};
  std::vector<ScoredText> alternatives;
  std::vector<TextSlot> slots; ///< Of the printed one's text.
};

Equivalents equivalentsOf(const PageDocument &page, pugi::xml_node element, double otherwise) {
  struct Indexed {
    double index;
    pugi::xml_node equivalent;
  };
  std::vector<Indexed> all;
  for (const pugi::xml_node child : element.children()) {
    if (localName(child) != "TextEquiv") continue;
    const pugi::xml_attribute index = child.attribute("index");
    all.push_back({index ? parseNumber(index.value(), page.xml().placeOf(child), "index, a whole number")
                         : static_cast<double>(all.size()),
                   child});
  }
  std::stable_sort(all.begin(), all.end(), [](const Indexed &a, const Indexed &b) { return a.index < b.index; });
  Equivalents found;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const pugi::xml_node unicode = childNamed(all[i].equivalent, "Unicode");
    const ScoredText text{textOf(unicode), confidenceOf(page, all[i].equivalent, "conf", i == 0 ? otherwise : 0)};
    if (i > 0) {
      found.alternatives.push_back(text);
      continue;
    }
    found.printed = text;
    for (const pugi::xml_node piece : unicode.children()) {
      if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata) {
        found.slots.push_back(page.xml().slotOf(piece));
      }
    }
  }
  return found;
}

void addPlace(PageLine &line, PositionRange positions, std::vector<TextSlot> slots) {
  if (!slots.empty()) line.places.push_back({positions, std::move(slots)});
}

void addWord(PageDocument &page, PageLine &line, pugi::xml_node word) {
  Equivalents whole = equivalentsOf(page, word, 0);
  page.beginWord(word, whole.printed.score);
  bool hasGlyphs = false;
  for (const pugi::xml_node child : word.children()) {
    if (localName(child) != "Glyph") continue;
    hasGlyphs = true;
    Equivalents glyph = equivalentsOf(page, child, whole.printed.score);
    addPlace(line, page.addText(child, glyph.printed, std::move(glyph.alternatives), boxOf(page, child)), glyph.slots);
  }
  if (!hasGlyphs) page.addText(word, whole.printed, std::move(whole.alternatives), std::nullopt);
  const PositionRange positions = page.endWord();
  if (positions.begin == positions.end) return;
  line.words.back().id = word.attribute("id").value();
  line.words.back().box = boxOf(page, word);
  addPlace(line, positions, whole.slots);
}

void addLine(PageDocument &page, pugi::xml_node element, const std::string &image) {
  PageLine &line = page.addLine(element);
  line.id = element.attribute("id").value();
  line.box = boxOf(page, element);
  line.image = image;
  bool hasWords = false;
  for (const pugi::xml_node child : element.children()) {
    if (localName(child) != "Word") continue;
    hasWords = true;
    addWord(page, line, child);
  }
  Equivalents whole = equivalentsOf(page, element, 0);
  if (!hasWords) page.addPlainText(element, whole.printed);
  addPlace(line, {0, line.positions.size()}, whole.slots);
}

} // namespace

void readPage(PageDocument &page) {
  std::string image;
  // A region is left after what stands in it: its own text is that of its lines.
  struct Region {
    pugi::xml_node element;
    std::size_t firstLine;
  };
  std::vector<Region> regions;
  visitElements(page.xml().root(), [&](pugi::xml_node element) {
    const std::string_view name = localName(element);
    if (name == "Page") image = pathBeside(page.xml().name(), element.attribute("imageFilename").value());
    if (name == "TextRegion") regions.push_back({element, page.numLines()});
    if (name != "TextLine") return true;
    addLine(page, element, image);
    return false;
  });
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const std::size_t end = i + 1 < regions.size() ? regions[i + 1].firstLine : page.numLines();
    const std::vector<TextSlot> slots = equivalentsOf(page, regions[i].element, 0).slots;
    if (slots.size() == 1) page.addBlock({regions[i].firstLine, end, slots.front()});
  }
}

} // namespace qoc::program
