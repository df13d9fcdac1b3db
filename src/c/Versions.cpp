#include <string>

#include "c/Guard.h"
#include "c/Handles.h"
#include "teskorient.h"

using namespace Tesk::c;

int32_t tesk_abi_version(void) {
    return TESK_ABI_VERSION;
}

tesk_status tesk_check_abi(int32_t abi_version) {
    return guarded([&] {
        if (abi_version == TESK_ABI_VERSION) return;
        refuse("the program was compiled for version " + std::to_string(abi_version) +
               " of the binary interface; this library serves " + std::to_string(TESK_ABI_VERSION));
    });
}

const char* tesk_version(void) {
    return TESKORIENT_VERSION;
}

const char* tesk_last_error(void) {
    return lastError();
}

void tesk_free(void* handle) {
    delete static_cast<tesk_object*>(handle);
}
