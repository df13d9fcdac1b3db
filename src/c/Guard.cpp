#include "c/Guard.h"

#include <array>
#include <cstring>
#include <new>
#include <system_error>

#include "TeskDebug/Exception.h"
#include "TeskPartFiles/PartFiles.h"

namespace Tesk::c {

namespace {

/// Of a fixed size, so that running out of memory can be told, too.
thread_local std::array<char, 1024> errorText{};

/// Cut before a character that does not fit, not inside it.
void keep(const char* text) noexcept {
    std::size_t length = std::strlen(text);
    if (length >= errorText.size()) {
        length = errorText.size() - 1;
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xc0u) == 0x80u) --length;
    }
    std::memcpy(errorText.data(), text, length);
    errorText[length] = '\0';
}

tesk_status kept(tesk_status status, const char* text) noexcept {
    keep(text);
    return status;
}

}  // namespace

void refuse(const std::string& text) {
    throw CallError(TESK_INVALID_ARGUMENT, text);
}

void need(const void* pointer, const char* name) {
    if (pointer == nullptr) refuse(std::string(name) + " is null");
}

const char* lastError() noexcept {
    return errorText.data();
}

tesk_status statusOfException() noexcept {
    try {
        throw;
    } catch (const CallError& error) {
        return kept(error.status(), error.what());
    } catch (const AbortException&) {
        return kept(TESK_ABORTED, "aborted by the progress callback");
    } catch (const PartFileError& error) {
        return kept(TESK_FILE_ERROR, error.what());
    } catch (const Exception& error) {
        return kept(TESK_INVALID_ARGUMENT, error.what());
    } catch (const std::bad_alloc&) {
        return kept(TESK_OUT_OF_MEMORY, "out of memory");
    } catch (const std::length_error&) {
        return kept(TESK_OUT_OF_MEMORY, "out of memory");
    } catch (const std::exception& error) {
        return kept(TESK_INTERNAL_ERROR, error.what());
    } catch (...) {
        return kept(TESK_INTERNAL_ERROR, "an unknown exception");
    }
}

}  // namespace Tesk::c
