#include "zip/ZipLayout.h"

#include <array>
#include <optional>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

namespace {

constexpr std::uint64_t kAllOnes = 0xffffffff;
constexpr std::uint64_t kDescriptorFlag = 8;
constexpr std::uint64_t kLocalSize = 30;
constexpr std::uint64_t kCentralSize = 46;
constexpr std::uint64_t kEndSize = 22;
constexpr std::uint64_t kEnd64Size = 56;
constexpr std::uint64_t kLocatorSize = 20;
constexpr std::uint64_t kZip64Record = 1;

PartFileError damaged() {
    return PartFileError("the archive is damaged: its directory does not fit its content");
}

/// Reads little-endian numbers, each only where the archive has it.
class ZipBytes {
 public:
    explicit ZipBytes(std::string_view bytes) : m_bytes(bytes) {}

    std::uint64_t size() const { return m_bytes.size(); }

    bool has(std::uint64_t at, std::uint64_t count) const {
        return at <= size() && count <= size() - at;
    }

    ZipField field(std::uint64_t at, unsigned width) const {
        if (!has(at, width)) throw damaged();
        std::uint64_t value = 0;
        for (unsigned i = width; i-- > 0;) {
            value = value << 8 | static_cast<unsigned char>(m_bytes[at + i]);
        }
        return {at, width, value};
    }

    std::uint64_t number(std::uint64_t at, unsigned width) const { return field(at, width).value; }

    bool isMarked(std::uint64_t at, std::string_view mark) const {
        return has(at, mark.size()) && m_bytes.substr(at, mark.size()) == mark;
    }

    void expect(std::uint64_t at, std::string_view mark, std::uint64_t recordSize) const {
        if (!isMarked(at, mark) || !has(at, recordSize)) throw damaged();
    }

 private:
    std::string_view m_bytes;
};

/// The ZIP64 record among extra fields: 64-bit numbers for those fields of a header that are all
/// ones, in the header's order.
class Zip64Record {
 public:
    Zip64Record(const ZipBytes& bytes, std::uint64_t extra, std::uint64_t extraSize)
        : m_bytes(bytes) {
        const std::uint64_t end = extra + extraSize;
        while (end - extra >= 4) {
            const std::uint64_t size = bytes.number(extra + 2, 2);
            if (size > end - extra - 4) return;
            if (bytes.number(extra, 2) == kZip64Record) {
                m_next = extra + 4;
                m_end = m_next + size;
                return;
            }
            extra += 4 + size;
        }
    }

    /// Where a number is that the header gives as `field`.
    ZipField resolved(const ZipField& field) {
        if (field.value != kAllOnes || m_end - m_next < 8) return field;
        m_next += 8;
        return m_bytes.field(m_next - 8, 8);
    }

 private:
    const ZipBytes& m_bytes;
    std::uint64_t m_next = 0;
    std::uint64_t m_end = 0;
};

/// The end of the record behind a file's content, whose four forms only their values tell apart.
std::uint64_t endOfDescriptor(const ZipBytes& bytes, const ZipPlace& file) {
    for (const unsigned mark : {4u, 0u}) {
        if (mark > 0 && !bytes.isMarked(file.dataEnd, "PK\7\10")) continue;
        for (const unsigned width : {8u, 4u}) {
            const std::uint64_t crc = file.dataEnd + mark;
            if (bytes.has(crc, 4 + 2 * width) && bytes.number(crc, 4) == file.crc.value &&
                bytes.number(crc + 4, width) == file.packedSize.value &&
                bytes.number(crc + 4 + width, width) == file.size.value) {
                return crc + 4 + 2 * width;
            }
        }
    }
    return file.dataEnd;
}

void readLocal(const ZipBytes& bytes, ZipPlace& file) {
    const std::uint64_t at = file.offset.value;
    bytes.expect(at, "PK\3\4", kLocalSize);
    file.localFlags = bytes.field(at + 6, 2);
    file.localCrc = bytes.field(at + 14, 4);
    const std::uint64_t nameSize = bytes.number(at + 26, 2);
    const std::uint64_t extraSize = bytes.number(at + 28, 2);
    Zip64Record wide(bytes, at + kLocalSize + nameSize, extraSize);
    file.localSize = wide.resolved(bytes.field(at + 22, 4));
    file.localPackedSize = wide.resolved(bytes.field(at + 18, 4));
    file.dataStart = at + kLocalSize + nameSize + extraSize;
    if (!bytes.has(file.dataStart, file.packedSize.value)) throw damaged();
    file.dataEnd = file.dataStart + file.packedSize.value;
    const bool hasDescriptor = (file.localFlags.value & kDescriptorFlag) != 0;
    file.end = hasDescriptor ? endOfDescriptor(bytes, file) : file.dataEnd;
}

/// Reads the directory's record of a file, and goes on to the next.
ZipPlace readFile(const ZipBytes& bytes, std::uint64_t& at) {
    bytes.expect(at, "PK\1\2", kCentralSize);
    ZipPlace file;
    file.flags = bytes.field(at + 8, 2);
    file.method = static_cast<unsigned>(bytes.number(at + 10, 2));
    file.crc = bytes.field(at + 16, 4);
    const std::uint64_t nameSize = bytes.number(at + 28, 2);
    const std::uint64_t extraSize = bytes.number(at + 30, 2);
    Zip64Record wide(bytes, at + kCentralSize + nameSize, extraSize);
    file.size = wide.resolved(bytes.field(at + 24, 4));
    file.packedSize = wide.resolved(bytes.field(at + 20, 4));
    file.offset = wide.resolved(bytes.field(at + 42, 4));
    readLocal(bytes, file);
    at += kCentralSize + nameSize + extraSize + bytes.number(at + 32, 2);
    return file;
}

/// The last end record whose comment fits into the archive.
std::uint64_t findEnd(const ZipBytes& bytes) {
    constexpr std::uint64_t kLongestComment = 0xffff;
    for (std::uint64_t back = kEndSize; back <= kEndSize + kLongestComment; ++back) {
        if (back > bytes.size()) break;
        const std::uint64_t at = bytes.size() - back;
        if (bytes.isMarked(at, "PK\5\6") && bytes.number(at + 20, 2) <= back - kEndSize) return at;
    }
    throw damaged();
}

}  // namespace

ZipLayout layoutOf(std::string_view archive) {
    const ZipBytes bytes(archive);
    ZipLayout layout;
    const std::uint64_t end = findEnd(bytes);
    ZipField directory = bytes.field(end + 16, 4);
    std::uint64_t count = bytes.number(end + 10, 2);
    if (directory.value != kAllOnes) layout.positions.push_back(directory);
    if (end >= kLocatorSize && bytes.isMarked(end - kLocatorSize, "PK\6\7")) {
        layout.positions.push_back(bytes.field(end - kLocatorSize + 8, 8));
        const std::uint64_t end64 = layout.positions.back().value;
        bytes.expect(end64, "PK\6\6", kEnd64Size);
        count = bytes.number(end64 + 32, 8);
        directory = bytes.field(end64 + 48, 8);
        layout.positions.push_back(directory);
    }
    layout.directoryStart = directory.value;
    std::uint64_t at = directory.value;
    // The count may say anything; a record that is not there ends the loop.
    for (std::uint64_t i = 0; i < count; ++i) layout.files.push_back(readFile(bytes, at));
    return layout;
}

}  // namespace Tesk::files
