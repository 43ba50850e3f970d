#include "report_images.hpp"

#include "trouble.hpp"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace qoc::program {
namespace {

constexpr std::uintmax_t maxImageBytes = std::uintmax_t{16} << 20;

struct ImageType {
  const char *name;
  std::string_view start; ///< What the file's first bytes are.
};

constexpr ImageType imageTypes[] = {
    {"image/png", "\x89PNG\r\n\x1a\n"}, {"image/jpeg", "\xFF\xD8\xFF"}, {"image/gif", "GIF8"}, {"image/webp", "RIFF"}};

std::string base64(std::string_view bytes) {
  constexpr const char *digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      text += i + k > bytes.size() ? '=' : digits[group >> (18 - 6 * k) & 63U];
    }
  }
  return text;
}

} // namespace

ReportImages::ReportImages(std::string directory) : directory_(std::move(directory)), file_(nullptr) {
  std::error_code error;
  if (!directory_.empty() && !std::filesystem::is_directory(directory_, error)) {
    throw Trouble(directory_ + ": cannot open: " +
                  std::make_error_code(error ? std::errc(error.value()) : std::errc::not_a_directory).message());
  }
  file_ = std::tmpfile();
  if (file_ == nullptr) throw Trouble(std::string("cannot make a temporary file: ") + std::strerror(errno));
}

ReportImages::~ReportImages() { std::fclose(file_); }

int ReportImages::find(const Reading &reading) {
  if (!reading.image.empty()) {
    const int index = load(reading.image);
    if (index < 0) ++numMissing_;
    return index;
  }
  if (directory_.empty() || reading.id.is_null()) return -1;
  const std::string name = reading.name();
  if (name.find('/') != std::string::npos) return -1; // An id is a name here, not a way to other places.
  for (const char *ending : {".png", ".jpg", ".jpeg", ".gif", ".webp"}) {
    const int index = load((std::filesystem::path(directory_) / (name + ending)).string());
    if (index >= 0) return index;
  }
  return -1;
}

int ReportImages::load(const std::string &path) {
  const auto [found, isNew] = indices_.emplace(path, -1);
  if (!isNew) return found->second;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error) || std::filesystem::file_size(path, error) > maxImageBytes) return -1;
  std::ifstream stream(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  for (const ImageType &type : imageTypes) {
    if (!bytes.starts_with(type.start)) continue;
    const std::string line = std::string(type.name) + "," + base64(bytes) + "\n";
    if (std::fwrite(line.data(), 1, line.size(), file_) != line.size()) {
      throw Trouble(std::string("temporary file: cannot write: ") + std::strerror(errno));
    }
    return found->second = numImages_++;
  }
  return -1;
}

std::FILE *ReportImages::lines() {
  std::rewind(file_);
  return file_;
}

} // namespace qoc::program
