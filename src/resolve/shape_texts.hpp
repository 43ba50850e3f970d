#pragma once
// The texts that fieldings and expressions allow.

#include "resolve/lattice.hpp"
#include "resolve/task.hpp"

namespace qoc {

/// Collects the texts of results of fieldings and expressions.
class ShapeTexts {
 public:
  /// @param texts where they go
  ShapeTexts(Task &task, TextList &texts) : task_(task), texts_(texts) {}

  /// Takes the results of the set in.
  qsys_status takeSet();
  /// Whether what was taken in has every text that matters: where the best one takes no edit, none with an edit is
  /// near, and whatever else the reading shows is too far off.
  bool isComplete();
  /// Adds the texts that matter beside the best one by going through them, where that can be done.
  qsys_status walk(bool &isDone);
  /// Replaces what was taken in by what every entry for itself allows, as far as it matters beside a text of that cost.
  qsys_status matchAgain(Cost best);
  /// Adds the best texts of all that was taken in.
  /// @param known the cost of a text that is among them; noWay where none is known
  qsys_status collect(Cost known);

 private:
  qsys_status add(std::span<const qoc_ocrDictionaryResult> results, std::int32_t entry, Cost limit);
  qsys_status collectPlain();
  qsys_status search(Cost most, std::size_t &numTaken);
  std::vector<Cost> leastAdmitted(std::int32_t before, std::int32_t behind) const;
  qoc_ocrDictionaryRunParams paramsWithin(Cost limit) const;
  std::vector<Cost> leastWithin(const Reach &reach) const;
  qsys_status walkWithin(Cost limit, bool &isDone);
  void listCodes(const Text &text, std::int32_t entry, std::span<const std::size_t> open);
  qsys_status addPassing(std::int32_t entry, std::size_t open, Text &text);
  qsys_status open(Lattice &lattice) const;
  qsys_status fill(std::int32_t entry, const std::vector<std::size_t> &open, Text &text, bool &isDescribed);

  Task &task_;
  TextList &texts_;
  std::vector<Lattice> lattices_;
  // Of the text at hand: what may stand at its places, and what is admitted at one of them.
  CodesByPlace codes_;
  std::vector<Char32> admitted_;
};

}  // namespace qoc
