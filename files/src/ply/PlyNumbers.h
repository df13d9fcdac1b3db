#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "bytes/ByteOrder.h"
#include "ply/PlyHeader.h"
#include "text/Message.h"
#include "text/Numbers.h"
#include "text/TextScanner.h"

namespace Tesk::files {

/// The numbers of a PLY body in text, one after the other. An instance stands on a line of its own.
class PlyTextNumbers {
 public:
    PlyTextNumbers(std::string_view body, std::size_t /*bodyStart*/, std::size_t firstLine)
        : m_scanner(body, '\0', /*joinsLines=*/false, firstLine) {}

    double next(PlyType /*type*/) {
        const std::string_view token = nextToken();
        const auto value = doubleOf(token);
        if (!value) failNoNumber(token);
        return *value;
    }

    /// The number, rounded once.
    float nextFloat(PlyType /*type*/) {
        const std::string_view token = nextToken();
        const auto value = floatOf(token);
        if (!value) failNoNumber(token);
        return *value;
    }

    void skip(PlyType /*type*/) { nextToken(); }

    /// Whether the rest has room for so many numbers; a line is not looked at in advance.
    bool hasRoom(double count, PlyType /*type*/) const {
        return count * 2.0 <= static_cast<double>(m_scanner.left() + 1);
    }

    void startInstance() { m_isFirst = true; }
    void endInstance() { m_scanner.skipLine(); }
    std::size_t position() const { return m_scanner.position(); }

    [[noreturn]] void fail(const std::string& trouble) const { m_scanner.fail(trouble); }

 private:
    // Blank lines between instances are passed over.
    std::string_view nextToken() {
        const std::string_view token = m_isFirst ? m_scanner.next() : m_scanner.nextOnLine();
        m_isFirst = false;
        if (token.empty()) fail("the line, or the file, ends too soon");
        return token;
    }

    [[noreturn]] void failNoNumber(std::string_view token) const {
        fail(quoted(token) + " is not the number that the header declares here");
    }

    TextScanner m_scanner;
    bool m_isFirst = true;
};

/// The numbers of a binary PLY body.
template <std::endian Order>
class PlyBinaryNumbers {
 public:
    PlyBinaryNumbers(std::string_view body, std::size_t bodyStart, std::size_t /*firstLine*/)
        : m_body(body), m_bodyStart(bodyStart) {}

    double next(PlyType type) {
        switch (type) {
            case PlyType::kInt8:
                return take<std::int8_t>();
            case PlyType::kUint8:
                return take<std::uint8_t>();
            case PlyType::kInt16:
                return take<std::int16_t>();
            case PlyType::kUint16:
                return take<std::uint16_t>();
            case PlyType::kInt32:
                return take<std::int32_t>();
            case PlyType::kUint32:
                return take<std::uint32_t>();
            case PlyType::kFloat:
                return static_cast<double>(take<float>());
            case PlyType::kDouble:
                break;
        }
        return take<double>();
    }

    float nextFloat(PlyType type) {
        return type == PlyType::kFloat ? take<float>() : static_cast<float>(next(type));
    }

    void skip(PlyType type) {
        expectRoom(sizeOf(type));
        m_pos += sizeOf(type);
    }

    bool hasRoom(double count, PlyType type) const {
        return count * static_cast<double>(sizeOf(type)) <=
               static_cast<double>(m_body.size() - m_pos);
    }

    void startInstance() {}
    void endInstance() {}
    std::size_t position() const { return m_pos; }

    [[noreturn]] void fail(const std::string& trouble) const {
        throw PartFileError(trouble, 0, m_bodyStart + m_pos);
    }

 private:
    void expectRoom(std::size_t size) const {
        if (m_body.size() - m_pos < size) fail("is cut short: the file ends too soon");
    }

    template <class Number>
    Number take() {
        expectRoom(sizeof(Number));
        const auto value = numberAt<Number, Order>(m_body.data() + m_pos);
        m_pos += sizeof(Number);
        return value;
    }

    std::string_view m_body;
    std::size_t m_bodyStart;
    std::size_t m_pos = 0;
};

}  // namespace Tesk::files
