#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "Failure.h"
#include "FormatCheck.h"
#include "TextScanner.h"

namespace App {

namespace {

constexpr std::size_t kHeaderSize = 84;
constexpr std::size_t kRecordSize = 50;

std::uint32_t littleEndian32(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

std::string lowered(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

bool fitsItsCount(const std::string& bytes) {
    return bytes.size() >= kHeaderSize &&
           bytes.size() == kHeaderSize + kRecordSize * std::size_t{littleEndian32(bytes, 80)};
}

// Binary headers may begin with "solid" as well; only text goes on with a facet or the end.
bool looksLikeText(const std::string& bytes) {
    const std::string start = lowered(std::string_view(bytes).substr(0, 1024));
    const std::size_t solid = start.find_first_not_of(" \t\r\n");
    if (solid == start.npos || start.compare(solid, 5, "solid") != 0) return false;
    // Read as a count, four characters of text come to at least 150 million triangles: a file
    // with a believable count behind its 80 bytes is a damaged binary one.
    const bool hasSmallCount = bytes.size() >= kHeaderSize &&
                               littleEndian32(bytes, 80) / 4 < bytes.size() &&
                               start.find('\0') != start.npos;
    if (hasSmallCount) return false;
    return start.find("facet") != start.npos || start.find("endsolid") != start.npos ||
           start.find('\0') == start.npos;
}

FileContent checkBinary(std::string& bytes) {
    if (bytes.size() < kHeaderSize) {
        throw InputFailure(
            fmt::format("is no STL: {} bytes are too few for a binary one, and it "
                        "does not begin with \"solid\" as a text one does",
                        bytes.size()));
    }
    FileContent content;
    content.form = "binary";
    content.polygons = littleEndian32(bytes, 80);
    content.corners = content.polygons * 3;
    const std::size_t expected = kHeaderSize + kRecordSize * content.polygons;
    if (bytes.size() < expected) {
        throw InputFailure(fmt::format(
            "is cut short, or no STL: its header promises {} triangles ({} bytes), "
            "but it has {} bytes, enough for {}",
            content.polygons, expected, bytes.size(), (bytes.size() - kHeaderSize) / kRecordSize));
    }
    if (content.polygons == 0) throw InputFailure("holds no triangles");
    if (const std::size_t extra = bytes.size() - expected; extra > 0) {
        content.warnings.push_back(
            {"extra-bytes",
             fmt::format("{} byte{} after the last triangle {} ignored", extra,
                         extra == 1 ? "" : "s", extra == 1 ? "is" : "are"),
             static_cast<std::int64_t>(extra)});
        bytes.resize(expected);
    }
    return content;
}

/// Reads the text form: solid, facets, endsolid, as often as it comes.
class TextStlCheck {
 public:
    explicit TextStlCheck(std::string& bytes) : m_bytes(bytes), m_scanner(bytes) {}

    FileContent run() {
        m_content.form = "ASCII";
        for (std::string_view token = m_scanner.next(); !token.empty(); token = m_scanner.next()) {
            readStatement(token);
        }
        if (m_content.polygons == 0) throw InputFailure("holds no triangles");
        if (m_inSolid) {
            m_content.warnings.push_back(
                {"no-endsolid", "the file ends without \"endsolid\" and may be cut short"});
        }
        if (m_badNormals > 0) {
            m_content.warnings.push_back(
                {"bad-normals",
                 fmt::format("{} stored normal{} not made of finite numbers; normals are taken "
                             "from the corners instead",
                             m_badNormals, m_badNormals == 1 ? " is" : "s are"),
                 m_badNormals});
        }
        m_content.corners = m_content.polygons * 3;
        return m_content;
    }

 private:
    void readStatement(std::string_view token) {
        if (!m_inSolid) {
            accept(token, "solid");
            m_inSolid = true;
            m_scanner.skipLine();
        } else if (is(token, "endsolid")) {
            rewrite(token, "endsolid");
            m_inSolid = false;
            m_scanner.skipLine();
        } else {
            if (!is(token, "facet")) {
                m_scanner.fail("expected \"facet\" or \"endsolid\", found " + quoted(token));
            }
            rewrite(token, "facet");
            readFacet();
        }
    }

    void readFacet() {
        expect("normal");
        for (int axis = 0; axis < 3; ++axis) readNormalPart();
        expect("outer");
        expect("loop");
        for (int corner = 0; corner < 3; ++corner) {
            expect("vertex");
            ++m_vertices;
            for (int axis = 0; axis < 3; ++axis) {
                m_scanner.coordinate(m_scanner.nextOnLine(), m_vertices);
            }
        }
        expect("endloop");
        expect("endfacet");
        ++m_content.polygons;
    }

    // Stored normals are not used, so that anything in their place can be passed over; but what
    // the library cannot read is blanked out.
    void readNormalPart() {
        const std::string_view token = m_scanner.nextOnLine();
        if (token.empty()) m_scanner.fail("the facet's normal is incomplete");
        const bool isWord = std::isalpha(static_cast<unsigned char>(token.back())) != 0 ||
                            token.find_first_of("#()") != token.npos;
        if (!isWord && std::isfinite(m_scanner.number(token))) return;
        if (m_badFacet != m_content.polygons + 1) ++m_badNormals;
        m_badFacet = m_content.polygons + 1;
        rewrite(token, "0");
    }

    void expect(std::string_view keyword) {
        const std::string_view token = m_scanner.next();
        if (token.empty()) {
            m_scanner.fail(fmt::format("the file ends inside a facet, before \"{}\"", keyword));
        }
        accept(token, keyword);
    }

    void accept(std::string_view token, std::string_view keyword) {
        if (!is(token, keyword)) {
            m_scanner.fail(fmt::format("expected \"{}\", found {}", keyword, quoted(token)));
        }
        rewrite(token, keyword);
    }

    static bool is(std::string_view token, std::string_view keyword) {
        return token == keyword || (token.size() == keyword.size() && lowered(token) == keyword);
    }

    /// Puts the text in the token's place and blanks out what is left of it.
    void rewrite(std::string_view token, std::string_view text) {
        if (token == text) return;
        const auto at = m_bytes.begin() + (token.data() - m_bytes.data());
        std::fill(at, at + static_cast<std::ptrdiff_t>(token.size()), ' ');
        std::copy(text.begin(), text.end(), at);
    }

    std::string& m_bytes;
    TextScanner m_scanner;
    FileContent m_content;
    bool m_inSolid = false;
    std::size_t m_vertices = 0;
    std::size_t m_badFacet = 0;
    std::int64_t m_badNormals = 0;
};

}  // namespace

void refuseNulBytes(const std::string& bytes, const char* format) {
    const std::size_t nul = bytes.find('\0');
    if (nul == bytes.npos) return;
    const auto line =
        1 + std::count(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(nul), '\n');
    throw InputFailure(
        fmt::format("line {}: holds a NUL byte, which no {} text has", line, format));
}

FileContent checkStl(std::string& bytes) {
    if (fitsItsCount(bytes) || !looksLikeText(bytes)) return checkBinary(bytes);
    refuseNulBytes(bytes, "STL");
    return TextStlCheck(bytes).run();
}

}  // namespace App
