// What the program reads: dictionary files, and readings in every format. The first byte says which.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "dictionary_file.hpp"
#include "readings.hpp"

namespace {

/// Bytes as a file that has a path.
class File {
 public:
  File(const std::uint8_t *data, std::size_t size) : descriptor_(memfd_create("input", 0)) {
    if (descriptor_ < 0 || write(descriptor_, data, size) != static_cast<ssize_t>(size)) {
      std::abort();
    }
  }
  ~File() { close(descriptor_); }
  File(const File &) = delete;
  File &operator=(const File &) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace qoc::program;
  if (size == 0) {
    return 0;
  }
  const File file(data + 1, size - 1);
  constexpr int numFormats = 1 + static_cast<int>(std::size(readingFormats));
  try {
    if (data[0] % 4 == 0) {
      DictionaryFile dictionary;
      readDictionaryFile(file.path(), dictionary);
    } else {
      const int choice = data[0] / 4 % numFormats;
      ReadingOptions options;
      options.format = choice == 0 ? ReadingFormat::detect : readingFormats[choice - 1].format;
      options.unit = data[0] % 4 == 1 ? ReadingUnit::word : ReadingUnit::line;
      ReadingSource source({file.path()}, options, [] {});
      Reading reading;
      for (int i = 0; i < 1000 && source.next(reading); ++i) {
        reading.text();
      }
    }
  } catch (const Trouble &) {  // The way in which the program refuses.
  }
  return 0;
}
