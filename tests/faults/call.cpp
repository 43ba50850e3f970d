#include "faults/call.hpp"

#include <qoc/ocr_dictionary.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "support/owned.hpp"

namespace qoc::test {

namespace {

constexpr std::size_t blockSize = 64;

bool endsWith(std::string_view text, std::string_view end) { return text.ends_with(end); }

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

bool isConstructor(const Function &function) {
  return contains(function.name, "_construct") && !function.parameters.empty() &&
         function.parameters[0].role == Role::object;
}

void hash(std::uint64_t &sum, const void *bytes, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    sum = (sum ^ static_cast<const unsigned char *>(bytes)[i]) * 1099511628211u;
  }
}

void appendHex(std::string &out, const void *bytes, std::size_t size) {
  char digits[3];
  for (std::size_t i = 0; i < size; ++i) {
    std::snprintf(digits, sizeof digits, "%02x", static_cast<const unsigned char *>(bytes)[i]);
    out += digits;
  }
}

/// An object with all that it owns.
void describeObject(std::string &out, const Type &type, const void *object) {
  if (type.isScalar()) {
    appendHex(out, object, type.size);
    return;
  }
  if (type.element != nullptr) {
    const auto &vector = *static_cast<const qstd_vector *>(object);
    out += '[';
    for (int32_t i = 0; i < vector.size; ++i) {
      out += i != 0 ? "," : "";
      describeObject(
          out, *type.element,
          static_cast<const std::byte *>(vector.elements) + static_cast<std::size_t>(i) * vector.elementSize);
    }
    out += ']';
    return;
  }
  out += '{';
  for (const Field &field : type.fields) {
    const void *place = static_cast<const std::byte *>(object) + field.offset;
    if (field.isOwnedPointer) {
      place = *static_cast<const void *const *>(place);
    }
    out += out.back() != '{' ? " " : "";
    out += field.name;
    out += ':';
    if (place != nullptr) {
      describeObject(out, *field.type, place);
    }
  }
  out += '}';
}

/// Elements that a function has left to its caller to construct.
void constructElements(const Type &type, void *object, int32_t first) {
  const auto &vector = *static_cast<const qstd_vector *>(object);
  for (int32_t i = first; i < vector.size; ++i) {
    auto *element = static_cast<std::byte *>(vector.elements) + static_cast<std::size_t>(i) * vector.elementSize;
    if (type.element->isScalar()) {
      std::memset(element, 0, type.element->size);
    } else {
      require(type.element->construct(element));
    }
  }
}

FILE *sink() {
  static FILE *const file = std::fopen("/dev/null", "w");
  return file;
}

}  // namespace

Call::Call(const Function &function, World world, const CountingAllocator &memory)
    : function_(function), memory_(memory), numLiveBefore_(memory.numLive()) {
  install();
  for (std::size_t i = 0; i < function.parameters.size(); ++i) {
    const Parameter &parameter = function.parameters[i];
    Argument argument;
    Value value;
    argument.size = parameter.type != nullptr && !parameter.type->isScalar() ? parameter.type->size : blockSize;
    argument.storage =
        std::make_unique<std::max_align_t[]>((argument.size + sizeof(std::max_align_t) - 1) / sizeof(std::max_align_t));
    value.pointer = argument.storage.get();
    const int variant = variantFor(function, i);
    switch (parameter.role) {
      case Role::input:
      case Role::object:
        if (i == 0 && isConstructor(function)) {
          std::memset(value.pointer, 0x5A, argument.size);
          break;
        }
        require(
            parameter.type->constructCopy(value.pointer, sampleOf(*parameter.type, variant, world, memory.table())));
        argument.isAlive = true;
        break;
      case Role::block:
        fillBlock(parameter.typeName, parameter.type, value.pointer, argument.size, variant);
        break;
      case Role::cell:
        std::memset(value.pointer, readsItsCells(function) ? 0 : 0x5A, argument.size);
        break;
      case Role::number:
        value.number = numberFor(function, i);
        break;
      case Role::special: {
        const std::string_view typeName = parameter.typeName;
        static constexpr qstd_elementTable plainElements = {nullptr, nullptr, nullptr, nullptr, 0xFFFFFFFFu};
        if (typeName == "FILE") {
          value.pointer = sink();
        } else if (typeName == "qsys_memoryTable") {
          value.pointer = const_cast<qsys_memoryTable *>(memory.table());
        } else if (typeName == "qstd_elementTable") {
          value.pointer = const_cast<qstd_elementTable *>(&plainElements);
        }
        break;
      }
      case Role::function:
        if (std::string_view(parameter.typeName) == "qstd_elementCompareEqual") {
          constexpr qstd_elementCompareEqual compare = [](const void *a, const void *b, qsys_bool *isEqual) {
            *isEqual = std::memcmp(a, b, 4) == 0 ? 1 : 0;
            return qsys_status{0};
          };
          value.function = reinterpret_cast<void (*)()>(compare);
        }
        break;
    }
    if (std::string_view(function.name) == "qsys_memory_free_internal") {
      value.pointer = qsys_memory_alloc_internal(10);
    }
    arguments_.push_back(std::move(argument));
    values_.push_back(value);
  }
  listen();
}

Call::~Call() {
  finish();
  qsys_assert_setHandler(nullptr, nullptr);
  qsys_attention_setHandler(nullptr, nullptr);
  qsys_print_setHandler(nullptr, nullptr);
}

void Call::install() {
  qsys_assert_setHandler([](void *heard, int32_t) { ++static_cast<Heard *>(heard)->numChecks; }, &heard_);
  qsys_attention_setHandler(
      [](void *context) -> qsys_status {
        auto *heard = static_cast<Heard *>(context);
        const bool isRefused = heard->numPolls++ == heard->refusedPoll;
        heard->isInterrupted = heard->isInterrupted || isRefused;
        return isRefused ? interruption : QSYS_STATUS_OK;
      },
      &heard_);
  qsys_print_setHandler(
      [](void *context, const char *text, size_t size) -> qsys_status {
        auto *heard = static_cast<Heard *>(context);
        hash(heard->printed, text, size);
        return heard->numPrints++ == heard->refusedPrint ? printRefusal : QSYS_STATUS_OK;
      },
      &heard_);
}

void Call::listen(int64_t refusedPoll, int64_t refusedPrint) {
  heard_ = {};
  heard_.refusedPoll = refusedPoll;
  heard_.refusedPrint = refusedPrint;
}

Answer Call::callWith(const std::vector<Value> &values) {
  const Answer answer = function_.call(values.data());
  if (endsWith(function_.name, "_setHandler")) {
    install();
  }
  return answer;
}

qsys_status Call::run() {
  const std::string_view name = function_.name;
  const bool leavesElements = endsWith(name, "Uninit") || name == "qstd_vector__constructWithVtableUninit";
  const int32_t sizeBefore =
      leavesElements && !isConstructor(function_) ? static_cast<const qstd_vector *>(values_[0].pointer)->size : 0;
  const Answer answer = callWith(values_);
  if (isConstructor(function_)) {
    arguments_[0].isAlive = answer.status >= 0 && heard_.numChecks == 0;
  }
  if (endsWith(name, "_destruct")) {
    arguments_[0].isAlive = false;
  }
  if (answer.status >= 0 && leavesElements) {
    constructElements(*function_.parameters[0].type, values_[0].pointer, sizeBefore);
  }
  qsys_memory_free_internal(answer.memory);
  if (name == "qsys_memory_free_internal") {
    values_[0].pointer = nullptr;
  }
  return answer.status;
}

bool Call::makeHostile(std::size_t index, std::size_t kind) {
  const Parameter &parameter = function_.parameters[index];
  switch (parameter.role) {
    case Role::number: {
      // What the caller's memory is like is told truly: the size of elements, and how much a block holds.
      const std::string_view name = parameter.name;
      if (name == "elementSize") return false;
      const bool isCount =
          (name == "n" || name == "size") && std::any_of(function_.parameters.begin() + 1, function_.parameters.end(),
                                                         [](const Parameter &other) { return other.isPointer(); });
      static constexpr std::int64_t hostile[] = {-1, INT32_MIN, INT32_MAX, 0xF800};
      const bool isCode = std::string_view(parameter.typeName) == "Char32";
      if (kind >= (isCode ? 4U : isCount ? 2U : 3U)) return false;
      values_[index].number = static_cast<std::uint64_t>(hostile[kind]);
      return true;
    }
    case Role::input:
    case Role::object:
      if (kind > 0 || !arguments_[index].isAlive) return false;
      require(parameter.type->destruct(values_[index].pointer));
      require(parameter.type->construct(values_[index].pointer));
      return true;
    case Role::block: {
      static constexpr int hostile[] = {0, '*', '(', 0xF800};  // As the first of its characters.
      if (kind >= std::size(hostile)) return false;
      fillBlock(parameter.typeName, parameter.type, values_[index].pointer, arguments_[index].size,
                hostile[kind] - 'a');
      return true;
    }
    default:
      return false;
  }
}

qsys_status Call::runWithNull(std::size_t index) {
  std::vector<Value> values = values_;
  values[index] = {};
  const Answer answer = callWith(values);
  if (reasonToBeOptional(function_, index) != nullptr && isConstructor(function_)) {
    arguments_[0].isAlive = answer.status >= 0;
  }
  return answer.status;
}

std::string Call::describe() const {
  std::string out;
  for (std::size_t i = 0; i < arguments_.size(); ++i) {
    const Parameter &parameter = function_.parameters[i];
    if (arguments_[i].isAlive) {
      out += parameter.name;
      out += '=';
      describeObject(out, *parameter.type, values_[i].pointer);
      out += '\n';
    } else if (parameter.role == Role::cell && parameter.type != nullptr) {
      out += parameter.name;
      out += '=';
      appendHex(out, values_[i].pointer, blockSize);
      out += '\n';
    }
  }
  return out + "printed " + std::to_string(heard_.printed);
}

std::uint64_t Call::fingerprint() const {
  std::uint64_t sum = 14695981039346656037u;
  for (const Argument &argument : arguments_) {
    hash(sum, argument.storage.get(), argument.size);
  }
  return sum;
}

std::string Call::finish() {
  for (std::size_t i = arguments_.size(); i-- > 0;) {
    if (arguments_[i].isAlive) {
      arguments_[i].isAlive = false;
      if (function_.parameters[i].type->destruct(values_[i].pointer) < 0) {
        return std::string("the argument ") + function_.parameters[i].name + " could not be destructed";
      }
    }
  }
  if (std::string_view(function_.name) == "qsys_memory_free_internal") {
    qsys_memory_free_internal(values_[0].pointer);
    values_[0].pointer = nullptr;
  }
  if (memory_.numLive() != numLiveBefore_) {
    return std::to_string(memory_.numLive() - numLiveBefore_) + " blocks are left over";
  }
  if (memory_.numForeignFrees() != 0 || memory_.numOverruns() != 0) {
    return "a block was freed that is not the library's, or written over its end";
  }
  return {};
}

}  // namespace qoc::test
