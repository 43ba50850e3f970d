#include "report.hpp"

#include "best_text.hpp"
#include "matching.hpp"
#include "reading_loop.hpp"
#include "report_images.hpp"
#include "report_summary.hpp"
#include "text.hpp"
#include "xml_document.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace qoc::program {
namespace {

/// What a thread makes of a reading.
struct Outcome {
  ReadingVerdict verdict;
  const char *mode = "";
  Explanation explanation;
  std::string text, lead; ///< The best text, and by how much it leads.
  std::int32_t numEdits = 0;
};

/// A file that holds text until the page takes it.
class TemporaryText {
public:
  TemporaryText() : file_(std::tmpfile()) {
    if (file_ == nullptr) throw Trouble(std::string("cannot make a temporary file: ") + std::strerror(errno));
  }
  TemporaryText(const TemporaryText &) = delete;
  TemporaryText &operator=(const TemporaryText &) = delete;
  ~TemporaryText() { std::fclose(file_); }

  void write(const std::string &text) {
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) {
      throw Trouble(std::string("temporary file: cannot write: ") + std::strerror(errno));
    }
  }
  std::FILE *rewound() {
    std::rewind(file_);
    return file_;
  }

private:
  std::FILE *file_;
};

void copy(std::FILE *from, Output &to) {
  std::string buffer(std::size_t{1} << 16, '\0');
  while (const std::size_t n = std::fread(buffer.data(), 1, buffer.size(), from)) to.write(buffer.substr(0, n));
  if (std::ferror(from) != 0) throw Trouble(std::string("temporary file: cannot read: ") + std::strerror(errno));
}

std::string plainText(const std::vector<Char32> &codes) {
  std::string text;
  for (const Char32 code : codes) appendUtf8(text, code == QOC_CHAR_EMPTY ? 0x2205 : code);
  return text;
}

/// A number of the library's hundredths, in the scale of the readings' scores.
std::string inPoints(std::int32_t hundredths) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", static_cast<double>(hundredths) / 100);
  return text;
}

/// A text as a field of a row: HTML, of one line, without tabs. A file's name need not be UTF-8.
std::string field(const std::string &text) { return escapeXml(visible(validUtf8(text))); }

Outcome judge(const Reading &reading, const Answer &answer) {
  Outcome outcome;
  const std::string read = reading.text();
  outcome.verdict.hasTruth = reading.truth.is_string();
  outcome.verdict.isRightBefore = outcome.verdict.hasTruth && read == reading.truth.get_ref<const std::string &>();
  std::optional<BestText> best = bestTextOf(reading, answer);
  outcome.verdict.hasResult = best.has_value();
  if (!best) return outcome;
  outcome.text = plainText(best->codes);
  outcome.mode = sourceName(best->mode);
  outcome.numEdits = best->numEdits;
  outcome.explanation = std::move(best->explanation);
  outcome.verdict.isChanged = outcome.text != read;
  outcome.verdict.isRightAfter =
      outcome.verdict.hasTruth && outcome.text == reading.truth.get_ref<const std::string &>();
  outcome.verdict.isNarrow = answer.resolution->outcome == qoc_ocrDictionaryOutcome_unsure;
  const std::span<const qoc_ocrDictionaryResolvedText> texts = elements(answer.resolution->texts);
  if (answer.resolution->hasScores == 0) return outcome; // No lead can be told.
  if (!texts.empty()) outcome.lead = inPoints(texts.front().margin);
  if (texts.size() > 1) outcome.lead += " before " + quoted(plainText(codesOf(texts[1].text)));
  return outcome;
}

/// The letters by which the page's filters choose.
std::string flagsOf(const ReadingVerdict &verdict) {
  std::string flags = "a";
  if (verdict.isChanged) flags += 'c';
  if (!verdict.hasResult) flags += 'n';
  if (verdict.isNarrow) flags += 'l';
  if (verdict.hasTruth) flags += verdict.isRightAfter ? 'r' : 'w';
  return flags;
}

/// A line of the page's data; the fields are those that its script reads.
std::string rowOf(const Reading &reading, const Outcome &outcome, int image) {
  const std::string read = reading.text();
  const ReadingVerdict &verdict = outcome.verdict;
  std::string box;
  if (image >= 0 && reading.box) {
    for (const JsonScalar &side : describeBox(*reading.box)) box += (box.empty() ? "" : " ") + side.dump();
  }
  std::string shown = explanationAsHtml(outcome.explanation, reading), label = "read " + read;
  std::string result = "no result", detail;
  if (verdict.hasResult) {
    label += ", is " + outcome.text;
    result = verdict.isChanged ? "changed" : "as it was read";
    detail = std::to_string(outcome.numEdits) + (outcome.numEdits == 1 ? " edit, from " : " edits, from ") + outcome.mode;
    if (!outcome.lead.empty()) detail += "; lead " + outcome.lead;
    if (verdict.isNarrow) result += ", unsure";
  } else {
    shown = explanationAsHtml(explainUnmatched(reading), reading);
  }
  if (verdict.hasTruth) {
    result += verdict.isRightAfter ? ", right" : ", wrong: the truth is " + quoted(reading.truth.get<std::string>());
  }
  const std::string needle = reading.name() + " " + read + " " + outcome.text;
  return flagsOf(verdict) + "\t" + field(reading.name()) + "\t" + field(reading.place()) + "\t" +
         (image >= 0 ? std::to_string(image) : "") + "\t" + box + "\t" + field(label) + "\t" + shown + "\t" +
         field(result) + "\t" + field(detail) + "\t" + field(needle) + "\n";
}

std::string filters(bool hasTruth) {
  std::string html;
  const auto add = [&](const char *flag, const char *name) {
    html += std::string("<button type=\"button\" data-flag=\"") + flag + "\" aria-pressed=\"" +
            (html.empty() ? "true" : "false") + "\">" + name + "</button>\n";
  };
  add("a", "All");
  add("c", "Changed");
  add("n", "No result");
  add("l", "Narrow lead");
  if (hasTruth) {
    add("w", "Not right");
    add("r", "Right");
  }
  return html;
}

/// Writes the page's text, with a function called for each name between at signs.
void writePage(Output &output, const std::function<void(const std::string &)> &writePart) {
  const std::string page = reportPage;
  std::size_t done = 0;
  for (std::size_t at = page.find('@'); at != std::string::npos; at = page.find('@', done)) {
    std::size_t end = at + 1;
    while (end < page.size() && std::isupper(static_cast<unsigned char>(page[end])) != 0) ++end;
    const bool isName = end > at + 1 && page[end] == '@';
    output.write(page.substr(done, (isName ? at : end) - done));
    if (isName) writePart(page.substr(at + 1, end - at - 1));
    done = isName ? end + 1 : end;
  }
  output.write(page.substr(done));
}

ExitCode execute(const Options &options, std::uint64_t &numFinished) {
  DictionaryFile file;
  readDictionaryFile(options.dictionary, file);
  runTask.prepare(options, file);
  Output output(options.output);
  ReportImages images(options.images);
  ReportSummary summary;
  TemporaryText rows;

  ReadingSteps<Outcome> steps;
  steps.makeWorker = [&] {
    return [matcher = std::make_shared<Matcher>(options, runTask, file)](Reading &reading) {
      return judge(reading, matcher->match(reading));
    };
  };
  steps.deliver = [&](Reading &reading, Outcome &outcome) {
    summary.add(reading, outcome.verdict, outcome.mode, outcome.explanation);
    rows.write(rowOf(reading, outcome, images.find(reading)));
    return outcome.verdict.hasResult;
  };
  const ExitCode code = forEachReading(options, steps, numFinished);
  writePage(output, [&](const std::string &name) {
    if (name == "TITLE") output.write(field(options.title));
    else if (name == "SUMMARY") output.write(summary.asHtml());
    else if (name == "FILTERS") output.write(filters(summary.hasTruth()));
    else if (name == "ROWS") copy(rows.rewound(), output);
    else if (name == "IMAGES") copy(images.lines(), output);
  });
  output.finish();
  if (images.numMissing() > 0) {
    std::fprintf(stderr, "qoc: %zu readings name a picture that is not there or that browsers do not show\n",
                 images.numMissing());
  }
  return code;
}

} // namespace

int report(const Options &options) {
  const InterruptGuard guard;
  std::uint64_t numFinished = 0;
  return endingWell([&] { return execute(options, numFinished); },
                    [&] {
                      return "interrupted after " + std::to_string(numFinished) +
                             " finished readings; the report is not written";
                    });
}

} // namespace qoc::program
