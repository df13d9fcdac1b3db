#pragma once

/* What the client needs of the system: MsvcSystem.c has it for Windows without a C runtime,
 * PosixSystem.c for all else. */

#include <stdint.h>

void say(const char* text);
void say_hex(uint32_t value);

/* Runs a function on so many threads at once, one for each of the pointers. */
void run_threads(void (*body)(void*), void** users, int count);

/* The client itself. `path` names a file that it may write. */
void run_client(const char* path);
