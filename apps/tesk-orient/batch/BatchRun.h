#pragma once

#include <string>
#include <vector>

#include "batch/BatchProgress.h"
#include "batch/InputList.h"
#include "batch/OutputPlan.h"
#include "batch/ResultsFile.h"
#include "options/BatchOptions.h"

namespace App {

/// All that a batch works on.
struct BatchWork {
    std::vector<BatchInput> inputs;
    std::vector<PlannedOutput> outputs;  ///< of the inputs
    std::vector<PlannedOutput> reports;  ///< of the inputs
    std::string settingsHash;            ///< settingsHashOf()
};

/// Has workers work on all inputs that the results do not hold, and appends a line for each as it
/// ends. Returns when all have, and all lines are on the disk. Throws Failure where the results
/// cannot be written or no worker starts, and Tesk::AbortException after Ctrl-C; then the workers
/// have been ended, parts that they worked on have no line, and nothing half-written is left.
BatchCounts runBatch(const BatchOptions& options, const BatchWork& work, ResultsFile& results);

}  // namespace App
