#include "ZipWriter.h"

#include <minizip/zip.h>

#include "Failure.h"
#include "ZipMemory.h"

namespace App {

namespace {

void require(int result) {
    if (result != ZIP_OK) throw Failure(ExitCode::kOutput, "cannot pack the 3MF archive");
}

/// The same date for every file, so that equal content gives equal bytes.
zip_fileinfo fileInfo() {
    zip_fileinfo info{};
    info.tmz_date.tm_mday = 1;
    info.tmz_date.tm_year = 1980;
    return info;
}

}  // namespace

std::string zipped(const std::vector<ZipEntry>& entries) {
    ZipMemory memory;
    zlib_filefunc64_def functions = memory.functions();
    const zipFile archive = zipOpen2_64("", APPEND_STATUS_CREATE, nullptr, &functions);
    if (archive == nullptr) throw Failure(ExitCode::kOutput, "cannot pack the 3MF archive");
    for (const ZipEntry& entry : entries) {
        const zip_fileinfo info = fileInfo();
        require(zipOpenNewFileInZip(archive, entry.name.c_str(), &info, nullptr, 0, nullptr, 0,
                                    nullptr, Z_DEFLATED, 6));
        require(zipWriteInFileInZip(archive, entry.content.data(),
                                    static_cast<unsigned>(entry.content.size())));
        require(zipCloseFileInZip(archive));
    }
    require(zipClose(archive, nullptr));
    return std::move(memory.bytes);
}

}  // namespace App
