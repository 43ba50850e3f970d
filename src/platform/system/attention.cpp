// Interrupts: what the calling thread's handler says about going on.

#include "platform/system/attention.hpp"

#include <atomic>
#include <chrono>

#include "platform/system/present.hpp"

namespace {

struct Attention {
  qsys_attentionHandler handler = nullptr;
  void *context = nullptr;
};

thread_local Attention attention;

}  // namespace

qsys_status qsys_attention_setHandler(qsys_attentionHandler handler, void *context) {
  attention = {handler, context};
  return QSYS_STATUS_OK;
}

qsys_status qsys_attention_getHandler(qsys_attentionHandler *handler, void **context) {
  if (!qoc::present({handler, context})) {
    return QSYS_STATUS_OK;
  }
  *handler = attention.handler;
  *context = attention.context;
  return QSYS_STATUS_OK;
}

qsys_status qsys_attention_check(void) {
  if (attention.handler == nullptr) {
    return QSYS_STATUS_OK;
  }
  const qsys_status status = attention.handler(attention.context);
  return status < 0 ? status : QSYS_STATUS_OK;
}

bool qoc::isAttentionCounted() noexcept {
  return attention.handler != nullptr && attention.handler != qsys_attention_flagHandler &&
         attention.handler != qsys_attention_deadlineHandler;
}

qsys_status qoc::checkAttention(std::int64_t times) {
  if (attention.handler == nullptr) {
    return QSYS_STATUS_OK;
  }
  for (std::int64_t left = times > 1 && !isAttentionCounted() ? 1 : times; left > 0; --left) {
    QOC_TRY(qsys_attention_check());
  }
  return QSYS_STATUS_OK;
}

qsys_status qsys_attention_flagHandler(void *context) {
  if (!qoc::present({context})) {
    return QSYS_STATUS_OK;
  }
  const std::atomic_ref<std::int32_t> flag(*static_cast<std::int32_t *>(context));
  return flag.load(std::memory_order_relaxed) != 0 ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK;
}

qsys_status qsys_attention_deadlineHandler(void *context) {
  if (!qoc::present({context})) {
    return QSYS_STATUS_OK;
  }
  const std::uint64_t deadline = *static_cast<const std::uint64_t *>(context);
  return qsys_attention_getTimeNs() > deadline ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK;
}

uint64_t qsys_attention_getTimeNs(void) {
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count());
}
