// The enumerations that results carry.

#include "qoc/position_status.h"

#include <algorithm>

#include "platform/containers/view.hpp"
#include "platform/system/enumeration.hpp"
#include "platform/system/present.hpp"

using qoc::EnumerationEntry;
using qoc::present;

namespace {

#define QOC_STATUS_ENTRY(name, value) {value, "qoc_ocrDictionaryPositionStatus_" #name},
constexpr EnumerationEntry statuses[] = {QOC_POSITION_STATUS_LIST(QOC_STATUS_ENTRY)};
#undef QOC_STATUS_ENTRY
#define QOC_MODE_ENTRY(name, value) {value, "qoc_ocrDictionaryMode_" #name},
constexpr EnumerationEntry modes[] = {QOC_MODE_LIST(QOC_MODE_ENTRY)};
#undef QOC_MODE_ENTRY

qsys_status printName(std::span<const EnumerationEntry> entries, std::int32_t value) {
  const char *text = qoc::textIn(entries, value);
  return *text != '\0' ? qsys_printfA("%s", text) : QSYS_STATUS_OK;
}

}  // namespace

qsys_status qoc_ocrDictionaryMode_print(qoc_ocrDictionaryMode mode) { return printName(modes, mode); }

qsys_status qoc_ocrDictionaryPositionStatus_print(qoc_ocrDictionaryPositionStatus status) {
  return printName(statuses, status);
}

qsys_status qstd_vector_qoc_ocrDictionaryPositionStatus_reverse(qstd_vector_qoc_ocrDictionaryPositionStatus *vector) {
  if (present({vector})) {
    std::ranges::reverse(qoc::editAs<qoc_ocrDictionaryPositionStatus>(*vector));
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector_qoc_ocrDictionaryPositionStatus_print(
    const qstd_vector_qoc_ocrDictionaryPositionStatus *vector) {
  if (!present({vector})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qsys_printfA(" { "));
  bool isFirst = true;
  for (const qoc_ocrDictionaryPositionStatus status : qoc::viewAs<qoc_ocrDictionaryPositionStatus>(*vector)) {
    if (!isFirst) {
      QOC_TRY(qsys_printfA(" , "));
    }
    QOC_TRY(qoc_ocrDictionaryPositionStatus_print(status));
    isFirst = false;
  }
  return qsys_printfA(" } ");
}
