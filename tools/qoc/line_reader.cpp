#include "line_reader.hpp"

#include "interrupt.hpp"
#include "trouble.hpp"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace qoc::program {
namespace {

constexpr std::size_t bufferBytes = std::size_t{1} << 16;

int openForReading(const std::string &path, const std::string &name) {
  if (path == "-") return STDIN_FILENO;
  for (;;) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0) return descriptor;
    if (errno != EINTR) throw Trouble(name + ": cannot open: " + std::strerror(errno));
    checkInterrupt();
  }
}

} // namespace

LineReader::LineReader(const std::string &path, std::function<void()> beforeWait)
    : name_(path == "-" ? "standard input" : path.empty() ? "\"\"" : path), beforeWait_(std::move(beforeWait)), buffer_(bufferBytes),
      descriptor_(openForReading(path, name_)) {}

LineReader::~LineReader() {
  if (descriptor_ != STDIN_FILENO) close(descriptor_);
}

bool LineReader::fill() {
  if (beforeWait_ && !isReadable(descriptor_)) beforeWait_();
  for (;;) {
    waitReadable(descriptor_);
    const ssize_t n = read(descriptor_, buffer_.data(), buffer_.size());
    if (n < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (n < 0) throw Trouble(name_ + ": cannot read: " + std::strerror(errno));
    begin_ = 0;
    end_ = static_cast<std::size_t>(n);
    return n > 0;
  }
}

bool LineReader::next(std::string &line) {
  line.clear();
  bool hasLine = false;
  while (begin_ < end_ || fill()) {
    if (!hasLine) ++lineNumber_;
    hasLine = true;
    const char *first = buffer_.data() + begin_;
    const auto *feed = static_cast<const char *>(std::memchr(first, '\n', end_ - begin_));
    const std::size_t n = feed ? static_cast<std::size_t>(feed - first) : end_ - begin_;
    if (line.size() + n > maxLineBytes) {
      throw Trouble(place() + ": the line is too long; expected at most " + std::to_string(maxLineBytes) + " bytes");
    }
    line.append(first, n);
    begin_ += n + (feed ? 1 : 0);
    numBytes_ += n + (feed ? 1 : 0);
    endedWithFeed_ = feed != nullptr;
    if (feed) break;
  }
  if (lineNumber_ == 1 && line.starts_with(byteOrderMark)) {
    hadByteOrderMark_ = true;
    line.erase(0, sizeof byteOrderMark - 1);
  }
  return hasLine;
}

std::string readWhole(const std::string &path) {
  LineReader reader(path);
  std::string content, line;
  while (reader.next(line)) {
    content += line;
    content += '\n';
  }
  return content;
}

} // namespace qoc::program
