#include "kinds/block_scan.hpp"

#include <algorithm>
#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#define QOC_HAS_BLOCK_SCAN 1
#include <cpuid.h>
#include <immintrin.h>

#include "kinds/wide_registers.hpp"
#else
#define QOC_HAS_BLOCK_SCAN 0
#endif

namespace qoc {

// cppcheck-suppress uninitMemberVar ; of the tables the first numTables_ are read
BlockScan::BlockScan(const LetterMatches &rows, std::size_t maxLetter, std::int32_t numPositions) noexcept
    : numPositions_(numPositions) {
  for (std::size_t first = 0; first <= maxLetter; first += lettersPerTable) {
    Table &table = tables_[numTables_];
    std::uint64_t any = 0;
    for (std::size_t i = 0; i < lettersPerTable; ++i) {
      const std::uint64_t row = first + i <= maxLetter ? rows[first + i] : 0;
      table.low[i] = static_cast<std::uint8_t>(row);
      table.high[i] = static_cast<std::uint8_t>(row >> 8);
      any |= row;
    }
    table.first = static_cast<Letter>(first);
    numTables_ += any != 0 ? 1 : 0;
  }
}

#if QOC_HAS_BLOCK_SCAN

#define QOC_AVX2 __attribute__((target("avx2")))

struct BlockScan::Kernel {
  using Bytes = std::uint8_t __attribute__((vector_size(wordsPerBlock)));
  using Pairs = std::uint16_t __attribute__((vector_size(wordsPerBlock)));

  /// The columns of as many words as a register holds, with lanes of a column's width.
  template <class Lanes>
  struct Columns {
    Lanes up, down;

    QOC_AVX2 void begin() noexcept {
      up = ~Lanes{};
      down = Lanes{};
    }
    QOC_AVX2 __attribute__((always_inline)) inline void step(Lanes matches) noexcept {
      const Lanes diagonal = (((matches & up) + up) ^ up) | matches | down;
      Lanes right = down | ~(diagonal | up);
      Lanes left = up & diagonal;
      right = (right + right) | 1;
      left = left + left;
      up = left | ~(diagonal | right);
      down = right & diagonal;
    }
  };

  /// What 32 letters match at eight positions.
  QOC_AVX2 __attribute__((always_inline)) static inline __m256i lookUp(__m256i letters, const Table &table,
                                                                       const std::uint8_t *plane) noexcept {
    // Of letters behind or before the table's the highest bit is set, which gives 0.
    const __m256i indices = _mm256_adds_epu8(_mm256_sub_epi8(letters, _mm256_set1_epi8(static_cast<char>(table.first))),
                                             _mm256_set1_epi8(0x70));
    const __m128i values = _mm_loadu_si128(reinterpret_cast<const __m128i *>(plane));
    return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(values), indices);
  }

  QOC_AVX2 __attribute__((always_inline)) static inline __m256i countBits(__m256i bytes) noexcept {
    const __m256i counts = _mm256_setr_epi8(0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4, 0, 1, 1, 2, 1, 2, 2, 3, 1,
                                            2, 2, 3, 2, 3, 3, 4);
    const __m256i nibble = _mm256_set1_epi8(15);
    return _mm256_add_epi8(_mm256_shuffle_epi8(counts, _mm256_and_si256(bytes, nibble)),
                           _mm256_shuffle_epi8(counts, _mm256_and_si256(_mm256_srli_epi16(bytes, 4), nibble)));
  }

  /// The sum of each lane's differences, as a byte; of 16-bit lanes in the lower one.
  template <class Lanes>
  QOC_AVX2 __attribute__((always_inline)) static inline __m256i sum(const Columns<Lanes> &columns,
                                                                    Lanes inside) noexcept {
    const __m256i up = countBits(reinterpret_cast<__m256i>(columns.up & inside));
    const __m256i down = countBits(reinterpret_cast<__m256i>(columns.down & inside));
    return _mm256_sub_epi8(up, down);
  }

  QOC_AVX2 __attribute__((always_inline)) static inline std::uint32_t atMost(__m256i bytes, int most) noexcept {
    const __m256i bound = _mm256_set1_epi8(static_cast<char>(std::clamp(most, -127, 126) + 1));
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpgt_epi8(bound, bytes)));
  }

  /// At most 8 positions.
  QOC_AVX2 static void scanBytes(const BlockScan &scan, const Letter *blocks, std::size_t numBlocks,
                                 std::int32_t numLetters, std::int32_t maxEdits, std::uint32_t *masks) noexcept {
    const auto positions = static_cast<std::uint8_t>((1u << scan.numPositions_) - 1);
    const Bytes inside = Bytes{} + positions;
    for (std::size_t b = 0; b < numBlocks; ++b) {
      Columns<Bytes> columns;
      columns.begin();
      for (std::int32_t i = 0; i < numLetters; ++i, blocks += wordsPerBlock) {
        const __m256i letters = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(blocks));
        __m256i matches = _mm256_setzero_si256();
        for (std::int32_t t = 0; t < scan.numTables_; ++t) {
          matches = _mm256_or_si256(matches, lookUp(letters, scan.tables_[t], scan.tables_[t].low));
        }
        columns.step(reinterpret_cast<Bytes>(matches));
      }
      masks[b] = atMost(sum(columns, inside), maxEdits - numLetters);
    }
  }

  /// At most 16 positions: the 32 words in two registers.
  QOC_AVX2 static void scanPairs(const BlockScan &scan, const Letter *blocks, std::size_t numBlocks,
                                 std::int32_t numLetters, std::int32_t maxEdits, std::uint32_t *masks) noexcept {
    const auto positions = static_cast<std::uint16_t>((1u << scan.numPositions_) - 1);
    const Pairs inside = Pairs{} + positions;
    for (std::size_t b = 0; b < numBlocks; ++b) {
      Columns<Pairs> first;
      Columns<Pairs> second;
      first.begin();
      second.begin();
      for (std::int32_t i = 0; i < numLetters; ++i, blocks += wordsPerBlock) {
        const __m256i letters = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(blocks));
        __m256i low = _mm256_setzero_si256();
        __m256i high = _mm256_setzero_si256();
        for (std::int32_t t = 0; t < scan.numTables_; ++t) {
          low = _mm256_or_si256(low, lookUp(letters, scan.tables_[t], scan.tables_[t].low));
          high = _mm256_or_si256(high, lookUp(letters, scan.tables_[t], scan.tables_[t].high));
        }
        // Within each half of a register; packing at the end brings the words into order again.
        first.step(reinterpret_cast<Pairs>(_mm256_unpacklo_epi8(low, high)));
        second.step(reinterpret_cast<Pairs>(_mm256_unpackhi_epi8(low, high)));
      }
      const __m256i sums = _mm256_packs_epi16(widen(sum(first, inside)), widen(sum(second, inside)));
      masks[b] = atMost(sums, maxEdits - numLetters);
    }
  }

  /// The sums of neighbouring bytes, signed.
  QOC_AVX2 __attribute__((always_inline)) static inline __m256i widen(__m256i bytes) noexcept {
    return _mm256_maddubs_epi16(_mm256_set1_epi8(1), bytes);
  }
};

namespace {

/// The machine that this runs on.
struct ThisMachine {
  static bool ask(unsigned number, ProcessorAnswer &answer) noexcept {
    return __get_cpuid_count(number, 0, &answer.a, &answer.b, &answer.c, &answer.d) != 0;
  }
  __attribute__((target("xsave"))) static std::uint64_t savedRegisters() noexcept { return _xgetbv(0); }
};

}  // namespace

bool BlockScan::isAvailable() noexcept { return hasWideRegisters(ThisMachine()); }

void BlockScan::scan(const Letter *blocks, std::size_t numBlocks, std::int32_t numLetters, std::int32_t maxEdits,
                     std::uint32_t *masks) const noexcept {
  (numPositions_ <= 8 ? Kernel::scanBytes : Kernel::scanPairs)(*this, blocks, numBlocks, numLetters, maxEdits, masks);
}

#else

bool BlockScan::isAvailable() noexcept { return false; }

void BlockScan::scan(const Letter *, std::size_t, std::int32_t, std::int32_t, std::uint32_t *) const noexcept {}

#endif

}  // namespace qoc
