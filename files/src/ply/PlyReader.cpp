#include "ply/PlyReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "mesh/FaceCollector.h"
#include "ply/PlyNumbers.h"

namespace Tesk::files {

namespace {

bool isPosition(const PlyProperty& property) {
    return !property.isList &&
           (property.name == "x" || property.name == "y" || property.name == "z");
}

bool isCornerList(const PlyProperty& property) {
    return property.isList &&
           (property.name == "vertex_indices" || property.name == "vertex_index");
}

std::ptrdiff_t countOf(const PlyElement& element, bool (*accepts)(const PlyProperty&)) {
    return std::count_if(element.properties.begin(), element.properties.end(), accepts);
}

const PlyElement* find(const PlyHeader& header, std::string_view name) {
    const PlyElement* found = nullptr;
    for (const PlyElement& element : header.elements) {
        if (element.name != name) continue;
        if (found != nullptr) throw PartFileError(message("the header has \"", name, "\" twice"));
        found = &element;
    }
    return found;
}

void checkCornerList(const PlyElement* element) {
    if (element == nullptr || countOf(*element, isCornerList) == 1) return;
    throw PartFileError(message("the header has no list \"vertex_indices\" in its element \"",
                                element->name, "\""));
}

/// The number of vertices of a header that describes a surface.
std::size_t checkElements(const PlyHeader& header) {
    const PlyElement* const vertex = find(header, "vertex");
    const PlyElement* const face = find(header, "face");
    const PlyElement* const strips = find(header, "tristrips");
    if (vertex == nullptr || countOf(*vertex, isPosition) != 3) {
        throw PartFileError("the header has no element \"vertex\" with x, y and z");
    }
    const bool hasFaces =
        (face != nullptr && face->count > 0) || (strips != nullptr && strips->count > 0);
    if (!hasFaces) throw PartFileError("contains no faces");
    checkCornerList(face);
    checkCornerList(strips);
    if (vertex->count > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw PartFileError(message("is too big: ", vertex->count, " vertices"));
    }
    return vertex->count;
}

template <class Numbers>
class PlyReader {
 public:
    PlyReader(std::string_view body, const PlyHeader& header, const ReadOptions& options,
              Progress& progress)
        : m_header(header),
          m_size(body.size()),
          m_numbers(body, header.bodyStart, header.bodyLine),
          m_vertexCount(checkElements(header)),
          m_faces(options.maxTriangles),
          m_progress(progress) {}

    PartFile run() {
        for (const PlyElement& element : m_header.elements) readElement(element);
        m_faces.finish(m_part.mesh, m_part.warnings);
        return std::move(m_part);
    }

 private:
    void readElement(const PlyElement& element) {
        m_isVertex = element.name == "vertex";
        m_isFace = element.name == "face";
        m_isStrip = element.name == "tristrips";
        if (m_isVertex) m_part.mesh.positions.reserve(element.count);
        // A sound face takes at least this many bytes, in either form.
        if (m_isFace) m_faces.reserve(std::min(element.count, m_size / 4));
        for (std::size_t i = 1; i <= element.count; ++i) {
            m_instance = i;
            m_numbers.startInstance();
            for (const PlyProperty& property : element.properties) readProperty(property);
            m_numbers.endInstance();
            if (m_isVertex) m_part.mesh.positions.push_back({m_point[0], m_point[1], m_point[2]});
            if (i % 4096 == 0) m_progress.report(m_numbers.position(), m_size, 0, 60);
        }
    }

    void readProperty(const PlyProperty& property) {
        if (property.isList) {
            readList(property);
        } else if (m_isVertex && isPosition(property)) {
            readCoordinate(property);
        } else {
            m_numbers.skip(property.type);
        }
    }

    void readCoordinate(const PlyProperty& property) {
        const float value = m_numbers.nextFloat(property.type);
        if (!std::isfinite(value)) {
            m_numbers.fail(message("vertex ", m_instance, " has a coordinate that is not finite"));
        }
        m_point[static_cast<std::size_t>(property.name[0] - 'x')] = value;
    }

    void readList(const PlyProperty& property) {
        const double count = m_numbers.next(property.countType);
        if (!(count >= 0.0) || count != std::floor(count)) {
            m_numbers.fail(message("a list of ", count, " numbers"));
        }
        if (!m_numbers.hasRoom(count, property.type)) {
            m_numbers.fail("is cut short: the file ends too soon");
        }
        const auto length = static_cast<std::size_t>(count);
        if ((m_isFace || m_isStrip) && isCornerList(property)) {
            readCorners(property.type, length);
        } else {
            for (std::size_t k = 0; k < length; ++k) m_numbers.skip(property.type);
        }
    }

    void readCorners(PlyType type, std::size_t length) {
        m_corners.clear();
        for (std::size_t k = 0; k < length; ++k) {
            const double index = m_numbers.next(type);
            if (m_isStrip && index == -1.0) {
                addStrip();
            } else {
                m_corners.push_back(vertexOf(index));
            }
        }
        if (m_isStrip) {
            addStrip();
        } else {
            m_faces.add(m_corners);
        }
    }

    /// Every other triangle of a strip winds the other way; those that only lead from one strip to
    /// the next name a vertex twice.
    void addStrip() {
        for (std::size_t k = 2; k < m_corners.size(); ++k) {
            std::array<std::int32_t, 3> corners = {m_corners[k - 2], m_corners[k - 1],
                                                   m_corners[k]};
            if (corners[0] == corners[1] || corners[1] == corners[2] || corners[2] == corners[0]) {
                continue;
            }
            if (k % 2 == 1) std::swap(corners[0], corners[1]);
            m_faces.add(corners);
        }
        m_corners.clear();
    }

    std::int32_t vertexOf(double index) const {
        const bool isSound = index >= 0.0 && index < static_cast<double>(m_vertexCount) &&
                             index == std::floor(index);
        if (isSound) return static_cast<std::int32_t>(index);
        const bool isWhole = std::fabs(index) < 1e15 && index == std::floor(index);
        m_numbers.fail(message("face ", m_instance, " refers to vertex ",
                               isWhole ? message(static_cast<long long>(index)) : message(index),
                               "; the file has ", m_vertexCount, ", counted from 0"));
    }

    const PlyHeader& m_header;
    std::size_t m_size;
    Numbers m_numbers;
    std::size_t m_vertexCount;
    FaceCollector m_faces;
    Progress& m_progress;
    PartFile m_part;
    std::size_t m_instance = 0;
    bool m_isVertex = false;
    bool m_isFace = false;
    bool m_isStrip = false;
    std::array<float, 3> m_point{};
    std::vector<std::int32_t> m_corners;
};

}  // namespace

PartFile readPly(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    const PlyHeader header = readPlyHeader(bytes);
    const std::string_view body = bytes.substr(header.bodyStart);
    PartFile part;
    switch (header.form) {
        case PlyForm::kAscii:
            part = PlyReader<PlyTextNumbers>(body, header, options, progress).run();
            break;
        case PlyForm::kLittleEndian:
            part = PlyReader<PlyBinaryNumbers<std::endian::little>>(body, header, options, progress)
                       .run();
            break;
        case PlyForm::kBigEndian:
            part = PlyReader<PlyBinaryNumbers<std::endian::big>>(body, header, options, progress)
                       .run();
            break;
    }
    part.form = header.form == PlyForm::kAscii ? "ASCII" : "binary";
    return part;
}

}  // namespace Tesk::files
