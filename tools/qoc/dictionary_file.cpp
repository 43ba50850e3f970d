#include "dictionary_file.hpp"

#include "line_reader.hpp"
#include "run_parameters.hpp"
#include "trouble.hpp"

namespace qoc::program {
namespace {

struct Section {
  const char *key;
  void (*read)(const JsonNode &node, DictionaryFile &into);
};

#define QOC_DICTIONARY_SECTION(key, read) {key, read},
constexpr Section sections[] = {QOC_DICTIONARY_SECTIONS(QOC_DICTIONARY_SECTION)};
#undef QOC_DICTIONARY_SECTION

} // namespace

void readParameters(const JsonNode &node, DictionaryFile &into) { readRunParameters(node, *into.params.get()); }

void readDictionaryFile(const std::string &path, DictionaryFile &into) {
  if (path == "-") readDictionaryText(readWhole(path), "standard input", {}, into);
  else readDictionaryText(readWhole(path), path, std::filesystem::path(path).parent_path(), into);
}

void readDictionaryText(std::string_view text, const std::string &name, const std::filesystem::path &directory,
                        DictionaryFile &into) {
  into.directory = directory;
  const Json document = parseJson(text, name);
  const JsonNode root(document, name);
#define QOC_DICTIONARY_KEY(key, read) key,
  root.requireObject({QOC_DICTIONARY_SECTIONS(QOC_DICTIONARY_KEY)});
#undef QOC_DICTIONARY_KEY
  for (const Section &section : sections) {
    if (root.has(section.key)) section.read(root.member(section.key), into);
  }
  qsys_bool isEmpty = 0;
  check(qoc_ocrDictionary_getIsEmpty(into.dictionary.get(), &isEmpty), name);
  if (isEmpty) root.fail("the dictionary has no entries; expected \"lexicons\" with at least one word list");
}

} // namespace qoc::program
