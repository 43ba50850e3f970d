// String expansion: every reading that the multi-character swaps make of one.
//
// A variant is a way through the reading: from position 0, a choice at each position reached takes one or two positions
// further, until the end. The order that is asked for, keeping before swapping and the first position weighing most, is
// the order of these ways by their choices. So the choices are found once for each position, and then the ways are
// walked like a counter, the last digit first: back up to the last choice that has a next one, take that, and keep
// everything behind it. With the record (m; r, n), "mm" has the choices {m, rn} at both positions and gives m-m, m-rn,
// rn-m, rn-rn.
//
// The cost is that of the choices, records times positions, and of the variants' own characters. Nothing recurses, so
// that a long reading needs no deep stack, and an interrupt is seen at every variant.

#include <qoc/swap_char_set.h>

#include <vector>

#include "frame/frame.hpp"
#include "swap/match.hpp"
#include "swap/string_expand_choices.hpp"
#include "text/views.hpp"

using qoc::editAs;
using qoc::ExpansionChoice;
using qoc::ExpansionChoices;
using qoc::Frame;
using qoc::inFrame;
using qoc::Positions;
using qoc::present;
using qoc::sizeOf;
using qoc::view;

namespace {

/// Whether a record's character is among what the position may be.
bool isRead(Char32 code, const qoc_ocrDictionaryCharMulti &position, const qoc_swapCharSet *set) {
  for (const qoc_ocrDictionaryChar &candidate : view(position)) {
    if (qoc::isMatch(set, code, candidate.code)) {
      return true;
    }
  }
  return false;
}

/// A way through the reading: the choices taken, and where each stands.
class Way {
 public:
  struct Step {
    std::int32_t position;
    std::size_t choice;  // Its number at the position.
  };

  Way(const ExpansionChoices &choices, std::int32_t inputSize) : choices_(choices), inputSize_(inputSize) {
    keepFrom(0);
  }

  const std::vector<Step> &steps() const { return steps_; }
  const ExpansionChoice &choiceOf(const Step &step) const { return choices_.at(step.position)[step.choice]; }

  /// Goes on to the next way. @return false after the last
  bool advance() {
    while (!steps_.empty()) {
      Step &last = steps_.back();
      if (++last.choice < choices_.at(last.position).size()) {
        keepFrom(last.position + choiceOf(last).numRead);
        return true;
      }
      steps_.pop_back();
    }
    return false;
  }

 private:
  void keepFrom(std::int32_t position) {
    for (; position < inputSize_; ++position) {
      steps_.push_back({position, 0});
    }
  }

  const ExpansionChoices &choices_;
  std::int32_t inputSize_;
  std::vector<Step> steps_;
};

/// Makes the character that stands for a swapped-in one: the empty character first, so that it is never the primary
/// reading.
qsys_status appendInserted(Char32 code, qstd_vector_qoc_ocrDictionaryCharMulti *characters) {
  qoc_ocrDictionaryCharMulti inserted;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    const qoc_ocrDictionaryChar candidates[] = {{QOC_CHAR_EMPTY, 0}, {code, 0}};
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_constructFromBlock(&inserted.candidates, candidates, 2));
    frame.local<qoc_ocrDictionaryCharMulti_destruct>(&inserted);
    return qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(characters, &inserted);
  });
}

/// Makes the variant of a way, and its positions.
qsys_status makeVariant(const Way &way, const qoc_ocrDictionaryStringMulti &input,
                        qoc_ocrDictionaryStringMulti *variant, qstd_vector32s *positions) {
  QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_reserve(&variant->positions, sizeOf(input)));
  QOC_TRY(qstd_vector32s_reserve(positions, sizeOf(input)));
  for (const Way::Step &step : way.steps()) {
    QOC_TRY(qoc::appendChoice(way.choiceOf(step), step.position, input, variant, positions));
  }
  return QSYS_STATUS_OK;
}

// What is empty owns nothing, and needs no frame.
qsys_status appendEmptyVariant(qstd_vector_qoc_ocrDictionaryStringMulti *variants) {
  qoc_ocrDictionaryStringMulti empty;
  qoc_ocrDictionaryStringMulti_construct(&empty);
  return qstd_vector_qoc_ocrDictionaryStringMulti_pushBack(variants, &empty);
}

qsys_status appendEmptyPositions(qstd_vector_vector32s *positions) {
  qstd_vector32s empty;
  qstd_vector32s_constructEmpty(&empty);
  return qstd_vector_vector32s_pushBack(positions, &empty);
}

qsys_status makeVariants(const ExpansionChoices &choices, const qoc_ocrDictionaryStringMulti &input,
                         qstd_vector_qoc_ocrDictionaryStringMulti *variants, qstd_vector_vector32s *positions) {
  Way way(choices, sizeOf(input));
  do {
    QOC_TRY(qsys_attention_check());
    // Empty ones are appended and filled in place, so that nothing is copied.
    QOC_TRY(appendEmptyVariant(variants));
    QOC_TRY(appendEmptyPositions(positions));
    QOC_TRY(makeVariant(way, input, &editAs<qoc_ocrDictionaryStringMulti>(*variants).back(),
                        &editAs<qstd_vector32s>(*positions).back()));
  } while (way.advance());
  return QSYS_STATUS_OK;
}

}  // namespace

qsys_status qoc::appendChoice(const ExpansionChoice &choice, std::int32_t position,
                              const qoc_ocrDictionaryStringMulti &input, qoc_ocrDictionaryStringMulti *variant,
                              qstd_vector32s *positions) {
  if (choice.isKept()) {
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&variant->positions,
                                                            &view(input)[static_cast<std::size_t>(position)]));
    QOC_TRY(qstd_vector32s_pushBack(positions, &position));
  }
  for (std::int32_t i = 0; i < choice.numInserted; ++i) {
    QOC_TRY(appendInserted(choice.inserted[i], &variant->positions));
    // The second of two that stand for one comes from the same position; of two that stand for two, from the next.
    const std::int32_t from = position + (choice.numRead == 2 ? i : 0);
    QOC_TRY(qstd_vector32s_pushBack(positions, &from));
  }
  return QSYS_STATUS_OK;
}

qsys_status ExpansionChoices::find(const qoc_stringExpand_ &expansion, const qoc_ocrDictionaryStringMulti &input,
                                   const qoc_swapCharSet *set) {
  const auto oneToTwo = viewAs<qoc_stringExpandOneToTwo_>(expansion.oneToTwo);
  const auto twoToTwo = viewAs<qoc_stringExpandTwoToTwo_>(expansion.twoToTwo);
  const Positions positions = view(input);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    QOC_TRY(qsys_attention_check());
    const bool hasNext = i + 1 < positions.size();
    const auto isPairRead = [&](Char32 first, Char32 second) {
      return hasNext && isRead(first, positions[i], set) && isRead(second, positions[i + 1], set);
    };
    choices_.push_back({1, 0, {0, 0}});
    for (const qoc_stringExpandOneToTwo_ &record : oneToTwo) {
      if (isRead(record.single, positions[i], set)) {
        choices_.push_back({1, 2, {record.pairFirst, record.pairSecond}});
      }
    }
    for (const qoc_stringExpandTwoToTwo_ &record : twoToTwo) {
      if (isPairRead(record.fromFirst, record.fromSecond)) {
        choices_.push_back({2, 2, {record.toFirst, record.toSecond}});
      }
    }
    for (const qoc_stringExpandOneToTwo_ &record : oneToTwo) {
      if (isPairRead(record.pairFirst, record.pairSecond)) {
        choices_.push_back({2, 1, {record.single, 0}});
      }
    }
    ends_.push_back(choices_.size());
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_stringExpand__mapStringMulti(const qoc_stringExpand_ *expansion,
                                             const qoc_ocrDictionaryStringMulti *input, const qoc_swapCharSet *set,
                                             qstd_vector_qoc_ocrDictionaryStringMulti *variants,
                                             qstd_vector_vector32s *positions) {
  if (!present({expansion, input, variants, positions})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qoc_ocrDictionaryStringMulti_clear(variants));
  QOC_TRY(qstd_vector_vector32s_clear(positions));
  if (sizeOf(*input) == 0) {
    return appendEmptyVariant(variants);
  }
  const qsys_status status = inFrame<1>([&](Frame<1> &) -> qsys_status {
    ExpansionChoices choices;
    QOC_TRY(choices.find(*expansion, *input, set));
    return makeVariants(choices, *input, variants, positions);
  });
  if (status < 0) {
    // What was made so far may be very much.
    qstd_vector_qoc_ocrDictionaryStringMulti_clearAndFreeMemory(variants);
    qstd_vector_vector32s_clearAndFreeMemory(positions);
  }
  return status;
}
