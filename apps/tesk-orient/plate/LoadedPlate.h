#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "TeskPartFiles/Plates.h"
#include "Warning.h"
#include "options/LengthUnit.h"
#include "options/Options.h"

namespace App {

/// A file whose objects are parts of their own: those of a 3MF, or the bodies of another file.
struct LoadedPlate {
    Tesk::Plate plate;  ///< lengths in the file's unit; its warnings have moved to `warnings`
    LengthUnit unit;
    bool unitFromFile = false;
    bool isSplit = false;  ///< the objects are bodies; their ids count from 1
    Warnings warnings;
    std::vector<char> isTaken;  ///< whether the options ask for an object; one for each
    std::string package;        ///< the file's bytes, if a 3MF is to be made from them
};

/// Reads a file object by object. Throws InputFailure that names the file and the trouble, and
/// Failure with ExitCode::kUsage where it lacks an object that the options ask for.
///
/// @param keepsPackage  keep the bytes, where the file is a 3MF
LoadedPlate loadPlate(const CommonOptions& options, bool keepsPackage);

/// How many objects the options ask for.
std::size_t takenObjects(const LoadedPlate& plate);

/// An object for people: its name in quotes, or else "object 3" or "body 3".
std::string nameOf(const LoadedPlate& plate, std::size_t object);

/// An item for people: the name of its object, and where this has several items, which one it is,
/// counted among all items of the file from 1.
std::string nameOfItem(const LoadedPlate& plate, std::size_t item);

}  // namespace App
