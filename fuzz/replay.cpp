// Runs a fuzzer's function without a fuzzer: on the inputs that are kept, and on some made at random.
//
//   qoc_replay_TARGET [FILE-OR-DIRECTORY...]
//
// A file's bytes are an input, but of files that end in ".lines" every line is one: see corpus.py.
//
// QOC_RANDOM_CASES is the number of random inputs, QOC_SEED where they start.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

std::uint64_t numberFrom(const char *variable, std::uint64_t otherwise) {
  const char *text = std::getenv(variable);
  return text != nullptr ? std::strtoull(text, nullptr, 10) : otherwise;
}

int numInputs = 0;

void replayBytes(const std::string &bytes) {
  const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());  // Of its own, so that nothing stands behind it.
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
  ++numInputs;
}

/// A line with "\xHH" for the bytes that are no printable ASCII.
std::string unescaped(const std::string &line) {
  std::string bytes;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\\' && i + 3 < line.size()) {
      bytes += static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16));
      i += 3;
    } else {
      bytes += line[i];
    }
  }
  return bytes;
}

void replay(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::fprintf(stderr, "%s: cannot be read\n", path.c_str());
    std::exit(2);
  }
  if (path.extension() == ".lines") {
    for (std::string line; std::getline(file, line);) {
      replayBytes(unescaped(line));
    }
  } else {
    replayBytes({std::istreambuf_iterator<char>(file), {}});
  }
}

}  // namespace

int main(int argc, char **argv) {
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      replay(argv[i]);
      continue;
    }
    for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
      replay(entry.path());
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
  std::fprintf(stderr, "\n%d kept inputs and %llu random ones\n", numInputs, static_cast<unsigned long long>(numCases));
  return 0;
}
