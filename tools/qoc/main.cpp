#include "command_line.hpp"

#include <cstdio>
#include <exception>

int main(int argc, char **argv) {
  try {
    int exitCode = 0;
    const auto options = qoc::program::readOptions(argc, argv, exitCode);
    return options ? options->command(*options) : exitCode;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "qoc: %s\n", error.what());
    return 2;
  }
}
