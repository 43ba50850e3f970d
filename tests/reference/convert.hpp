#ifndef QOC_TESTS_REFERENCE_CONVERT_HPP
#define QOC_TESTS_REFERENCE_CONVERT_HPP

/** @file Between the reference model's values and the library's records, and the comparison of the two. */

#include <string>

#include <qoc/dictionary.h>

#include "reference/line_fielding.hpp"

namespace reference {

/** A record of the library, constructed and destroyed with the holder. */
template <typename Record, auto Construct, auto Destruct>
class Held {
 public:
  Held() { Construct(&record_); }
  ~Held() { Destruct(&record_); }
  Held(const Held &) = delete;
  Held &operator=(const Held &) = delete;
  Record *operator&() { return &record_; }
  const Record *operator&() const { return &record_; }
  Record *get() { return &record_; }
  const Record *get() const { return &record_; }
  Record *operator->() { return &record_; }
  const Record &operator*() const { return record_; }

 private:
  Record record_;
};

using HeldString = Held<qoc_ocrDictionaryString, qoc_ocrDictionaryString_construct, qoc_ocrDictionaryString_destruct>;
using HeldMulti =
    Held<qoc_ocrDictionaryStringMulti, qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>;
using HeldStrings = Held<qstd_vector_qoc_ocrDictionaryString, qstd_vector_qoc_ocrDictionaryString_constructEmpty,
                         qstd_vector_qoc_ocrDictionaryString_destruct>;
using HeldResult = Held<qoc_ocrDictionaryResult, qoc_ocrDictionaryResult_construct, qoc_ocrDictionaryResult_destruct>;
using HeldResultSet =
    Held<qoc_ocrDictionaryResultSet, qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>;
using HeldResults = Held<qstd_vector_qoc_ocrDictionaryResult, qstd_vector_qoc_ocrDictionaryResult_constructEmpty,
                         qstd_vector_qoc_ocrDictionaryResult_destruct>;
using HeldBuckets =
    Held<qstd_vector_vector_qoc_ocrDictionaryResult, qstd_vector_vector_qoc_ocrDictionaryResult_constructEmpty,
         qstd_vector_vector_qoc_ocrDictionaryResult_destruct>;
using HeldPositionFielding = Held<qoc_ocrDictionaryPositionFielding, qoc_ocrDictionaryPositionFielding_construct,
                                  qoc_ocrDictionaryPositionFielding_destruct>;
using HeldLineFielding = Held<qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding_construct,
                              qoc_ocrDictionaryLineFielding_destruct>;
using HeldLexicon =
    Held<qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon_construct, qoc_ocrDictionaryLexicon_destruct>;

void toRecord(const Word &word, qoc_ocrDictionaryString *record);
void toRecord(const Reading &reading, qoc_ocrDictionaryStringMulti *record);
void toRecord(const std::vector<Word> &words, qstd_vector_qoc_ocrDictionaryString *record);
void toRecord(const Result &result, qoc_ocrDictionaryResult *record);
void toRecord(const Results &results, qstd_vector_qoc_ocrDictionaryResult *record);
void toRecord(const ResultSet &set, qoc_ocrDictionaryResultSet *record);
void toRecord(const Buckets &buckets, qstd_vector_vector_qoc_ocrDictionaryResult *record);
void toRecord(const Word &characters, qstd_vector_qoc_ocrDictionaryChar *record);
void toRecord(const Position &position, qoc_ocrDictionaryCharMulti *record);
void toRecord(const std::vector<uint32_t> &codes, qstd_vectorChar32 *record);
/** Sets bits and list whatever the setters would say of them. */
void toRecord(const PositionFielding &fielding, qoc_ocrDictionaryPositionFielding *record);
void toRecord(const LineFielding &line, qoc_ocrDictionaryLineFielding *record);

Word fromRecord(const qstd_vector_qoc_ocrDictionaryChar &record);
std::vector<uint32_t> fromRecord(const qstd_vectorChar32 &record);
Word fromRecord(const qoc_ocrDictionaryString &record);
Reading fromRecord(const qoc_ocrDictionaryStringMulti &record);
std::vector<Word> fromRecord(const qstd_vector_qoc_ocrDictionaryString &record);
Result fromRecord(const qoc_ocrDictionaryResult &record);
Results fromRecord(const qstd_vector_qoc_ocrDictionaryResult &record);
ResultSet fromRecord(const qoc_ocrDictionaryResultSet &record);
Buckets fromRecord(const qstd_vector_vector_qoc_ocrDictionaryResult &record);

/** How far the ranking's cached counters are determined. */
enum class Caches {
  /** Every field is compared: no scoring order has ranked the results, so only the merge walk, which is fixed, cached.
   */
  exact,
  /**
   * Which pairs an array sort compares is its own affair, and with it which results have counters and the wide score
   * mask. So a counter is compared where both sides have it, and the mask must be the one that a computed score was
   * computed with.
   */
  bySort
};

/** What rankings by the given parameters leave determined. @param[in] params may be null */
Caches cachesOf(const RunParams *params);

/** Tells the first difference, or gives "" where there is none. */
std::string difference(const Result &expected, const Result &actual, Caches caches);
std::string difference(const Results &expected, const Results &actual, Caches caches);
std::string difference(const ResultSet &expected, const ResultSet &actual, Caches caches);
/** The same where only the members count, in any order. `orderIndex` is not looked at. */
std::string membershipDifference(Results expected, Results actual, Caches caches);

/** Values as text, for the description of a case. */
std::string toText(const Word &word);
std::string toText(const Reading &reading);
std::string toText(const RunParams *params);
std::string toText(const Swaps *swaps);
std::string toText(const PositionFielding &fielding);
std::string toText(const LineFielding &line);
std::string toText(const Result &result);
std::string toText(const ResultSet &set);

}  // namespace reference

#endif
