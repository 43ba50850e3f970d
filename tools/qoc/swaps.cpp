#include "swaps.hpp"

#include "dictionary_file.hpp"
#include "interrupt.hpp"
#include "json_output.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace qoc::program {
namespace {

/// Interchangeable characters, ascending; each of them stands in one class.
std::vector<std::vector<Char32>> classesOf(const qoc_swapCharSet &set) {
  std::vector<std::vector<Char32>> classes;
  std::set<Char32> seen;
  CharSet group;
  for (const Char32 code : elements(set.distinctCharacters)) {
    if (seen.contains(code)) continue;
    check(qoc_swapCharSet_getGroup(&set, code, group.get()), "a group");
    check(qstd_vectorChar32_sortUnique(group.get(), 1), "a group");
    const auto members = elements(*group.get());
    seen.insert(members.begin(), members.end());
    classes.emplace_back(members.begin(), members.end());
  }
  return classes;
}

std::string textOf(const qstd_vectorChar32 &codes) {
  std::string text;
  for (const Char32 code : elements(codes)) appendUtf8(text, code);
  return text;
}

/// Swaps of one character for two work in both directions, others from the first sequence to the second.
bool isBothWays(const qoc_swapChar &swap) { return elements(swap.first).size() != elements(swap.second).size(); }

std::string describeAsJson(const qoc_swapCharSet &set) {
  JsonText object = JsonText::object();
  object.set("type", "swaps");
  object.set("version", formatVersion);
  JsonText groups = JsonText::array();
  for (const std::vector<Char32> &members : classesOf(set)) {
    JsonText list = JsonText::array();
    for (const Char32 code : members) list.push(encodeUtf8(code));
    groups.push(list);
  }
  object.set("groups", groups);
  JsonText sequences = JsonText::array();
  for (const qoc_swapChar &swap : elements(set.swaps)) {
    JsonText entry = JsonText::object();
    entry.set("first", textOf(swap.first));
    entry.set("second", textOf(swap.second));
    entry.set("bothWays", isBothWays(swap));
    sequences.push(entry);
  }
  object.set("sequences", sequences);
  return object.text() + "\n";
}

/// A code for people; the space as an open box.
std::string shown(Char32 code) { return encodeUtf8(code == U' ' ? 0x2423 : visible(code)); }

std::string shown(const qstd_vectorChar32 &codes) {
  std::string text;
  for (const Char32 code : elements(codes)) text += shown(code);
  return text;
}

std::string describeAsTable(const qoc_swapCharSet &set) {
  std::string text;
  for (const std::vector<Char32> &members : classesOf(set)) {
    std::string line;
    for (const Char32 code : members) line += (line.empty() ? "" : " ") + shown(code);
    text += line + "\n";
  }
  for (const qoc_swapChar &swap : elements(set.swaps)) {
    text += shown(swap.first) + (isBothWays(swap) ? " <-> " : " -> ") + shown(swap.second) + "\n";
  }
  return text.empty() ? "no swaps\n" : text;
}

} // namespace

int printSwaps(const Options &options) {
  const InterruptGuard guard;
  try {
    DictionaryFile file;
    readDictionaryFile(options.dictionary, file);
    const qoc_swapCharSet &set = file.dictionary->swapCharSet;
    const std::string text = options.isJson ? describeAsJson(set) : describeAsTable(set);
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
      throw Trouble(std::string("standard output: cannot write: ") + std::strerror(errno));
    }
    return 0;
  } catch (const Interrupted &) {
    std::fputs("qoc: interrupted\n", stderr);
    return 2;
  }
}

} // namespace qoc::program
