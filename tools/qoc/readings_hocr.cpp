#include "page_document.hpp"

#include "text.hpp"

#include <algorithm>
#include <map>

namespace qoc::program {
namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

/// Whether an element is of one of the classes.
bool isOf(pugi::xml_node element, std::initializer_list<std::string_view> classes) {
  std::string_view rest = element.attribute("class").value();
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find_first_of(whiteSpace), rest.size());
    if (std::find(classes.begin(), classes.end(), rest.substr(0, end)) != classes.end()) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

/// The properties of an element's title: names and the text behind them. Semicolons part them, but not within quotes.
class Title {
public:
  Title(const PageDocument &page, pugi::xml_node element) : page_(page), element_(element) {
    std::string_view rest = element.attribute("title").value();
    while (!rest.empty()) {
      std::size_t end = 0;
      for (char quote = 0; end < rest.size() && (quote != 0 || rest[end] != ';'); ++end) {
        if (rest[end] == quote) quote = 0;
        else if (quote == 0 && rest[end] == '"') quote = '"';
      }
      add(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }

  bool has(std::string_view name) const { return properties_.contains(name); }
  std::string_view get(std::string_view name) const {
    const auto found = properties_.find(name);
    return found == properties_.end() ? std::string_view() : found->second;
  }
  /// A property that is a number; `otherwise` where there is none.
  double number(std::string_view name, double otherwise) const {
    if (!has(name)) return otherwise;
    return parseNumber(get(name), page_.xml().placeOf(element_), std::string(name) + " with a number");
  }
  std::optional<Box> box(std::string_view name) const {
    if (!has(name)) return std::nullopt;
    double sides[4];
    std::string_view rest = get(name);
    for (double &side : sides) {
      const std::size_t end = std::min(rest.find_first_of(whiteSpace), rest.size());
      side = parseNumber(rest.substr(0, end), page_.xml().placeOf(element_), std::string(name) + " with four numbers");
      rest.remove_prefix(std::min(rest.find_first_not_of(whiteSpace, end), rest.size()));
    }
    return Box{sides[0], sides[1], sides[2], sides[3]};
  }

private:
  void add(std::string_view property) {
    property.remove_prefix(std::min(property.find_first_not_of(whiteSpace), property.size()));
    property = property.substr(0, property.find_last_not_of(whiteSpace) + 1);
    if (property.empty()) return;
    const std::size_t end = std::min(property.find_first_of(whiteSpace), property.size());
    std::string_view value = property.substr(end);
    value.remove_prefix(std::min(value.find_first_not_of(whiteSpace), value.size()));
    properties_.emplace(property.substr(0, end), value);
  }

  const PageDocument &page_;
  pugi::xml_node element_;
  std::map<std::string_view, std::string_view> properties_;
};

/// One character or one piece of text as printed, and what the engine would have taken instead.
struct Printed {
  pugi::xml_node element;
  std::vector<pugi::xml_node> texts;
  std::vector<ScoredText> choices;
  std::string text;
  double score = 0;
  std::optional<Box> box;
};

bool isChoiceList(pugi::xml_node element) {
  return std::string_view(element.attribute("id").value()).starts_with("lstm_choices");
}

/// A text without white space at its ends.
std::string trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
  return std::string(text.substr(0, text.find_last_not_of(whiteSpace) + 1));
}

/// The texts under an element that are printed, choices aside.
void collectTexts(pugi::xml_node element, std::vector<pugi::xml_node> &texts) {
  for (const pugi::xml_node child : element.children()) {
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
      if (!trimmed(child.value()).empty()) texts.push_back(child);
    } else if (child.type() == pugi::node_element && !isChoiceList(child)) {
      collectTexts(child, texts);
    }
  }
}

void setText(Printed &printed) {
  collectTexts(printed.element, printed.texts);
  for (const pugi::xml_node text : printed.texts) printed.text += trimmed(text.value());
}

std::vector<ScoredText> choicesOf(const PageDocument &page, pugi::xml_node list) {
  std::vector<ScoredText> choices;
  for (const pugi::xml_node child : list.children()) {
    if (child.type() != pugi::node_element) continue;
    choices.push_back({trimmed(child.text().get()), Title(page, child).number("x_confs", 0)});
  }
  return choices;
}

/// What a word holds: characters with boxes, each followed by its choices; or a text, and choices for its characters.
/// Characters without a place of their own stand in that of the word's first one.
std::vector<Printed> printedOf(const PageDocument &page, pugi::xml_node word, double wordScore) {
  std::vector<Printed> characters;
  std::vector<std::vector<ScoredText>> lists;
  visitElements(word, [&](pugi::xml_node element) {
    if (isChoiceList(element)) {
      lists.push_back(choicesOf(page, element));
      if (!characters.empty()) characters.back().choices = lists.back();
      return false;
    }
    if (!isOf(element, {"ocrx_cinfo"})) return true;
    const Title title(page, element);
    characters.push_back({element, {}, {}, {}, title.number("x_conf", wordScore),
                          title.has("x_bboxes") ? title.box("x_bboxes") : title.box("bbox")});
    setText(characters.back());
    return false;
  });
  if (!characters.empty()) return characters;
  Printed whole{word, {}, {}, {}, wordScore, std::nullopt};
  setText(whole);
  const std::vector<Char32> codes = decodeUtf8(whole.text);
  if (codes.empty() || codes.size() != lists.size()) return {whole};
  // Choices without character boxes: a list for each character, in order.
  for (std::size_t i = 0; i < codes.size(); ++i) {
    characters.push_back({word, {}, std::move(lists[i]), {}, wordScore, std::nullopt});
    appendUtf8(characters.back().text, codes[i]);
  }
  characters.front().texts = whole.texts;
  return characters;
}

void addWord(PageDocument &page, PageLine &line, pugi::xml_node element) {
  const Title title(page, element);
  const double score = title.number("x_wconf", 0);
  page.beginWord(element, score);
  const std::size_t numPlaces = line.places.size();
  for (Printed &printed : printedOf(page, element, score)) {
    double printedScore = printed.score;
    for (const ScoredText &choice : printed.choices) {
      if (choice.text == printed.text) printedScore = choice.score;
    }
    const PositionRange range =
        page.addText(printed.element, {printed.text, printedScore}, std::move(printed.choices), printed.box);
    if (printed.texts.empty() && line.places.size() > numPlaces) {
      line.places.back().positions.end = range.end; // The text of the word's first character holds this one, too.
      continue;
    }
    TextPlace place{range, {}};
    for (const pugi::xml_node text : printed.texts) place.slots.push_back(page.xml().slotOf(text));
    if (!place.slots.empty()) line.places.push_back(std::move(place));
  }
  const PositionRange positions = page.endWord();
  if (positions.begin == positions.end) return;
  line.words.back().id = element.attribute("id").value();
  line.words.back().box = title.box("bbox");
}

/// A line whose text stands in it without words.
void addPlainLine(PageDocument &page, PageLine &line, pugi::xml_node element, double score) {
  std::vector<pugi::xml_node> texts;
  collectTexts(element, texts);
  for (const pugi::xml_node text : texts) {
    const std::size_t begin = line.positions.size();
    page.addPlainText(text, {(begin > 0 ? " " : "") + trimmed(text.value()), score});
    const std::size_t first = begin > 0 ? begin + 1 : begin;
    line.places.push_back({{first, line.positions.size()}, {page.xml().slotOf(text)}});
  }
}

void addLine(PageDocument &page, pugi::xml_node element, const std::string &image) {
  const Title title(page, element);
  PageLine &line = page.addLine(element);
  line.id = element.attribute("id").value();
  line.box = title.box("bbox");
  line.image = image;
  bool hasWords = false;
  visitElements(element, [&](pugi::xml_node child) {
    if (!isOf(child, {"ocrx_word", "ocr_word"})) return true;
    hasWords = true;
    addWord(page, line, child);
    return false;
  });
  if (!hasWords) addPlainLine(page, line, element, title.number("x_wconf", 0));
}

} // namespace

void readHocr(PageDocument &page) {
  std::string image;
  visitElements(page.xml().root(), [&](pugi::xml_node element) {
    if (isOf(element, {"ocr_page"})) {
      std::string_view name = Title(page, element).get("image");
      if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
      image = pathBeside(page.xml().name(), std::string(name));
    }
    if (!isOf(element, {"ocr_line", "ocrx_line", "ocr_header", "ocr_caption", "ocr_textfloat"})) return true;
    addLine(page, element, image);
    return false;
  });
}

} // namespace qoc::program
