#pragma once

/// @file Files and standard input, line by line or whole.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace qoc::program {

/// The largest line in bytes; a longer one is refused, so that memory stays bounded.
inline constexpr std::size_t maxLineBytes = std::size_t{256} << 20;

/// What may stand at the start of a file to say that it is UTF-8.
inline constexpr const char byteOrderMark[] = "\xEF\xBB\xBF";

/// Reads a file's lines. Holds one line and one buffer, however long the file is.
class LineReader {
public:
  /// Opens a file, or standard input for "-". Throws Trouble "NAME: cannot open: …".
  /// @param beforeWait called before a read of the file that has to wait
  explicit LineReader(const std::string &path, std::function<void()> beforeWait = {});
  LineReader(const LineReader &) = delete;
  LineReader &operator=(const LineReader &) = delete;
  ~LineReader();

  /// Gets the next line without its line feed. The last line may lack one; nothing behind the last line
  /// feed is no line.
  /// A byte order mark at the start of the file is passed over.
  /// @return false at the end
  bool next(std::string &line);

  /// How messages call the file.
  const std::string &name() const { return name_; }
  /// The number of the line that `next` gave last, from 1.
  std::uint64_t lineNumber() const { return lineNumber_; }
  /// "NAME:LINE".
  std::string place() const { return name_ + ":" + std::to_string(lineNumber_); }
  /// Whether the line that `next` gave last ended with a line feed, and whether the file began with the mark.
  bool endedWithFeed() const { return endedWithFeed_; }
  bool hadByteOrderMark() const { return hadByteOrderMark_; }
  /// The bytes consumed so far.
  std::uint64_t numBytes() const { return numBytes_; }

private:
  bool fill();

  std::string name_;
  std::function<void()> beforeWait_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0, end_ = 0; // What is unread of the buffer.
  std::uint64_t lineNumber_ = 0, numBytes_ = 0;
  bool endedWithFeed_ = false, hadByteOrderMark_ = false;
  int descriptor_;
};

/// The whole content of a file or, for "-", of standard input, without a byte order mark. Throws Trouble where it
/// cannot be read.
std::string readWhole(const std::string &path);

} // namespace qoc::program
