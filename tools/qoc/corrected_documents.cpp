#include "corrected_documents.hpp"

#include "output_file.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <filesystem>
#include <map>

namespace qoc::program {
namespace {

ReadingFormat formatOf(const std::string &name) {
  const auto *found = std::find_if(std::begin(readingFormats), std::end(readingFormats),
                                   [&](const ReadingFormatName &format) { return name == format.name; });
  return found->format;
}

const char *nameOf(ReadingFormat format) {
  const auto *found = std::find_if(std::begin(readingFormats), std::end(readingFormats),
                                   [&](const ReadingFormatName &known) { return known.format == format; });
  return found->name;
}

} // namespace

CorrectedDocuments::CorrectedDocuments(const Options &options, std::uint64_t &numWritten)
    : options_(options), numWritten_(numWritten) {
  std::error_code error;
  isDirectory_ = std::filesystem::is_directory(options.output, error);
  if (options.skip > 0) {
    throw Trouble("--skip: documents are written as a whole; expected the files that are still to do without --skip");
  }
  if (isDirectory_) {
    std::map<std::string, std::string> names;
    for (const std::string &path : options.readings) {
      const std::string name = path == "-" ? "" : std::filesystem::path(path).filename().string();
      if (name.empty()) throw Trouble("standard input has no name in " + options.output + "; expected --output FILE");
      const auto [before, isNew] = names.emplace(name, path);
      if (!isNew) {
        throw Trouble(path + ": would be written to the same file as " + before->second + "; expected other names");
      }
    }
  } else if (options.readings.size() > 1) {
    throw Trouble("--to: there are several documents; expected --output with a directory that exists");
  }
}

std::string CorrectedDocuments::pathOf(const PageDocument &document) const {
  if (!isDirectory_) return options_.output;
  const std::filesystem::path name = std::filesystem::path(document.xml().name()).filename();
  return (std::filesystem::path(options_.output) / name).string();
}

void CorrectedDocuments::add(std::shared_ptr<PageDocument> document) {
  if (document->format() != formatOf(options_.to)) {
    throw Trouble(document->xml().name() + ": the document is " + nameOf(document->format()) +
                  "; --to writes back what was read, expected " + options_.to);
  }
  const std::string path = pathOf(*document);
  std::error_code error;
  if (!path.empty() && std::filesystem::equivalent(path, document->xml().name(), error)) {
    throw Trouble(path + ": would overwrite the document that is read; expected another --output");
  }
  const std::size_t numReadings = document->numReadings();
  open_.push_back({std::move(document), numReadings});
  writeComplete();
}

void CorrectedDocuments::take(const Reading &reading, std::vector<std::string> texts) {
  if (!reading.document) {
    throw Trouble(reading.place() + ": the reading is of no document; --to " + options_.to +
                  " expects one of that format");
  }
  if (!texts.empty()) reading.document->correct(reading.indexInDocument, std::move(texts));
  const auto open = std::find_if(open_.begin(), open_.end(),
                                 [&](const Open &candidate) { return candidate.document == reading.document; });
  --open->numMissing;
  writeComplete();
}

void CorrectedDocuments::finish() { writeComplete(); }

void CorrectedDocuments::writeComplete() {
  while (!open_.empty() && open_.front().numMissing == 0) {
    Output output(pathOf(*open_.front().document));
    output.write(open_.front().document->corrected());
    output.finish();
    ++numWritten_;
    open_.pop_front();
  }
}

} // namespace qoc::program
