// Formatted output.

#include <cstdarg>
#include <cstdio>

#include "platform/system/present.hpp"

namespace {

struct PrintHandler {
  qsys_printHandler handler = nullptr;
  void *context = nullptr;
};

thread_local PrintHandler current;

qsys_status write(const char *text, std::size_t size) {
  if (current.handler != nullptr) {
    return current.handler(current.context, text, size);
  }
  return std::fwrite(text, 1, size, stdout) == size ? QSYS_STATUS_OK : QSYS_STATUS_PRINT_FAILED;
}

}  // namespace

qsys_status qsys_print_setHandler(qsys_printHandler handler, void *context) {
  current = {handler, context};
  return QSYS_STATUS_OK;
}

qsys_status qsys_printfA(const char *format, ...) {
  if (!qoc::present({format})) {
    return QSYS_STATUS_OK;
  }
  // Printed forms are short pieces; the stack holds all but the texts of long names.
  char buffer[256];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  if (length < 0) {
    return QSYS_STATUS_PRINT_FAILED;
  }
  if (static_cast<std::size_t>(length) < sizeof buffer) {
    return write(buffer, static_cast<std::size_t>(length));
  }
  char *large = static_cast<char *>(qsys_memory_alloc_internal(static_cast<std::size_t>(length) + 1));
  if (large == nullptr) {
    return QSYS_STATUS_OUT_OF_MEMORY;
  }
  va_start(arguments, format);
  std::vsnprintf(large, static_cast<std::size_t>(length) + 1, format, arguments);
  va_end(arguments);
  const qsys_status status = write(large, static_cast<std::size_t>(length));
  qsys_memory_free_internal(large);
  return status;
}
