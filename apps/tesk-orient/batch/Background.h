#pragma once

#include <uv.h>

#include <functional>

namespace App {

/// Does the work on a thread of libuv's and then calls `done` on the loop's. Where no thread can be
/// had, the loop's own does both. Neither may throw.
void inBackground(uv_loop_t* loop, std::function<void()> work, std::function<void()> done);

}  // namespace App
