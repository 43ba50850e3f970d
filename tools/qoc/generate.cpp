#include "generate.hpp"

#include "output_file.hpp"
#include "trouble.hpp"

#include <filesystem>

namespace qoc::program {
namespace {

void writeFile(const std::filesystem::path &path, const std::string &text) {
  std::error_code error;
  std::filesystem::create_directories(path.parent_path(), error);
  if (error) throw Trouble(path.parent_path().string() + ": cannot make the directory: " + error.message());
  Output output(path.string());
  output.write(text);
  output.finish();
}

} // namespace

int generate(const Options &options) {
  const std::filesystem::path share = options.output;
  for (const std::string &page : manualPages()) writeFile(share / "man" / "man1" / (page + ".1"), manualPage(page));
  writeFile(share / "bash-completion" / "completions" / "qoc", bashCompletion());
  writeFile(share / "zsh" / "site-functions" / "_qoc", zshCompletion());
  writeFile(share / "fish" / "vendor_completions.d" / "qoc.fish", fishCompletion());
  return 0;
}

} // namespace qoc::program
