#include "explanation.hpp"

#include "marks.hpp"
#include "text.hpp"
#include "xml_document.hpp"

#include <algorithm>
#include <set>

namespace qoc::program {
namespace {

constexpr const char *absent = "\u00B7"; ///< Stands where one of the two rows has nothing.
constexpr std::size_t lineWidth = 72;

/// A score as it came, or its hundredths.
std::string scoreText(const Candidate &candidate) { return candidate.givenScore.dump(); }

/// Lays out one result. It walks the positions that were matched, which are the reading's own or, where swaps have
/// changed their number, those of the reading after swaps.
class Layout {
public:
  Layout(const Reading &reading, const qoc_ocrDictionaryResult &result, const std::vector<Char32> &text)
      : reading_(reading), result_(result), text_(text), matched_(elements(result.givenSwap.positions)),
        indices_(elements(result.inputIndices)) {
    if (matched_.empty()) matched_ = elements(result.given.positions); // Without swaps it need not be there.
    const std::span<const std::int32_t> deleted = elements(result.deleted);
    deleted_.insert(deleted.begin(), deleted.end());
  }

  Explanation build() {
    const std::size_t suffix = matched_.size() - std::min(matched_.size(), countOf(result_.numIgnoredSuffixCharacters));
    std::size_t v = 0;
    for (; v < std::min(suffix, countOf(result_.numIgnoredPrefixCharacters)); ++v) addLeftOut(v, true);
    const std::span<const qoc_ocrDictionaryPositionStatus> statuses = elements(result_.resultStringStatus);
    for (std::size_t r = 0; r < statuses.size(); ++r) {
      const bool isInserted = statuses[r] == qoc_ocrDictionaryPositionStatus_inserted;
      for (; !isInserted && v < suffix && isDeleted(v); ++v) addLeftOut(v, false);
      add(isInserted || v >= suffix ? noPosition : v++, r, statuses[r]);
    }
    for (; v < suffix; ++v) addLeftOut(v, !isDeleted(v));
    for (; v < matched_.size(); ++v) addLeftOut(v, true);
    return std::move(explanation_);
  }

private:
  static constexpr auto noPosition = static_cast<std::size_t>(-1);
  static std::size_t countOf(std::int32_t n) { return static_cast<std::size_t>(std::max(n, 0)); }

  bool isDeleted(std::size_t v) const { return deleted_.contains(static_cast<std::int32_t>(v)); }

  /// The reading's position of a matched one.
  std::size_t inputOf(std::size_t v) const {
    if (v >= matched_.size()) return reading_.positions.size();
    const std::size_t index = indices_.size() == matched_.size() ? countOf(indices_[v]) : v;
    return std::min(index, reading_.positions.size());
  }

  void setRead(ExplanationColumn &column, std::size_t v) const {
    column.begin = inputOf(v);
    const bool isSecondOfOne = v > 0 && inputOf(v - 1) == column.begin; // One character that became two.
    const std::size_t next = inputOf(v + 1);
    column.end = isSecondOfOne ? column.begin : std::max(next, std::min(column.begin + 1, reading_.positions.size()));
    for (std::size_t p = column.begin; p < column.end; ++p) {
      column.read += encodeUtf8(reading_.positions[p].front().code);
    }
  }

  void addLeftOut(std::size_t v, bool isOutside) {
    ExplanationColumn column;
    setRead(column, v);
    const std::span<const qoc_ocrDictionaryChar> candidates = elements(matched_[v].candidates);
    const bool isLoneSpace = candidates.size() == 1 && candidates.front().code == ' ';
    const bool isIgnored = isOutside || (result_.ignoreDeletedSpaces != 0 && isLoneSpace);
    column.status = isIgnored ? qoc_ocrDictionaryPositionStatus_deletedIgnored : qoc_ocrDictionaryPositionStatus_deleted;
    column.meaning = isOutside ? "stands outside of what was matched" : isIgnored ? "a space, left out" : "left out";
    explanation_.columns.push_back(std::move(column));
  }

  void add(std::size_t v, std::size_t r, qoc_ocrDictionaryPositionStatus status) {
    ExplanationColumn column;
    column.status = status;
    if (v != noPosition) setRead(column, v);
    if (r < text_.size() && text_[r] != QOC_CHAR_EMPTY) column.character = encodeUtf8(text_[r]);
    column.meaning = meaningOf(column, v, r);
    if (v == noPosition && !explanation_.columns.empty()) column.begin = column.end = explanation_.columns.back().end;
    explanation_.columns.push_back(std::move(column));
  }

  std::string meaningOf(const ExplanationColumn &column, std::size_t v, std::size_t r) const {
    const bool isBeyond = column.begin == column.end && column.character.empty();
    if (isBeyond) return "a further status of the library's, beyond the reading and the text";
    const std::string is = column.character.empty() ? "a character left open" : quoted(column.character);
    switch (column.status) {
    case qoc_ocrDictionaryPositionStatus_primary: return "the first candidate";
    case qoc_ocrDictionaryPositionStatus_primarySwap:
      return "the first candidate, " + quoted(column.read) + ", may stand for " + is;
    case qoc_ocrDictionaryPositionStatus_secondary: return secondaryMeaning(column, v, r);
    case qoc_ocrDictionaryPositionStatus_secondarySwap:
      return "another candidate than " + quoted(column.read) + " may stand for " + is;
    case qoc_ocrDictionaryPositionStatus_substituted: return quoted(column.read) + " replaced by " + is;
    case qoc_ocrDictionaryPositionStatus_substitutedSpace: return quoted(column.read) + " replaced by a space";
    case qoc_ocrDictionaryPositionStatus_inserted: return is + " is missing in the reading";
    default: return "nothing fits";
    }
  }

  std::string secondaryMeaning(const ExplanationColumn &column, std::size_t v, std::size_t r) const {
    if (v < matched_.size()) {
      const std::span<const qoc_ocrDictionaryChar> candidates = elements(matched_[v].candidates);
      if (candidates.size() > 1 && candidates.front().code == QOC_CHAR_EMPTY) {
        const std::size_t first = inputOf(v);
        const std::string from = column.read.empty() && first < reading_.positions.size()
                                     ? encodeUtf8(reading_.positions[first].front().code)
                                     : column.read;
        return quoted(from) + " swapped for more or fewer characters, among them " + quoted(column.character);
      }
    }
    if (column.begin < column.end && r < text_.size()) {
      const std::vector<Candidate> &candidates = reading_.positions[column.begin];
      for (std::size_t k = 1; k < candidates.size(); ++k) {
        if (candidates[k].code != text_[r]) continue;
        return "candidate " + std::to_string(k + 1) + ", score " + scoreText(candidates[k]) + "; printed was " +
               quoted(column.read) + ", score " + scoreText(candidates.front());
      }
      const std::string one = candidates.size() == 1 ? quoted(column.read) : quoted(column.read) + " or another candidate";
      return "no candidate is " + quoted(column.character) + ", but " + one + " may stand for it";
    }
    return "another candidate than " + quoted(column.read);
  }

  const Reading &reading_;
  const qoc_ocrDictionaryResult &result_;
  const std::vector<Char32> &text_;
  std::span<const qoc_ocrDictionaryCharMulti> matched_;
  std::span<const std::int32_t> indices_;
  std::set<std::int32_t> deleted_;
  Explanation explanation_;
};

/// A text's characters, each in a form that does not command a terminal; `absent` where it has none.
std::vector<std::string> shownCharacters(const std::string &text, std::size_t width) {
  std::vector<std::string> characters;
  for (const Char32 code : decodeUtf8(text)) characters.push_back(encodeUtf8(visible(code)));
  while (characters.size() < width) characters.emplace_back(absent);
  return characters;
}

std::string colored(const std::string &text, const Mark &mark, bool isColored) {
  return isColored ? std::string("\x1b[") + mark.color + "m" + text + "\x1b[0m" : text;
}

} // namespace

Explanation explainResult(const Reading &reading, const qoc_ocrDictionaryResult &result,
                          const std::vector<Char32> &text) {
  return Layout(reading, result, text).build();
}

Explanation explainText(const Reading &reading, const qoc_ocrDictionaryResolvedText &text) {
  Explanation explanation;
  const std::span<const qoc_ocrDictionaryChar> characters = elements(text.text.characters);
  const std::span<const std::int32_t> inputs = elements(text.inputIndices), chosen = elements(text.candidateIndices);
  const auto readAt = [&](std::size_t position) { return encodeUtf8(reading.positions[position].front().code); };
  std::size_t next = 0; // The first position that has not been laid out.
  const auto leaveOut = [&](std::size_t end) {
    for (; next < std::min(end, reading.positions.size()); ++next) {
      explanation.columns.push_back(
          {next, next + 1, readAt(next), "", qoc_ocrDictionaryPositionStatus_deleted, "left out"});
    }
  };
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const std::string is = encodeUtf8(characters[i].code);
    const bool hasPosition = i < inputs.size() && inputs[i] >= 0;
    if (hasPosition) leaveOut(static_cast<std::size_t>(inputs[i]));
    if (!hasPosition || static_cast<std::size_t>(inputs[i]) != next || next >= reading.positions.size()) {
      explanation.columns.push_back(
          {next, next, "", is, qoc_ocrDictionaryPositionStatus_inserted, quoted(is) + " is missing in the reading"});
      continue;
    }
    const std::vector<Candidate> &candidates = reading.positions[next];
    const auto index = i < chosen.size() ? chosen[i] : -1;
    const auto found = std::find_if(candidates.begin(), candidates.end(), [&](const Candidate &candidate) {
      return candidate.code == characters[i].code;
    });
    const bool isListed = index >= 0, isItself = isListed && found != candidates.end();
    const bool isFirst = isItself ? found == candidates.begin() : index == 0;
    const qoc_ocrDictionaryPositionStatus status =
        !isListed  ? qoc_ocrDictionaryPositionStatus_substituted
        : isItself ? (isFirst ? qoc_ocrDictionaryPositionStatus_primary : qoc_ocrDictionaryPositionStatus_secondary)
                   : (isFirst ? qoc_ocrDictionaryPositionStatus_primarySwap
                              : qoc_ocrDictionaryPositionStatus_secondarySwap);
    const std::string meaning = status == qoc_ocrDictionaryPositionStatus_primary ? "the first candidate"
                                : isItself ? "candidate " + std::to_string(found - candidates.begin() + 1) + "; printed was " + quoted(readAt(next))
                                           : quoted(readAt(next)) + " stands for " + quoted(is);
    explanation.columns.push_back({next, next + 1, readAt(next), is, status, meaning});
    ++next;
  }
  leaveOut(reading.positions.size());
  return explanation;
}

Explanation explainUnmatched(const Reading &reading) {
  Explanation explanation;
  for (std::size_t i = 0; i < reading.positions.size(); ++i) {
    explanation.columns.push_back({i, i + 1, encodeUtf8(reading.positions[i].front().code), "",
                                   qoc_ocrDictionaryPositionStatus_noMatch, "the reading has no result"});
  }
  return explanation;
}

std::string explanationAsText(const Explanation &explanation, const std::string &indent, bool isColored) {
  std::string text, above, marksLine, below;
  std::size_t width = 0;
  const auto endLine = [&] {
    if (width > 0) {
      text += indent + "read  " + above + "\n" + indent + "      " + marksLine + "\n" + indent + "is    " + below + "\n";
    }
    above = marksLine = below = "";
    width = 0;
  };
  for (const ExplanationColumn &column : explanation.columns) {
    const std::size_t n = std::max({std::size_t{1}, decodeUtf8(column.read).size(), decodeUtf8(column.character).size()});
    if (width + n > lineWidth) endLine();
    const Mark &mark = markOf(column.status);
    std::string top, bottom;
    for (const std::string &character : shownCharacters(column.read, n)) top += character;
    for (const std::string &character : shownCharacters(column.character, n)) bottom += character;
    above += colored(top, mark, isColored);
    marksLine += colored(std::string(n, mark.mark), mark, isColored);
    below += colored(bottom, mark, isColored);
    width += n;
  }
  endLine();
  return text;
}

std::string meaningsAsText(const Explanation &explanation, const std::string &indent, bool isColored) {
  std::string text;
  std::size_t numPrimary = 0;
  for (const ExplanationColumn &column : explanation.columns) {
    if (column.status == qoc_ocrDictionaryPositionStatus_primary) {
      ++numPrimary;
      continue;
    }
    const Mark &mark = markOf(column.status);
    const std::string place = column.begin < column.end ? std::to_string(column.begin + 1) : "-";
    text += indent + std::string(place.size() < 4 ? 4 - place.size() : 0, ' ') + place + "  " +
            colored(std::string(1, mark.mark), mark, isColored) + "  " + mark.name + ": " + column.meaning + "\n";
  }
  if (numPrimary == 0) return text;
  return text + indent + "      " + colored(".", marks[0], isColored) + "  primary: the first candidate, at " +
         std::to_string(numPrimary) + (numPrimary == 1 ? " position\n" : " positions\n");
}

JsonText explanationAsJson(const Explanation &explanation) {
  JsonText list = JsonText::array();
  for (const ExplanationColumn &column : explanation.columns) {
    const Mark &mark = markOf(column.status);
    JsonText entry = JsonText::object();
    entry.set("position", column.begin < column.end ? JsonText(column.begin) : nullptr);
    entry.set("read", column.begin < column.end ? JsonText(column.read) : nullptr);
    entry.set("is", column.character.empty() ? nullptr : JsonText(column.character));
    entry.set("status", mark.name);
    entry.set("mark", std::string(1, mark.mark));
    entry.set("meaning", column.meaning);
    list.push(entry);
  }
  return list;
}

std::string explanationAsHtml(const Explanation &explanation, const Reading &reading) {
  std::string html;
  const auto shown = [](const std::string &text) {
    std::string characters;
    for (const std::string &character : shownCharacters(text, 1)) characters += character == " " ? "\u00A0" : character;
    return escapeXml(characters);
  };
  for (const ExplanationColumn &column : explanation.columns) {
    std::string candidates;
    for (std::size_t p = column.begin; p < column.end; ++p) {
      for (const Candidate &candidate : reading.positions[p]) {
        candidates += (candidates.empty() ? "" : " ") + encodeUtf8(visible(candidate.code)) + scoreText(candidate);
      }
    }
    html += "<i class=s" + std::to_string(column.status);
    if (!candidates.empty()) html += " data-c=\"" + escapeXml(candidates) + "\"";
    if (column.status != qoc_ocrDictionaryPositionStatus_primary) html += " data-m=\"" + escapeXml(column.meaning) + "\"";
    html += "><b>" + shown(column.read) + "</b><u>" + escapeXml(std::string(1, markOf(column.status).mark)) + "</u><s>" +
            shown(column.character) + "</s></i>";
  }
  return html;
}

} // namespace qoc::program
