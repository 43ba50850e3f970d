#ifndef QOC_RESOLVER_H
#define QOC_RESOLVER_H

/** @file One text out of the results of a run, and how sure it is. */

#include <qoc/check_digit.h>
#include <qoc/dictionary.h>

QOC_BEGIN_DECLS

/**
 * What it costs to take one character of a reading for another.
 *
 * With QOC_CHAR_EMPTY as `meant`, `read` is an extra character: its position keeps its score, less swapPenalty. With
 * QOC_CHAR_EMPTY as `read`, swapPenalty is that of `meant` as a missing character. All 0 after construction. Owns
 * nothing.
 */
typedef struct qoc_ocrDictionaryConfusion {
  Char32 read, meant;
  int32_t listedPenalty; /**< Where `read` is the first candidate of a position and `meant` another one of it; at most
                            the scores between them count. */
  int32_t swapPenalty; /**< Where `read` is a candidate, `meant` is none, and the swap character set lets one stand for
                          the other. */
} qoc_ocrDictionaryConfusion;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryConfusion)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryConfusion, qoc_ocrDictionaryConfusion)

/** A check that the texts of one entry of the dictionary have to pass. */
typedef struct qoc_ocrDictionaryEntryCheck {
  qoc_ocrDictionaryMode mode; /**< [fielding] The kind of the entry. */
  int32_t entry;              /**< [0] Its index among those of its kind. */
  qoc_checkDigitRule rule;    /**< Owned. */
} qoc_ocrDictionaryEntryCheck;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryEntryCheck)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryEntryCheck, qoc_ocrDictionaryEntryCheck)

/** How much a reading speaks against being anything that the dictionary describes. Owns nothing. */
typedef struct qoc_ocrDictionaryFreeText {
  int32_t base;         /**< The penalty of a text that the dictionary does not describe; it alone may be negative. */
  int32_t perCharacter; /**< What each position of the reading adds to it. */
  int32_t leadPercent;  /**< Per cent of a position's lead (of the first candidate over the second) that it adds. */
} qoc_ocrDictionaryFreeText;

/**
 * How texts are weighed against each other. All numbers are in the unit of the reader's scores and not negative; the
 * defaults, in brackets, are for scores from 0 to 10000. docs/resolver.md says how they were learnt.
 *
 * The total of a text is the sum of the scores of the candidates that it takes, less the penalties. No candidate counts
 * for more than the first one of its position. A swap equivalent takes the score of the candidate that it stands for. A
 * position of the reading without a character in the text, or with one that it does not show, counts 0.
 *
 * A reading whose scores are all 0 has none. Its texts are weighed by the number of differences from its first
 * candidates (other candidates, swaps, edits), and by the penalties among those with equally many.
 */
typedef struct qoc_ocrDictionaryResolverRules {
  int32_t alternativePenalty; /**< A candidate that is not the first; at most as much as its score is behind. */
  int32_t laterPenalty;       /**< The same, in addition, from the third on. */
  int32_t swapPenalty;        /**< A swap equivalent of a candidate, and a multi-character swap. */
  int32_t substitutedPenalty; /**< A character that the position does not show. */
  int32_t missingPenalty;     /**< A character that has no position in the reading. */
  int32_t extraPenalty;       /**< A position of the reading that has no character in the text. */
  int32_t doubledPenalty; /**< The same, where it could be read as the character beside it (one glyph read twice): it
                             keeps its score, less this. */
  int32_t leadCap;        /**< The lead of a position counts as this at most. */
  int32_t maxLag;         /**< Texts further behind the best one that the results allow are not looked for. */
  int32_t maxMargin; /**< Margins are counted up to this, or to minMargin where that is more. Where one text is wanted,
                        none further behind it is looked for. */
  qoc_ocrDictionaryFreeText freeWord;  /**< Where the best text is a word of a lexicon. */
  qoc_ocrDictionaryFreeText freeShape; /**< Where it comes from a fielding or an expression. */
  int32_t minMargin;       /**< The margin from which a text is sure; one that another text equals never is. */
  qsys_bool requiresCheck; /**< [0] 1: a text without a check digit is not sure. */
  int32_t maxTexts;        /**< [5] Texts to give, from 1 to 1000. */
  qstd_vector_qoc_ocrDictionaryConfusion
      confusions;                                 /**< [empty] Owned. The first one for a pair of characters counts. */
  qstd_vector_qoc_ocrDictionaryEntryCheck checks; /**< [empty] Owned. */
} qoc_ocrDictionaryResolverRules;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryResolverRules)

/**
 * Checks the numbers and the check digit rules; the first fault wins.
 *
 * @return 0; QOC_STATUS_PENALTY_NEGATIVE; QOC_STATUS_TEXTS_INVALID; a status of qoc_checkDigitRule_validate
 */
QOC_API qsys_status qoc_ocrDictionaryResolverRules_validate(const qoc_ocrDictionaryResolverRules *rules);

#define QOC_RESOLVER_OPEN 0x3Fu /**< Stands in a text for a character that is not known: "?". */

/** One text that the reading can be. */
typedef struct qoc_ocrDictionaryResolvedText {
  qoc_ocrDictionaryString text; /**< [empty] Its characters with the scores that they count. */
  int32_t total;                /**< [0] Scores less penalties. */
  int32_t margin; /**< [0] Lead over the next different text, or over the reading as free text; 0 without scores. */
  int32_t resultIndex; /**< [-1] The result of the set that it comes from, or -1 where the set does not show it. */
  qoc_ocrDictionaryMode mode;      /**< [fielding] The kind of entry that describes it. */
  qstd_vector32s inputIndices;     /**< [empty] For each character its position in the reading, or -1. */
  qstd_vector32s candidateIndices; /**< [empty] For each character the candidate of its position that it is or stands
                                      for, or -1. */
  qsys_bool hasCheck;              /**< [0] 1 where its entry has a check digit. */
  qsys_bool passesCheck;           /**< [0] 1 where it passes all of them. */
  int32_t numOpen;                 /**< [0] Characters that are not known. */
} qoc_ocrDictionaryResolvedText;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryResolvedText)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryResolvedText, qoc_ocrDictionaryResolvedText)

/** Every outcome: name, value. */
#define QOC_OUTCOME_LIST(X)                          \
  X(none, 0)   /* No text: the results show none. */ \
  X(unsure, 1) /* The best text is doubtful. */      \
  X(sure, 2)   /* The best text can be taken. */

typedef int32_t qoc_ocrDictionaryOutcome; /**< One of QOC_OUTCOME_LIST. */

#define QOC_OUTCOME_CONSTANT(name, value) qoc_ocrDictionaryOutcome_##name = value,
enum { QOC_OUTCOME_LIST(QOC_OUTCOME_CONSTANT) };
#undef QOC_OUTCOME_CONSTANT

/** The outcome's name, such as "sure"; "" for a number that is none. The text is constant. */
QOC_API const char *qoc_ocrDictionaryOutcome_getName(qoc_ocrDictionaryOutcome outcome);

/** What came of resolving one reading. */
typedef struct qoc_ocrDictionaryResolution {
  qoc_ocrDictionaryOutcome outcome; /**< [none] */
  qsys_bool hasScores; /**< [0] 0: the reading has no scores, and no margin can be told. Its best text is sure where no
                          other text has as few differences from it. */
  qstd_vector_qoc_ocrDictionaryResolvedText texts; /**< [empty] All different, best first. Owned. */
} qoc_ocrDictionaryResolution;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryResolution)

/**
 * Chooses among the texts that the results of a run stand for.
 *
 * A result leaves several candidates at a position, several results may be near, and a set does not show everything
 * that a dictionary allows: of results that rank equally one stands for all. A resolver that knows the dictionary sees
 * the rest. Concurrent use of one resolver is safe while nobody changes it.
 */
typedef struct qoc_ocrDictionaryResolver {
  qoc_ocrDictionaryResolverRules rules; /**< Owned. To be changed through qoc_ocrDictionaryResolver_setRules. */
  void *knowledge; /**< [null] What the resolver keeps of the dictionary; the library's own, shared between copies. */
} qoc_ocrDictionaryResolver;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryResolver)

/** Copies rules in. @return 0, or a status of qoc_ocrDictionaryResolverRules_validate (the resolver is unchanged) */
QOC_API qsys_status qoc_ocrDictionaryResolver_setRules(qoc_ocrDictionaryResolver *resolver,
                                                       const qoc_ocrDictionaryResolverRules *rules);
/** Copies the rules out. */
QOC_API qsys_status qoc_ocrDictionaryResolver_getRules(const qoc_ocrDictionaryResolver *resolver,
                                                       qoc_ocrDictionaryResolverRules *rules);
/**
 * Lets the resolver know the dictionary that its results come from. It keeps its own copy of what it needs.
 *
 * @param[in] dictionary may be null: the resolver knows none
 */
QOC_API qsys_status qoc_ocrDictionaryResolver_setDictionary(qoc_ocrDictionaryResolver *resolver,
                                                            const qoc_ocrDictionary *dictionary);
/**
 * Gives the best texts of one reading, all different, best first, and says whether the best one is sure.
 *
 * From every result of a fielding or an expression come the texts that its positions allow; a text that fails a check
 * of its entry comes only where none passes. With a dictionary, the words are those of its lexicons within reach of the
 * params, whatever the set shows; characters that an edit leaves open are found out where the entry allows one only, or
 * the check digits leave one; and where the set may not show all results that matter (returnBestOnly, or several
 * entries that are no lexicons) the entries are matched again, each for itself. Without one, the words are those of the
 * set, and only a check with entry 0 is applied. A computed set without results is believed: there is no text.
 *
 * @param[in]  reading the one that the run was given
 * @param[in]  params  those of the run; null stands for the defaults
 * @param[in]  set     the swap character set of the run; null: no swaps
 * @param[in]  results what the run gave
 * @param[out] resolution emptied first
 * @return 0, the attention status when interrupted, or a matcher's failure
 */
QOC_API qsys_status qoc_ocrDictionaryResolver_resolve(const qoc_ocrDictionaryResolver *resolver,
                                                      const qoc_ocrDictionaryStringMulti *reading,
                                                      const qoc_ocrDictionaryRunParams *params,
                                                      const qoc_swapCharSet *set,
                                                      const qoc_ocrDictionaryResultSet *results,
                                                      qoc_ocrDictionaryResolution *resolution);

QOC_END_DECLS

#endif
