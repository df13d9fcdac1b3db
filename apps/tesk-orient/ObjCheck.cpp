#include <fmt/format.h>

#include <algorithm>

#include "Failure.h"
#include "FormatCheck.h"
#include "TextScanner.h"

namespace App {

namespace {

/// Reads the lines that shape the surface, "v" and "f", and blanks out everything else: groups,
/// materials, normals and texture coordinates, whose mistakes must not matter, and which would make
/// the library split the surface and change the order of its faces.
class ObjCheck {
 public:
    explicit ObjCheck(std::string& bytes)
        : m_bytes(bytes), m_scanner(bytes, '#', /*joinsLines=*/true) {}

    FileContent run() {
        countVertices();
        m_scanner = TextScanner(m_bytes, '#', /*joinsLines=*/true);
        for (std::string_view token = m_scanner.next(); !token.empty(); token = m_scanner.next()) {
            const std::size_t start = offsetOf(token);
            if (token == "v") {
                readVertex();
            } else if (token == "f") {
                readFace();
            } else {
                m_scanner.skipLine();
                blank(start, m_scanner.position());
            }
        }
        if (m_content.polygons == 0) throw InputFailure("holds no faces");
        blankComments();
        m_bytes += '\n';
        return m_content;
    }

 private:
    // Faces may come before the vertices that they name.
    void countVertices() {
        for (std::string_view token = m_scanner.next(); !token.empty(); token = m_scanner.next()) {
            if (token == "v") ++m_vertexCount;
            m_scanner.skipLine();
        }
    }

    void readVertex() {
        ++m_verticesSoFar;
        for (int axis = 0; axis < 3; ++axis) {
            m_scanner.coordinate(m_scanner.nextOnLine(), m_verticesSoFar);
        }
        blankRestOfLine();  // a weight or a colour
    }

    void readFace() {
        std::size_t corners = 0;
        for (std::string_view token = m_scanner.nextOnLine(); !token.empty();
             token = m_scanner.nextOnLine()) {
            const std::string_view index = token.substr(0, token.find('/'));
            checkIndex(m_scanner.integer(index));
            blank(offsetOf(token) + index.size(), offsetOf(token) + token.size());
            ++corners;
        }
        if (corners < 3) {
            m_scanner.fail(fmt::format("a face of {} corner{}", corners, corners == 1 ? "" : "s"));
        }
        ++m_content.polygons;
        m_content.corners += corners;
    }

    void checkIndex(long long index) const {
        const auto count = static_cast<long long>(m_vertexCount);
        const auto soFar = static_cast<long long>(m_verticesSoFar);
        if (index == 0) m_scanner.fail("a face names vertex 0; vertices are counted from 1");
        if (index > count) {
            m_scanner.fail(
                fmt::format("a face names vertex {}, but the file has {}", index, count));
        }
        if (index < -soFar) {
            m_scanner.fail(
                fmt::format("a face names vertex {}, counted back from here, but only "
                            "{} come before it",
                            index, soFar));
        }
    }

    std::size_t offsetOf(std::string_view token) const {
        return static_cast<std::size_t>(token.data() - m_bytes.data());
    }

    void blankRestOfLine() {
        const std::size_t start = m_scanner.position();
        m_scanner.skipLine();
        blank(start, m_scanner.position());
    }

    /// Line ends stay, so that line numbers do.
    void blank(std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i) {
            if (m_bytes[i] != '\n' && m_bytes[i] != '\r') m_bytes[i] = ' ';
        }
    }

    // A continued line becomes one line, and comments go.
    void blankComments() {
        bool inComment = false;
        for (std::size_t i = 0; i < m_bytes.size(); ++i) {
            const bool isLineEnd = m_bytes[i] == '\n' || m_bytes[i] == '\r';
            if (m_bytes[i] == '\\' && !inComment && i + 1 < m_bytes.size()) {
                m_bytes[i] = ' ';
                if (m_bytes[i + 1] == '\r') m_bytes[++i] = ' ';
                if (i + 1 < m_bytes.size() && m_bytes[i + 1] == '\n') m_bytes[++i] = ' ';
                continue;
            }
            inComment = !isLineEnd && (inComment || m_bytes[i] == '#');
            if (inComment) m_bytes[i] = ' ';
        }
    }

    std::string& m_bytes;
    TextScanner m_scanner;
    FileContent m_content;
    std::size_t m_vertexCount = 0;
    std::size_t m_verticesSoFar = 0;
};

}  // namespace

FileContent checkObj(std::string& bytes) {
    refuseNulBytes(bytes, "OBJ");
    return ObjCheck(bytes).run();
}

}  // namespace App
