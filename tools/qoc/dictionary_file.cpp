#include "dictionary_file.hpp"

#include "fit_parameters.hpp"
#include "line_reader.hpp"
#include "resolving.hpp"
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

void readParameters(const JsonNode &node, DictionaryFile &into) {
  readParameterObject(node, runParameters, *into.params.get());
}

void readFitParameters(const JsonNode &node, DictionaryFile &into) {
  readParameterObject(node, fitParameters, *into.fitParams.get());
}

void readDictionaryFile(const std::string &path, DictionaryFile &into, std::vector<std::string> *faults) {
  const bool isStandardInput = path == "-";
  readDictionaryText(readWhole(path), isStandardInput ? "standard input" : path,
                     isStandardInput ? std::filesystem::path() : std::filesystem::path(path).parent_path(), into, faults);
}

void readDictionaryText(std::string_view text, const std::string &name, const std::filesystem::path &directory,
                        DictionaryFile &into, std::vector<std::string> *faults) {
  into.name = name;
  into.directory = directory;
  const JsonDocument document = parseJson(text, into.name);
  const JsonNode root(document, into.name, faults);
#define QOC_DICTIONARY_KEY(key, read) key,
  root.attempt([&] { root.requireObject({QOC_DICTIONARY_SECTIONS(QOC_DICTIONARY_KEY)}); });
#undef QOC_DICTIONARY_KEY
  into.rules->maxTexts = 1;
  for (const Section &section : sections) {
    if (root.has(section.key)) root.attempt([&] { section.read(root.member(section.key), into); });
  }
  addReadyConfusions(into.usesLearnt, *into.rules.get(), into.name);
}

void requireEntries(const DictionaryFile &file) {
  qsys_bool isEmpty = 0;
  check(qoc_ocrDictionary_getIsEmpty(file.dictionary.get(), &isEmpty), file.name);
  if (isEmpty != 0) {
    throw Trouble(file.name + ": the dictionary has no entries; expected at least one in \"lexicons\", "
                              "\"fieldings\", \"regularExpressions\" or \"shapes\"");
  }
}

} // namespace qoc::program
