#pragma once
// What other files of the library use of dictionary characters beside the public operations.

#include <qoc/dictionary_char.h>

namespace qoc {

/// Prints a character and a blank.
qsys_status print(const qoc_ocrDictionaryChar &character);

}  // namespace qoc
