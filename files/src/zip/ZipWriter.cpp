#include "zip/ZipWriter.h"

#include <zip.h>

#include <memory>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

namespace {

constexpr zip_uint32_t kCompression = 6;
// The same date for every file, so that equal content gives equal bytes: 1 January 1980.
constexpr zip_uint16_t kTime = 0;
constexpr zip_uint16_t kDate = 0x21;

struct FreeSource {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using Source = std::unique_ptr<zip_source_t, FreeSource>;

struct DiscardArchive {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, DiscardArchive>;

void require(bool isDone) {
    if (!isDone) throw PartFileError("cannot pack the 3MF archive");
}

Source bufferSource(const void* data, std::size_t size) {
    Source source(zip_source_buffer_create(data, size, 0, nullptr));
    require(source != nullptr);
    return source;
}

/// `target` still belongs to the caller, too.
Archive newArchive(zip_source_t* target) {
    zip_source_keep(target);
    Archive archive(zip_open_from_source(target, ZIP_TRUNCATE, nullptr));
    if (archive == nullptr) zip_source_free(target);
    require(archive != nullptr);
    return archive;
}

void add(zip_t* archive, const ZipEntry& entry) {
    Source source = bufferSource(entry.content.data(), entry.content.size());
    const zip_int64_t added =
        zip_file_add(archive, entry.name.c_str(), source.get(), ZIP_FL_ENC_UTF_8);
    require(added >= 0);
    source.release();  // the archive's now
    const auto index = static_cast<zip_uint64_t>(added);
    require(zip_set_file_compression(archive, index, ZIP_CM_DEFLATE, kCompression) == 0);
    require(zip_file_set_dostime(archive, index, kTime, kDate, 0) == 0);
}

std::string bytesOf(zip_source_t* source) {
    zip_stat_t about;
    zip_stat_init(&about);
    require(zip_source_stat(source, &about) == 0 && (about.valid & ZIP_STAT_SIZE) != 0);
    std::string bytes(static_cast<std::size_t>(about.size), '\0');
    require(zip_source_open(source) == 0);
    const zip_int64_t count = zip_source_read(source, bytes.data(), bytes.size());
    zip_source_close(source);
    require(count >= 0 && static_cast<std::size_t>(count) == bytes.size());
    return bytes;
}

}  // namespace

std::string zipped(const std::vector<ZipEntry>& entries) {
    const Source target = bufferSource(nullptr, 0);
    Archive archive = newArchive(target.get());
    for (const ZipEntry& entry : entries) add(archive.get(), entry);
    require(zip_close(archive.get()) == 0);
    archive.release();  // closing has freed it
    return bytesOf(target.get());
}

}  // namespace Tesk::files
