#include "report_summary.hpp"

#include "marks.hpp"
#include "text.hpp"
#include "xml_document.hpp"

#include <algorithm>

namespace qoc::program {
namespace {

constexpr std::size_t maxConfusions = 200;

std::string cell(std::uint64_t n) { return "<td class=\"n\">" + std::to_string(n) + "</td>"; }

std::string share(std::uint64_t part, std::uint64_t whole) {
  char text[64];
  std::snprintf(text, sizeof text, "<td class=\"n\">%llu (%.1f %%)</td>", static_cast<unsigned long long>(part),
                whole > 0 ? 100.0 * static_cast<double>(part) / static_cast<double>(whole) : 0.0);
  return text;
}

/// A text of a confusion, with spaces to be seen.
std::string shown(const std::string &text) {
  if (text.empty()) return "nothing";
  std::string characters;
  for (const Char32 code : decodeUtf8(text)) appendUtf8(characters, code == ' ' ? 0x2423 : visible(code));
  return "<code>" + escapeXml(characters) + "</code>";
}

} // namespace

void ReportSummary::Counts::add(const ReadingVerdict &verdict) {
  ++numReadings;
  numResults += verdict.hasResult ? 1 : 0;
  numChanged += verdict.isChanged ? 1 : 0;
  numNarrow += verdict.isNarrow ? 1 : 0;
  numTruths += verdict.hasTruth ? 1 : 0;
  numRightBefore += verdict.isRightBefore ? 1 : 0;
  numRightAfter += verdict.isRightAfter ? 1 : 0;
  numSpoiled += verdict.isRightBefore && !verdict.isRightAfter ? 1 : 0;
}

void ReportSummary::add(const Reading &reading, const ReadingVerdict &verdict, const char *mode,
                        const Explanation &explanation) {
  all_.add(verdict);
  if (reading.kind.is_string()) kinds_[reading.kind.get<std::string>()].add(verdict);
  if (!verdict.hasResult) return;
  ++modes_[mode];
  for (const ExplanationColumn &column : explanation.columns) {
    ++statuses_[column.status];
    const bool isIgnored = column.status == qoc_ocrDictionaryPositionStatus_deletedIgnored;
    if (!isIgnored && column.read != column.character) ++confusions_[{column.read, column.character}];
  }
}

std::string ReportSummary::kindsAsHtml() const {
  std::string html = "<table id=\"kinds\"><caption>Readings</caption><thead><tr><th>kind</th><th>readings</th>"
                     "<th>with a result</th><th>changed</th><th>narrow lead</th>";
  if (hasTruth()) html += "<th>right before</th><th>right after</th><th>right before, not after</th>";
  html += "</tr></thead><tbody>";
  const auto addRow = [&](const std::string &name, const Counts &counts) {
    html += "<tr><th>" + name + "</th>" + cell(counts.numReadings) + share(counts.numResults, counts.numReadings) +
            share(counts.numChanged, counts.numReadings) + share(counts.numNarrow, counts.numReadings);
    if (hasTruth()) {
      html += share(counts.numRightBefore, counts.numTruths) + share(counts.numRightAfter, counts.numTruths) +
              cell(counts.numSpoiled);
    }
    html += "</tr>";
  };
  for (const auto &[kind, counts] : kinds_) addRow(escapeXml(kind), counts);
  addRow("all", all_);
  return html + "</tbody></table>";
}

std::string ReportSummary::statusesAsHtml() const {
  std::string html = "<table id=\"statuses\"><caption>Positions of the best results</caption><thead><tr><th>mark</th>"
                     "<th>status</th><th>meaning</th><th>positions</th></tr></thead><tbody>";
  for (const Mark &mark : marks) {
    const auto found = statuses_.find(mark.status);
    const std::string color = "<td class=\"s" + std::to_string(mark.status) + "\">";
    html += "<tr>" + color + "<code>" + escapeXml(std::string(1, mark.mark)) + "</code></td>" + color + mark.name +
            "</td><td>" + mark.meaning + "</td>" + cell(found == statuses_.end() ? 0 : found->second) + "</tr>";
  }
  html += "</tbody></table><table id=\"sources\"><caption>Best results</caption><thead><tr><th>from</th><th>results</th>"
          "</tr></thead><tbody>";
  for (const auto &[mode, n] : modes_) html += "<tr><th>" + mode + "</th>" + cell(n) + "</tr>";
  return html + "</tbody></table>";
}

std::string ReportSummary::confusionsAsHtml() const {
  std::vector<std::pair<std::pair<std::string, std::string>, std::uint64_t>> ranked(confusions_.begin(),
                                                                                   confusions_.end());
  std::stable_sort(ranked.begin(), ranked.end(), [](const auto &a, const auto &b) { return a.second > b.second; });
  const std::size_t numLeft = ranked.size() - std::min(ranked.size(), maxConfusions);
  ranked.resize(std::min(ranked.size(), maxConfusions));
  std::string html = "<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"Confusions\"><table id=\"confusions\">"
                     "<caption>Confusions, most frequent first</caption><thead><tr><th>read</th><th>is</th><th>times</th>"
                     "</tr></thead><tbody>";
  for (const auto &[pair, n] : ranked) {
    html += "<tr><td>" + shown(pair.first) + "</td><td>" + shown(pair.second) + "</td>" + cell(n) + "</tr>";
  }
  html += "</tbody></table></div>";
  return numLeft == 0 ? html : html + "<p>" + std::to_string(numLeft) + " rarer ones are left out.</p>";
}

std::string ReportSummary::asHtml() const {
  return "<section id=\"summary\" aria-label=\"Summary\">\n<div class=\"tables\">\n" + kindsAsHtml() + "\n" +
         confusionsAsHtml() + "\n" + statusesAsHtml() + "\n</div>\n</section>";
}

} // namespace qoc::program
