#pragma once

#include <minizip/ioapi.h>

#include <cstddef>
#include <string>

namespace App {

/// A file in memory, as the zip library sees it through functions().
struct ZipMemory {
    std::string bytes;
    std::size_t position = 0;

    /// File functions that work on this object whatever file name they are given; it must outlive
    /// and not move under the archive that uses them.
    zlib_filefunc64_def functions();
};

}  // namespace App
