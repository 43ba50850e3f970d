#include "command_line.hpp"

#include <qoc/base.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Takes the places of standard streams that are closed, so that no file opened later stands in for one. What the program
/// does with them fails as before: each is open the wrong way round.
void holdStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF) continue;
    if (open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0) return;  // Then no file opens later.
  }
}

}  // namespace

int main(int argc, char **argv) {
  holdStandardDescriptors();
  try {
    int exitCode = 0;
    const auto options = qoc::program::readOptions(argc, argv, exitCode);
    return options ? options->command(*options) : exitCode;
  } catch (const std::bad_alloc &) {
    std::fprintf(stderr, "qoc: %s\n", qoc_status_getText(QSYS_STATUS_OUT_OF_MEMORY));
  } catch (const std::exception &error) {
    std::fprintf(stderr, "qoc: %s\n", error.what());
  }
  return 2;
}
