#ifndef QOC_TESTS_REFERENCE_FIELDING_RUN_HPP
#define QOC_TESTS_REFERENCE_FIELDING_RUN_HPP

/** @file Reference model of the fielding run. */

#include <qoc/fielding_run.h>

#include "reference/line_fielding.hpp"

namespace reference {

using FieldingRunParams = qoc_ocrDictionaryFieldingRunParams;

/** 0, or the status of the first fault. */
int32_t validate(const FieldingRunParams &params);

/** The one result of a line forced upon a reading; throws Failed. @param[in] swaps may be null */
ResultSet runFielding(const LineFielding &line, const Swaps *swaps, const Reading &reading,
                      const FieldingRunParams &params, Polls &polls);

}  // namespace reference

#endif
