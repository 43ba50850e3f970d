// Operations on vectors and texts, one after the other, compared with std::vector.

#include <algorithm>
#include <vector>

#include "input.hpp"

namespace {

using namespace qoc::test;
using qoc::fuzz::check;
using qoc::fuzz::Input;

template <class V>
class Pair {
 public:
  using F = Family<V>;
  using Element = typename F::Element;

  void step(Input &input) {
    const auto size = static_cast<std::int32_t>(model_.size());
    const std::int32_t position = input.below(12) - 1, n = input.below(12) - 1;
    const auto value = static_cast<Element>(input.byte());
    const Element block[] = {value, static_cast<Element>(value + 1), 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const bool isPosition = position >= 0 && position <= size;
    const bool isRange = isPosition && n >= 0 && n <= size - position;
    const auto at = model_.begin() + (isPosition ? position : 0);
    switch (input.below(17)) {
      case 0:
        if (expect(F::pushBack(vector_, &value), 0)) model_.push_back(value);
        break;
      case 1:
        if (expect(F::popBack(vector_), size == 0 ? QSTD_STATUS_CONTAINER_EMPTY : 0)) model_.pop_back();
        break;
      case 2:
        if (expect(F::insert(vector_, position, block, n), !isPosition ? QSTD_STATUS_INDEX_INVALID : sizeStatus(n))) {
          model_.insert(at, block, block + n);
        }
        break;
      case 3:
        if (expect(F::insertElement(vector_, position, &value), isPosition ? 0 : QSTD_STATUS_INDEX_INVALID)) {
          model_.insert(at, value);
        }
        break;
      case 4:
        if (F::erase(vector_, position, n) >= 0) {
          check(isRange);
          model_.erase(at, at + n);
        } else {
          check(!isRange);
        }
        break;
      case 5:
        if (expect(F::eraseElement(vector_, position), isPosition && position < size ? 0 : QSTD_STATUS_INDEX_INVALID)) {
          model_.erase(at);
        }
        break;
      case 6:
        if (expect(F::resize(vector_, n), sizeStatus(n))) model_.resize(static_cast<std::size_t>(n));
        break;
      case 7:
        if (expect(F::resizeFill(vector_, n, &value), sizeStatus(n))) model_.resize(static_cast<std::size_t>(n), value);
        break;
      case 8:
        expect(F::reserve(vector_, n * 5), sizeStatus(n));
        break;
      case 9:
        if (expect(F::assignElements(vector_, block, n), sizeStatus(n))) model_.assign(block, block + n);
        break;
      case 10:
        if (size <= 200 && expect(F::append(vector_, vector_), 0)) {
          const auto copy = model_;
          model_.insert(model_.end(), copy.begin(), copy.end());
        }
        break;
      case 11: {
        const Owned<V> copy(*vector_);
        Owned<V> other;
        check(F::swap(other, vector_) >= 0);
        check(elements(*vector_).empty());
        if (F::assign(vector_, copy) < 0) model_.clear();
        break;
      }
      case 12:
        expect(F::clear(vector_), 0);
        model_.clear();
        break;
      case 13:
        expect(F::clearAndFreeMemory(vector_), 0);
        model_.clear();
        break;
      case 14:  // A block of the vector itself.
        if (isRange && n > 0) {
          const std::vector<Element> part(at, at + n);
          const Element *first = elements(*vector_).data() + position;
          if (expect(F::insert(vector_, size / 2, first, n), 0)) {
            model_.insert(model_.begin() + size / 2, part.begin(), part.end());
          }
        }
        break;
      case 15:
        if (isRange && n > 0) {
          const std::vector<Element> part(at, at + n);
          if (expect(F::assignElements(vector_, elements(*vector_).data() + position, n), 0)) model_ = part;
        }
        break;
      default: {
        Element *element = nullptr;
        const bool isThere = position >= 0 && position < size;
        if (expect(F::getElement(vector_, position, &element), isThere ? 0 : QSTD_STATUS_INDEX_INVALID)) {
          *element = value;
          model_[static_cast<std::size_t>(position)] = value;
        }
      }
    }
    const auto now = elements(*vector_);
    check(std::equal(now.begin(), now.end(), model_.begin(), model_.end()));
  }

 private:
  static qsys_status sizeStatus(std::int32_t n) { return n < 0 ? QSTD_STATUS_SIZE_INVALID : QSYS_STATUS_OK; }

  /// Whether the call took place; where it did not, that is as expected, or memory ran out.
  static bool expect(qsys_status status, qsys_status expected) {
    check(status == expected || (status == QSYS_STATUS_OUT_OF_MEMORY && expected >= 0));
    return status >= 0;
  }

  Owned<V> vector_;
  std::vector<Element> model_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  return qoc::fuzz::run(data, size, [](Input &input) {
    Pair<qstd_vector32s> numbers;
    Pair<qstd_string> text;
    for (int i = 0; i < 300 && !input.isEmpty(); ++i) {
      if (input.flag()) {
        numbers.step(input);
      } else {
        text.step(input);
      }
    }
  });
}
