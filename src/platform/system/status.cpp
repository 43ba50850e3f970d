// The names and sentences of the statuses, from the list in base.h.

#include <qoc/base.h>

namespace {

struct StatusEntry {
  qsys_status value;
  const char *name, *text;
};

#define QOC_STATUS_ENTRY(name, value, text) {static_cast<qsys_status>(value), #name, text},
constexpr StatusEntry statuses[] = {QOC_STATUS_LIST(QOC_STATUS_ENTRY)};
#undef QOC_STATUS_ENTRY

const StatusEntry *find(qsys_status status) {
  for (const StatusEntry &entry : statuses) {
    if (entry.value == status) {
      return &entry;
    }
  }
  return nullptr;
}

}  // namespace

const char *qoc_status_getText(qsys_status status) {
  if (const StatusEntry *entry = find(status)) {
    return entry->text;
  }
  return status >= 0 ? statuses[0].text : "unknown status";
}

const char *qoc_status_getName(qsys_status status) {
  const StatusEntry *entry = find(status);
  return entry != nullptr ? entry->name : "";
}
