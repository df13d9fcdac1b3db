#pragma once

#include <string>

#include "batch/workers/Worker.h"
#include "options/BatchOptions.h"

namespace App {

/// How many parts are worked on at once.
int jobCountOf(const BatchOptions& options);

/// How a worker of this batch is started. Throws Failure where the program's own file is not to be
/// found.
WorkerSettings workerSettingsOf(const BatchOptions& options);

/// What decides the results of a batch, as BatchFormat.h says.
std::string settingsHashOf(const BatchOptions& options);

}  // namespace App
