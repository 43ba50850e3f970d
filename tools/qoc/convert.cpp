#include "convert.hpp"

#include "output.hpp"
#include "reading_loop.hpp"
#include "text.hpp"

namespace qoc::program {
namespace {

constexpr int formatVersion = 1;

std::string asJson(const Reading &reading) {
  nlohmann::ordered_json object;
  object["type"] = "positions";
  object["version"] = formatVersion;
  object["id"] = reading.id;
  object["text"] = reading.text();
  auto &positions = object["positions"] = nlohmann::ordered_json::array();
  for (const std::vector<Candidate> &candidates : reading.positions) {
    auto list = nlohmann::ordered_json::array();
    for (const Candidate &candidate : candidates) {
      std::string character;
      appendUtf8(character, candidate.code);
      list.push_back(nlohmann::ordered_json::array({character, nlohmann::ordered_json(candidate.givenScore)}));
    }
    positions.push_back(std::move(list));
  }
  addCompanions(object, reading);
  if (!reading.truth.is_null()) object["truth"] = reading.truth;
  if (!reading.kind.is_null()) object["kind"] = reading.kind;
  object["source"] = reading.place();
  return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
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
