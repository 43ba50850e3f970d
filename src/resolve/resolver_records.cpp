// The records of the resolver: their lives, and the validation of rules.

#include <qoc/resolver.h>

#include "frame/frame.hpp"
#include "platform/containers/view.hpp"
#include "platform/system/enumeration.hpp"

using namespace qoc;

namespace {

constexpr std::int32_t maxTextsAllowed = 1000;

#define QOC_OUTCOME_ENTRY(name, value) {value, #name},
constexpr EnumerationEntry outcomes[] = {QOC_OUTCOME_LIST(QOC_OUTCOME_ENTRY)};
#undef QOC_OUTCOME_ENTRY

}  // namespace

// Confusions --------------------------------------------------------------------------------------------------------

qsys_status qoc_ocrDictionaryConfusion_construct(qoc_ocrDictionaryConfusion *confusion) {
  if (present({confusion})) {
    *confusion = {};
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryConfusion_constructCopy(qoc_ocrDictionaryConfusion *confusion,
                                                     const qoc_ocrDictionaryConfusion *source) {
  return qoc_ocrDictionaryConfusion_assign(confusion, source);
}

qsys_status qoc_ocrDictionaryConfusion_assign(qoc_ocrDictionaryConfusion *confusion,
                                              const qoc_ocrDictionaryConfusion *source) {
  if (present({confusion, source})) {
    *confusion = *source;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryConfusion_destruct(qoc_ocrDictionaryConfusion *confusion) {
  present({confusion});
  return QSYS_STATUS_OK;
}

// Checks of entries -------------------------------------------------------------------------------------------------

qsys_status qoc_ocrDictionaryEntryCheck_construct(qoc_ocrDictionaryEntryCheck *check) {
  if (!present({check})) {
    return QSYS_STATUS_OK;
  }
  check->mode = qoc_ocrDictionaryMode_fielding;
  check->entry = 0;
  return qoc_checkDigitRule_construct(&check->rule);
}

qsys_status qoc_ocrDictionaryEntryCheck_constructCopy(qoc_ocrDictionaryEntryCheck *check,
                                                      const qoc_ocrDictionaryEntryCheck *source) {
  return constructThenAssign<qoc_ocrDictionaryEntryCheck_construct, qoc_ocrDictionaryEntryCheck_assign,
                             qoc_ocrDictionaryEntryCheck_destruct>(check, source);
}

qsys_status qoc_ocrDictionaryEntryCheck_assign(qoc_ocrDictionaryEntryCheck *check,
                                               const qoc_ocrDictionaryEntryCheck *source) {
  if (!present({check, source})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_checkDigitRule_assign(&check->rule, &source->rule));
  check->mode = source->mode;
  check->entry = source->entry;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryEntryCheck_destruct(qoc_ocrDictionaryEntryCheck *check) {
  return present({check}) ? qoc_checkDigitRule_destruct(&check->rule) : QSYS_STATUS_OK;
}

// Rules -------------------------------------------------------------------------------------------------------------

qsys_status qoc_ocrDictionaryResolverRules_construct(qoc_ocrDictionaryResolverRules *rules) {
  if (!present({rules})) {
    return QSYS_STATUS_OK;
  }
  rules->alternativePenalty = 2500;
  rules->laterPenalty = 2000;
  rules->swapPenalty = 9000;
  rules->substitutedPenalty = 4000;
  rules->missingPenalty = 5500;
  rules->extraPenalty = 2500;
  rules->doubledPenalty = 8000;
  rules->leadCap = 4000;
  rules->maxLag = 40000;
  rules->maxMargin = 4000;
  rules->freeWord = {-4000, 1500, 75};
  rules->freeShape = {8000, 0, 30};
  rules->minMargin = 3000;
  rules->requiresCheck = 0;
  rules->maxTexts = 5;
  return firstFailure({qstd_vector_qoc_ocrDictionaryConfusion_constructEmpty(&rules->confusions),
                       qstd_vector_qoc_ocrDictionaryEntryCheck_constructEmpty(&rules->checks)});
}

qsys_status qoc_ocrDictionaryResolverRules_constructCopy(qoc_ocrDictionaryResolverRules *rules,
                                                         const qoc_ocrDictionaryResolverRules *source) {
  return constructThenAssign<qoc_ocrDictionaryResolverRules_construct, qoc_ocrDictionaryResolverRules_assign,
                             qoc_ocrDictionaryResolverRules_destruct>(rules, source);
}

qsys_status qoc_ocrDictionaryResolverRules_assign(qoc_ocrDictionaryResolverRules *rules,
                                                  const qoc_ocrDictionaryResolverRules *source) {
  if (!present({rules, source})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qoc_ocrDictionaryConfusion_assign(&rules->confusions, &source->confusions));
  QOC_TRY(qstd_vector_qoc_ocrDictionaryEntryCheck_assign(&rules->checks, &source->checks));
  const auto confusions = rules->confusions;
  const auto checks = rules->checks;
  *rules = *source;
  rules->confusions = confusions;
  rules->checks = checks;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResolverRules_destruct(qoc_ocrDictionaryResolverRules *rules) {
  if (!present({rules})) {
    return QSYS_STATUS_OK;
  }
  return firstFailure({qstd_vector_qoc_ocrDictionaryEntryCheck_destruct(&rules->checks),
                       qstd_vector_qoc_ocrDictionaryConfusion_destruct(&rules->confusions)});
}

qsys_status qoc_ocrDictionaryResolverRules_validate(const qoc_ocrDictionaryResolverRules *rules) {
  if (!present({rules})) {
    return QSYS_STATUS_OK;
  }
  for (const std::int32_t number :
       {rules->alternativePenalty, rules->laterPenalty, rules->swapPenalty, rules->substitutedPenalty,
        rules->missingPenalty, rules->extraPenalty, rules->doubledPenalty, rules->leadCap, rules->maxLag,
        rules->maxMargin, rules->freeWord.perCharacter, rules->freeWord.leadPercent, rules->freeShape.perCharacter,
        rules->freeShape.leadPercent, rules->minMargin}) {
    if (number < 0) {
      return QOC_STATUS_PENALTY_NEGATIVE;
    }
  }
  for (const qoc_ocrDictionaryConfusion &confusion : viewAs<qoc_ocrDictionaryConfusion>(rules->confusions)) {
    if (confusion.listedPenalty < 0 || confusion.swapPenalty < 0) {
      return QOC_STATUS_PENALTY_NEGATIVE;
    }
  }
  if (rules->maxTexts < 1 || rules->maxTexts > maxTextsAllowed) {
    return QOC_STATUS_TEXTS_INVALID;
  }
  for (const qoc_ocrDictionaryEntryCheck &check : viewAs<qoc_ocrDictionaryEntryCheck>(rules->checks)) {
    QOC_TRY(qoc_checkDigitRule_validate(&check.rule));
  }
  return QSYS_STATUS_OK;
}

// Resolved texts ----------------------------------------------------------------------------------------------------

qsys_status qoc_ocrDictionaryResolvedText_construct(qoc_ocrDictionaryResolvedText *text) {
  if (!present({text})) {
    return QSYS_STATUS_OK;
  }
  text->total = text->margin = text->numOpen = 0;
  text->resultIndex = -1;
  text->mode = qoc_ocrDictionaryMode_fielding;
  text->hasCheck = text->passesCheck = 0;
  return firstFailure({qoc_ocrDictionaryString_construct(&text->text),
                       qstd_vector32s_constructEmpty(&text->inputIndices),
                       qstd_vector32s_constructEmpty(&text->candidateIndices)});
}

qsys_status qoc_ocrDictionaryResolvedText_constructCopy(qoc_ocrDictionaryResolvedText *text,
                                                        const qoc_ocrDictionaryResolvedText *source) {
  return constructThenAssign<qoc_ocrDictionaryResolvedText_construct, qoc_ocrDictionaryResolvedText_assign,
                             qoc_ocrDictionaryResolvedText_destruct>(text, source);
}

qsys_status qoc_ocrDictionaryResolvedText_assign(qoc_ocrDictionaryResolvedText *text,
                                                 const qoc_ocrDictionaryResolvedText *source) {
  if (!present({text, source})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryString_assign(&text->text, &source->text));
  QOC_TRY(qstd_vector32s_assign(&text->inputIndices, &source->inputIndices));
  QOC_TRY(qstd_vector32s_assign(&text->candidateIndices, &source->candidateIndices));
  text->total = source->total;
  text->margin = source->margin;
  text->resultIndex = source->resultIndex;
  text->mode = source->mode;
  text->hasCheck = source->hasCheck;
  text->passesCheck = source->passesCheck;
  text->numOpen = source->numOpen;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResolvedText_destruct(qoc_ocrDictionaryResolvedText *text) {
  if (!present({text})) {
    return QSYS_STATUS_OK;
  }
  return firstFailure({qstd_vector32s_destruct(&text->candidateIndices), qstd_vector32s_destruct(&text->inputIndices),
                       qoc_ocrDictionaryString_destruct(&text->text)});
}

// Resolutions -------------------------------------------------------------------------------------------------------

const char *qoc_ocrDictionaryOutcome_getName(qoc_ocrDictionaryOutcome outcome) { return textIn(outcomes, outcome); }

qsys_status qoc_ocrDictionaryResolution_construct(qoc_ocrDictionaryResolution *resolution) {
  if (!present({resolution})) {
    return QSYS_STATUS_OK;
  }
  resolution->outcome = qoc_ocrDictionaryOutcome_none;
  resolution->hasScores = 0;
  return qstd_vector_qoc_ocrDictionaryResolvedText_constructEmpty(&resolution->texts);
}

qsys_status qoc_ocrDictionaryResolution_constructCopy(qoc_ocrDictionaryResolution *resolution,
                                                      const qoc_ocrDictionaryResolution *source) {
  return constructThenAssign<qoc_ocrDictionaryResolution_construct, qoc_ocrDictionaryResolution_assign,
                             qoc_ocrDictionaryResolution_destruct>(resolution, source);
}

qsys_status qoc_ocrDictionaryResolution_assign(qoc_ocrDictionaryResolution *resolution,
                                               const qoc_ocrDictionaryResolution *source) {
  if (!present({resolution, source})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qoc_ocrDictionaryResolvedText_assign(&resolution->texts, &source->texts));
  resolution->outcome = source->outcome;
  resolution->hasScores = source->hasScores;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResolution_destruct(qoc_ocrDictionaryResolution *resolution) {
  return present({resolution}) ? qstd_vector_qoc_ocrDictionaryResolvedText_destruct(&resolution->texts)
                               : QSYS_STATUS_OK;
}
