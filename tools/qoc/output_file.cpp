#include "output_file.hpp"

#include "trouble.hpp"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace qoc::program {

Output::Output(const std::string &path) {
  if (path.empty() || path == "-") return;
  path_ = path;
  partPath_ = path + ".part-" + std::to_string(getpid());
  const int descriptor = open(partPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  file_ = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
  if (file_ == nullptr) {
    const int error = errno;
    if (descriptor >= 0) {
      close(descriptor);
      unlink(partPath_.c_str());
    }
    throw Trouble(path_ + ": cannot write: " + std::strerror(error));
  }
}

Output::~Output() {
  if (path_.empty() || file_ == nullptr) return;
  std::fclose(file_);
  unlink(partPath_.c_str());
}

void Output::fail(const char *what) const {
  throw Trouble((path_.empty() ? "standard output" : path_) + ": cannot " + what + ": " + std::strerror(errno));
}

void Output::write(const std::string &text) {
  if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) fail("write");
}

void Output::flush() {
  if (std::fflush(file_) != 0) fail("write");
}

void Output::finish() {
  flush();
  if (path_.empty()) return;
  if (fsync(fileno(file_)) != 0 && errno != EINVAL && errno != EROFS) fail("write");
  if (std::rename(partPath_.c_str(), path_.c_str()) != 0) fail("move the finished file into its place");
  std::fclose(file_);
  file_ = nullptr;
}

} // namespace qoc::program
