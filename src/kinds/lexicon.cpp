// Word lists: their life, and the words in them.
//
// A list is put together beside the lexicon and swapped in when it is complete, index included: a call that fails
// leaves the lexicon as it was.

#include <algorithm>
#include <bit>
#include <utility>
#include <vector>

#include "frame/frame.hpp"
#include "kinds/length_order.hpp"
#include "kinds/lexicon_index.hpp"
#include "platform/containers/shared_elements.hpp"
#include "text/views.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;
using qoc::view;
using qoc::WorkMeter;

namespace {

using Strings = qstd_vector_qoc_ocrDictionaryString;
using String = qoc_ocrDictionaryString;

bool haveSameCodes(const String &a, const String &b) noexcept {
  return std::ranges::equal(view(a), view(b), {}, &qoc_ocrDictionaryChar::code, &qoc_ocrDictionaryChar::code);
}

/// The different strings among those put in, in a table of a fixed size with open addresses.
class StringSet {
 public:
  StringSet(std::size_t mostStrings, WorkMeter &meter) : meter_(meter) {
    const std::size_t numSlots = std::bit_ceil(2 * mostStrings + 2);
    slots_.reserve(numSlots);
    while (slots_.size() < numSlots) {  // In parts, so that the memory is not touched in one long go.
      constexpr std::size_t slotsPerPart = 1 << 14;
      meter_.spend(slotsPerPart);
      slots_.resize(std::min(numSlots, slots_.size() + slotsPerPart));
    }
  }

  /// @return whether no equal string was there
  bool insert(const String &string) {
    meter_.spend(16 + qoc::unitsOf(string));
    std::uint64_t hash = 0x9E3779B97F4A7C15u;
    for (const qoc_ocrDictionaryChar &character : view(string)) {
      hash = (hash ^ character.code) * 0xFF51AFD7ED558CCDu;
      hash ^= hash >> 32;
    }
    for (std::size_t at = hash & (slots_.size() - 1);; at = (at + 1) & (slots_.size() - 1)) {
      Slot &slot = slots_[at];
      if (slot.string == nullptr) {
        slot = {hash, &string};
        return true;
      }
      if (slot.hash == hash && haveSameCodes(*slot.string, string)) {
        return false;
      }
    }
  }

 private:
  struct Slot {
    std::uint64_t hash;
    const String *string;
  };
  WorkMeter &meter_;
  std::vector<Slot> slots_;
};

/// Empty words fail first, wherever in the list they stand, then equal ones.
qsys_status checkList(const Strings &strings, WorkMeter &meter) {
  const auto words = view(strings);
  const auto isEmpty = [&meter](const String &word) {
    meter.spend(1);
    return qoc::sizeOf(word) == 0;
  };
  if (std::ranges::any_of(words, isEmpty)) {
    return QOC_STATUS_STRING_EMPTY;
  }
  StringSet seen(words.size(), meter);
  const bool isUnique = std::ranges::all_of(words, [&](const String &word) { return seen.insert(word); });
  return isUnique ? QSYS_STATUS_OK : QOC_STATUS_STRING_DUPLICATE;
}

/// The words of a list to be, in any order.
using Chosen = std::vector<const String *>;

Chosen chosenOf(const Strings &strings, WorkMeter &meter) {
  Chosen chosen;
  chosen.reserve(view(strings).size() + 1);
  for (const String &string : view(strings)) {
    meter.spend(1);
    chosen.push_back(&string);
  }
  return chosen;
}

/// Brings words into the lexicon's order.
void sortByLength(Chosen &words, WorkMeter &meter) {
  std::vector<std::int32_t> lengths(words.size());
  std::ranges::transform(words, lengths.begin(), [&meter](const String *word) {
    meter.spend(4);
    return qoc::sizeOf(*word);
  });
  if (std::ranges::is_sorted(lengths)) {
    return;
  }
  const std::vector<std::int32_t> order = qoc::orderByLength(lengths, meter);
  Chosen sorted(words.size());
  std::ranges::transform(order, sorted.begin(),
                         [&](std::int32_t word) { return words[static_cast<std::size_t>(word)]; });
  words.swap(sorted);
}

/// Fills an empty list with copies of words. Their characters lie together, in the list's order: that saves a block for
/// each, and a match looks at words of one length.
qsys_status copyWords(const Chosen &words, Strings &copies, WorkMeter &meter) {
  std::size_t numBytes = 0;
  for (const String *word : words) {
    meter.spend(4);
    numBytes += qoc::ElementPool::sizeOf(view(*word).size(), sizeof(qoc_ocrDictionaryChar));
  }
  qoc::ElementPool pool(numBytes);
  constexpr std::size_t wordsPerPart = 1 << 16;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i % wordsPerPart == 0) {  // In parts, so that the memory is not touched in one long go.
      QOC_TRY(qstd_vector_qoc_ocrDictionaryString_reserve(&copies, static_cast<std::int32_t>(words.size())));
      const std::size_t end = std::min(words.size(), i + wordsPerPart);
      // The room is there, and words without characters take no more.
      QOC_SURE(qstd_vector_qoc_ocrDictionaryString_resize(&copies, static_cast<std::int32_t>(end)));
    }
    meter.spend(8 + qoc::unitsOf(*words[i]));
    const auto made = qoc::editAs<String>(copies);
    QOC_TRY(pool.placeCopies(made[i].characters.core, view(*words[i]).data(), qoc::sizeOf(*words[i])));
  }
  return QSYS_STATUS_OK;
}

/// When the index of new words is made: with them, or, where words come one by one, when it is first used.
enum class IndexTime { now, later };

/// Chooses words by choose(words, meter) and makes copies of them, sorted, the lexicon's words. Long lists ask for
/// attention on the way; what has been put together is then dropped.
template <class Choose>
qsys_status replaceWords(qoc_ocrDictionaryLexicon &lexicon, IndexTime indexTime, Choose choose) {
  qoc_ocrDictionaryLexicon fresh = {};
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryLexicon_construct, qoc_ocrDictionaryLexicon_destruct>(&fresh);
    WorkMeter meter;
    Chosen words;
    QOC_TRY(choose(words, meter));
    sortByLength(words, meter);
    QOC_TRY(copyWords(words, fresh.strings, meter));
    qoc::renewIndex(fresh);
    if (indexTime == IndexTime::now) {
      qoc::indexOf(fresh);
    }
    std::swap(lexicon, fresh);
    return QSYS_STATUS_OK;
  });
}

template <class Construct>
qsys_status addConstructed(qoc_ocrDictionaryLexicon *lexicon, Construct construct) {
  String string;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(construct(&string));
    frame.local<qoc_ocrDictionaryString_destruct>(&string);
    return qoc_ocrDictionaryLexicon_addString(lexicon, &string);
  });
}

}  // namespace

qsys_status qoc_ocrDictionaryLexicon_construct(qoc_ocrDictionaryLexicon *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  object->index = nullptr;
  return qstd_vector_qoc_ocrDictionaryString_constructEmpty(&object->strings);
}

qsys_status qoc_ocrDictionaryLexicon_constructCopy(qoc_ocrDictionaryLexicon *object,
                                                   const qoc_ocrDictionaryLexicon *source) {
  return qoc::constructThenAssign<qoc_ocrDictionaryLexicon_construct, qoc_ocrDictionaryLexicon_assign,
                                  qoc_ocrDictionaryLexicon_destruct>(object, source);
}

qsys_status qoc_ocrDictionaryLexicon_assign(qoc_ocrDictionaryLexicon *object, const qoc_ocrDictionaryLexicon *source) {
  if (!present({object, source}) || object == source) {
    return QSYS_STATUS_OK;
  }
  Strings copy;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vector_qoc_ocrDictionaryString_constructEmpty, qstd_vector_qoc_ocrDictionaryString_destruct>(
        &copy);
    WorkMeter meter;
    QOC_TRY(copyWords(chosenOf(source->strings, meter), copy, meter));
    std::swap(object->strings, copy);
    qoc::shareIndex(*object, *source);
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryLexicon_destruct(qoc_ocrDictionaryLexicon *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  qoc::dropIndex(*object);
  return qstd_vector_qoc_ocrDictionaryString_destruct(&object->strings);
}

qsys_status qoc_ocrDictionaryLexicon_constructStrings(qoc_ocrDictionaryLexicon *lexicon, const Strings *strings) {
  if (!present({lexicon, strings})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_SURE(qoc_ocrDictionaryLexicon_construct(lexicon));  // Without words it takes no memory.
    frame.output<qoc_ocrDictionaryLexicon_destruct>(lexicon);
    return qoc_ocrDictionaryLexicon_setStrings(lexicon, strings);
  });
}

qsys_status qoc_ocrDictionaryLexicon_setStrings(qoc_ocrDictionaryLexicon *lexicon, const Strings *strings) {
  if (!present({lexicon, strings})) {
    return QSYS_STATUS_OK;
  }
  return replaceWords(*lexicon, IndexTime::now, [&](Chosen &words, WorkMeter &meter) -> qsys_status {
    QOC_TRY(checkList(*strings, meter));
    words = chosenOf(*strings, meter);
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryLexicon_setStringsSafe(qoc_ocrDictionaryLexicon *lexicon, const Strings *strings) {
  if (!present({lexicon, strings})) {
    return QSYS_STATUS_OK;
  }
  return replaceWords(*lexicon, IndexTime::now, [&](Chosen &words, WorkMeter &meter) -> qsys_status {
    StringSet seen(static_cast<std::size_t>(qoc::sizeOf(*strings)), meter);
    for (const String &string : view(*strings)) {
      if (qoc::sizeOf(string) > 0 && seen.insert(string)) {
        words.push_back(&string);
      }
    }
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryLexicon_getStrings(const qoc_ocrDictionaryLexicon *lexicon, Strings *strings) {
  return present({lexicon, strings}) ? qstd_vector_qoc_ocrDictionaryString_assign(strings, &lexicon->strings)
                                     : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryLexicon_getIsEmpty(const qoc_ocrDictionaryLexicon *lexicon, qsys_bool *isEmpty) {
  if (present({lexicon, isEmpty})) {
    *isEmpty = qoc::sizeOf(lexicon->strings) == 0 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryLexicon_compareEqual(const qoc_ocrDictionaryLexicon *a, const qoc_ocrDictionaryLexicon *b,
                                                  qsys_bool *isEqual) {
  return present({a, b, isEqual}) ? qstd_vector_qoc_ocrDictionaryString_compareEqual(&a->strings, &b->strings, isEqual)
                                  : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryLexicon_addString(qoc_ocrDictionaryLexicon *lexicon, const String *string) {
  if (!present({lexicon, string})) {
    return QSYS_STATUS_OK;
  }
  // Deliberate: an empty word is not refused here.
  return replaceWords(*lexicon, IndexTime::later, [&](Chosen &words, WorkMeter &meter) -> qsys_status {
    const auto isSame = [&](const String &word) {
      meter.spend(4);
      return haveSameCodes(word, *string);
    };
    if (std::ranges::any_of(view(lexicon->strings), isSame)) {
      return QOC_STATUS_STRING_DUPLICATE;
    }
    words = chosenOf(lexicon->strings, meter);
    words.push_back(string);
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryLexicon_addStringT(qoc_ocrDictionaryLexicon *lexicon, const CharT *text) {
  if (!present({lexicon, text})) {
    return QSYS_STATUS_OK;
  }
  return addConstructed(lexicon,
                        [&](String *string) { return qoc_ocrDictionaryString_constructStringT(string, text); });
}

qsys_status qoc_ocrDictionaryLexicon_addStdString(qoc_ocrDictionaryLexicon *lexicon, const qstd_string *text) {
  if (!present({lexicon, text})) {
    return QSYS_STATUS_OK;
  }
  return addConstructed(lexicon,
                        [&](String *string) { return qoc_ocrDictionaryString_constructStdString(string, text); });
}

qsys_status qoc_ocrDictionaryLexicon_removeString(qoc_ocrDictionaryLexicon *lexicon, const String *string) {
  if (!present({lexicon, string})) {
    return QSYS_STATUS_OK;
  }
  return replaceWords(*lexicon, IndexTime::later, [&](Chosen &words, WorkMeter &meter) -> qsys_status {
    words = chosenOf(lexicon->strings, meter);
    const std::size_t numRemoved = std::erase_if(words, [&](const String *word) {
      meter.spend(4);
      return haveSameCodes(*word, *string);
    });
    return numRemoved == 0 ? QOC_STATUS_STRING_ABSENT : QSYS_STATUS_OK;
  });
}
