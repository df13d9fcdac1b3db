#pragma once

#include <stdexcept>
#include <string>

#include "ExitCode.h"

namespace App {

/// Ends the program with one line on standard error. what() is that line, without the program's
/// name in front.
class Failure : public std::runtime_error {
 public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), m_code(code) {}

    ExitCode code() const { return m_code; }

 private:
    ExitCode m_code;
};

/// The part's file cannot be read or holds nothing to orient. Functions that do not know the file's
/// name leave it out of the text; readNamingErrors() puts it in front.
class InputFailure : public Failure {
 public:
    explicit InputFailure(const std::string& text) : Failure(ExitCode::kInput, text) {}
};

/// The part is too large for the memory that there is.
class OutOfMemory : public InputFailure {
 public:
    using InputFailure::InputFailure;
};

}  // namespace App
