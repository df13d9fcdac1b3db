#include "ZipMemory.h"

#include <algorithm>
#include <cstring>

namespace App {

namespace {

ZipMemory& memory(voidpf stream) {
    return *static_cast<ZipMemory*>(stream);
}

voidpf openFile(voidpf opaque, const void*, int) {
    memory(opaque).position = 0;
    return opaque;
}

uLong readFile(voidpf, voidpf stream, void* buffer, uLong size) {
    ZipMemory& file = memory(stream);
    const std::size_t left = file.bytes.size() - std::min(file.position, file.bytes.size());
    const std::size_t count = std::min<std::size_t>(size, left);
    if (count > 0) std::memcpy(buffer, file.bytes.data() + file.position, count);
    file.position += count;
    return static_cast<uLong>(count);
}

uLong writeFile(voidpf, voidpf stream, const void* buffer, uLong size) {
    ZipMemory& file = memory(stream);
    if (file.position + size > file.bytes.size()) file.bytes.resize(file.position + size);
    if (size > 0) std::memcpy(file.bytes.data() + file.position, buffer, size);
    file.position += size;
    return size;
}

ZPOS64_T tellFile(voidpf, voidpf stream) {
    return memory(stream).position;
}

long seekFile(voidpf, voidpf stream, ZPOS64_T offset, int origin) {
    ZipMemory& file = memory(stream);
    ZPOS64_T base = 0;
    if (origin == ZLIB_FILEFUNC_SEEK_CUR) base = file.position;
    if (origin == ZLIB_FILEFUNC_SEEK_END) base = file.bytes.size();
    if (offset > file.bytes.size() || base + offset > file.bytes.size()) return -1;
    file.position = static_cast<std::size_t>(base + offset);
    return 0;
}

int closeFile(voidpf, voidpf) {
    return 0;
}
int fileError(voidpf, voidpf) {
    return 0;
}

}  // namespace

zlib_filefunc64_def ZipMemory::functions() {
    zlib_filefunc64_def table{};
    table.zopen64_file = openFile;
    table.zread_file = readFile;
    table.zwrite_file = writeFile;
    table.ztell64_file = tellFile;
    table.zseek64_file = seekFile;
    table.zclose_file = closeFile;
    table.zerror_file = fileError;
    table.opaque = this;
    return table;
}

}  // namespace App
