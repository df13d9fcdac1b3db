#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tesk::files {

/// A zip archive with other content for one of its files, the one at `index` of the directory.
///
/// The file's sizes and checksum change, and a data descriptor behind its content is removed. The
/// file stays stored or deflated, as it was. In the rest of the archive, only the numbers change
/// that give positions. The same input always gives the same bytes.
///
/// Throws PartFileError if other files overlap this one, if a number outgrows its field, and if the
/// archive is damaged.
std::string withContent(std::string_view archive, std::size_t index, std::string_view content);

}  // namespace Tesk::files
