#pragma once

namespace App {

/// Whether standard error is a terminal, on which a line can be written over again.
bool isErrorTerminal();

}  // namespace App
