#pragma once

/// @file Where the program writes: standard output, or a file that appears when it is complete.

#include <cstdio>
#include <string>

namespace qoc::program {

/// Takes text in whole pieces. Throws Trouble where it cannot be written.
class Output {
public:
  /// Standard output.
  Output() = default;
  /// A file, written beside its place and moved there by `finish`; without that it does not appear, and a file of the
  /// name stays as it was. What stands there and is no file (a device, a pipe) is written to directly. "-" is standard
  /// output.
  explicit Output(const std::string &path);
  Output(const Output &) = delete;
  Output &operator=(const Output &) = delete;
  ~Output();

  void write(const std::string &text);
  void flush();
  /// Ends the output: everything is written, and the file stands in its place.
  void finish();

private:
  [[noreturn]] void fail(const char *what) const;

  std::string path_, targetPath_, partPath_; ///< Empty for standard output.
  bool isReplaced_ = false;
  std::FILE *file_ = stdout;
};

} // namespace qoc::program
