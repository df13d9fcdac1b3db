#pragma once

#include <stdexcept>

#include "TeskDebug/Export.h"

namespace Tesk {

/// A failure that the libraries of this family report; what() says what and which.
class TESK_DEBUG_API Exception : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;
};

/// The user gave up. A progress callback throws it to end a computation.
class TESK_DEBUG_API AbortException : public Exception {
 public:
    using Exception::Exception;
    AbortException(const AbortException&) = default;
    AbortException& operator=(const AbortException&) = default;
    ~AbortException() override;
};

}  // namespace Tesk
