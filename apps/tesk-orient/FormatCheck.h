#pragma once

#include <cstddef>
#include <string>

#include "Warning.h"

namespace App {

/// What a format's check found a file to hold. The library that then reads the file must find the
/// same, so that nothing is lost in silence.
struct FileContent {
    std::string form;          ///< "binary" or "ASCII"; empty where the format has one form only
    std::size_t polygons = 0;  ///< faces of three or more corners
    std::size_t corners = 0;   ///< their corners in all
    Warnings warnings;
};

/// Each check proves a file sound enough for the library to read: complete, no more promised in a
/// header than the file's size holds, all numbers numbers, all coordinates finite (but those of a
/// binary STL, which are looked at after reading), all indices in range, at least one face. A check
/// may rewrite bytes in place where the library would trip over what can honestly be read. Throws
/// InputFailure that says what is wrong and where.
FileContent checkStl(std::string& bytes);
FileContent checkObj(std::string& bytes);
FileContent checkPly(std::string& bytes);
FileContent checkOff(std::string& bytes);

/// Throws InputFailure that names the line where a text file holds a NUL byte.
void refuseNulBytes(const std::string& bytes, const char* format);

}  // namespace App
