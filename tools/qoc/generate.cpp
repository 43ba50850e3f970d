#include "generate.hpp"

#include "output_file.hpp"
#include "trouble.hpp"

#include <algorithm>

namespace qoc::program {
namespace {

std::string made(const std::string &what) {
  if (what == "bash") return bashCompletion();
  if (what == "zsh") return zshCompletion();
  if (what == "fish") return fishCompletion();
  const std::vector<std::string> pages = manualPages();
  if (what == "pages") {
    std::string names;
    for (const std::string &page : pages) names += page + "\n";
    return names;
  }
  if (std::find(pages.begin(), pages.end(), what) == pages.end()) {
    throw Trouble("--what: found \"" + what + "\"; expected \"bash\", \"zsh\", \"fish\", \"pages\" or one of the pages");
  }
  return manualPage(what);
}

} // namespace

int generate(const Options &options) {
  Output output;
  output.write(made(options.what));
  output.finish();
  return 0;
}

} // namespace qoc::program
