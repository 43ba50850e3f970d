// The parser of expressions: one pass from left to right, with the open groups on a stack of its own.

#include "platform/regex/syntax.hpp"

#include <qoc/regex.h>

#include <algorithm>
#include <map>
#include <optional>

namespace qoc {

namespace {

using Kind = SyntaxNode::Kind;

constexpr std::int32_t none = -1;
constexpr std::int32_t mostRounds = 1000;

bool isDigit(Char32 code) noexcept { return code >= '0' && code <= '9'; }

bool isPunctuation(Char32 code) noexcept {
  return (code >= '!' && code <= '/') || (code >= ':' && code <= '@') || (code >= '[' && code <= '`') ||
         (code >= '{' && code <= '~');
}

std::optional<Char32> hexadecimalValue(Char32 code) noexcept {
  if (isDigit(code)) {
    return code - '0';
  }
  const Char32 lower = code | 0x20;
  if (lower >= 'a' && lower <= 'f') {
    return lower - 'a' + 10;
  }
  return std::nullopt;
}

/// The set that a letter behind a backslash stands for.
std::optional<CodeSet> classOf(Char32 letter) {
  const CodeSet digits{{'0', '9'}};
  const CodeSet wordCharacters{{'0', '9'}, {'A', 'Z'}, {'_', '_'}, {'a', 'z'}};
  const CodeSet spaces{{'\t', '\r'}, {' ', ' '}};
  switch (letter) {
    case 'd':
      return digits;
    case 'D':
      return digits.complement();
    case 'w':
      return wordCharacters;
    case 'W':
      return wordCharacters.complement();
    case 's':
      return spaces;
    case 'S':
      return spaces.complement();
    default:
      return std::nullopt;
  }
}

std::int64_t product(std::int64_t a, std::int64_t b) noexcept {
  return a != 0 && b > farLength / a ? farLength : a * b;
}
std::int64_t sum(std::int64_t a, std::int64_t b) noexcept { return std::min(a + b, farLength); }

/// Makes nodes, normalised.
class TreeBuilder {
 public:
  explicit TreeBuilder(Syntax &syntax) : syntax_(syntax) {}

  std::int32_t empty() { return add({}); }

  std::int32_t character(const CodeSet &set) {
    SyntaxNode node;
    node.kind = Kind::character;
    node.isNullable = false;
    node.set = numberOf(set);
    node.numPositions = node.minLength = node.maxLength = 1;
    return add(node);
  }

  /// A list of nodes that grows at its end; a node of the list's own kind hands over its children.
  struct List {
    std::int32_t first = none, last = none;
  };
  void append(List &list, Kind kind, std::int32_t node) {
    const bool isSpliced = at(node).kind == kind;
    const std::int32_t first = isSpliced ? at(node).firstChild : node;
    if (list.first == none) {
      list.first = first;
    } else {
      at(list.last).next = first;
    }
    list.last = isSpliced ? at(node).lastChild : node;
  }

  std::int32_t sequence(const List &parts) {
    if (parts.first == none) {
      return empty();
    }
    if (parts.first == parts.last) {
      return parts.first;
    }
    SyntaxNode node = listNode(Kind::sequence, parts);
    node.isNullable = true;
    for (std::int32_t part = parts.first; part != none; part = at(part).next) {
      node.isNullable = node.isNullable && at(part).isNullable;
      node.numPositions = sum(node.numPositions, at(part).numPositions);
      node.minLength = sum(node.minLength, at(part).minLength);
      node.maxLength = sum(node.maxLength, at(part).maxLength);
    }
    return add(node);
  }

  std::int32_t choice(const List &alternatives) {
    SyntaxNode node = listNode(Kind::choice, alternatives);
    node.isNullable = false;
    node.minLength = farLength;
    for (std::int32_t one = alternatives.first; one != none; one = at(one).next) {
      node.isNullable = node.isNullable || at(one).isNullable;
      node.numPositions = sum(node.numPositions, at(one).numPositions);
      node.minLength = std::min(node.minLength, at(one).minLength);
      node.maxLength = std::max(node.maxLength, at(one).maxLength);
    }
    return node.numPositions == 0 ? empty() : add(node);
  }

  /// At least `least` rounds of a node and at most `most`, which is negative for any number.
  std::int32_t repeat(std::int32_t round, std::int32_t least, std::int32_t most) {
    if (at(round).numPositions == 0 || most == 0) {
      return empty();
    }
    if (least == 1 && most == 1) {
      return round;
    }
    SyntaxNode node = listNode(Kind::repeat, {round, round});
    node.isUnbounded = most < 0;
    node.minRounds = least;
    node.numRounds = most < 0 ? std::max(least, 1) : most;
    if (node.numRounds == 1 && at(round).kind == Kind::repeat && at(round).numRounds == 1) {
      // A repeat of a repeat, both of one written-out round, is one repeat: its rounds are the inner one's.
      const SyntaxNode &inner = at(round);
      node.firstChild = node.lastChild = inner.firstChild;
      node.isUnbounded = node.isUnbounded || inner.isUnbounded;
      node.minRounds *= inner.minRounds;
    }
    const SyntaxNode &child = at(node.firstChild);
    node.isNullable = node.minRounds == 0 || child.isNullable;
    node.numPositions = product(node.numRounds, child.numPositions);
    node.minLength = product(node.minRounds, child.minLength);
    node.maxLength = node.isUnbounded ? farLength : product(node.numRounds, child.maxLength);
    return add(node);
  }

 private:
  SyntaxNode &at(std::int32_t node) { return syntax_.nodes[static_cast<std::size_t>(node)]; }

  SyntaxNode listNode(Kind kind, const List &children) {
    SyntaxNode node;
    node.kind = kind;
    node.firstChild = children.first;
    node.lastChild = children.last;
    return node;
  }

  std::int32_t add(const SyntaxNode &node) {
    syntax_.nodes.push_back(node);
    return static_cast<std::int32_t>(syntax_.nodes.size()) - 1;
  }

  std::int32_t numberOf(const CodeSet &set) {
    std::vector<Char32> key;
    for (const CodeSet::Range &range : set.ranges()) {
      key.push_back(range.first);
      key.push_back(range.last);
    }
    const auto [entry, isNew] = numbers_.try_emplace(std::move(key), static_cast<std::int32_t>(syntax_.sets.size()));
    if (isNew) {
      syntax_.sets.push_back(set);
    }
    return entry->second;
  }

  Syntax &syntax_;
  std::map<std::vector<Char32>, std::int32_t> numbers_;
};

class Parser {
 public:
  Parser(std::span<const Char32> source, Syntax &syntax) : source_(source), syntax_(syntax), tree_(syntax) {}

  SyntaxError parse() {
    groups_.push_back({none, {}, {}, none, false, false});
    while (place_ < source_.size() && error_.status >= 0) {
      parseNext();
    }
    if (error_.status >= 0 && groups_.size() > 1) {
      fail(QSTD_STATUS_REGEX_PARENTHESIS, static_cast<std::size_t>(groups_.back().place));
    }
    if (error_.status >= 0) {
      syntax_.root = closeAlternatives();
      if (syntax_.nodes[static_cast<std::size_t>(syntax_.root)].numPositions > QSTD_REGEX_MAX_POSITIONS) {
        fail(QSTD_STATUS_REGEX_TOO_LARGE, 0);
      }
    }
    return error_;
  }

 private:
  /// A group that is open, or, at the bottom, the whole expression.
  struct Group {
    std::int32_t place;  ///< Of its parenthesis.
    TreeBuilder::List alternatives, parts;
    std::int32_t atom;  ///< The last part, which a quantifier may still repeat.
    bool isChoice;
    bool isQuantified;  ///< The atom has its quantifier.
  };

  /// Nothing is parsed behind an error, so there is one at most.
  void fail(qsys_status status, std::size_t place) noexcept { error_ = {status, static_cast<std::int32_t>(place)}; }

  bool isAt(std::size_t place, Char32 code) const noexcept { return place < source_.size() && source_[place] == code; }

  void parseNext() {
    const std::size_t start = place_;
    switch (source_[place_]) {
      case '(':
        return openGroup();
      case ')':
        return closeGroup();
      case '|':
        ++place_;
        closeSequence();
        groups_.back().isChoice = true;
        return;
      case '*':
        ++place_;
        return quantify(start, 0, -1);
      case '+':
        ++place_;
        return quantify(start, 1, -1);
      case '?':
        ++place_;
        return quantify(start, 0, 1);
      case '{':
        return parseCounts();
      case '^':
        ++place_;
        return start == 0 ? void() : fail(QSTD_STATUS_REGEX_SYNTAX, start);
      case '$':
        ++place_;
        return place_ == source_.size() ? void() : fail(QSTD_STATUS_REGEX_SYNTAX, start);
      case '.':
        ++place_;
        return setAtom(tree_.character(CodeSet().complement()));
      case '[':
        return parseClass();
      case '\\':
        return parseEscapedAtom();
      default:
        ++place_;
        return setAtom(tree_.character({{source_[start], source_[start]}}));
    }
  }

  void setAtom(std::int32_t node) {
    flushAtom();
    groups_.back().atom = node;
    groups_.back().isQuantified = false;
  }

  void flushAtom() {
    Group &group = groups_.back();
    if (group.atom != none && syntax_.nodes[static_cast<std::size_t>(group.atom)].kind != Kind::empty) {
      tree_.append(group.parts, Kind::sequence, group.atom);
    }
    group.atom = none;
  }

  void closeSequence() {
    flushAtom();
    Group &group = groups_.back();
    tree_.append(group.alternatives, Kind::choice, tree_.sequence(group.parts));
    group.parts = {};
  }

  std::int32_t closeAlternatives() {
    closeSequence();
    const Group &group = groups_.back();
    // A single alternative that is a choice itself has handed its own over.
    return group.isChoice || group.alternatives.first != group.alternatives.last ? tree_.choice(group.alternatives)
                                                                                 : group.alternatives.first;
  }

  void openGroup() {
    const std::size_t start = place_++;
    if (isAt(place_, '?')) {
      if (!isAt(place_ + 1, ':')) {
        return fail(QSTD_STATUS_REGEX_SYNTAX, start);
      }
      place_ += 2;
    }
    flushAtom();
    groups_.push_back({static_cast<std::int32_t>(start), {}, {}, none, false, false});
  }

  void closeGroup() {
    if (groups_.size() == 1) {
      return fail(QSTD_STATUS_REGEX_PARENTHESIS, place_);
    }
    ++place_;
    const std::int32_t group = closeAlternatives();
    groups_.pop_back();
    setAtom(group);
  }

  void quantify(std::size_t start, std::int32_t least, std::int32_t most) {
    Group &group = groups_.back();
    if (group.atom == none || group.isQuantified) {
      return fail(QSTD_STATUS_REGEX_REPEAT_ALONE, start);
    }
    group.atom = tree_.repeat(group.atom, least, most);
    group.isQuantified = true;
  }

  /// A number; digits that make it larger than any that is allowed are read over. Nothing where there is none.
  std::optional<std::int32_t> parseNumber() {
    std::optional<std::int32_t> number;
    for (; place_ < source_.size() && isDigit(source_[place_]); ++place_) {
      number = std::min(number.value_or(0) * 10 + static_cast<std::int32_t>(source_[place_] - '0'), mostRounds + 1);
    }
    return number;
  }

  void parseCounts() {
    const std::size_t start = place_++;
    const std::optional<std::int32_t> least = parseNumber();
    std::optional<std::int32_t> most = least;
    bool isUnbounded = false;
    if (least && isAt(place_, ',')) {
      ++place_;
      most = parseNumber();
      isUnbounded = !most;
    }
    if (!least || !isAt(place_, '}')) {
      return fail(QSTD_STATUS_REGEX_SYNTAX, start);
    }
    ++place_;
    if (groups_.back().atom == none || groups_.back().isQuantified) {
      return fail(QSTD_STATUS_REGEX_REPEAT_ALONE, start);
    }
    if (*least > mostRounds || (most && (*most > mostRounds || *most < *least))) {
      return fail(QSTD_STATUS_REGEX_REPEAT_INVALID, start);
    }
    quantify(start, *least, isUnbounded ? -1 : *most);
  }

  /// What stands behind a backslash: a set, or a single code.
  struct Escaped {
    std::optional<CodeSet> set;
    Char32 code = 0;
  };

  Escaped parseEscape() {
    const std::size_t start = place_++;
    if (place_ == source_.size()) {
      fail(QSTD_STATUS_REGEX_ESCAPE, start);
      return {};
    }
    const Char32 code = source_[place_++];
    if (auto set = classOf(code)) {
      return {std::move(set), 0};
    }
    switch (code) {
      case 't':
        return {{}, '\t'};
      case 'n':
        return {{}, '\n'};
      case 'r':
        return {{}, '\r'};
      case 'x':
        return {{}, parseHexadecimal(start)};
      default:
        break;
    }
    if (!isPunctuation(code)) {
      fail(QSTD_STATUS_REGEX_ESCAPE, start);
    }
    return {{}, code};
  }

  Char32 parseHexadecimal(std::size_t start) noexcept {
    const bool isBraced = isAt(place_, '{');
    place_ += isBraced ? 1 : 0;
    std::uint64_t value = 0;
    std::size_t numDigits = 0;
    for (; place_ < source_.size() && (isBraced || numDigits < 2); ++place_, ++numDigits) {
      const std::optional<Char32> digit = hexadecimalValue(source_[place_]);
      if (!digit) {
        break;
      }
      value = std::min<std::uint64_t>(value * 16 + *digit, std::uint64_t{1} << 32);
    }
    const bool isComplete = isBraced ? numDigits > 0 && isAt(place_, '}') : numDigits == 2;
    if (!isComplete || value > 0xFFFFFFFF) {
      fail(QSTD_STATUS_REGEX_ESCAPE, start);
      return 0;
    }
    place_ += isBraced ? 1 : 0;
    return static_cast<Char32>(value);
  }

  void parseEscapedAtom() {
    const Escaped escaped = parseEscape();
    setAtom(tree_.character(escaped.set ? *escaped.set : CodeSet{{escaped.code, escaped.code}}));
  }

  /// A character of a class, or a set of them that an escape stands for.
  Escaped parseClassAtom() {
    if (source_[place_] == '\\') {
      return parseEscape();
    }
    return {{}, source_[place_++]};
  }

  void parseClass() {
    const std::size_t start = place_++;
    const bool isNegated = isAt(place_, '^');
    place_ += isNegated ? 1 : 0;
    if (isAt(place_, ']')) {
      return fail(QSTD_STATUS_REGEX_CLASS_EMPTY, start);
    }
    CodeSet set;
    while (error_.status >= 0 && !isAt(place_, ']')) {
      if (place_ >= source_.size()) {
        return fail(QSTD_STATUS_REGEX_CLASS_OPEN, start);
      }
      addClassItem(set);
    }
    if (error_.status >= 0) {
      ++place_;
      set.normalise();
      setAtom(tree_.character(isNegated ? set.complement() : set));
    }
  }

  /// A character, a set, or a range; behind a range a hyphen stands for itself.
  void addClassItem(CodeSet &set) {
    const std::size_t start = place_;
    const Escaped first = parseClassAtom();
    if (error_.status < 0) {
      return;
    }
    if (first.set) {
      set.add(*first.set);
      return addHyphen(set);
    }
    const bool isRange = isAt(place_, '-') && place_ + 1 < source_.size() && source_[place_ + 1] != ']';
    if (!isRange) {
      return set.add(first.code, first.code);
    }
    ++place_;
    const Escaped last = parseClassAtom();
    if (error_.status < 0) {
      return;
    }
    if (last.set) {
      set.add(first.code, first.code);
      set.add('-', '-');
      set.add(*last.set);
      return addHyphen(set);
    }
    if (last.code < first.code) {
      return fail(QSTD_STATUS_REGEX_RANGE_REVERSED, start);
    }
    set.add(first.code, last.code);
    addHyphen(set);
  }

  void addHyphen(CodeSet &set) {
    if (isAt(place_, '-')) {
      ++place_;
      set.add('-', '-');
    }
  }

  std::span<const Char32> source_;
  Syntax &syntax_;
  TreeBuilder tree_;
  std::vector<Group> groups_;
  std::size_t place_ = 0;
  SyntaxError error_;
};

}  // namespace

SyntaxError parseExpression(std::span<const Char32> source, Syntax &syntax) { return Parser(source, syntax).parse(); }

}  // namespace qoc
