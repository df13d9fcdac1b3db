#include "zip/ZipPatch.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>

#include "TeskPartFiles/PartFiles.h"
#include "zip/ZipLayout.h"

namespace Tesk::files {

namespace {

constexpr int kCompression = 6;
constexpr unsigned kDeflated = 8;
constexpr std::uint64_t kDescriptorFlag = 8;

/// The stream of zlib that compresses, and its memory.
class Deflater {
 public:
    Deflater() {
        constexpr int kRaw = -15;  // without a header of zlib's own
        constexpr int kMemoryLevel = 8;
        if (deflateInit2(&m_stream, kCompression, Z_DEFLATED, kRaw, kMemoryLevel,
                         Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Deflater() { deflateEnd(&m_stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    std::string run(std::string_view content) {
        std::string packed;
        do {
            const std::size_t size = std::min(content.size(), kMostAtOnce);
            // zlib only reads there.
            m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
            m_stream.avail_in = static_cast<uInt>(size);
            content.remove_prefix(size);
            drain(packed, content.empty() ? Z_FINISH : Z_NO_FLUSH);
        } while (!content.empty());
        return packed;
    }

 private:
    static constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;

    void drain(std::string& packed, int flush) {
        do {
            m_stream.next_out = m_buffer.data();
            m_stream.avail_out = static_cast<uInt>(m_buffer.size());
            deflate(&m_stream, flush);
            packed.append(reinterpret_cast<const char*>(m_buffer.data()),
                          m_buffer.size() - m_stream.avail_out);
        } while (m_stream.avail_out == 0);
    }

    z_stream m_stream{};
    std::array<Bytef, std::size_t{1} << 16> m_buffer{};
};

void put(std::string& bytes, const ZipField& field, std::uint64_t value) {
    // All ones in four bytes mean that the number is somewhere else.
    if (field.width == 4 && value >= std::numeric_limits<std::uint32_t>::max()) {
        throw PartFileError("the archive would outgrow its form: 4 GiB without ZIP64");
    }
    for (unsigned i = 0; i < field.width; ++i) {
        bytes[field.at + i] = static_cast<char>(value >> (8 * i) & 0xff);
    }
}

/// Two files may share bytes in a damaged archive; changing one would then change the other.
void refuseOverlaps(const ZipLayout& layout, std::size_t index) {
    const ZipPlace& file = layout.files[index];
    bool isApart = layout.directoryStart >= file.end;
    for (const ZipPlace& other : layout.files) {
        if (&other == &file) continue;
        const bool isBefore =
            other.offset.value < file.offset.value && other.dataEnd <= file.offset.value;
        isApart = isApart && (isBefore || other.offset.value >= file.end);
    }
    if (!isApart) throw PartFileError("the archive is damaged: two of its files overlap");
}

}  // namespace

std::string withContent(std::string_view archive, std::size_t index, std::string_view content) {
    const ZipLayout layout = layoutOf(archive);
    if (index >= layout.files.size()) {
        throw PartFileError("the archive is damaged: it has two different directories");
    }
    refuseOverlaps(layout, index);
    const ZipPlace& file = layout.files[index];
    const std::string packed =
        file.method == kDeflated ? Deflater().run(content) : std::string(content);
    const std::uint64_t crc =
        crc32_z(0, reinterpret_cast<const Bytef*>(content.data()), content.size());
    // Unsigned arithmetic wraps, so that this moves things backwards, too.
    const std::uint64_t shift = packed.size() - (file.end - file.dataStart);

    std::string bytes(archive);
    for (const ZipField& field : {file.flags, file.localFlags}) {
        put(bytes, field, field.value & ~kDescriptorFlag);
    }
    for (const ZipField& field : {file.crc, file.localCrc}) put(bytes, field, crc);
    for (const ZipField& field : {file.size, file.localSize}) put(bytes, field, content.size());
    for (const ZipField& field : {file.packedSize, file.localPackedSize}) {
        put(bytes, field, packed.size());
    }
    for (const ZipPlace& other : layout.files) {
        if (other.offset.value >= file.end) put(bytes, other.offset, other.offset.value + shift);
    }
    for (const ZipField& field : layout.positions) put(bytes, field, field.value + shift);
    return bytes.replace(file.dataStart, file.end - file.dataStart, packed);
}

}  // namespace Tesk::files
