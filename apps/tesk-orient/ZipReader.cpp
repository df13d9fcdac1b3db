#include "ZipReader.h"

#include <fmt/format.h>
#include <minizip/unzip.h>

#include <array>

#include "Failure.h"
#include "TextScanner.h"
#include "ZipMemory.h"

namespace App {

namespace {

// Meshes as XML shrink to a tenth or so, very regular ones to a fiftieth.
constexpr std::size_t kMostGrowth = 200;
constexpr std::size_t kAlwaysAllowed = std::size_t{1} << 20;
constexpr int kIgnoreCase = 2;

std::string entryName(std::string_view name) {
    while (!name.empty() && name.front() == '/') name.remove_prefix(1);
    return std::string(name);
}

}  // namespace

struct ZipReader::Archive {
    ZipMemory memory;
    unzFile zip = nullptr;
    std::size_t room = 0;  ///< bytes that may still be unpacked

    bool locate(std::string_view name) const {
        return unzLocateFile(zip, entryName(name).c_str(), kIgnoreCase) == UNZ_OK;
    }
};

ZipReader::ZipReader(std::string bytes) : m_archive(std::make_unique<Archive>()) {
    m_archive->room = bytes.size() * kMostGrowth + kAlwaysAllowed;
    m_archive->memory.bytes = std::move(bytes);
    zlib_filefunc64_def functions = m_archive->memory.functions();
    m_archive->zip = unzOpen2_64("", &functions);
    if (m_archive->zip == nullptr) {
        throw InputFailure("is no 3MF: it is not a zip archive, or cut short");
    }
}

ZipReader::~ZipReader() {
    if (m_archive->zip != nullptr) unzClose(m_archive->zip);
}

bool ZipReader::has(std::string_view name) {
    return m_archive->locate(name);
}

void ZipReader::read(std::string_view name, const std::function<void(std::string_view)>& sink) {
    if (!m_archive->locate(name)) {
        throw InputFailure("its archive has no file " + quoted(name));
    }
    const auto damaged = [&] {
        return InputFailure(
            fmt::format("its file {} cannot be unpacked: the archive is damaged", quoted(name)));
    };
    unzFile zip = m_archive->zip;
    if (unzOpenCurrentFile(zip) != UNZ_OK) throw damaged();
    const auto close = [](unzFile open) { unzCloseCurrentFile(open); };
    std::unique_ptr<void, decltype(close)> openFile(zip, close);

    std::array<char, std::size_t{1} << 16> buffer;
    while (const int count =
               unzReadCurrentFile(zip, buffer.data(), static_cast<unsigned>(buffer.size()))) {
        if (count < 0) throw damaged();
        const auto size = static_cast<std::size_t>(count);
        if (size > m_archive->room) {
            throw InputFailure(
                fmt::format("unpacks to more than {} times its size; refused", kMostGrowth));
        }
        m_archive->room -= size;
        sink({buffer.data(), size});
    }
    openFile.release();
    if (unzCloseCurrentFile(zip) != UNZ_OK) throw damaged();  // the checksum
}

}  // namespace App
