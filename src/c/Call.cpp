#include "c/Call.h"

#include <omp.h>

#include <algorithm>
#include <thread>

#include "TeskDebug/Exception.h"
#include "c/Guard.h"

namespace Tesk::c {

Call::Call(const tesk_call* call)
    : m_threads(std::max(1u, std::thread::hardware_concurrency())),
      m_formerThreads(omp_get_max_threads()) {
    if (call == nullptr) return;
    needStruct(call, "call");
    if (call->threads < 0 || call->threads > 4096) {
        refuse("call: threads is " + std::to_string(call->threads) + ", outside 0..4096");
    }
    m_callback = call->progress;
    m_user = call->user;
    if (call->threads == 0) return;
    m_threads = static_cast<unsigned>(call->threads);
    omp_set_num_threads(call->threads);
}

Call::~Call() {
    omp_set_num_threads(m_formerThreads);
}

std::function<void(int)> Call::progress() {
    if (m_callback == nullptr) return {};
    return [this](int percent) {
        try {
            if (m_callback(percent, m_user) == 0) return;
        } catch (...) {
            m_hasThrown = true;
        }
        throw AbortException("Aborting...");
    };
}

void Call::refuseFailedCallback() const {
    if (!m_hasThrown) return;
    throw CallError(TESK_CALLBACK_FAILED, "an exception left the progress callback");
}

}  // namespace Tesk::c
