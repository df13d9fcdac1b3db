#include "c/Call.h"

#include <omp.h>

#include <algorithm>
#include <string>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif

#include "TeskDebug/Exception.h"
#include "c/Guard.h"

namespace Tesk::c {

namespace {

constexpr int kMostThreads = 1024;

/// OpenMP's threads stay when a computation has ended: were the library unloaded then, they would
/// run on in memory that is gone. Elsewhere the linker is told to keep it.
void stayLoaded() {
#if defined(_WIN32)
    static const bool isPinned = [] {
        HMODULE self = nullptr;
        return GetModuleHandleExA(
                   GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                   reinterpret_cast<LPCSTR>(&tesk_version), &self) != 0;
    }();
    static_cast<void>(isPinned);
#endif
}

}  // namespace

Call::Call(const tesk_call* call)
    : m_threads(static_cast<unsigned>(std::max(1, omp_get_max_threads()))),
      m_formerThreads(omp_get_max_threads()) {
    stayLoaded();
    if (call == nullptr) return;
    needStruct(call, "call");
    if (call->threads < 0 || call->threads > kMostThreads) {
        refuse("call: threads is " + std::to_string(call->threads) + ", outside 0.." +
               std::to_string(kMostThreads));
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
