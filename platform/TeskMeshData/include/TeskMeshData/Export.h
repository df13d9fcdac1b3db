#pragma once

#if defined(TESK_MESH_STATIC)
#define TESK_MESH_API
#elif defined(_WIN32)
#if defined(TESK_MESH_BUILDING)
#define TESK_MESH_API __declspec(dllexport)
#else
#define TESK_MESH_API __declspec(dllimport)
#endif
#else
#define TESK_MESH_API __attribute__((visibility("default")))
#endif
