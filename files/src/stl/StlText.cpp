#include <cmath>

#include "mesh/FaceCollector.h"
#include "mesh/Welding.h"
#include "stl/StlReader.h"
#include "text/Keyword.h"
#include "text/Message.h"
#include "text/Numbers.h"
#include "text/PlainText.h"
#include "text/TextScanner.h"

namespace Tesk::files {

namespace {

/// Reads the text form: solid, facets, endsolid, as often as it comes.
class TextStlReader {
 public:
    TextStlReader(std::string_view text, const ReadOptions& options, Progress& progress)
        : m_scanner(text), m_size(text.size()), m_options(options), m_progress(progress) {}

    PartFile run() {
        m_part.form = "ASCII";
        for (std::string_view token = m_scanner.next(); !token.empty(); token = m_scanner.next()) {
            readStatement(token);
        }
        if (m_corners.empty()) throw PartFileError("contains no triangles");
        warn();
        const auto load = [&](std::size_t corner) { return m_corners[corner]; };
        m_part.mesh = soupOf(m_corners.size() / 3, load, notFinite, m_options, m_progress);
        return std::move(m_part);
    }

 private:
    void readStatement(std::string_view token) {
        if (isKeyword(token, "facet")) {
            if (!m_inSolid) m_scanner.fail("expected \"solid\", found " + quoted(token));
            readFacet();
        } else if (isKeyword(token, "endsolid") && m_inSolid) {
            m_inSolid = false;
            m_scanner.skipLine();
        } else if (isKeyword(token, "solid")) {
            m_isOneOpen = m_isOneOpen || m_inSolid;
            m_inSolid = true;
            const std::string_view name = m_scanner.restOfLine();
            if (!name.empty()) m_part.objectNames.emplace_back(name);
        } else {
            m_scanner.fail((m_inSolid ? "expected \"facet\" or \"endsolid\", found "
                                      : "expected \"solid\", found ") +
                           quoted(token));
        }
    }

    void readFacet() {
        if (m_corners.size() / 3 >= m_options.maxTriangles) {
            throw tooManyTriangles(m_options.maxTriangles);
        }
        passNormal();
        expect("loop");
        for (int corner = 0; corner < 3; ++corner) {
            expect("vertex");
            const std::size_t vertex = m_corners.size() + 1;
            const float x = m_scanner.coordinate(m_scanner.nextOnLine(), vertex);
            const float y = m_scanner.coordinate(m_scanner.nextOnLine(), vertex);
            const float z = m_scanner.coordinate(m_scanner.nextOnLine(), vertex);
            m_corners.push_back({x, y, z});
        }
        expect("endloop");
        expect("endfacet");
        if (m_corners.size() % 3072 == 0) {
            m_progress.report(m_scanner.position(), m_size, 0, 60);
        }
    }

    /// Up to "outer". Stored normals are not used, so that anything may stand there, or nothing;
    /// one that is not made of three finite numbers is counted.
    void passNormal() {
        std::string_view token = nextInFacet("normal");
        if (!isKeyword(token, "outer")) {
            accept(token, "normal");
            token = passNumbers();
            if (token.empty()) token = nextInFacet("outer");
        }
        accept(token, "outer");
    }

    /// The token behind the numbers, empty where the line ends there.
    std::string_view passNumbers() {
        int finite = 0;
        std::string_view token = m_scanner.nextOnLine();
        for (int i = 0; i < 3 && !token.empty() && !isKeyword(token, "outer"); ++i) {
            const auto value = floatOf(token);
            if (value && std::isfinite(*value)) ++finite;
            token = m_scanner.nextOnLine();
        }
        if (finite < 3) ++m_badNormals;
        return token;
    }

    std::string_view nextInFacet(std::string_view expected) {
        const std::string_view token = m_scanner.next();
        if (token.empty()) {
            m_scanner.fail(message("the file ends inside a facet, before \"", expected, "\""));
        }
        return token;
    }

    void expect(std::string_view keyword) { accept(nextInFacet(keyword), keyword); }

    void accept(std::string_view token, std::string_view keyword) {
        if (isKeyword(token, keyword)) return;
        m_scanner.fail(message("expected \"", keyword, "\", found ", quoted(token)));
    }

    void warn() {
        if (m_inSolid || m_isOneOpen) {
            m_part.warnings.push_back(
                {"no-endsolid", m_inSolid
                                    ? "the file ends without \"endsolid\" and may be cut short"
                                    : "a solid begins before the one before it has ended"});
        }
        if (m_badNormals > 0) {
            m_part.warnings.push_back(
                {"bad-normals",
                 message(counted(m_badNormals, "stored normal is", "stored normals are"),
                         " not made of finite numbers; normals are taken from the corners instead"),
                 m_badNormals});
        }
    }

    TextScanner m_scanner;
    std::size_t m_size;
    const ReadOptions& m_options;
    Progress& m_progress;
    PartFile m_part;
    std::vector<PartPoint> m_corners;
    bool m_inSolid = false;
    bool m_isOneOpen = false;
    std::int64_t m_badNormals = 0;
};

}  // namespace

PartFile readTextStl(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    return TextStlReader(plainText(bytes, "STL"), options, progress).run();
}

}  // namespace Tesk::files
