#include "threemf/RawPackage.h"

#include <cstdint>
#include <stdexcept>

namespace {

std::size_t numberAt(const std::string& bytes, std::size_t at, std::size_t width) {
    std::size_t value = 0;
    for (std::size_t i = width; i-- > 0;) {
        value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
    }
    return value;
}

}  // namespace

RawPackage rawPackage(const std::string& bytes) {
    RawPackage package;
    const std::size_t end = bytes.rfind("PK\5\6");
    if (end == bytes.npos) throw std::runtime_error("not a zip archive");
    package.comment = bytes.substr(end + 22);
    std::size_t at = numberAt(bytes, end + 16, 4);
    for (std::size_t left = numberAt(bytes, end + 10, 2); left > 0; --left) {
        const std::size_t nameSize = numberAt(bytes, at + 28, 2);
        const std::size_t size =
            46 + nameSize + numberAt(bytes, at + 30, 2) + numberAt(bytes, at + 32, 2);
        RawEntry entry;
        entry.record = bytes.substr(at, size).replace(42, 4, 4, '\0');
        entry.name = bytes.substr(at + 46, nameSize);
        const std::size_t local = numberAt(bytes, at + 42, 4);
        const std::size_t before =
            30 + numberAt(bytes, local + 26, 2) + numberAt(bytes, local + 28, 2);
        entry.header = bytes.substr(local, before);
        entry.data = bytes.substr(local + before, numberAt(bytes, at + 20, 4));
        package.entries.push_back(entry);
        at += size;
    }
    return package;
}
