// Any bytes as readings in every format. Behind the bytes that all inputs begin with, one says which, and what of a
// page is one reading.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "input.hpp"
#include "page_document.hpp"
#include "readings.hpp"
#include "trouble.hpp"

namespace {

using namespace qoc::program;
using qoc::fuzz::Input;

/// Bytes as a file that has a path.
class File {
 public:
  explicit File(std::string_view bytes) : descriptor_(memfd_create("input", 0)) {
    if (descriptor_ < 0 || write(descriptor_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
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

/// A document with every position corrected is still one; without a correction it is as it came.
void correctAll(PageDocument &page, std::string_view bytes) {
  qoc::fuzz::check(page.corrected() == bytes);
  const char *texts[] = {"x", "&<\"'", "", "]]>", "\xC3\xA4"};
  std::size_t next = 0;
  for (std::size_t i = 0; i < page.numReadings(); ++i) {
    Reading reading;
    page.getReading(i, reading);
    std::vector<std::string> corrected;
    for (std::size_t k = 0; k < reading.positions.size(); ++k) {
      corrected.emplace_back(texts[next++ % std::size(texts)]);
    }
    page.correct(i, corrected);
  }
  const XmlDocument again(page.corrected(), "corrected");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  return qoc::fuzz::run(data, size, [](Input &input) {
    constexpr int numFormats = static_cast<int>(std::size(readingFormats));
    const int choice = input.byte();
    ReadingOptions options;
    options.format =
        choice % (numFormats + 1) == 0 ? ReadingFormat::detect : readingFormats[choice % (numFormats + 1) - 1].format;
    options.unit = choice / (numFormats + 1) % 2 == 0 ? ReadingUnit::line : ReadingUnit::word;
    const std::string_view bytes = input.rest();
    std::shared_ptr<PageDocument> page;
    bool isComplete = false;
    try {
      const File file(bytes);
      ReadingSource source({file.path()}, options, [] {});
      source.onDocument([&](std::shared_ptr<PageDocument> document) { page = std::move(document); });
      Reading reading;
      int numLeft = 1000;
      while (numLeft > 0 && source.next(reading)) {
        reading.text();
        qoc::fuzz::check(reading.boxes.empty() || reading.boxes.size() == reading.positions.size());
        --numLeft;
      }
      isComplete = true;
    } catch (const Trouble &) {  // The way in which the program refuses.
    }
    if (isComplete && page) {
      correctAll(*page, bytes);
    }
  });
}
