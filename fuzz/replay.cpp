// Runs a fuzzer's function without a fuzzer: on the inputs that are kept, and on some made at random.
//
//   qoc_replay_TARGET [FILE-OR-DIRECTORY...]
//
// QOC_RANDOM_CASES is the number of random inputs, QOC_SEED where they start.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

std::uint64_t numberFrom(const char *variable, std::uint64_t otherwise) {
  const char *text = std::getenv(variable);
  return text != nullptr ? std::strtoull(text, nullptr, 10) : otherwise;
}

void replay(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char **argv) {
  int numFiles = 0;
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      replay(argv[i]);
      ++numFiles;
      continue;
    }
    for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
      replay(entry.path());
      ++numFiles;
    }
  }
  const std::uint64_t numCases = numberFrom("QOC_RANDOM_CASES", 2000), seed = numberFrom("QOC_SEED", 1);
  for (std::uint64_t i = 0; i < numCases; ++i) {
    std::mt19937_64 random(seed + i);
    std::vector<std::uint8_t> bytes(random() % 200);
    for (std::uint8_t &byte : bytes) {
      byte = static_cast<std::uint8_t>(random() >> 56);
    }
    std::fprintf(stderr, "\rseed %llu", static_cast<unsigned long long>(seed + i));  // Stays visible after a crash.
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::fprintf(stderr, "\n%d kept inputs and %llu random ones\n", numFiles, static_cast<unsigned long long>(numCases));
  return 0;
}
