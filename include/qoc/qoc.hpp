#ifndef QOC_QOC_HPP
#define QOC_QOC_HPP

/**
 * @file The library in C++20: header-only, over the C functions alone.
 *
 *     qoc::Dictionary dictionary;
 *     dictionary.add(qoc::Lexicon{"Apple", "Pear", "Plum"});
 *     for (qoc::ResultView result : dictionary.run("Aple", {.maxEdits = 1})) {
 *       std::cout << result.utf8() << ", edits: " << result.numEdits() << '\n';
 *     }
 *
 * Every type owns one record of the library (Value) or looks at one (View); `c()` gives the record, so that everything
 * in qoc/ocr_dictionary.h can be used beside this. What fails throws Error; qoc::attempt makes an Expected of any call,
 * and Dictionary::tryRun throws nothing by itself. Text is UTF-8 or std::u32string_view.
 */

#include <qoc/ocr_dictionary.h>
#include <qoc/cpp/dictionary.hpp>
#include <qoc/cpp/resolver.hpp>

#endif
