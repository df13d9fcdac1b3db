#include "tools/ZipMaker.h"

#include <zlib.h>

#include <stdexcept>

namespace {

constexpr std::uint32_t kAllOnes = 0xffffffff;
constexpr std::uint16_t kDescriptorFlag = 8;

template <class T>
void put(std::string& bytes, T value) {
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i) & 0xff);
    }
}

std::string deflated(const std::string& content) {
    z_stream stream{};
    constexpr int kRaw = -15;
    if (deflateInit2(&stream, 9, Z_DEFLATED, kRaw, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("deflateInit2");
    }
    std::string packed(deflateBound(&stream, static_cast<uLong>(content.size())), '\0');
    std::string input = content;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) throw std::runtime_error("deflate");
    return packed;
}

struct Packed {
    const ZipFile& file;
    std::string content;
    std::uint32_t crc;
    std::uint64_t offset;  ///< of its header

    std::uint16_t version() const { return file.isZip64 || file.isZip64Central ? 45 : 20; }
    std::uint16_t flags() const {
        return static_cast<std::uint16_t>(file.flags | (file.hasDescriptor ? kDescriptorFlag : 0));
    }
    std::uint32_t size() const { return static_cast<std::uint32_t>(file.content.size()); }
    std::uint32_t packedSize() const { return static_cast<std::uint32_t>(content.size()); }
};

Packed packed(const ZipFile& file, std::uint64_t offset) {
    const auto crc =
        static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(file.content.data()),
                                         static_cast<uInt>(file.content.size())));
    return {file, file.method == 8 ? deflated(file.content) : file.content, crc ^ file.wrongCrc,
            offset};
}

void putTimeAndCrc(std::string& bytes, std::uint32_t crc) {
    put(bytes, std::uint16_t{0});
    put(bytes, std::uint16_t{0x21});
    put(bytes, crc);
}

std::string localExtra(const Packed& entry) {
    std::string extra;
    if (entry.file.isZip64) {
        put(extra, std::uint16_t{1});
        put(extra, std::uint16_t{16});
        put(extra, std::uint64_t{entry.file.hasDescriptor ? 0 : entry.size()});
        put(extra, std::uint64_t{entry.file.hasDescriptor ? 0 : entry.packedSize()});
    }
    return extra + entry.file.extra;
}

void putLocal(std::string& bytes, const Packed& entry) {
    const ZipFile& file = entry.file;
    const std::string& name = file.localName ? *file.localName : file.name;
    const std::string extra = localExtra(entry);
    const bool isEmpty = file.hasDescriptor && !file.isZip64;
    const auto shown = [&](std::uint32_t size) {
        return file.localSize.value_or(file.isZip64 ? kAllOnes : isEmpty ? 0 : size);
    };
    bytes += "PK\3\4";
    put(bytes, entry.version());
    put(bytes, entry.flags());
    put(bytes, file.localMethod.value_or(file.method));
    putTimeAndCrc(bytes, file.hasDescriptor ? 0 : entry.crc);
    put(bytes, shown(entry.packedSize()));
    put(bytes, shown(entry.size()));
    put(bytes, static_cast<std::uint16_t>(name.size()));
    put(bytes, static_cast<std::uint16_t>(extra.size()));
    bytes += name + extra + entry.content;
    if (!file.hasDescriptor) return;
    bytes += "PK\7\10";
    put(bytes, entry.crc);
    if (file.isZip64) {
        put(bytes, std::uint64_t{entry.packedSize()});
        put(bytes, std::uint64_t{entry.size()});
    } else {
        put(bytes, entry.packedSize());
        put(bytes, entry.size());
    }
}

std::string centralExtra(const Packed& entry) {
    std::string extra;
    if (entry.file.isZip64Central) {
        put(extra, std::uint16_t{1});
        put(extra, std::uint16_t{24});
        put(extra, std::uint64_t{entry.size()});
        put(extra, std::uint64_t{entry.packedSize()});
        put(extra, entry.offset);
    }
    return extra + entry.file.extra;
}

void putCentral(std::string& bytes, const Packed& entry) {
    const ZipFile& file = entry.file;
    const std::string extra = centralExtra(entry);
    const auto shown = [&](std::uint32_t value) { return file.isZip64Central ? kAllOnes : value; };
    bytes += "PK\1\2";
    put(bytes, entry.version());
    put(bytes, entry.version());
    put(bytes, entry.flags());
    put(bytes, file.method);
    putTimeAndCrc(bytes, entry.crc);
    put(bytes, shown(entry.packedSize()));
    put(bytes, shown(entry.size()));
    put(bytes, static_cast<std::uint16_t>(file.name.size()));
    put(bytes, static_cast<std::uint16_t>(extra.size()));
    put(bytes, std::uint16_t{0});  // comment
    put(bytes, std::uint16_t{0});  // disk
    put(bytes, std::uint16_t{0});
    put(bytes, std::uint32_t{0});
    put(bytes, shown(static_cast<std::uint32_t>(entry.offset)));
    bytes += file.name + extra;
}

void putZip64End(std::string& bytes, std::uint64_t count, std::uint64_t size,
                 std::uint64_t offset) {
    const std::uint64_t position = bytes.size();
    bytes += "PK\6\6";
    put(bytes, std::uint64_t{44});
    put(bytes, std::uint16_t{45});
    put(bytes, std::uint16_t{45});
    put(bytes, std::uint32_t{0});
    put(bytes, std::uint32_t{0});
    put(bytes, count);
    put(bytes, count);
    put(bytes, size);
    put(bytes, offset);
    bytes += "PK\6\7";
    put(bytes, std::uint32_t{0});
    put(bytes, position);
    put(bytes, std::uint32_t{1});
}

}  // namespace

std::string makeZip(const std::vector<ZipFile>& files, const ZipEnd& end) {
    std::string bytes;
    std::vector<Packed> entries;
    for (const ZipFile& file : files) {
        entries.push_back(packed(file, bytes.size()));
        putLocal(bytes, entries.back());
    }
    const std::uint64_t directory = bytes.size();
    for (const Packed& entry : entries) putCentral(bytes, entry);
    const std::uint64_t size = bytes.size() - directory;
    const std::uint64_t count = files.size() + end.moreFiles;
    const std::uint64_t offset = directory + end.wrongOffset;
    if (end.isZip64) putZip64End(bytes, count, size, offset);
    const auto shortCount = static_cast<std::uint16_t>(end.isZip64 ? 0xffff : count);
    bytes += "PK\5\6";
    put(bytes, end.disk);
    put(bytes, end.disk);
    put(bytes, shortCount);
    put(bytes, shortCount);
    put(bytes, end.isZip64 ? kAllOnes : static_cast<std::uint32_t>(size));
    put(bytes, end.isZip64 ? kAllOnes : static_cast<std::uint32_t>(offset));
    put(bytes, static_cast<std::uint16_t>(end.comment.size()));
    return bytes + end.comment;
}
