#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>

#include "Failure.h"
#include "FormatCheck.h"
#include "PlyHeader.h"
#include "TextScanner.h"

namespace App {

namespace {

/// The numbers of a PLY body, one after the other.
class PlyNumbers {
 public:
    virtual ~PlyNumbers() = default;
    virtual double next(PlyType type) = 0;
    /// Throws InputFailure, with the line where there are lines.
    [[noreturn]] virtual void fail(const std::string& trouble) const = 0;
    virtual void endInstance() = 0;
};

class AsciiNumbers : public PlyNumbers {
 public:
    AsciiNumbers(std::string_view body, std::size_t firstLine)
        : m_scanner(body), m_linesBefore(firstLine - 1) {}

    double next(PlyType type) override {
        const std::string_view token = m_scanner.nextOnLine();
        if (token.empty()) fail("the line, or the file, ends too soon");
        try {
            if (type >= PlyType::kFloat) return m_scanner.number(token);
            return static_cast<double>(m_scanner.integer(token));
        } catch (const InputFailure&) {
            fail(quoted(token) + " is not the number that the header promises here");
        }
    }

    [[noreturn]] void fail(const std::string& trouble) const override {
        throw InputFailure(fmt::format("line {}: {}", m_linesBefore + m_scanner.line(), trouble));
    }

    void endInstance() override { m_scanner.skipLine(); }

 private:
    TextScanner m_scanner;
    std::size_t m_linesBefore;
};

class BinaryNumbers : public PlyNumbers {
 public:
    BinaryNumbers(std::string_view body, bool isBigEndian)
        : m_body(body), m_swaps(isBigEndian != (std::endian::native == std::endian::big)) {}

    double next(PlyType type) override {
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

    [[noreturn]] void fail(const std::string& trouble) const override {
        throw InputFailure(trouble);
    }

    void endInstance() override {}

 private:
    template <class T>
    T take() {
        if (m_body.size() - m_pos < sizeof(T)) fail("is cut short: the file ends too soon");
        char raw[sizeof(T)];
        for (std::size_t i = 0; i < sizeof(T); ++i) {
            raw[m_swaps ? sizeof(T) - 1 - i : i] = m_body[m_pos + i];
        }
        m_pos += sizeof(T);
        T value;
        std::memcpy(&value, raw, sizeof(T));
        return value;
    }

    std::string_view m_body;
    std::size_t m_pos = 0;
    bool m_swaps;
};

bool isPosition(const PlyProperty& property) {
    return property.name == "x" || property.name == "y" || property.name == "z";
}

bool isCornerList(const PlyProperty& property) {
    return property.isList &&
           (property.name == "vertex_indices" || property.name == "vertex_index");
}

class PlyCheck {
 public:
    explicit PlyCheck(const std::string& bytes) : m_header(readPlyHeader(bytes)) {
        const std::string_view body = std::string_view(bytes).substr(m_header.bodyStart);
        if (m_header.form == PlyForm::kAscii) {
            m_numbers = std::make_unique<AsciiNumbers>(body, m_header.bodyLine);
        } else {
            m_numbers = std::make_unique<BinaryNumbers>(body, m_header.form == PlyForm::kBigEndian);
        }
        m_content.form = m_header.form == PlyForm::kAscii ? "ASCII" : "binary";
    }

    FileContent run() {
        checkElements();
        for (const PlyElement& element : m_header.elements) {
            for (std::size_t i = 1; i <= element.count; ++i) readInstance(element, i);
        }
        return m_content;
    }

 private:
    void checkElements() {
        const PlyElement* vertex = nullptr;
        const PlyElement* face = nullptr;
        for (const PlyElement& element : m_header.elements) {
            if (element.name == "vertex") setOnce(vertex, element);
            if (element.name == "face") setOnce(face, element);
        }
        if (vertex == nullptr || countOf(*vertex, isPosition) != 3 || vertex->hasList()) {
            throw InputFailure("the header has no element \"vertex\" with x, y and z");
        }
        if (face == nullptr || face->count == 0) throw InputFailure("holds no faces");
        if (countOf(*face, isCornerList) != 1) {
            throw InputFailure("the header has no list \"vertex_indices\" in its element \"face\"");
        }
        m_vertexCount = vertex->count;
    }

    static void setOnce(const PlyElement*& slot, const PlyElement& element) {
        if (slot != nullptr) {
            throw InputFailure(fmt::format("the header has \"{}\" twice", element.name));
        }
        slot = &element;
    }

    static int countOf(const PlyElement& element, bool (*accepts)(const PlyProperty&)) {
        int count = 0;
        for (const PlyProperty& property : element.properties) count += accepts(property);
        return count;
    }

    void readInstance(const PlyElement& element, std::size_t i) {
        const bool isVertex = element.name == "vertex";
        const bool isFace = element.name == "face";
        for (const PlyProperty& property : element.properties) {
            if (property.isList) {
                readList(property, isFace && isCornerList(property), i);
            } else {
                const double value = m_numbers->next(property.type);
                if (isVertex && isPosition(property) && !std::isfinite(static_cast<float>(value))) {
                    m_numbers->fail(
                        fmt::format("vertex {} has a coordinate that is not finite", i));
                }
            }
        }
        m_numbers->endInstance();
    }

    void readList(const PlyProperty& property, bool isCorners, std::size_t i) {
        const double count = m_numbers->next(property.countType);
        if (count < 0) m_numbers->fail(fmt::format("a list of {} numbers", count));
        if (isCorners && count < 3) {
            m_numbers->fail(fmt::format("face {} has {} corners", i, count));
        }
        for (double k = 0; k < count; ++k) {
            const double value = m_numbers->next(property.type);
            if (isCorners) checkIndex(value, i);
        }
        if (!isCorners) return;
        ++m_content.polygons;
        m_content.corners += static_cast<std::size_t>(count);
    }

    void checkIndex(double index, std::size_t face) const {
        const bool isSound =
            index >= 0 && index < static_cast<double>(m_vertexCount) && index == std::floor(index);
        if (isSound) return;
        m_numbers->fail(fmt::format("face {} names vertex {}; the file has {}, counted from 0",
                                    face, index, m_vertexCount));
    }

    PlyHeader m_header;
    std::unique_ptr<PlyNumbers> m_numbers;
    FileContent m_content;
    std::size_t m_vertexCount = 0;
};

}  // namespace

FileContent checkPly(std::string& bytes) {
    return PlyCheck(bytes).run();
}

}  // namespace App
