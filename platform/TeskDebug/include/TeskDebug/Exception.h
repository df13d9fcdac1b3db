#pragma once

#include <stdexcept>

#include "TeskDebug/Export.h"

namespace Tesk {

/// An error reported by one of these libraries; what() says what failed and where.
class TESK_DEBUG_API Exception : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;
};

/// The user has cancelled: a progress callback throws it to abort a computation.
class TESK_DEBUG_API AbortException : public Exception {
 public:
    using Exception::Exception;
    AbortException(const AbortException&) = default;
    AbortException& operator=(const AbortException&) = default;
    ~AbortException() override;
};

}  // namespace Tesk
