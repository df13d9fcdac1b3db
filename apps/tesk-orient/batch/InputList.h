#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace App {

/// A file that a batch is to work on.
struct BatchInput {
    std::filesystem::path path;      ///< as it was given, or the folder as given and the rest
    std::filesystem::path relative;  ///< where its output goes below the output folder
    std::string problem;             ///< why it cannot be worked on; empty if it can
};

/// What to look for.
struct InputRequest {
    std::vector<std::filesystem::path> given;   ///< files and folders
    std::vector<std::filesystem::path> listed;  ///< the same, from a list
    std::vector<std::string> include;  ///< patterns of globMatchesFile(); empty: all formats
    std::filesystem::path results;     ///< never a part; empty for none
    std::vector<std::filesystem::path> outputFolders;  ///< not looked into; empty for none
};

/// The names in a list: separated by NUL if there is any, else by line feeds. Empty names are left
/// out.
std::vector<std::filesystem::path> namesIn(std::string_view list);

/// All of a stream. For namesIn().
std::string readToEnd(std::istream& in);

/// The files, each once, in the order of the request; those of a folder by their names' bytes, a
/// folder's own where its name stands. Folders are searched to any depth, but not through links to
/// folders. In a folder a file counts if a pattern matches or, without patterns, if its extension
/// is that of a known format; a file that is named itself always counts.
///
/// Files that are named go to the output folder by their name alone, those of a list by the
/// relative path that they are listed with, those of a folder by their path below it; with several
/// things given, behind the folder's own name.
///
/// What is not there is in the list all the same, and fails when it is worked on. A folder that
/// cannot be read is in the list with its problem.
std::vector<BatchInput> listInputs(const InputRequest& request);

}  // namespace App
