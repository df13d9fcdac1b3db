#pragma once

#if defined(TESK_DEBUG_STATIC)
#define TESK_DEBUG_API
#elif defined(_WIN32)
#if defined(TESK_DEBUG_BUILDING)
#define TESK_DEBUG_API __declspec(dllexport)
#else
#define TESK_DEBUG_API __declspec(dllimport)
#endif
#else
#define TESK_DEBUG_API __attribute__((visibility("default")))
#endif
