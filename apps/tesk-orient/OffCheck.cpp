#include <fmt/format.h>

#include "Failure.h"
#include "FormatCheck.h"
#include "TextScanner.h"

namespace App {

namespace {

/// Counts of the header line.
struct OffHeader {
    std::size_t vertices = 0;
    std::size_t faces = 0;
};

/// Reads OFF, COFF, NOFF, CNOFF and STOFF text and writes it anew with positions and faces alone,
/// one to a line, which is what every reader of OFF agrees on.
class OffCheck {
 public:
    explicit OffCheck(const std::string& bytes) : m_size(bytes.size()), m_scanner(bytes, '#') {}

    FileContent run(std::string& clean) {
        m_clean.reserve(m_size);
        const OffHeader header = readHeader();
        m_clean += fmt::format("OFF\n{} {} 0\n", header.vertices, header.faces);
        for (std::size_t i = 1; i <= header.vertices; ++i) readVertex(i, header.vertices);
        for (std::size_t i = 1; i <= header.faces; ++i) readFace(i, header);
        if (m_content.polygons == 0) throw InputFailure("holds no faces");
        clean = std::move(m_clean);
        return m_content;
    }

 private:
    OffHeader readHeader() {
        const std::string_view magic = m_scanner.next();
        const bool isOff = magic == "OFF" || magic == "COFF" || magic == "NOFF" ||
                           magic == "CNOFF" || magic == "STOFF";
        if (!isOff) m_scanner.fail("expected \"OFF\", found " + quoted(magic));
        const std::string_view first = m_scanner.next();
        if (first == "BINARY") m_scanner.fail("binary OFF is not supported");
        OffHeader header;
        header.vertices = count(first, 2);
        // A face takes at least eight bytes of its own: "3 0 1 2\n".
        header.faces = count(m_scanner.next(), 8);
        m_scanner.skipLine();
        return header;
    }

    std::size_t count(std::string_view token, std::size_t leastBytes) const {
        const long long value = m_scanner.integer(token);
        if (value < 0 || static_cast<unsigned long long>(value) > m_size / leastBytes + 1) {
            m_scanner.fail(
                fmt::format("the header promises {} vertices or faces, more than a "
                            "file of {} bytes can hold",
                            value, m_size));
        }
        return static_cast<std::size_t>(value);
    }

    std::string_view firstOf(const char* what, std::size_t i, std::size_t total) {
        const std::string_view token = m_scanner.next();
        if (token.empty()) {
            m_scanner.fail(fmt::format("the file ends before {} {} of {}", what, i, total));
        }
        return token;
    }

    void readVertex(std::size_t i, std::size_t total) {
        std::string_view token = firstOf("vertex", i, total);
        for (int axis = 0; axis < 3; ++axis) {
            if (axis > 0) token = m_scanner.nextOnLine();
            m_scanner.coordinate(token, i);
            m_clean.append(token).push_back(axis < 2 ? ' ' : '\n');
        }
        m_scanner.skipLine();
    }

    void readFace(std::size_t i, const OffHeader& header) {
        const std::string_view first = firstOf("face", i, header.faces);
        const long long corners = m_scanner.integer(first);
        if (corners < 3) m_scanner.fail(fmt::format("face {} has {} corners", i, corners));
        m_clean.append(first);
        for (long long k = 0; k < corners; ++k) {
            const std::string_view token = m_scanner.nextOnLine();
            if (token.empty()) {
                m_scanner.fail(fmt::format("face {} has {} of its {} corners", i, k, corners));
            }
            const long long index = m_scanner.integer(token);
            if (index < 0 || static_cast<unsigned long long>(index) >= header.vertices) {
                m_scanner.fail(fmt::format("face {} names vertex {}; they run from 0 to {}", i,
                                           index, header.vertices - 1));
            }
            m_clean.append(" ").append(token);
        }
        m_clean += '\n';
        m_scanner.skipLine();
        ++m_content.polygons;
        m_content.corners += static_cast<std::size_t>(corners);
    }

    std::size_t m_size;
    TextScanner m_scanner;
    FileContent m_content;
    std::string m_clean;
};

}  // namespace

FileContent checkOff(std::string& bytes) {
    refuseNulBytes(bytes, "OFF");
    std::string clean;
    const FileContent content = OffCheck(bytes).run(clean);
    bytes = std::move(clean);
    return content;
}

}  // namespace App
