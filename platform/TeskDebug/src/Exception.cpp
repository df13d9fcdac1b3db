#include "TeskDebug/Exception.h"

namespace Tesk {

// Out of line, so that the types' run-time identity lives in this library alone and an exception
// that one module throws is caught by type in another.
Exception::~Exception() = default;
AbortException::~AbortException() = default;

}  // namespace Tesk
