#include "PlyHeader.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "Failure.h"
#include "TextScanner.h"

namespace App {

namespace {

std::optional<PlyType> typeNamed(std::string_view name) {
    if (name == "char" || name == "int8") return PlyType::kInt8;
    if (name == "uchar" || name == "uint8") return PlyType::kUint8;
    if (name == "short" || name == "int16") return PlyType::kInt16;
    if (name == "ushort" || name == "uint16") return PlyType::kUint16;
    if (name == "int" || name == "int32") return PlyType::kInt32;
    if (name == "uint" || name == "uint32") return PlyType::kUint32;
    if (name == "float" || name == "float32") return PlyType::kFloat;
    if (name == "double" || name == "float64") return PlyType::kDouble;
    return std::nullopt;
}

class HeaderReader {
 public:
    explicit HeaderReader(const std::string& bytes) : m_bytes(bytes), m_scanner(bytes) {}

    PlyHeader run() {
        if (m_bytes.compare(0, 3, "ply") != 0 || m_scanner.next() != "ply") {
            throw InputFailure("is no PLY: it does not begin with a line \"ply\"");
        }
        for (std::string_view keyword = m_scanner.next(); keyword != "end_header";
             keyword = m_scanner.next()) {
            readLine(keyword);
        }
        if (!m_hasFormat) m_scanner.fail("the header has no line \"format\"");
        m_scanner.skipLine();
        m_header.bodyStart = m_scanner.position();
        m_header.bodyLine = m_scanner.line();
        checkRoom();
        return m_header;
    }

 private:
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
        if (count < 0) m_scanner.fail(fmt::format("element {} counts {}", element.name, count));
        element.count = static_cast<std::size_t>(count);
        m_header.elements.push_back(element);
    }

    void readProperty() {
        if (m_header.elements.empty()) m_scanner.fail("a property before any element");
        PlyProperty property;
        std::string_view type = m_scanner.nextOnLine();
        property.isList = type == "list";
        if (property.isList) {
            property.countType = typeOf(m_scanner.nextOnLine());
            if (property.countType >= PlyType::kFloat) m_scanner.fail("a list counted in floats");
            type = m_scanner.nextOnLine();
        }
        property.type = typeOf(type);
        property.name = plainName(m_scanner.nextOnLine());
        m_header.elements.back().properties.push_back(property);
    }

    PlyType typeOf(std::string_view name) const {
        const std::optional<PlyType> type = typeNamed(name);
        if (!type) m_scanner.fail("unknown PLY type " + quoted(name));
        return *type;
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
            if (element.count > 0 && (least == 0 || element.count > (room + 1) / least)) {
                throw InputFailure(fmt::format(
                    "is cut short, or its header is wrong: it promises {} instances of \"{}\", "
                    "more than its {} bytes can hold",
                    element.count, element.name, m_bytes.size()));
            }
            room -= std::min(room, element.count * least);
        }
    }

    const std::string& m_bytes;
    TextScanner m_scanner;
    PlyHeader m_header;
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

bool PlyElement::hasList() const {
    return std::any_of(properties.begin(), properties.end(),
                       [](const PlyProperty& property) { return property.isList; });
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

PlyHeader readPlyHeader(const std::string& bytes) {
    return HeaderReader(bytes).run();
}

}  // namespace App
