#include "off/OffReader.h"

#include <algorithm>
#include <limits>

#include "mesh/FaceCollector.h"
#include "text/Message.h"
#include "text/Numbers.h"
#include "text/PlainText.h"
#include "text/TextScanner.h"

namespace Tesk::files {

namespace {

class OffReader {
 public:
    OffReader(std::string_view text, const ReadOptions& options, Progress& progress)
        : m_size(text.size()),
          m_scanner(text, '#'),
          m_faces(options.maxTriangles),
          m_progress(progress) {}

    PartFile run() {
        readHeader();
        m_part.mesh.positions.reserve(m_vertexCount);
        m_faces.reserve(std::min(m_faceCount, m_size / 8));  // "3 0 1 2\n"
        for (std::size_t i = 1; i <= m_vertexCount; ++i) readVertex(i);
        for (std::size_t i = 1; i <= m_faceCount; ++i) readFace(i);
        m_faces.finish(m_part.mesh, m_part.warnings);
        return std::move(m_part);
    }

 private:
    void readHeader() {
        std::string_view token = m_scanner.next();
        if (!wholeNumberOf(token)) {
            checkMagic(token);
            token = m_scanner.next();
        }
        if (token == "BINARY") m_scanner.fail("binary OFF is not supported");
        m_vertexCount = count(token, "vertices", 6);  // "0 0 0\n"
        m_faceCount = count(m_scanner.next(), "faces", 2);
        m_scanner.skipLine();
    }

    void checkMagic(std::string_view magic) const {
        std::string_view rest = magic;
        if (rest.starts_with("ST")) rest.remove_prefix(2);
        if (rest.starts_with("C")) rest.remove_prefix(1);
        if (rest.starts_with("N")) rest.remove_prefix(1);
        if (rest == "OFF") return;
        if (rest == "4OFF" || rest == "nOFF" || rest == "4nOFF") {
            m_scanner.fail(
                message(quoted(magic), " is not supported: it is not in three dimensions"));
        }
        m_scanner.fail("expected \"OFF\", found " + quoted(magic));
    }

    std::size_t count(std::string_view token, const char* what, std::size_t leastBytes) const {
        const long long value = m_scanner.integer(token);
        if (value < 0 || static_cast<unsigned long long>(value) > m_size / leastBytes + 1) {
            m_scanner.fail(message("the header declares ", value, " ", what,
                                   ", more than a file of ", m_size, " bytes can hold"));
        }
        if (value > std::numeric_limits<std::int32_t>::max()) {
            m_scanner.fail(message("is too big: ", value, " ", what));
        }
        return static_cast<std::size_t>(value);
    }

    std::string_view firstOf(const char* what, std::size_t i, std::size_t total) {
        const std::string_view token = m_scanner.next();
        if (token.empty()) {
            m_scanner.fail(message("the file ends before ", what, " ", i, " of ", total));
        }
        if (i % 4096 == 0) m_progress.report(m_scanner.position(), m_size, 0, 60);
        return token;
    }

    void readVertex(std::size_t i) {
        const float x = m_scanner.coordinate(firstOf("vertex", i, m_vertexCount), i);
        const float y = m_scanner.coordinate(m_scanner.nextOnLine(), i);
        const float z = m_scanner.coordinate(m_scanner.nextOnLine(), i);
        m_part.mesh.positions.push_back({x, y, z});
        m_scanner.skipLine();
    }

    void readFace(std::size_t i) {
        const long long corners = m_scanner.integer(firstOf("face", i, m_faceCount));
        if (corners < 0) m_scanner.fail(message("face ", i, " has ", corners, " corners"));
        m_corners.clear();
        for (long long k = 0; k < corners; ++k) {
            const std::string_view token = m_scanner.nextOnLine();
            if (token.empty()) {
                m_scanner.fail(message("face ", i, " has ", k, " of its ", corners, " corners"));
            }
            const long long index = m_scanner.integer(token);
            if (index < 0 || static_cast<unsigned long long>(index) >= m_vertexCount) {
                m_scanner.fail(message("face ", i, " refers to vertex ", index, "; the file has ",
                                       m_vertexCount, ", counted from 0"));
            }
            m_corners.push_back(static_cast<std::int32_t>(index));
        }
        m_faces.add(m_corners);
        m_scanner.skipLine();
    }

    std::size_t m_size;
    TextScanner m_scanner;
    FaceCollector m_faces;
    Progress& m_progress;
    PartFile m_part;
    std::size_t m_vertexCount = 0;
    std::size_t m_faceCount = 0;
    std::vector<std::int32_t> m_corners;
};

}  // namespace

PartFile readOff(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    // Binary OFF holds NUL bytes; its name tells more than they do.
    if (TextScanner scanner(bytes.substr(0, 64));
        scanner.next().ends_with("OFF") && scanner.next() == "BINARY") {
        throw PartFileError("binary OFF is not supported", scanner.line());
    }
    return OffReader(plainText(bytes, "OFF"), options, progress).run();
}

}  // namespace Tesk::files
