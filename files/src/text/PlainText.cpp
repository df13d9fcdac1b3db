#include "text/PlainText.h"

#include "TeskPartFiles/PartFiles.h"
#include "text/Message.h"
#include "text/TextScanner.h"

namespace Tesk::files {

namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

bool isUtf16(std::string_view bytes) {
    return bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff");
}

}  // namespace

std::string_view plainText(std::string_view bytes, const char* format) {
    if (isUtf16(bytes)) throw PartFileError(message("is UTF-16 text, which no ", format, " is"), 1);
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    if (bytes.ends_with('\x1a')) bytes.remove_suffix(1);
    const std::size_t nul = bytes.find('\0');
    if (nul == bytes.npos) return bytes;
    TextScanner scanner(bytes.substr(0, nul));
    while (!scanner.isAtEnd()) scanner.skipLine();
    throw PartFileError(message("contains a NUL byte, which ", format, " text files must not have"),
                        scanner.line());
}

}  // namespace Tesk::files
