// The dictionary: its life, and the access to its entries.

#include "qoc/dictionary.h"

#include "frame/frame.hpp"
#include "platform/system/certain.hpp"

using qoc::answerOf;
using qoc::present;

namespace {

/// The entry at an index, in a vector of the dictionary; Get is the vector's getElement or getElementConst.
template <auto Get, class V, class T>
qsys_status findEntry(V &entries, std::int32_t index, T *&entry) {
  if (index < 0) {
    return QOC_STATUS_INDEX_NEGATIVE;
  }
  return index < entries.core.size ? Get(&entries, index, &entry) : QOC_STATUS_INDEX_TOO_BIG;
}

/// Grows a vector to hold the index; a negative one is left to the access that follows.
template <auto Resize, class V>
qsys_status growToHold(V &entries, std::int32_t index) {
  if (index < entries.core.size) {
    return QSYS_STATUS_OK;
  }
  return index == INT32_MAX ? static_cast<qsys_status>(QSTD_STATUS_SIZE_INVALID) : Resize(&entries, index + 1);
}

}  // namespace

qsys_status qoc_ocrDictionary_construct(qoc_ocrDictionary *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  // Lists without entries take no memory, and nothing is left of them where the swap set fails.
  QOC_SURE(qstd_vector_qoc_ocrDictionaryLexicon_constructEmpty(&object->lexicons));
  QOC_SURE(qstd_vector_qoc_ocrDictionaryRegularExpression_constructEmpty(&object->regularExpressions));
  QOC_SURE(qstd_vector_qoc_ocrDictionaryLineFielding_constructEmpty(&object->fieldings));
  return qoc_swapCharSet_construct(&object->swapCharSet);
}

qsys_status qoc_ocrDictionary_constructCopy(qoc_ocrDictionary *object, const qoc_ocrDictionary *source) {
  return qoc::constructThenAssign<qoc_ocrDictionary_construct, qoc_ocrDictionary_assign, qoc_ocrDictionary_destruct>(
      object, source);
}

qsys_status qoc_ocrDictionary_assign(qoc_ocrDictionary *object, const qoc_ocrDictionary *source) {
  if (!present({object, source}) || object == source) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_swapCharSet_assign(&object->swapCharSet, &source->swapCharSet));
  QOC_TRY(qstd_vector_qoc_ocrDictionaryLexicon_assign(&object->lexicons, &source->lexicons));
  QOC_TRY(
      qstd_vector_qoc_ocrDictionaryRegularExpression_assign(&object->regularExpressions, &source->regularExpressions));
  return qstd_vector_qoc_ocrDictionaryLineFielding_assign(&object->fieldings, &source->fieldings);
}

qsys_status qoc_ocrDictionary_destruct(qoc_ocrDictionary *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  qsys_status first = QSYS_STATUS_OK;
  for (const qsys_status status : {qstd_vector_qoc_ocrDictionaryLineFielding_destruct(&object->fieldings),
                                   qstd_vector_qoc_ocrDictionaryRegularExpression_destruct(&object->regularExpressions),
                                   qstd_vector_qoc_ocrDictionaryLexicon_destruct(&object->lexicons),
                                   qoc_swapCharSet_destruct(&object->swapCharSet)}) {
    first = QOC_NEVER(first < 0) ? first : status;  // What the members hold is destructed without fail.
  }
  return first;
}

qsys_status qoc_ocrDictionary_compareEqual(const qoc_ocrDictionary *a, const qoc_ocrDictionary *b, qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  const bool areEqual = answerOf<qoc_swapCharSet_compareEqual>(a->swapCharSet, b->swapCharSet) &&
                        answerOf<qstd_vector_qoc_ocrDictionaryLexicon_compareEqual>(a->lexicons, b->lexicons) &&
                        answerOf<qstd_vector_qoc_ocrDictionaryLineFielding_compareEqual>(a->fieldings, b->fieldings) &&
                        answerOf<qstd_vector_qoc_ocrDictionaryRegularExpression_compareEqual>(a->regularExpressions,
                                                                                              b->regularExpressions);
  *isEqual = areEqual ? 1 : 0;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionary_getIsEmpty(const qoc_ocrDictionary *dictionary, qsys_bool *isEmpty) {
  if (present({dictionary, isEmpty})) {
    const bool hasEntries = dictionary->lexicons.core.size > 0 || dictionary->regularExpressions.core.size > 0 ||
                            dictionary->fieldings.core.size > 0;
    *isEmpty = hasEntries ? 0 : 1;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionary_getSwapCharSet(const qoc_ocrDictionary *dictionary, qoc_swapCharSet *set) {
  return present({dictionary, set}) ? qoc_swapCharSet_assign(set, &dictionary->swapCharSet) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionary_setSwapCharSet(qoc_ocrDictionary *dictionary, const qoc_swapCharSet *set) {
  return present({dictionary, set}) ? qoc_swapCharSet_assign(&dictionary->swapCharSet, set) : QSYS_STATUS_OK;
}

// The access to one kind of entry, as declared by QOC_DECLARE_DICTIONARY_KIND; `member` is its vector in the
// dictionary.
#define QOC_DEFINE_DICTIONARY_KIND(X, Xs, member, V, T)                                                         \
  qsys_status qoc_ocrDictionary_getNum##Xs(const qoc_ocrDictionary *dictionary, int32_t *n) {                   \
    return present({dictionary, n}) ? V##_getSize(&dictionary->member, n) : QSYS_STATUS_OK;                     \
  }                                                                                                             \
  qsys_status qoc_ocrDictionary_get##Xs(const qoc_ocrDictionary *dictionary, V *entries) {                      \
    return present({dictionary, entries}) ? V##_assign(entries, &dictionary->member) : QSYS_STATUS_OK;          \
  }                                                                                                             \
  qsys_status qoc_ocrDictionary_set##Xs(qoc_ocrDictionary *dictionary, const V *entries) {                      \
    return present({dictionary, entries}) ? V##_assign(&dictionary->member, entries) : QSYS_STATUS_OK;          \
  }                                                                                                             \
  qsys_status qoc_ocrDictionary_get##X##I(const qoc_ocrDictionary *dictionary, int32_t index, T *entry) {       \
    if (!present({dictionary, entry})) {                                                                        \
      return QSYS_STATUS_OK;                                                                                    \
    }                                                                                                           \
    const T *found = nullptr;                                                                                   \
    QOC_TRY(findEntry<V##_getElementConst>(dictionary->member, index, found));                                  \
    return T##_assign(entry, found);                                                                            \
  }                                                                                                             \
  qsys_status qoc_ocrDictionary_set##X##I(qoc_ocrDictionary *dictionary, int32_t index, const T *entry) {       \
    if (!present({dictionary, entry})) {                                                                        \
      return QSYS_STATUS_OK;                                                                                    \
    }                                                                                                           \
    T *found = nullptr;                                                                                         \
    QOC_TRY(findEntry<V##_getElement>(dictionary->member, index, found));                                       \
    return T##_assign(found, entry);                                                                            \
  }                                                                                                             \
  qsys_status qoc_ocrDictionary_get##X##IExtend(qoc_ocrDictionary *dictionary, int32_t index, T *entry) {       \
    if (!present({dictionary, entry})) {                                                                        \
      return QSYS_STATUS_OK;                                                                                    \
    }                                                                                                           \
    QOC_TRY(growToHold<V##_resize>(dictionary->member, index));                                                 \
    return qoc_ocrDictionary_get##X##I(dictionary, index, entry);                                               \
  }                                                                                                             \
  qsys_status qoc_ocrDictionary_set##X##IExtend(qoc_ocrDictionary *dictionary, int32_t index, const T *entry) { \
    if (!present({dictionary, entry})) {                                                                        \
      return QSYS_STATUS_OK;                                                                                    \
    }                                                                                                           \
    QOC_TRY(growToHold<V##_resize>(dictionary->member, index));                                                 \
    return qoc_ocrDictionary_set##X##I(dictionary, index, entry);                                               \
  }

QOC_DEFINE_DICTIONARY_KIND(Lexicon, Lexicons, lexicons, qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon)
QOC_DEFINE_DICTIONARY_KIND(RegularExpression, RegularExpressions, regularExpressions,
                           qstd_vector_qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryRegularExpression)
QOC_DEFINE_DICTIONARY_KIND(Fielding, Fieldings, fieldings, qstd_vector_qoc_ocrDictionaryLineFielding,
                           qoc_ocrDictionaryLineFielding)

qsys_status qoc_ocrDictionary_removeLexiconI(qoc_ocrDictionary *dictionary, int32_t index) {
  if (!present({dictionary})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryLexicon *found = nullptr;
  QOC_TRY(findEntry<qstd_vector_qoc_ocrDictionaryLexicon_getElement>(dictionary->lexicons, index, found));
  return qstd_vector_qoc_ocrDictionaryLexicon_eraseElement(&dictionary->lexicons, index);
}
