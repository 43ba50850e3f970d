#include "learn.hpp"

#include "confusion_counts.hpp"
#include "json_output.hpp"
#include "matching.hpp"
#include "output_file.hpp"
#include "reading_loop.hpp"
#include "text.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <set>

namespace qoc::program {
namespace {

/// One natural logarithm of odds in the unit of scores: what the reader's own scores are worth on the shipped readings.
constexpr double unitsPerNat = 1500;
constexpr std::int32_t leastPenalty = 1000, greatestExtraPenalty = 12000;

/// What became of readings.
struct Verdicts {
  std::size_t right = 0, wrong = 0, unsure = 0, none = 0;
};

/// What is learnt: confusions that were seen often enough.
struct Learnt {
  struct Confusion {
    std::u32string read, meant;
    ConfusionCount count;
    std::size_t numRead;  ///< How often the (first) character was read at all.
    std::int32_t penalty;
  };
  std::vector<Confusion> swaps;      ///< One character for another.
  std::vector<Confusion> sequences;  ///< One for two, two for one.
  std::vector<Confusion> extras;     ///< Characters that were not there.
};

/// A confusion that was seen n times among `of` costs what its odds are worth.
std::int32_t penaltyOf(std::size_t n, std::size_t of, std::int32_t greatest) {
  const double nats = std::log((static_cast<double>(of) + 1) / (static_cast<double>(n) + 0.5));
  return std::clamp(static_cast<std::int32_t>(unitsPerNat * nats), leastPenalty, std::max(greatest, leastPenalty));
}

Learnt learnFrom(const ConfusionCounts &counts, std::size_t threshold, bool isOnly7Bits,
                 const qoc_ocrDictionaryResolverRules &rules) {
  Learnt learnt;
  for (const auto &[pair, count] : counts.confusions) {
    const auto &[read, meant] = pair;
    const std::u32string both = read + meant;
    const bool isAllowed = std::all_of(both.begin(), both.end(), [&](char32_t code) {
      return whyRefused(code).empty() && (!isOnly7Bits || code <= max7Bits);
    });
    // A pair that begins with the character that it is swapped for can be no swap.
    const auto &[shorter, longer] =
        std::minmax(read, meant, [](const auto &a, const auto &b) { return a.size() < b.size(); });
    if (shorter.size() == 1 && longer.size() == 2 && longer.front() == shorter.front()) continue;
    if (count.numTimes < threshold || read.empty() || !isAllowed) continue;
    const auto found = counts.numRead.find(read.front());
    const std::size_t numRead = found != counts.numRead.end() ? found->second : 0;
    Learnt::Confusion confusion = {read, meant, count, numRead, 0};
    if (meant.empty()) {
      confusion.penalty = penaltyOf(count.numTimes, numRead, greatestExtraPenalty);
      if (read.size() == 1) learnt.extras.push_back(std::move(confusion));
    } else {
      confusion.penalty = penaltyOf(count.numTimes, numRead, rules.swapPenalty);
      (both.size() == 2 ? learnt.swaps : learnt.sequences).push_back(std::move(confusion));
    }
  }
  return learnt;
}

/// A swap set with the dictionary's own swaps and the learnt ones.
void makeSwaps(const DictionaryFile &file, const Learnt &learnt, SwapCharSet &set) {
  const std::string where = "learnt swaps";
  const qoc_swapCharSet *own = &file.dictionary->swapCharSet;
  CharSets groups;
  check(qoc_swapCharSet_getEquiv(own, groups.get()), where);
  for (const Learnt::Confusion &swap : learnt.swaps) {
    CharSet group;
    const Char32 codes[] = {swap.read[0], swap.meant[0]};
    check(qstd_vectorChar32_assignElements(group.get(), codes, 2), where);
    check(qstd_vector_vectorChar32_pushBack(groups.get(), group.get()), where);
  }
  SwapChars sequences;
  check(qstd_vector_qoc_swapChar_assign(sequences.get(), &own->swaps), where);
  for (const Learnt::Confusion &sequence : learnt.sequences) {
    SwapChar swap;
    const std::vector<Char32> read(sequence.read.begin(), sequence.read.end()),
        meant(sequence.meant.begin(), sequence.meant.end());
    check(qstd_vectorChar32_assignElements(&swap->first, read.data(), static_cast<std::int32_t>(read.size())), where);
    check(qstd_vectorChar32_assignElements(&swap->second, meant.data(), static_cast<std::int32_t>(meant.size())),
          where);
    check(qstd_vector_qoc_swapChar_pushBack(sequences.get(), swap.get()), where);
  }
  SwapCharSet sequenceSet;
  check(qoc_swapCharSet_setSwapCharacters(sequenceSet.get(), sequences.get()), where);
  check(qoc_swapCharSet_setEquiv(set.get(), groups.get()), where);
  check(qstd_vector_qoc_swapChar_assign(&set->swaps, &sequenceSet->swaps), where);
  check(qoc_stringExpand__assign(set->expansion, sequenceSet->expansion), where);
}

/// The rules with the learnt confusions before those that they have.
void makeRules(const DictionaryFile &file, const Learnt &learnt, ResolverRules &rules) {
  check(qoc_ocrDictionaryResolverRules_assign(rules.get(), file.rules.get()), "rules");
  auto *list = &rules->confusions;
  check(qstd_vector_qoc_ocrDictionaryConfusion_clear(list), "rules");
  const auto add = [&](Char32 read, Char32 meant, std::int32_t penalty) {
    const qoc_ocrDictionaryConfusion confusion = {read, meant, file.rules->alternativePenalty, penalty};
    check(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(list, &confusion), "rules");
  };
  for (const Learnt::Confusion &swap : learnt.swaps) add(swap.read[0], swap.meant[0], swap.penalty);
  for (const Learnt::Confusion &extra : learnt.extras) add(extra.read[0], QOC_CHAR_EMPTY, extra.penalty);
  check(qstd_vector_qoc_ocrDictionaryConfusion_append(list, &file.rules->confusions), "rules");
}

/// Readings with truth, and how they come out with what was learnt.
class School {
 public:
  School(const Options &options, const DictionaryFile &file) : file_(file) {
    ReadingSource source(options.readings, options.input, [] {});
    Reading reading;
    std::vector<LeftOut> leftOut;
    while (source.next(reading)) {
      checkInterrupt();
      ++numReadings_;
      if (!reading.truth.is_string()) continue;
      const std::vector<Char32> truth = decodeUtf8(reading.truth.get_ref<const std::string &>());
      lessons_.push_back({reading.positions, std::u32string(truth.begin(), truth.end()), reading.place()});
    }
  }

  std::size_t numReadings() const { return numReadings_; }
  const std::vector<Lesson> &lessons() const { return lessons_; }

  /// The verdicts on some of the lessons with what was learnt.
  Verdicts judge(const Learnt &learnt, const std::vector<std::size_t> &which) const {
    SwapCharSet swaps;
    makeSwaps(file_, learnt, swaps);
    ResolverRules rules;
    makeRules(file_, learnt, rules);
    Resolver resolver;
    check(qoc_ocrDictionaryResolver_assign(resolver.get(), file_.resolver.get()), "rules");
    check(qoc_ocrDictionaryResolver_setRules(resolver.get(), rules.get()), "rules");
    Verdicts verdicts;
    ResultSet results;
    Resolution resolution;
    MultiString multi;
    std::vector<LeftOut> leftOut;
    for (const std::size_t i : which) {
      checkInterrupt();
      const Lesson &lesson = lessons_[i];
      Reading reading;
      reading.positions = lesson.positions;
      setReading(reading, !file_.lines().empty(), multi, leftOut);
      check(qoc_ocrDictionary_runSwapCharSetMulti(file_.dictionary.get(), multi.get(), file_.params.get(), swaps.get(),
                                                  results.get()),
            lesson.place);
      check(qoc_ocrDictionaryResolver_resolve(resolver.get(), multi.get(), file_.params.get(), swaps.get(),
                                              results.get(), resolution.get()),
            lesson.place);
      ++(resolution->outcome == qoc_ocrDictionaryOutcome_none     ? verdicts.none
         : resolution->outcome == qoc_ocrDictionaryOutcome_unsure ? verdicts.unsure
         : isTruth(*resolution.get(), lesson)                     ? verdicts.right
                                                                  : verdicts.wrong);
    }
    return verdicts;
  }

 private:
  static bool isTruth(const qoc_ocrDictionaryResolution &resolution, const Lesson &lesson) {
    const auto characters = elements(elements(resolution.texts)[0].text.characters);
    return std::equal(characters.begin(), characters.end(), lesson.truth.begin(), lesson.truth.end(),
                      [](const qoc_ocrDictionaryChar &character, char32_t code) { return character.code == code; });
  }

  const DictionaryFile &file_;
  std::vector<Lesson> lessons_;
  std::size_t numReadings_ = 0;
};

std::string utf8(const std::u32string &codes) {
  std::string text;
  for (const char32_t code : codes) appendUtf8(text, code);
  return text;
}

double inPoints(std::int32_t units) { return units / 100.0; }

JsonText verdictsAsJson(const Verdicts &verdicts) {
  return JsonText::object(
      {{"right", verdicts.right}, {"wrong", verdicts.wrong}, {"unsure", verdicts.unsure}, {"none", verdicts.none}});
}

/// What can be put into a dictionary file as it stands.
JsonText sectionsOf(const Learnt &learnt) {
  std::set<std::u32string> groups;
  for (const Learnt::Confusion &swap : learnt.swaps) {
    groups.insert(swap.read < swap.meant ? swap.read + swap.meant : swap.meant + swap.read);
  }
  JsonText groupList = JsonText::array(), sequences = JsonText::array(), confusions = JsonText::array();
  for (const std::u32string &group : groups) groupList.push(utf8(group));
  for (const Learnt::Confusion &sequence : learnt.sequences) {
    sequences.push(JsonText::array({utf8(sequence.read), utf8(sequence.meant)}));
  }
  for (const auto *list : {&learnt.swaps, &learnt.extras}) {
    for (const Learnt::Confusion &confusion : *list) {
      confusions.push(JsonText::object({{"read", utf8(confusion.read)},
                                        {"meant", utf8(confusion.meant)},
                                        {"swapPenalty", inPoints(confusion.penalty)}}));
    }
  }
  return JsonText::object({{"swaps", JsonText::object({{"groups", groupList}, {"sequences", sequences}})},
                           {"resolving", JsonText::object({{"confusions", confusions}})}});
}

/// What is known of one learnt confusion: its counts, and what it changes alone.
struct Finding {
  Learnt::Confusion confusion;
  std::ptrdiff_t right, wrong;
};

Learnt alone(const Learnt::Confusion &confusion) {
  Learnt learnt;
  (confusion.meant.empty()                               ? learnt.extras
   : confusion.read.size() + confusion.meant.size() == 2 ? learnt.swaps
                                                         : learnt.sequences)
      .push_back(confusion);
  return learnt;
}

std::string asText(const School &school, const std::vector<Finding> &findings, const Verdicts &before,
                   const Verdicts &after, const Learnt &learnt, unsigned numFolds) {
  char line[256];
  std::string text = std::to_string(school.lessons().size()) + " of " + std::to_string(school.numReadings()) +
                     " readings have a \"truth\"\n\nread  meant   times      of  penalty   right   wrong\n";
  for (const Finding &finding : findings) {
    std::snprintf(line, sizeof line, "%7zu %7zu %8.1f %+7td %+7td\n", finding.confusion.count.numTimes,
                  finding.confusion.numRead, inPoints(finding.confusion.penalty), finding.right, finding.wrong);
    const auto cell = [](const std::u32string &codes) {
      std::u32string shown = codes.empty() ? std::u32string(U"\u2205") : codes;
      std::replace(shown.begin(), shown.end(), U' ', U'\u2423');
      return utf8(shown) + std::string(shown.size() < 6 ? 6 - shown.size() : 1, ' ');
    };
    text += cell(finding.confusion.read) + cell(finding.confusion.meant) + line;
  }
  const auto row = [&](const char *name, const Verdicts &verdicts) {
    std::snprintf(line, sizeof line, "%-8s %5zu right %5zu wrong %5zu unsure %5zu none\n", name, verdicts.right,
                  verdicts.wrong, verdicts.unsure, verdicts.none);
    text += line;
  };
  text += "\nOn readings that it was not learnt from (" + std::to_string(numFolds) + " parts):\n";
  row("before", before);
  row("learnt", after);
  return text + "\nFor the dictionary file:\n" + sectionsOf(learnt).indented() + "\n";
}

std::string asJson(const School &school, const std::vector<Finding> &findings, const Verdicts &before,
                   const Verdicts &after, const Learnt &learnt, unsigned numFolds) {
  JsonText list = JsonText::array();
  for (const Finding &finding : findings) {
    list.push(JsonText::object({{"read", utf8(finding.confusion.read)},
                                {"meant", utf8(finding.confusion.meant)},
                                {"times", finding.confusion.count.numTimes},
                                {"listed", finding.confusion.count.numListed},
                                {"of", finding.confusion.numRead},
                                {"penalty", inPoints(finding.confusion.penalty)},
                                {"right", finding.right},
                                {"wrong", finding.wrong}}));
  }
  const JsonText validation =
      JsonText::object({{"parts", numFolds}, {"before", verdictsAsJson(before)}, {"after", verdictsAsJson(after)}});
  return JsonText::object({{"type", "learnt"},
                           {"version", formatVersion},
                           {"readings", school.numReadings()},
                           {"withTruth", school.lessons().size()},
                           {"confusions", list},
                           {"crossValidation", validation},
                           {"dictionary", sectionsOf(learnt)}})
             .text() +
         "\n";
}

ExitCode execute(const Options &options) {
  DictionaryFile file;
  readDictionaryFile(options.dictionary, file);
  runTask.prepare(options, file);
  const School school(options, file);
  const std::size_t n = school.lessons().size();
  const bool isOnly7Bits = !file.lines().empty();
  const auto numFolds = static_cast<unsigned>(std::min<std::size_t>(options.numFolds, std::max<std::size_t>(n, 1)));

  // Each part is judged with what the others teach.
  ConfusionCounts all;
  Verdicts before, after;
  for (const Lesson &lesson : school.lessons()) all.add(lesson);
  for (unsigned fold = 0; fold < numFolds; ++fold) {
    ConfusionCounts others;
    std::vector<std::size_t> part;
    for (std::size_t i = 0; i < n; ++i) {
      if (i % numFolds == fold) part.push_back(i);
      if (i % numFolds != fold || numFolds == 1) others.add(school.lessons()[i]);
    }
    const auto add = [](Verdicts &to, const Verdicts &verdicts) {
      to.right += verdicts.right;
      to.wrong += verdicts.wrong;
      to.unsure += verdicts.unsure;
      to.none += verdicts.none;
    };
    add(before, school.judge({}, part));
    add(after, school.judge(learnFrom(others, options.threshold, isOnly7Bits, *file.rules.get()), part));
  }

  const Learnt learnt = learnFrom(all, options.threshold, isOnly7Bits, *file.rules.get());
  std::vector<std::size_t> everything(n);
  for (std::size_t i = 0; i < n; ++i) everything[i] = i;
  std::vector<Finding> findings;
  for (const auto *list : {&learnt.swaps, &learnt.sequences, &learnt.extras}) {
    for (const Learnt::Confusion &confusion : *list) {
      const Verdicts with = school.judge(alone(confusion), everything);
      findings.push_back({confusion,
                          static_cast<std::ptrdiff_t>(with.right) - static_cast<std::ptrdiff_t>(before.right),
                          static_cast<std::ptrdiff_t>(with.wrong) - static_cast<std::ptrdiff_t>(before.wrong)});
    }
  }
  std::stable_sort(findings.begin(), findings.end(), [](const Finding &a, const Finding &b) {
    return a.confusion.count.numTimes > b.confusion.count.numTimes;
  });
  Output output;
  output.write(options.isJson ? asJson(school, findings, before, after, learnt, numFolds)
                              : asText(school, findings, before, after, learnt, numFolds));
  output.finish();
  return allHadResults;
}

}  // namespace

int learn(const Options &options) {
  const InterruptGuard guard;
  return endingWell([&] { return execute(options); }, [] { return std::string("interrupted; nothing was written"); });
}

}  // namespace qoc::program
