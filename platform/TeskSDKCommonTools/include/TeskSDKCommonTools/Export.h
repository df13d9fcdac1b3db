#pragma once

#if defined(TESK_TOOLS_STATIC)
#define TESK_TOOLS_API
#elif defined(_WIN32)
#if defined(TESK_TOOLS_BUILDING)
#define TESK_TOOLS_API __declspec(dllexport)
#else
#define TESK_TOOLS_API __declspec(dllimport)
#endif
#else
#define TESK_TOOLS_API __attribute__((visibility("default")))
#endif
