#include "dictionary_file.hpp"
#include "interrupt.hpp"
#include "picture.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <string>
#include <vector>

namespace qoc::program {
namespace {

struct CharacterClass {
  const char *name;
  std::uint32_t bits;
};

constexpr CharacterClass classes[] = {
    {"upper", QOC_FIELDING_UPPER},
    {"lower", QOC_FIELDING_LOWER},
    {"digit", QOC_FIELDING_DIGIT},
    {"space", QOC_FIELDING_SPACE},
    {"nonspace", QOC_FIELDING_NONSPACE},
    {"any", QOC_FIELDING_SPACE | QOC_FIELDING_NONSPACE},
};

std::uint32_t readClass(const JsonNode &node) {
  std::string names;
  for (const CharacterClass &known : classes) {
    names += std::string(names.empty() ? "a class, one of \"" : ", \"") + known.name + "\"";
  }
  const std::string &name = node.string(names);
  const auto *found = std::find_if(std::begin(classes), std::end(classes),
                                   [&](const CharacterClass &known) { return name == known.name; });
  if (found == std::end(classes)) node.failExpected(names);
  return found->bits;
}

std::uint32_t readClasses(const JsonNode &node) {
  if (node.isString()) return readClass(node);
  const std::size_t n = node.requireArray("a class or an array of classes");
  if (n == 0) node.fail("the array is empty; expected at least one class");
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      if (node.element(i).scalar() == node.element(k).scalar()) node.element(i).fail("the class stands there already");
    }
    bits |= readClass(node.element(i));
  }
  return bits;
}

std::vector<Char32> readCharacters(const JsonNode &node) {
  std::vector<Char32> codes = decodeUtf8(node.string("the characters of the position, as a string"));
  if (codes.empty()) node.fail("the list is empty; expected at least one character");
  for (std::size_t i = 0; i < codes.size(); ++i) {
    requireFieldingCharacter(codes[i], node, "character " + std::to_string(i + 1));
  }
  std::vector<Char32> sorted = codes;
  std::sort(sorted.begin(), sorted.end());
  const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
  if (twice != sorted.end()) {
    node.fail(qoc_status_getText(QOC_STATUS_CHARACTER_DUPLICATE) + (" (\"" + encodeUtf8(*twice) + "\")") +
              "; expected each once");
  }
  return codes;
}

PositionShape readPosition(const JsonNode &node) {
  if (!node.isObject()) {
    if (!node.isString() && !node.isArray()) {
      node.failExpected("a position, as a class, an array of classes, or an object with \"classes\" or \"characters\"");
    }
    return {readClasses(node), {}};
  }
  node.requireObject({"classes", "characters"});
  if (!node.has("classes") && !node.has("characters")) {
    node.fail("the position admits nothing; expected \"classes\" or \"characters\" or both");
  }
  PositionShape shape;
  if (node.has("classes")) shape.bits = readClasses(node.member("classes"));
  if (node.has("characters")) shape.characters = readCharacters(node.member("characters"));
  return shape;
}

void readLine(const JsonNode &node, qoc_ocrDictionaryLineFielding &line) {
  const bool isPicture = node.isString();
  std::vector<PositionShape> shapes;
  if (isPicture) {
    shapes = readPicture(node);
  } else {
    const std::size_t n = node.requireArray("a line, as a picture or an array of positions");
    if (n == 0) node.fail("the line has no position; expected at least one");
    for (std::size_t i = 0; i < n; ++i) {
      shapes.emplace_back();
      node.attempt([&] { shapes.back() = readPosition(node.element(i)); });
    }
  }
  PositionFielding position;
  CharSet characters;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    const std::string where = (isPicture ? node : node.element(i)).where();
    const std::vector<Char32> &codes = shapes[i].characters;
    check(qstd_vectorChar32_assignElements(characters.get(), codes.data(), static_cast<std::int32_t>(codes.size())),
          where);
    check(qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(position.get(), characters.get(),
                                                                                 shapes[i].bits),
          where);
    check(qstd_vector_qoc_ocrDictionaryPositionFielding_pushBack(&line.positions, position.get()), where);
  }
}

} // namespace

void readFieldings(const JsonNode &node, DictionaryFile &into) {
  const std::size_t n = node.requireArray("an array of lines");
  for (std::size_t i = 0; i < n; ++i) {
    checkInterrupt();
    node.attempt([&] {
      LineFielding line;
      readLine(node.element(i), *line.get());
      check(qstd_vector_qoc_ocrDictionaryLineFielding_pushBack(&into.dictionary->fieldings, line.get()),
            node.element(i).where());
    });
  }
}

} // namespace qoc::program
