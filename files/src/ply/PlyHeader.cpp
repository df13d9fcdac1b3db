#include "ply/PlyHeader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "TeskPartFiles/PartFiles.h"
#include "text/Message.h"
#include "text/TextScanner.h"

namespace Tesk::files {

namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

constexpr std::array<std::pair<std::string_view, PlyType>, 16> kTypes = {{
    {"char", PlyType::kInt8},
    {"int8", PlyType::kInt8},
    {"uchar", PlyType::kUint8},
    {"uint8", PlyType::kUint8},
    {"short", PlyType::kInt16},
    {"int16", PlyType::kInt16},
    {"ushort", PlyType::kUint16},
    {"uint16", PlyType::kUint16},
    {"int", PlyType::kInt32},
    {"int32", PlyType::kInt32},
    {"uint", PlyType::kUint32},
    {"uint32", PlyType::kUint32},
    {"float", PlyType::kFloat},
    {"float32", PlyType::kFloat},
    {"double", PlyType::kDouble},
    {"float64", PlyType::kDouble},
}};

class HeaderReader {
 public:
    explicit HeaderReader(std::string_view bytes)
        : m_bytes(bytes),
          m_start(bytes.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0),
          m_scanner(bytes.substr(m_start)) {}

    PlyHeader run() {
        if (m_scanner.next() != "ply") {
            throw PartFileError("is not a PLY file: it does not begin with a line \"ply\"");
        }
        findLineEnd();
        for (std::string_view keyword = m_scanner.next(); keyword != "end_header";
             keyword = m_scanner.next()) {
            readLine(keyword);
        }
        if (!m_hasFormat) m_scanner.fail("the header has no line \"format\"");
        startBody();
        checkRoom();
        return std::move(m_header);
    }

 private:
    // What ends the first line ends the last one: behind that, a byte that looks like the end of
    // another line is part of a binary body.
    void findLineEnd() {
        const std::size_t end = m_bytes.find_first_of("\r\n", m_start + m_scanner.position());
        const bool isLoneReturn =
            end != m_bytes.npos && m_bytes[end] == '\r' && m_bytes.substr(end + 1, 1) != "\n";
        if (isLoneReturn) m_lineEnd = '\r';
    }

    void startBody() {
        const std::size_t end = m_bytes.find(m_lineEnd, m_start + m_scanner.position());
        m_header.bodyStart = end == m_bytes.npos ? m_bytes.size() : end + 1;
        m_header.bodyLine = m_scanner.line() + 1;
    }

    void readLine(std::string_view keyword) {
        if (keyword.empty()) m_scanner.fail("the file ends inside the PLY header");
        if (keyword == "format") {
            readFormat();
        } else if (keyword == "element") {
            readElement();
        } else if (keyword == "property") {
            readProperty();
        } else if (keyword != "comment" && keyword != "obj_info") {
            m_scanner.fail("unknown PLY header line " + quoted(keyword));
        }
        m_scanner.skipLine();
    }

    void readFormat() {
        const std::string_view form = m_scanner.nextOnLine();
        if (form == "ascii") {
            m_header.form = PlyForm::kAscii;
        } else if (form == "binary_little_endian") {
            m_header.form = PlyForm::kLittleEndian;
        } else if (form == "binary_big_endian") {
            m_header.form = PlyForm::kBigEndian;
        } else {
            m_scanner.fail("unknown PLY format " + quoted(form));
        }
        m_hasFormat = true;
    }

    void readElement() {
        PlyElement element;
        element.name = plainName(m_scanner.nextOnLine());
        const long long count = m_scanner.integer(m_scanner.nextOnLine());
        if (count < 0) m_scanner.fail(message("element ", element.name, " counts ", count));
        element.count = static_cast<std::size_t>(count);
        m_header.elements.push_back(std::move(element));
    }

    void readProperty() {
        if (m_header.elements.empty()) m_scanner.fail("a property before any element");
        PlyProperty property;
        std::string_view type = m_scanner.nextOnLine();
        property.isList = type == "list";
        if (property.isList) {
            property.countType = typeOf(m_scanner.nextOnLine());
            type = m_scanner.nextOnLine();
        }
        property.type = typeOf(type);
        property.name = plainName(m_scanner.nextOnLine());
        m_header.elements.back().properties.push_back(std::move(property));
    }

    PlyType typeOf(std::string_view name) const {
        const auto* const found = std::find_if(
            kTypes.begin(), kTypes.end(), [&](const auto& type) { return type.first == name; });
        if (found == kTypes.end()) m_scanner.fail("unknown PLY type " + quoted(name));
        return found->second;
    }

    std::string plainName(std::string_view name) const {
        const bool isPlain =
            std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c < '\x7f'; });
        if (name.empty() || !isPlain) m_scanner.fail("a name is missing or not made of letters");
        return std::string(name);
    }

    void checkRoom() const {
        std::size_t room = m_bytes.size() - m_header.bodyStart;
        for (const PlyElement& element : m_header.elements) {
            const std::size_t least = element.leastSize(m_header.form);
            // The last number of a text may end with the file.
            if (element.count > 0 && (least == 0 || element.count > (room + 1) / least)) {
                throw PartFileError(message("is cut short, or its header is wrong: it declares ",
                                            element.count, " instances of \"", element.name,
                                            "\", more than its ", m_bytes.size(),
                                            " bytes can hold"));
            }
            room -= std::min(room, element.count * least);
        }
    }

    std::string_view m_bytes;
    std::size_t m_start;
    TextScanner m_scanner;
    PlyHeader m_header;
    char m_lineEnd = '\n';
    bool m_hasFormat = false;
};

}  // namespace

std::size_t sizeOf(PlyType type) {
    switch (type) {
        case PlyType::kInt8:
        case PlyType::kUint8:
            return 1;
        case PlyType::kInt16:
        case PlyType::kUint16:
            return 2;
        case PlyType::kDouble:
            return 8;
        default:
            return 4;
    }
}

std::size_t PlyElement::leastSize(PlyForm form) const {
    // As text, a number takes a digit and the white space after it.
    if (form == PlyForm::kAscii) return properties.size() * 2;
    std::size_t size = 0;
    for (const PlyProperty& property : properties) {
        size += sizeOf(property.isList ? property.countType : property.type);
    }
    return size;
}

PlyHeader readPlyHeader(std::string_view bytes) {
    return HeaderReader(bytes).run();
}

}  // namespace Tesk::files
