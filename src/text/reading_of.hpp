#pragma once
// A plain string as a reading, for the operations that only know readings.

#include <qoc/dictionary_string.h>

#include "frame/frame.hpp"

namespace qoc {

/// Runs body(reading) with a reading that has each character of the string as the only candidate of its position.
template <class Body>
qsys_status withReadingOf(const qoc_ocrDictionaryString &string, Body body) {
  qoc_ocrDictionaryStringMulti reading;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryStringMulti_constructString(&reading, &string));
    frame.local<qoc_ocrDictionaryStringMulti_destruct>(&reading);
    return body(reading);
  });
}

}  // namespace qoc
