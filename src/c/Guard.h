#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "teskorient.h"

namespace Tesk::c {

/// Ends a call with a status and a text for tesk_last_error().
class CallError : public std::runtime_error {
 public:
    CallError(tesk_status status, const std::string& text)
        : std::runtime_error(text), m_status(status) {}

    tesk_status status() const { return m_status; }

 private:
    tesk_status m_status;
};

[[noreturn]] void refuse(const std::string& text);

/// Throws CallError unless a pointer is given.
void need(const void* pointer, const char* name);

/// Throws CallError unless a struct is given and its size is known.
template <class Struct>
void needStruct(const Struct* record, const char* name) {
    need(record, name);
    if (record->struct_size == sizeof(Struct)) return;
    refuse(std::string(name) + ": struct_size is " + std::to_string(record->struct_size) +
           "; this version knows " + std::to_string(sizeof(Struct)));
}

/// Throws CallError unless an array holds, or has room for, `count` structs of a known size.
template <class Struct>
void needStructs(const Struct* records, std::int32_t count, const char* name) {
    if (count < 0) {
        refuse(std::string(name) + ": the number of them is " + std::to_string(count));
    }
    if (count > 0) needStruct(records, name);
}

/// The text that tesk_last_error() returns on this thread.
const char* lastError() noexcept;

/// The status of the exception that is being handled; keeps its text for tesk_last_error().
tesk_status statusOfException() noexcept;

/// Runs the body of a function of the interface: no exception leaves it.
template <class Body>
tesk_status guarded(const Body& body) noexcept {
    try {
        body();
        return TESK_OK;
    } catch (...) {
        return statusOfException();
    }
}

}  // namespace Tesk::c
