#include "kinds/lexicon_index.hpp"

#include <algorithm>
#include <atomic>
#include <new>
#include <unordered_set>

#include "platform/system/present.hpp"

namespace qoc {

namespace {

/// An index and the number of lexicons that hold it.
struct SharedIndex {
  explicit SharedIndex(std::span<const qoc_ocrDictionaryString> words) : index(words) {}
  LexiconIndex index;
  std::atomic<std::int64_t> numHolders{1};
};

std::uint64_t bitOf(Char32 code) noexcept {
  // Letters that words of one list use lie close together: their low bits keep them apart.
  return std::uint64_t{1} << (code % 64);
}

}  // namespace

LexiconIndex::LexiconIndex(std::span<const qoc_ocrDictionaryString> words) {
  signatures_.reserve(words.size());
  std::unordered_set<Char32> codes;
  bool isSeen[128] = {};
  for (const qoc_ocrDictionaryString &word : words) {
    std::uint64_t signature = 0;
    for (const qoc_ocrDictionaryChar &character : view(word)) {
      signature |= bitOf(character.code);
      if (character.code >= std::size(isSeen) || !isSeen[character.code]) {
        codes.insert(character.code);
        if (character.code < std::size(isSeen)) {
          isSeen[character.code] = true;
        }
      }
    }
    signatures_.push_back(signature);
  }
  codes_.assign(codes.begin(), codes.end());
  std::ranges::sort(codes_);
}

qsys_status LexiconIndex::cover(ReadingMatches &matches, std::uint64_t &covered) const {
  covered = 0;
  const auto numWords = static_cast<std::size_t>(matches.size() + 63) / 64;
  for (const Char32 code : codes_) {
    const std::uint64_t *row = nullptr;
    QOC_TRY(matches.row(code, row));
    if (std::any_of(row, row + numWords, [](std::uint64_t bits) { return bits != 0; })) {
      covered |= bitOf(code);
    }
  }
  return QSYS_STATUS_OK;
}

const LexiconIndex *indexOf(const qoc_ocrDictionaryLexicon &lexicon) noexcept {
  return lexicon.index != nullptr ? &static_cast<const SharedIndex *>(lexicon.index)->index : nullptr;
}

qsys_status rebuildIndex(qoc_ocrDictionaryLexicon &lexicon) {
  const auto words = view(lexicon.strings);
  SharedIndex *fresh = words.empty() ? nullptr : new SharedIndex(words);
  dropIndex(lexicon);
  lexicon.index = fresh;
  return QSYS_STATUS_OK;
}

void shareIndex(qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryLexicon &source) noexcept {
  if (source.index != nullptr) {
    static_cast<SharedIndex *>(source.index)->numHolders.fetch_add(1, std::memory_order_relaxed);
  }
  dropIndex(lexicon);
  lexicon.index = source.index;
}

void dropIndex(qoc_ocrDictionaryLexicon &lexicon) noexcept {
  auto *held = static_cast<SharedIndex *>(lexicon.index);
  if (held != nullptr && held->numHolders.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete held;
  }
  lexicon.index = nullptr;
}

}  // namespace qoc
