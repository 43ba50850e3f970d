#include "output.hpp"

#include "marks.hpp"
#include "text.hpp"

#include <cstdio>

namespace qoc::program {
namespace {

std::string marksOf(const qstd_vector_qoc_ocrDictionaryPositionStatus &statuses) {
  std::string text;
  for (const qoc_ocrDictionaryPositionStatus status : elements(statuses)) text += markOf(status).mark;
  return text;
}

std::string textOf(const qoc_ocrDictionaryResult &result) {
  std::string text;
  for (const Char32 code : resultText(result)) appendUtf8(text, code == QOC_CHAR_EMPTY ? 0x2205 : code);
  return text;
}

/// Outcome, text and margin of the resolved text; empty where nothing was resolved. Without scores the margin is "-".
std::vector<std::string> resolvedFields(const Answer &answer) {
  if (!answer.isResolved) return {"", "", ""};
  const std::span<const qoc_ocrDictionaryResolvedText> texts = elements(answer.resolution->texts);
  const char *outcome = qoc_ocrDictionaryOutcome_getName(answer.resolution->outcome);
  if (texts.empty()) return {outcome, "", ""};
  std::string text;
  for (const qoc_ocrDictionaryChar &character : elements(texts[0].text.characters)) appendUtf8(text, character.code);
  if (answer.resolution->hasScores == 0) return {outcome, text, "-"};
  char margin[32];
  std::snprintf(margin, sizeof margin, "%.2f", texts[0].margin / 100.0);
  return {outcome, text, margin};
}

} // namespace

std::string tsvRow(const std::vector<std::string> &fields) {
  std::string row;
  for (const std::string &field : fields) {
    if (&field != &fields.front()) row += '\t';
    for (const char character : field) {
      switch (character) {
      case '\t': row += "\\t"; break;
      case '\n': row += "\\n"; break;
      case '\r': row += "\\r"; break;
      case '\\': row += "\\\\"; break;
      default: row += character;
      }
    }
  }
  return row + "\n";
}

std::string tsvHead() {
  return tsvRow({"file", "line", "id", "text", "rank", "result", "edits", "from", "text_marks", "result_marks",
                 "outcome", "resolved", "margin"});
}

std::string describeAsTsv(const Reading &reading, const Answer &answer) {
  const std::vector<std::string> resolved = resolvedFields(answer);
  const std::vector<std::string> head = {reading.file, std::to_string(reading.line),
                                         reading.id.is_null() ? "" : reading.name(), reading.text()};
  std::string rows;
  std::size_t rank = 0;
  for (const qoc_ocrDictionaryResult &result : elements(answer.results->results)) {
    std::vector<std::string> fields = head;
    const bool isLine = rank < answer.lines.size();
    const std::string from = isLine ? "line " + std::to_string(answer.lines[rank] + 1) : sourceName(result.mode);
    ++rank;
    fields.insert(fields.end(), {std::to_string(rank), textOf(result), std::to_string(result.numEdits), from,
                                 marksOf(result.statusWRTInputStringSwapChar), marksOf(result.resultStringStatus)});
    fields.insert(fields.end(), resolved.begin(), resolved.end());
    rows += tsvRow(fields);
  }
  if (rank > 0) return rows;
  std::vector<std::string> fields = head;
  fields.insert(fields.end(), {"0", "", "", "", "", ""});
  fields.insert(fields.end(), resolved.begin(), resolved.end());
  return tsvRow(fields);
}

} // namespace qoc::program
