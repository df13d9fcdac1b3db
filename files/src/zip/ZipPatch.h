#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tesk::files {

/// A zip archive with other content for one of its files, the one at `index` of the directory.
///
/// Nothing else changes: of the file itself, its sizes, its checksum, and the record behind the
/// content that some writers repeat them in, which goes; of the rest, the numbers that say where
/// things are. The file stays stored or deflated, as it was. The same input has the same bytes.
///
/// Throws PartFileError where files overlap, where a number outgrows its field, and where the
/// archive is damaged so that it cannot be taken apart.
std::string withContent(std::string_view archive, std::size_t index, std::string_view content);

}  // namespace Tesk::files
