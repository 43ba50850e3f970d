#pragma once
// The variants of a reading that an automaton of characters may match, with one edit at most.
//
// A reading with twenty positions that swaps apply to has a million variants; few of them match an expression, or fit a
// line. The variants are the ways through a lattice (see ReadingVariants), and the states that the automaton can be in
// behind the first symbols of a way are two sets, without an edit and with one (see regular_expression_search.hpp). So
// all variants are tested at once, from the end:
//
//     behind(node) = the states from which some way from the node on is matched to its end
//
// Then the ways are walked in the order of the expansion, each with the states that its symbols so far lead to. A
// beginning is gone on with only while these meet behind(node): then, and only then, some variant with this beginning
// matches. So the walk visits nothing but beginnings of variants that are asked for.
//
// Where windows are searched, a match may begin at every node and end at every node behind it: `isLater` of a node says
// that one that begins there or later is matched, and a beginning that a match has ended in is settled.
//
// At least as many variants are visited as match: the lengths that parameters admit are looked at as a whole only. A
// symbol that it may be a failure to ask about settles a beginning, too: whoever matches the variant finds it.

#include <algorithm>
#include <limits>
#include <utility>

#include "kinds/reading_variants.hpp"
#include "platform/regex/states.hpp"

namespace qoc {

/// The edits that may be tried.
struct EditOptions {
  bool insertion = false, deletion = false, substitution = false;
};

inline EditOptions editOptionsOf(const qoc_ocrDictionaryRunParams *params) noexcept {
  const bool mayEdit = params != nullptr && params->maxEdits != 0;
  return mayEdit ? EditOptions{params->matchOption2 != 0, params->matchOption4 != 0, params->matchOption1 != 0}
                 : EditOptions{};
}

/// The lengths of what an automaton matches, as far as they are admitted; none where the least is above the most.
struct MatchedLengths {
  std::int64_t least, most;
};

/// Whether variants have lengths that may match.
inline bool haveLengths(const ReadingVariants &variants, MatchedLengths lengths, EditOptions edits,
                        bool hasWindows) noexcept {
  return lengths.least <= lengths.most && variants.mostLength(0) >= lengths.least - (edits.insertion ? 1 : 0) &&
         (hasWindows || variants.leastLength(0) <= lengths.most + (edits.deletion ? 1 : 0));
}

/// Symbols is an automaton with the symbols of a lattice:
///
/// - states(), with the operations of NarrowStates;
/// - accepting(symbol, set), which sets a pointer to the positions that accept a symbol, and returns a status;
/// - mayFail(symbol) and mayAnyFail(), whether it may be a failure to ask about one, or about any.
template <class Symbols>
class NearVariants {
 public:
  using Step = ReadingVariants::Step;

  NearVariants(const ReadingVariants &variants, Symbols &symbols, EditOptions edits, MatchedLengths lengths,
               bool hasWindows)
      : variants_(variants),
        symbols_(symbols),
        states_(symbols.states()),
        edits_(edits),
        lengths_(lengths),
        hasWindows_(hasWindows) {
    const std::size_t bytesPerNode = sizeof(State) + static_cast<std::size_t>(states_.numPositions()) / 4;
    visitsAll_ = bytesPerNode > mostTableBytes / variants.numNodes();
  }

  /// Goes through all variants in order: visit(steps, isFirst, isDone), which may end the walk, for each that may
  /// match, pass(position, length) for those that have a beginning of that length, up to that position, in common and
  /// do not.
  template <class Visit, class Pass>
  qsys_status walk(Visit visit, Pass pass) {
    if (!visitsAll_) {
      QOC_TRY(findBehind());
    }
    State start = fresh();
    if (!isNear(start, 0, 0)) {
      return pass(0, 0);
    }
    frames_.push_back({0, 0, 0, true, std::move(start)});
    while (!frames_.empty()) {
      const Frame &frame = frames_.back();
      if (frame.position == variants_.numPositions()) {
        bool isDone = false;
        QOC_TRY(visit(std::span<const Step>(steps_), frame.isFirst, isDone));
        if (isDone) {
          break;
        }
        leave();
      } else if (frame.nextChoice == variants_.choicesAt(frame.position).size()) {
        leave();
      } else {
        QOC_TRY(enter(pass));
      }
    }
    return QSYS_STATUS_OK;
  }

  /// No edits from now on. To be called while a variant is visited.
  qsys_status forbidEdits() {
    edits_ = {};
    if (visitsAll_) {
      return QSYS_STATUS_OK;
    }
    QOC_TRY(findBehind());
    frames_.front().state = fresh();
    for (std::size_t i = 0; i < steps_.size(); ++i) {
      QOC_TRY(take(frames_[i].state, steps_[i].position, steps_[i].choice, frames_[i + 1].state));
      join(frames_[i + 1].state);
    }
    return QSYS_STATUS_OK;
  }

 private:
  using States = typename Symbols::States;
  using Set = typename States::Set;
  static constexpr std::size_t mostTableBytes = std::size_t{1} << 26;

  /// Positions that may take the next symbol, and whether all may end, without an edit and with one.
  struct State {
    Set takers, edited;
    bool isEnd = false, isEditedEnd = false;
    bool isSettled = false;  ///< Whatever comes, the variant is asked for.
    bool isLater = false;    ///< Of a node.

    /// Of a node: whether nothing leads on from it. What does behind an edit does without one, too, and where windows
    /// are searched, every node is an end.
    bool isDead() const noexcept { return isEmpty(takers) && !isEnd; }
  };
  /// A beginning that is gone on with.
  struct Frame {
    std::int32_t position, length;
    std::size_t nextChoice;
    bool isFirst;
    State state;
  };

  State nothing() const { return {states_.none(), states_.none()}; }

  // Forward ----------------------------------------------------------------------------------------------------------

  State fresh() {
    State state = nothing();
    state.takers = states_.first();
    state.isEnd = states_.isNullable();
    insertInto(state);
    return state;
  }

  /// Adds what an insertion leads to.
  void insertInto(State &state) {
    if (edits_.insertion) {
      state.edited |= states_.followersOf(state.takers);
      state.isEditedEnd = state.isEditedEnd || intersects(state.takers, states_.last());
    }
  }

  /// Adds the matches that begin here.
  void join(State &state) {
    if (hasWindows_) {
      const State begun = fresh();
      state.takers |= begun.takers;
      state.edited |= begun.edited;
      state.isEnd = state.isEnd || begun.isEnd;
      state.isEditedEnd = state.isEditedEnd || begun.isEditedEnd;
    }
  }

  qsys_status takeSymbol(const State &from, std::size_t symbol, State &to) {
    const Set *accepting = nullptr;
    QOC_SURE(symbols_.accepting(symbol, accepting));  // On the way back it has been asked for.
    QOC_TRY(states_.tick(3));
    const Set taking = from.takers & *accepting;
    Set edited = from.edited & *accepting;
    if (edits_.substitution) {
      edited |= from.takers;
    }
    State next = nothing();
    next.takers = states_.followersOf(taking);
    next.isEnd = intersects(taking, states_.last());
    next.edited = states_.followersOf(edited);
    next.isEditedEnd = intersects(edited, states_.last());
    if (edits_.deletion) {
      next.edited |= from.takers;
      next.isEditedEnd = next.isEditedEnd || from.isEnd;
    }
    insertInto(next);
    next.isSettled = from.isSettled || (hasWindows_ && (next.isEnd || next.isEditedEnd)) || symbols_.mayFail(symbol);
    to = std::move(next);
    return QSYS_STATUS_OK;
  }

  /// Takes the symbols of a choice; what begins behind them is not in it yet.
  qsys_status take(const State &from, std::int32_t position, std::size_t choice, State &to) {
    if (visitsAll_) {
      return QSYS_STATUS_OK;
    }
    QOC_TRY(takeSymbol(from, variants_.symbolOf(position, choice, 0), to));
    if (variants_.choicesAt(position)[choice].numInserted == 2) {
      join(to);
      const State middle = std::move(to);
      QOC_TRY(takeSymbol(middle, variants_.symbolOf(position, choice, 1), to));
    }
    return QSYS_STATUS_OK;
  }

  /// Whether some variant may match that begins in a way that leads to these states.
  bool isNear(const State &state, std::int32_t position, std::int32_t length) const {
    if (visitsAll_) {
      return true;
    }
    const State &behind = behind_[static_cast<std::size_t>(position)];
    if (!hasWindows_) {
      const std::int64_t least = lengths_.least - (edits_.insertion ? 1 : 0);
      const std::int64_t most = lengths_.most + (edits_.deletion ? 1 : 0);
      const bool isLengthPossible =
          length + variants_.leastLength(position) <= most && length + variants_.mostLength(position) >= least;
      if (!isLengthPossible) {
        return false;
      }
    } else if (position == 0) {
      return behind.isLater;  // What has begun here has taken nothing.
    }
    return state.isSettled || behind.isLater || intersects(state.takers, behind.takers) ||
           intersects(state.edited, behind.edited) || (state.isEnd && behind.isEnd) ||
           (state.isEditedEnd && behind.isEditedEnd);
  }

  /// Takes the next choice of the last beginning, where some variant goes on so.
  template <class Pass>
  qsys_status enter(Pass pass) {
    Frame &before = frames_.back();
    const std::int32_t from = before.position;
    const std::size_t choiceIndex = before.nextChoice++;
    const ExpansionChoice &choice = variants_.choicesAt(from)[choiceIndex];
    Frame next = {from + choice.numRead, before.length + ReadingVariants::numSymbolsOf(choice), 0,
                  before.isFirst && choiceIndex == 0, nothing()};
    QOC_TRY(take(before.state, from, choiceIndex, next.state));
    if (!isNear(next.state, next.position, next.length)) {
      return pass(next.position, next.length);
    }
    join(next.state);
    steps_.push_back({from, choiceIndex});
    frames_.push_back(std::move(next));
    return QSYS_STATUS_OK;
  }

  void leave() {
    frames_.pop_back();
    if (!steps_.empty()) {
      steps_.pop_back();
    }
  }

  // Backward ---------------------------------------------------------------------------------------------------------

  /// Adds to `here` the states that a symbol leads from to those behind it.
  qsys_status takeBack(const State &behind, std::size_t symbol, State &here) {
    here.isLater = here.isLater || behind.isLater;
    const Set *accepting = nullptr;
    QOC_TRY(symbols_.accepting(symbol, accepting));
    QOC_TRY(states_.tick(3));
    Set before = states_.predecessorsOf(behind.takers);
    Set editedBefore = states_.predecessorsOf(behind.edited);
    if (behind.isEnd) {
      before |= states_.last();
    }
    if (behind.isEditedEnd) {
      editedBefore |= states_.last();
    }
    here.takers |= before & *accepting;
    here.edited |= editedBefore & *accepting;
    if (edits_.substitution) {
      here.takers |= editedBefore;
    }
    if (edits_.deletion) {
      here.takers |= behind.edited;
      here.isEnd = here.isEnd || behind.isEditedEnd;
    }
    if (symbols_.mayFail(symbol)) {
      here.takers |= states_.all();
      here.edited |= states_.all();
    }
    return QSYS_STATUS_OK;
  }

  /// Adds the states that an insertion leads from to one that is there.
  void insertBefore(State &here) {
    if (edits_.insertion) {
      here.takers |= states_.predecessorsOf(here.edited);
      if (here.isEditedEnd) {
        here.takers |= states_.last();
      }
    }
  }

  /// Finishes a node whose symbols are taken back: adds what begins there, and what ends.
  void finish(State &here) {
    insertBefore(here);
    if (hasWindows_) {
      here.isLater = here.isLater || intersects(states_.first(), here.takers) || (states_.isNullable() && here.isEnd);
      here.isEnd = here.isEditedEnd = true;
      insertBefore(here);
    }
  }

  /// Fills the states behind every node, as long as some way leads on from there.
  qsys_status findBehind() {
    const std::int32_t n = variants_.numPositions();
    behind_.assign(variants_.numNodes(), nothing());
    State &end = behind_[static_cast<std::size_t>(n)];
    end.isEnd = end.isEditedEnd = true;
    insertBefore(end);
    // No choice reads more than two positions, so two dead nodes end it, unless something before them is a failure.
    std::int32_t numDead = 0;
    for (std::int32_t p = n - 1; p >= 0 && (numDead < 2 || symbols_.mayAnyFail()); --p) {
      State here = nothing();
      const auto choices = variants_.choicesAt(p);
      for (std::size_t c = 0; c < choices.size(); ++c) {
        auto target = static_cast<std::size_t>(p + choices[c].numRead);
        if (choices[c].numInserted == 2) {
          const std::size_t within = variants_.nodeWithin(p, c);
          QOC_TRY(takeBack(behind_[target], variants_.symbolOf(p, c, 1), behind_[within]));
          finish(behind_[within]);
          target = within;
        }
        QOC_TRY(takeBack(behind_[target], variants_.symbolOf(p, c, 0), here));
      }
      finish(here);
      numDead = here.isDead() ? numDead + 1 : 0;
      behind_[static_cast<std::size_t>(p)] = std::move(here);
    }
    return QSYS_STATUS_OK;
  }

  const ReadingVariants &variants_;
  Symbols &symbols_;
  States &states_;
  EditOptions edits_;
  MatchedLengths lengths_;
  bool hasWindows_;
  bool visitsAll_;             ///< The tables would be too large.
  std::vector<State> behind_;  ///< By node.
  std::vector<Frame> frames_;
  std::vector<Step> steps_;
};

/// How often matching a variant asks for attention: so many times, and more for each of its positions.
struct VariantPolls {
  std::int64_t each, perPosition;
  std::int64_t operator()(std::int32_t length) const noexcept { return each + perPosition * length; }
};

/// Goes through the variants with their records: visit(variant, inputIndices, isFirst, isDone) for each that may match.
/// The others ask for attention as matching them would, and then passed() is called.
template <class Near, class Visit, class Passed>
qsys_status forEachNearVariant(const ReadingVariants &variants, Near &near, VariantPolls polls, Visit visit,
                               Passed passed) {
  qoc_ocrDictionaryStringMulti variant;
  qstd_vector32s inputIndices;
  return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    frame.template emptyLocal<qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>(&variant);
    frame.template emptyLocal<qstd_vector32s_constructEmpty, qstd_vector32s_destruct>(&inputIndices);
    return near.walk(
        [&](std::span<const ReadingVariants::Step> steps, bool isFirst, bool &isDone) -> qsys_status {
          if (!isAttentionCounted()) {
            QOC_TRY(qsys_attention_check());  // One more look of a ready handler tells nobody anything.
          }
          QOC_TRY(variants.make(steps, variant, inputIndices));
          return visit(variant, inputIndices, isFirst, isDone);
        },
        [&](std::int32_t position, std::int32_t length) -> qsys_status {
          QOC_TRY(variants.passOver(position, length, polls));
          passed();
          return QSYS_STATUS_OK;
        });
  });
}

}  // namespace qoc
