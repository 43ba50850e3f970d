#include "output_file.hpp"

#include "trouble.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace qoc::program {

Output::Output(const std::string &path) {
  if (path.empty() || path == "-") return;
  path_ = path;
  std::error_code unused;
  const std::filesystem::file_status present = std::filesystem::status(path, unused);
  if (std::filesystem::is_directory(present)) {
    throw Trouble(path_ + ": cannot write: " + std::make_error_code(std::errc::is_a_directory).message());
  }
  isReplaced_ = !std::filesystem::exists(present) || std::filesystem::is_regular_file(present);
  if (isReplaced_) {
    // Behind links, so that they stay.
    const std::filesystem::path target = std::filesystem::canonical(path, unused);
    targetPath_ = target.empty() ? path : target.string();
    partPath_ = targetPath_ + ".part-" + std::to_string(getpid());
  }
  const int descriptor = isReplaced_ ? open(partPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)
                                     : open(path_.c_str(), O_WRONLY | O_CLOEXEC);
  file_ = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
  if (file_ == nullptr) {
    const int error = errno;
    if (descriptor >= 0) {
      close(descriptor);
      if (isReplaced_) unlink(partPath_.c_str());
    }
    throw Trouble(path_ + ": cannot write: " + std::strerror(error));
  }
}

Output::~Output() {
  if (path_.empty() || file_ == nullptr) return;
  std::fclose(file_);
  if (isReplaced_) unlink(partPath_.c_str());
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
  if (isReplaced_ && std::rename(partPath_.c_str(), targetPath_.c_str()) != 0) {
    fail("move the finished file into its place");
  }
  std::fclose(file_);
  file_ = nullptr;
}

} // namespace qoc::program
