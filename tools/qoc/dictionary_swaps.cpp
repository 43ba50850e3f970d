#include "dictionary_file.hpp"
#include "interrupt.hpp"
#include "resolving.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace qoc::program {
namespace {

/// The equivalence table has an entry for every pair of characters.
constexpr std::size_t maxDistinctCharacters = 10000;

struct Sequence {
  const char *first, *second;
};

/// What readers usually confuse, under a name.
struct ReadySet {
  std::string_view name;
  std::span<const char *const> groups;
  std::span<const Sequence> sequences;
};

constexpr const char *digitsAndLetters[] = {"0ODQ", "1Il", "5S", "8B", "2Z", "6G"};
constexpr const char *lookAlikes[] = {"0OoQD", "1Il|i!", "5Ss$", "8B&", "2Zz", "6Gb", "cC",
                                      "xX",    "vV",     "wW",   "uU",  "kK",  "pP",  "jJ"};
constexpr const char *slashedZeros[] = {"0689"};
constexpr Sequence ligatures[] = {{"rn", "m"}, {"cl", "d"}, {"vv", "w"}, {"li", "h"}};
constexpr std::string_view learntSet = "ocr-learnt"; // Its groups are the pairs of learntConfusions().
constexpr ReadySet readySets[] = {
    {"ocr-digits-letters", digitsAndLetters, {}},
    {"ocr-look-alikes", lookAlikes, {}},
    {"ocr-slashed-zeros", slashedZeros, {}},
    {"ocr-ligatures", {}, ligatures},
    {learntSet, {}, {}},
};

/// Collects groups and sequences, and refuses what a swap set cannot hold, or what would do nothing there.
class SwapReader {
public:
  /// @param isOnly7Bits refuse other characters
  explicit SwapReader(bool isOnly7Bits) : isOnly7Bits_(isOnly7Bits) {}

  void readSet(const JsonNode &node) {
    std::string names;
    for (const ReadySet &set : readySets) names += (names.empty() ? "" : " or ") + quoted(std::string(set.name));
    const std::string &name = node.string(names);
    const auto *set = std::find_if(std::begin(readySets), std::end(readySets),
                                   [&](const ReadySet &candidate) { return name == candidate.name; });
    if (set == std::end(readySets)) node.failExpected(names);
    for (const char *group : set->groups) addGroup(decodeUtf8(group), node);
    for (const Sequence &sequence : set->sequences) addSequence(sequence.first, sequence.second, node);
    if (name != learntSet) return;
    usesLearnt_ = true;
    for (const LearntConfusion &learnt : learntConfusions()) {
      if (learnt.meant != QOC_CHAR_EMPTY) addGroup({learnt.read, learnt.meant}, node);
    }
  }
  /// Whether the set of what was learnt is among them.
  bool usesLearnt() const { return usesLearnt_; }

  void readGroup(const JsonNode &node) {
    const std::string &text = node.string("a group of interchangeable characters, as a string");
    std::vector<Char32> codes = decodeUtf8(text);
    requireAllowed(codes, node, "the group " + quoted(text));
    std::vector<Char32> sorted = codes;
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    qsys_status fault = QSYS_STATUS_OK;
    if (codes.empty()) fault = QOC_STATUS_GROUP_EMPTY;
    else if (codes.size() == 1) fault = QOC_STATUS_GROUP_SINGLE;
    else if (twice != sorted.end()) fault = QOC_STATUS_GROUP_DUPLICATE;
    if (fault < 0) {
      node.fail("the group " + quoted(text) + " is refused: " + qoc_status_getText(fault) +
                (fault == QOC_STATUS_GROUP_DUPLICATE ? " (" + quoted(encodeUtf8(*twice)) + ")" : "") +
                "; expected two characters or more, each once");
    }
    addGroup(std::move(codes), node);
  }

  void readSequence(const JsonNode &node) {
    const std::string shape = "a swap of sequences, as [\"FIRST\", \"SECOND\"]";
    if (node.requireArray(shape) != 2) node.failExpected(shape + " with nothing more and nothing less");
    const std::string &first = node.element(0).string("the first sequence, as a string");
    const std::string &second = node.element(1).string("the second sequence, as a string");
    addSequence(first, second, node);
  }

  void moveInto(qoc_swapCharSet *set, const std::string &where) {
    // Swap characters alone cannot say every division into groups. So the sequences are set in a set of their own, and
    // come to the groups from there.
    SwapCharSet sequences;
    check(qoc_swapCharSet_setSwapCharacters(sequences.get(), swaps_.get()), where);
    check(qoc_swapCharSet_setEquiv(set, groups_.get()), where);
    check(qstd_vector_qoc_swapChar_assign(&set->swaps, &sequences->swaps), where);
    check(qoc_stringExpand__assign(set->expansion, sequences->expansion), where);
  }

private:
  void requireAllowed(const std::vector<Char32> &codes, const JsonNode &node, const std::string &what) const {
    for (const Char32 code : codes) {
      const std::string refusal = whyRefused(code);
      if (!refusal.empty()) node.fail(what + " is refused: " + refusal);
      if (isOnly7Bits_ && code > max7Bits) {
        node.fail(what + " is refused: " + quoted(encodeUtf8(code)) +
                  " lies beyond 7 bits; where the dictionary has fieldings, expected characters up to U+007F");
      }
    }
  }

  void addGroup(std::vector<Char32> codes, const JsonNode &node) {
    characters_.insert(codes.begin(), codes.end());
    if (characters_.size() > maxDistinctCharacters) {
      node.fail("more than " + std::to_string(maxDistinctCharacters) +
                " different characters stand in groups; expected fewer");
    }
    CharSet group;
    check(qstd_vectorChar32_assignElements(group.get(), codes.data(), static_cast<std::int32_t>(codes.size())),
          node.where());
    check(qstd_vector_vectorChar32_pushBack(groups_.get(), group.get()), node.where());
  }

  void addSequence(const std::string &first, const std::string &second, const JsonNode &node) {
    const std::string what = "the swap of " + quoted(first) + " and " + quoted(second);
    const std::vector<Char32> firstCodes = decodeUtf8(first), secondCodes = decodeUtf8(second);
    requireAllowed(firstCodes, node, what);
    requireAllowed(secondCodes, node, what);
    if (firstCodes.size() == 1 && secondCodes.size() == 1 && firstCodes != secondCodes) {
      node.fail(what + " is refused: it swaps single characters; expected those among \"groups\"");
    }
    DictionaryString firstString, secondString;
    setString(firstCodes, firstString, node);
    setString(secondCodes, secondString, node);
    SwapChar swap;
    const qsys_status status = qoc_swapChar_setStrings(swap.get(), firstString.get(), secondString.get());
    if (status == QOC_STATUS_STRING_EMPTY || status == QOC_STATUS_SWAP_CONTAINED) {
      node.fail(what + " is refused: " + qoc_status_getText(status));
    }
    check(status, node.where());
    if (firstCodes.size() > 2 || secondCodes.size() > 2) {
      node.fail(what + " is refused: a sequence of more than two characters has no effect; expected one or two");
    }
    // A swap that stands there already would only double the work; one for two characters works both ways.
    const bool isBothWays = firstCodes.size() != secondCodes.size();
    if (sequences_.contains({first, second}) || (isBothWays && sequences_.contains({second, first}))) return;
    sequences_.emplace(first, second);
    check(qstd_vector_qoc_swapChar_pushBack(swaps_.get(), swap.get()), node.where());
  }

  static void setString(const std::vector<Char32> &codes, DictionaryString &string, const JsonNode &node) {
    std::vector<qoc_ocrDictionaryChar> characters;
    characters.reserve(codes.size());
    for (const Char32 code : codes) characters.push_back({code, 0});
    check(qstd_vector_qoc_ocrDictionaryChar_assignElements(&string->characters, characters.data(),
                                                           static_cast<std::int32_t>(characters.size())),
          node.where());
  }

  bool isOnly7Bits_, usesLearnt_ = false;
  CharSets groups_;
  SwapChars swaps_;
  std::set<Char32> characters_;
  std::set<std::pair<std::string, std::string>> sequences_;
};

} // namespace

void readSwaps(const JsonNode &node, DictionaryFile &into) {
  node.requireObject({"sets", "groups", "sequences"});
  SwapReader reader(!into.lines().empty());
  const auto readList = [&](const char *key, const char *what, void (SwapReader::*read)(const JsonNode &)) {
    const JsonNode list = node.member(key);
    const std::size_t n = list.requireArray(what);
    for (std::size_t i = 0; i < n; ++i) {
      checkInterrupt();
      node.attempt([&] { (reader.*read)(list.element(i)); });
    }
  };
  const auto readEach = [&](const char *key, const char *what, void (SwapReader::*read)(const JsonNode &)) {
    if (node.has(key)) node.attempt([&] { readList(key, what, read); });
  };
  readEach("sets", "an array of names of ready sets", &SwapReader::readSet);
  readEach("groups", "an array of groups of interchangeable characters", &SwapReader::readGroup);
  readEach("sequences", "an array of swaps of sequences", &SwapReader::readSequence);
  reader.moveInto(&into.dictionary->swapCharSet, node.where());
  into.usesLearnt = reader.usesLearnt();
}

} // namespace qoc::program
