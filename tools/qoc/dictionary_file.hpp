#pragma once

/// @file The dictionary file: JSON that holds what readings may be, and how they are run.

#include "json_input.hpp"
#include "objects.hpp"

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qoc::program {

/// What a dictionary file gives.
struct DictionaryFile {
  Dictionary dictionary;
  RunParams params;                ///< The defaults, and over them what the file says.
  FitParams fitParams;             ///< The same for the fielding run.
  ResolverRules rules;             ///< How one text is chosen: the program's own rules, and over them what the file says.
  Resolver resolver;               ///< Made of all of it, once it is complete.
  bool usesLearnt = false;         ///< Whether the ready set of what was learnt is among the swaps.
  std::string resolving;           ///< The section of that name as it stands, as JSON; empty where there is none.
  std::string name;                ///< What messages call the file.
  std::filesystem::path directory; ///< Where the file lies; paths in it start there.

  std::span<const qoc_ocrDictionaryLineFielding> lines() const { return elements(dictionary->fieldings); }
};

/// The keys of the file's outermost object, and what reads each: its own file, and one line here. They are read in
/// this order, whatever theirs is in the file.
#define QOC_DICTIONARY_SECTIONS(X)                                                                                     \
  X("lexicons", readLexicons)                                                                                          \
  X("fieldings", readFieldings)                                                                                        \
  X("regularExpressions", readRegularExpressions)                                                                      \
  X("shapes", readShapes)                                                                                              \
  X("swaps", readSwaps)                                                                                                \
  X("parameters", readParameters)                                                                                      \
  X("fitParameters", readFitParameters)                                                                                \
  X("resolving", readResolving)

#define QOC_DECLARE_DICTIONARY_SECTION(key, read) void read(const JsonNode &node, DictionaryFile &into);
QOC_DICTIONARY_SECTIONS(QOC_DECLARE_DICTIONARY_SECTION)
#undef QOC_DECLARE_DICTIONARY_SECTION

/// Reads a dictionary file ("-" is standard input). Throws Trouble that names the file, and the line and
/// column or the JSON path.
/// @param faults where not null, takes the messages of all faults of a file that is JSON, instead of throwing the first;
/// what is read then is of no use if there are any
void readDictionaryFile(const std::string &path, DictionaryFile &into, std::vector<std::string> *faults = nullptr);

/// The same from the text of such a file.
/// @param name what messages call it
/// @param directory where relative paths in it start
void readDictionaryText(std::string_view text, const std::string &name, const std::filesystem::path &directory,
                        DictionaryFile &into, std::vector<std::string> *faults = nullptr);

/// Throws Trouble where the file has nothing that a reading could be matched with.
void requireEntries(const DictionaryFile &file);

} // namespace qoc::program
