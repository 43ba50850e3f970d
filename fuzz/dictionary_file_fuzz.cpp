// Any bytes as a dictionary file: read until its first fault, and read with all of them named.

#include "dictionary_file.hpp"

#include "input.hpp"

namespace {

using namespace qoc::fuzz;
using namespace qoc::program;

enum class Ending { complete, refused, interrupted };

Ending read(std::string_view text, std::vector<std::string> *faults, bool isShort) {
  const qoc::test::Polls polls(2000);
  try {
    DictionaryFile file;
    readDictionaryText(text, "input", "/nonexistent", file, faults);
    return Ending::complete;
  } catch (const Trouble &trouble) {  // The way in which the program refuses: with a place, or a file that it names.
    const std::string_view message = trouble.what();
    qoc::fuzz::check(isShort || message.starts_with("input") || message.find(": cannot ") != message.npos);
    return Ending::refused;
  } catch (const Interrupted &) {
    return Ending::interrupted;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  return qoc::fuzz::run(data, size, [](Input &input) {
    const std::string_view text = input.rest();
    std::vector<std::string> faults;
    const Ending first = read(text, nullptr, input.isShortOfMemory);
    const Ending all = read(text, &faults, input.isShortOfMemory);
    const bool isFaulty = all == Ending::refused || !faults.empty();
    qoc::fuzz::check(input.isShortOfMemory || first == Ending::interrupted || all == Ending::interrupted ||
                     (first == Ending::refused) == isFaulty);
  });
}
