#include "zip/ZipReader.h"

#include <zip.h>

#include <array>
#include <new>
#include <unordered_map>

#include "TeskPartFiles/PartFiles.h"
#include "text/Keyword.h"
#include "text/Message.h"

namespace Tesk::files {

namespace {

// Meshes as XML shrink to a tenth or so, very regular ones to a fiftieth.
constexpr std::size_t kMostGrowth = 200;
constexpr std::size_t kAlwaysAllowed = std::size_t{1} << 20;

struct CloseFile {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using OpenFile = std::unique_ptr<zip_file_t, CloseFile>;

std::string folded(std::string_view name) {
    while (!name.empty() && name.front() == '/') name.remove_prefix(1);
    std::string key(name);
    for (char& c : key) c = lowered(c);
    return key;
}

bool hasParentStep(std::string_view name) {
    while (true) {
        const std::size_t slash = name.find('/');
        if (name.substr(0, slash) == "..") return true;
        if (slash == name.npos) return false;
        name.remove_prefix(slash + 1);
    }
}

/// Why a name does not stay inside the archive; null where it does.
const char* strayReason(std::string_view name) {
    const auto isLetter = [](char c) { return lowered(c) >= 'a' && lowered(c) <= 'z'; };
    if (name.find('\\') != name.npos) return "has a backslash in its name";
    if (!name.empty() && name.front() == '/') return "has a name that begins with \"/\"";
    if (name.size() > 1 && name[1] == ':' && isLetter(name[0])) return "has a name with a drive";
    if (hasParentStep(name)) return "has a name that leads out through \"..\"";
    return nullptr;
}

PartFileError openFailure(const zip_error_t& error) {
    switch (zip_error_code_zip(&error)) {
        case ZIP_ER_MEMORY:
            throw std::bad_alloc();
        case ZIP_ER_MULTIDISK:
            return PartFileError("is not a 3MF file: it is one piece of a zip archive in several");
        case ZIP_ER_INCONS:
            return PartFileError("the archive is damaged: its directory does not fit its content");
        default:
            return PartFileError("is not a 3MF file: it is not a zip archive, or cut short");
    }
}

std::string methodName(unsigned method) {
    switch (method) {
        case 9:
            return "9 (Deflate64)";
        case 12:
            return "12 (bzip2)";
        case 14:
            return "14 (LZMA)";
        case 93:
            return "93 (Zstandard)";
        case 95:
            return "95 (XZ)";
        default:
            return std::to_string(method);
    }
}

}  // namespace

struct ZipReader::Archive {
    struct Entry {
        std::string name;
        zip_uint64_t index;
    };

    std::string_view bytes;
    zip_t* zip = nullptr;
    std::vector<std::string> names;
    std::unordered_map<std::string, Entry> entries;  ///< by folded name
    std::size_t unpacked = 0;
    std::size_t total = 0;  ///< of all sizes in the directory

    ~Archive() {
        if (zip != nullptr) zip_discard(zip);
    }

    void open() {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
        if (source == nullptr) throw std::bad_alloc();
        zip = zip_open_from_source(source, ZIP_RDONLY, &error);
        if (zip != nullptr) return;
        zip_source_free(source);
        throw openFailure(error);
    }

    void list() {
        const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(zip, 0));
        for (zip_uint64_t i = 0; i < count; ++i) {
            const char* raw = zip_get_name(zip, i, 0);
            if (raw == nullptr) throw openFailure(*zip_get_error(zip));
            const std::string name = raw;
            if (const char* reason = strayReason(name)) {
                throw PartFileError(
                    message("the archive's file ", quotedName(name), " ", reason, "; refused"));
            }
            if (!name.empty() && name.back() == '/') continue;  // a folder
            const auto [entry, isNew] = entries.emplace(folded(name), Entry{name, i});
            if (!isNew) {
                throw PartFileError(message("the archive has two files with the name ",
                                            quotedName(name), " (entries ", entry->second.index + 1,
                                            " and ", i + 1, ")"));
            }
            names.push_back(name);
            total += sizeOf(i);
        }
    }

    std::size_t sizeOf(zip_uint64_t index) const {
        zip_stat_t about;
        zip_stat_init(&about);
        const bool isKnown =
            zip_stat_index(zip, index, 0, &about) == 0 && (about.valid & ZIP_STAT_SIZE) != 0;
        return isKnown ? static_cast<std::size_t>(about.size) : 0;
    }

    const Entry& entry(std::string_view name) const {
        const auto found = entries.find(folded(name));
        if (found == entries.end()) {
            throw PartFileError("its archive has no file " + quotedName(name));
        }
        return found->second;
    }

    static PartFileError damaged(const Entry& entry, zip_error_t& error) {
        if (zip_error_code_zip(&error) == ZIP_ER_MEMORY) throw std::bad_alloc();
        return PartFileError(message("its file ", quotedName(entry.name),
                                     " cannot be unpacked: the archive is damaged (",
                                     zip_error_strerror(&error), ")"));
    }

    /// The same on every platform, whatever its zip library can do besides.
    void refuseUnreadable(const Entry& entry) const {
        zip_stat_t about;
        zip_stat_init(&about);
        if (zip_stat_index(zip, entry.index, 0, &about) != 0) {
            throw damaged(entry, *zip_get_error(zip));
        }
        if ((about.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 &&
            about.encryption_method != ZIP_EM_NONE) {
            throw PartFileError(message("its file ", quotedName(entry.name),
                                        " is encrypted, which 3MF does not allow"));
        }
        if ((about.valid & ZIP_STAT_COMP_METHOD) != 0 && about.comp_method != ZIP_CM_STORE &&
            about.comp_method != ZIP_CM_DEFLATE) {
            throw PartFileError(message("its file ", quotedName(entry.name),
                                        " is packed by method ", methodName(about.comp_method),
                                        "; 3MF allows stored and deflated files only"));
        }
    }

    OpenFile openFile(const Entry& entry) const {
        refuseUnreadable(entry);
        OpenFile file(zip_fopen_index(zip, entry.index, 0));
        if (file == nullptr) throw damaged(entry, *zip_get_error(zip));
        return file;
    }

    void take(std::size_t size) {
        unpacked += size;
        if (unpacked <= bytes.size() * kMostGrowth + kAlwaysAllowed) return;
        throw PartFileError(
            message("unpacks to more than ", kMostGrowth, " times its size; refused"));
    }
};

ZipReader::ZipReader(std::string_view bytes) : m_archive(std::make_unique<Archive>()) {
    m_archive->bytes = bytes;
    m_archive->open();
    m_archive->list();
}

ZipReader::~ZipReader() = default;

const std::vector<std::string>& ZipReader::names() const {
    return m_archive->names;
}

std::optional<std::string> ZipReader::find(std::string_view name) const {
    const auto found = m_archive->entries.find(folded(name));
    if (found == m_archive->entries.end()) return std::nullopt;
    return found->second.name;
}

std::optional<std::size_t> ZipReader::indexOf(std::string_view name) const {
    const auto found = m_archive->entries.find(folded(name));
    if (found == m_archive->entries.end()) return std::nullopt;
    return static_cast<std::size_t>(found->second.index);
}

void ZipReader::read(std::string_view name, const std::function<void(std::string_view)>& sink) {
    const Archive::Entry& entry = m_archive->entry(name);
    const OpenFile file = m_archive->openFile(entry);
    std::array<char, std::size_t{1} << 16> buffer;
    // The read that finds the end also compares size and checksum.
    while (const zip_int64_t count = zip_fread(file.get(), buffer.data(), buffer.size())) {
        if (count < 0) throw Archive::damaged(entry, *zip_file_get_error(file.get()));
        const auto size = static_cast<std::size_t>(count);
        m_archive->take(size);
        sink({buffer.data(), size});
    }
}

std::size_t ZipReader::unpackedSize() const {
    return m_archive->unpacked;
}

std::size_t ZipReader::totalSize() const {
    return m_archive->total;
}

std::string ZipReader::contents(std::string_view name) {
    std::string bytes;
    read(name, [&](std::string_view piece) { bytes += piece; });
    return bytes;
}

}  // namespace Tesk::files
