#pragma once

/// @file Documents that are written back with corrected texts.

#include "options.hpp"
#include "page_document.hpp"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace qoc::program {

/// Takes documents and the corrections of their readings, and writes each document when it has all of them.
class CorrectedDocuments {
public:
  /// Throws Trouble where the options' output cannot take as many documents as there are inputs.
  /// @param numWritten counts the documents written
  CorrectedDocuments(const Options &options, std::uint64_t &numWritten);

  /// Adds a document, in order. Throws Trouble where it is of another format than the one to be written.
  void add(std::shared_ptr<PageDocument> document);
  /// Takes what stands at each position of a reading; empty where it stays as it was read.
  void take(const Reading &reading, std::vector<std::string> texts);
  /// Writes what is complete by now, which is everything.
  void finish();

private:
  struct Open {
    std::shared_ptr<PageDocument> document;
    std::size_t numMissing;
  };
  void writeComplete();
  std::string pathOf(const PageDocument &document) const;

  const Options &options_;
  std::uint64_t &numWritten_;
  bool isDirectory_ = false;
  std::deque<Open> open_;
};

} // namespace qoc::program
