#include "bytes/MappedFile.h"

#include <cerrno>
#include <limits>
#include <new>
#include <system_error>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

namespace fs = std::filesystem;

namespace {

std::size_t sizeOfSoundFile(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) throw PartFileError("no such file");
    if (status.type() == fs::file_type::none) throw PartFileError(error.message());
    if (fs::is_directory(status)) throw PartFileError("is a folder, not a mesh file");
    if (!fs::is_regular_file(status)) throw PartFileError("is not a regular file");
    const std::uintmax_t size = fs::file_size(path, error);
    if (error) throw PartFileError(error.message());
    if (size > std::numeric_limits<std::size_t>::max()) throw PartFileError("is too big");
    return static_cast<std::size_t>(size);
}

#if defined(_WIN32)

/// Closes itself.
class Handle {
 public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle() {
        if (isOpen()) CloseHandle(m_handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    bool isOpen() const { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }

 private:
    HANDLE m_handle;
};

const char* mapped(const fs::path& path, std::size_t /*size*/) {
    const Handle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.isOpen()) throw PartFileError("cannot be opened for reading");
    const Handle mapping(CreateFileMappingW(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    void* const data =
        mapping.isOpen() ? MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0) : nullptr;
    if (data == nullptr) throw PartFileError("could not be read to its end");
    return static_cast<const char*>(data);
}

void unmap(const char* data, std::size_t /*size*/) {
    UnmapViewOfFile(data);
}

#else

/// Closes itself.
class Descriptor {
 public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor() {
        if (m_descriptor >= 0) close(m_descriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return m_descriptor; }

 private:
    int m_descriptor;
};

const char* mapped(const fs::path& path, std::size_t size) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) throw PartFileError("cannot be opened for reading");
    void* const data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
    if (data == MAP_FAILED && errno == ENOMEM) throw std::bad_alloc();
    if (data == MAP_FAILED) throw PartFileError("could not be read to its end");
    madvise(data, size, MADV_WILLNEED);
    return static_cast<const char*>(data);
}

void unmap(const char* data, std::size_t size) {
    munmap(const_cast<char*>(data), size);
}

#endif

}  // namespace

MappedFile::MappedFile(const fs::path& path) : m_size(sizeOfSoundFile(path)) {
    if (m_size > 0) {
        m_data = mapped(path, m_size);
        return;
    }
    throw PartFileError("the file is empty (0 bytes)");
}

MappedFile::~MappedFile() {
    unmap(m_data, m_size);
}

std::string displayName(const fs::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

}  // namespace Tesk::files
