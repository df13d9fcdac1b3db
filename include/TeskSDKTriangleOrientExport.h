#pragma once

#if defined(TESK_ORIENT_STATIC)
#define TESK_ORIENT_API
#elif defined(_WIN32)
#if defined(TESK_ORIENT_BUILDING)
#define TESK_ORIENT_API __declspec(dllexport)
#else
#define TESK_ORIENT_API __declspec(dllimport)
#endif
#else
#define TESK_ORIENT_API __attribute__((visibility("default")))
#endif
