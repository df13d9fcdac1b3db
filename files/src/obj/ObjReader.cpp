#include "obj/ObjReader.h"

#include <limits>

#include "mesh/FaceCollector.h"
#include "text/Message.h"
#include "text/PlainText.h"
#include "text/TextScanner.h"

namespace Tesk::files {

namespace {

class ObjReader {
 public:
    ObjReader(std::string_view text, const ReadOptions& options, Progress& progress)
        : m_text(text),
          m_scanner(text, '#', /*joinsLines=*/true),
          m_faces(options.maxTriangles),
          m_progress(progress) {}

    PartFile run() {
        try {
            readLines();
        } catch (const PartFileError&) {
            countVerticesAhead();
            checkForwardReferences();  // an earlier line may be wrong, too
            throw;
        }
        checkForwardReferences();
        m_faces.finish(m_part.mesh, m_part.warnings);
        return std::move(m_part);
    }

 private:
    /// A face that names a vertex which has not come yet.
    struct ForwardReference {
        long long vertex;
        std::size_t line;
    };

    std::vector<PartPoint>& positions() { return m_part.mesh.positions; }

    void readLines() {
        std::size_t lines = 0;
        for (std::string_view token = m_scanner.next(); !token.empty(); token = m_scanner.next()) {
            readLine(token);
            if (++lines % 4096 == 0) m_progress.report(m_scanner.position(), m_text.size(), 0, 60);
        }
    }

    void countVerticesAhead() {
        m_scanner.skipLine();
        for (std::string_view token = m_scanner.next(); !token.empty(); token = m_scanner.next()) {
            if (token == "v") ++m_vertexLines;
            m_scanner.skipLine();
        }
    }

    void readLine(std::string_view keyword) {
        if (keyword == "v") {
            readVertex();
        } else if (keyword == "f" || keyword == "fo") {
            readFace();
        } else if (keyword == "o") {
            const std::string_view name = m_scanner.restOfLine();
            if (!name.empty()) m_part.objectNames.emplace_back(name);
        } else {
            m_scanner.skipLine();
        }
    }

    void readVertex() {
        const std::size_t vertex = ++m_vertexLines;
        if (vertex > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
            m_scanner.fail("is too big: it has more vertices than can be counted");
        }
        const float x = m_scanner.coordinate(m_scanner.nextOnLine(), vertex);
        const float y = m_scanner.coordinate(m_scanner.nextOnLine(), vertex);
        const float z = m_scanner.coordinate(m_scanner.nextOnLine(), vertex);
        positions().push_back({x, y, z});
        m_scanner.skipLine();  // a weight or a colour
    }

    void readFace() {
        m_corners.clear();
        for (std::string_view token = m_scanner.nextOnLine(); !token.empty();
             token = m_scanner.nextOnLine()) {
            const std::string_view index = token.substr(0, token.find('/'));
            m_corners.push_back(vertexOf(m_scanner.integer(index)));
        }
        // The last line of a file that was cut short, most likely.
        if (m_corners.size() < 3 && m_scanner.isAtEnd()) {
            m_scanner.fail(message("the file ends in a face of ",
                                   counted(m_corners.size(), "corner", "corners")));
        }
        m_faces.add(m_corners);
    }

    /// The vertex that an index of a face means, counted from 0.
    std::int32_t vertexOf(long long index) {
        const auto soFar = static_cast<long long>(positions().size());
        if (index == 0) m_scanner.fail("a face refers to vertex 0; vertices are counted from 1");
        if (index < -soFar) {
            m_scanner.fail(message("a face refers to vertex ", index,
                                   ", counted back from here, but only ", soFar,
                                   " come before it"));
        }
        if (index < 0) return static_cast<std::int32_t>(soFar + index);
        if (index > soFar) expectVertex(index);
        // Too high a one ends in an error before it is used.
        return static_cast<std::int32_t>((index - 1) & 0x7fffffff);
    }

    // The first face that names too high a vertex names a higher one than all faces before it.
    void expectVertex(long long index) {
        const bool isHigher =
            m_forwardReferences.empty() || index > m_forwardReferences.back().vertex;
        if (isHigher) m_forwardReferences.push_back({index, m_scanner.line()});
    }

    void checkForwardReferences() const {
        for (const ForwardReference& reference : m_forwardReferences) {
            if (reference.vertex <= static_cast<long long>(m_vertexLines)) continue;
            throw PartFileError(message("a face refers to vertex ", reference.vertex,
                                        ", but the file has ", m_vertexLines),
                                reference.line);
        }
    }

    std::string_view m_text;
    TextScanner m_scanner;
    FaceCollector m_faces;
    Progress& m_progress;
    PartFile m_part;
    std::size_t m_vertexLines = 0;
    std::vector<std::int32_t> m_corners;
    std::vector<ForwardReference> m_forwardReferences;
};

}  // namespace

PartFile readObj(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    return ObjReader(plainText(bytes, "OBJ"), options, progress).run();
}

}  // namespace Tesk::files
