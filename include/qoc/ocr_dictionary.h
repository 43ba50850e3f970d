#ifndef QOC_OCR_DICTIONARY_H
#define QOC_OCR_DICTIONARY_H

/** @file The whole interface. */

#include <qoc/dictionary.h>
#include <qoc/fielding_run.h>
#include <qoc/resolver.h>

#endif
