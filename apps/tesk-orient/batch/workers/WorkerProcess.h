#pragma once

namespace App {

/// Whether this process was started as a worker of a batch.
bool isWorkerProcess(int argc, char** argv);

/// Works as BatchFormat.h says, until there is nothing to work on, and returns the process's exit
/// code. Standard output is the answers' alone; whatever else is printed goes to standard error.
/// Signals that a terminal or a system sends to all processes alike are ignored: the batch itself
/// says when to end.
int runWorkerProcess(int argc, char** argv);

}  // namespace App
