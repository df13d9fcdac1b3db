/* The system under the client, as KERNEL32 alone gives it: nothing of any compiler's runtime. */
#include <stddef.h>

#include "MsvcClient.h"

typedef unsigned long(__stdcall* thread_body)(void*);
__declspec(dllimport) void* __stdcall GetStdHandle(unsigned long which);
__declspec(dllimport) int __stdcall WriteFile(void* file, const void* bytes, unsigned long size,
                                              unsigned long* written, void* overlapped);
__declspec(dllimport) void __stdcall ExitProcess(unsigned int code);
__declspec(dllimport) void* __stdcall CreateThread(void* security, size_t stack, thread_body body,
                                                   void* user, unsigned long flags,
                                                   unsigned long* id);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void* object, unsigned long ms);
__declspec(dllimport) int __stdcall CloseHandle(void* object);

/* What the compiler asks for by itself. */
int _fltused = 0;

#pragma clang optimize off
void* memcpy(void* to, const void* from, size_t size) {
    size_t i;
    for (i = 0; i < size; ++i) ((char*)to)[i] = ((const char*)from)[i];
    return to;
}

void* memset(void* to, int value, size_t size) {
    size_t i;
    for (i = 0; i < size; ++i) ((char*)to)[i] = (char)value;
    return to;
}
#pragma clang optimize on

void say(const char* text) {
    unsigned long length = 0;
    unsigned long written = 0;
    while (text[length] != '\0') ++length;
    WriteFile(GetStdHandle((unsigned long)-11), text, length, &written, 0);
}

void say_hex(uint32_t value) {
    char digits[9];
    int i;
    for (i = 0; i < 8; ++i) digits[i] = "0123456789abcdef"[(value >> (28 - 4 * i)) & 15];
    digits[8] = '\0';
    say(digits);
}

struct start {
    void (*body)(void*);
    void* user;
};

static unsigned long __stdcall run_start(void* user) {
    const struct start* const start = user;
    start->body(start->user);
    return 0;
}

void run_threads(void (*body)(void*), void** users, int count) {
    struct start starts[16];
    void* threads[16];
    int i;
    for (i = 0; i < count; ++i) {
        starts[i].body = body;
        starts[i].user = users[i];
        threads[i] = CreateThread(0, 0, run_start, &starts[i], 0, 0);
    }
    for (i = 0; i < count; ++i) {
        if (threads[i] == 0) say("a thread did not start\n");
        WaitForSingleObject(threads[i], 0xffffffff);
        CloseHandle(threads[i]);
    }
}

void mainCRTStartup(void) {
    run_client("client.3mf");
    ExitProcess(0);
}
