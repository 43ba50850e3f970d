#include "convert.hpp"

#include "output.hpp"
#include "reading_loop.hpp"
#include "text.hpp"

namespace qoc::program {
namespace {

std::string asJson(const Reading &reading) {
  JsonText object = JsonText::object();
  object.set("type", "positions");
  object.set("version", formatVersion);
  object.set("id", reading.id);
  object.set("text", reading.text());
  JsonText positions = JsonText::array();
  for (const std::vector<Candidate> &candidates : reading.positions) {
    JsonText list = JsonText::array();
    for (const Candidate &candidate : candidates) {
      std::string character;
      appendUtf8(character, candidate.code);
      list.push(JsonText::array({character, candidate.givenScore}));
    }
    positions.push(list);
  }
  object.set("positions", positions);
  addCompanions(object, reading);
  if (!reading.truth.is_null()) object.set("truth", reading.truth);
  if (!reading.kind.is_null()) object.set("kind", reading.kind);
  object.set("source", reading.place());
  return object.text() + "\n";
}

/// Text of one line; a reading that holds line ends cannot be one.
std::string asText(const Reading &reading) {
  const std::string text = reading.text();
  if (text.find_first_of("\r\n") != std::string::npos) {
    throw Trouble(reading.place() + ": the reading holds a line end; expected --to ndjson for it");
  }
  return text + "\n";
}

ExitCode execute(const Options &options, std::uint64_t &numFinished) {
  Output output;
  ReadingSteps<std::string> steps;
  steps.makeWorker = [&] {
    return [&options](Reading &reading) { return options.to == "text" ? asText(reading) : asJson(reading); };
  };
  steps.deliver = [&](Reading &, std::string &text) {
    output.write(text);
    return true;
  };
  steps.flush = [&] { output.flush(); };
  const ExitCode code = forEachReading(options, steps, numFinished);
  output.finish();
  return code;
}

} // namespace

int convert(const Options &options) {
  const InterruptGuard guard;
  std::uint64_t numFinished = 0;
  return endingWell([&] { return execute(options, numFinished); },
                    [&] { return interruptedAfter(numFinished, options); });
}

} // namespace qoc::program
