#include "threemf/ThreeMfModel.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "TeskPartFiles/PartFiles.h"
#include "mesh/FaceCollector.h"
#include "text/Message.h"
#include "text/Numbers.h"
#include "text/TextScanner.h"
#include "threemf/ThreeMfExtensions.h"
#include "xml/XmlReader.h"

namespace Tesk::files {

namespace {

class ModelReader {
 public:
    ModelReader(std::string path, std::size_t maxTriangles)
        : m_path(std::move(path)), m_maxTriangles(maxTriangles) {}

    ThreeMfModel run(ZipReader& zip, Progress& progress) {
        XmlReader xml(m_path, {[this](const XmlElement& element) { start(element); },
                               [this](const XmlName& name) { end(name); }});
        zip.read(m_path, [&](std::string_view piece) {
            xml.feed(piece);
            progress.report(std::min(zip.unpackedSize(), zip.totalSize()), zip.totalSize(), 0, 60);
        });
        xml.finish();
        return std::move(m_model);
    }

 private:
    // Only elements of the root's own namespace count: extensions have vertices of their own.
    void start(const XmlElement& element) {
        if (!m_space) {
            startModel(element);
        } else if (element.space() == *m_space) {
            startOwn(element, element.localName());
        }
    }

    void startModel(const XmlElement& element) {
        if (element.localName() != "model") throw PartFileError("the root is not a 3MF model");
        refuseUnknownExtensions(element);
        m_space = element.space();
        if (const auto unit = element.attribute("unit")) m_model.unit = std::string(*unit);
    }

    void startOwn(const XmlElement& element, std::string_view name) {
        if (name == "vertex") {
            addVertex(element);
        } else if (name == "triangle") {
            addTriangle(element);
        } else if (name == "object") {
            startObject(element);
        } else if (name == "component") {
            object().components.push_back(placement(element));
        } else if (name == "item") {
            addItem(element);
        }
    }

    void end(const XmlName& name) {
        if (name.local == "object" && name.space == *m_space) m_object = nullptr;
    }

    void startObject(const XmlElement& element) {
        const std::uint32_t id = wholeNumber(element, "id");
        if (m_model.objects.count(id) != 0) {
            throw PartFileError(message("a second object with the id ", id));
        }
        m_object = &m_model.objects[id];
        m_objectId = id;
        const auto type = element.attribute("type");
        m_object->name = std::string(element.attribute("name").value_or(""));
        m_object->partNumber = std::string(element.attribute("partnumber").value_or(""));
        m_object->isAuxiliary = type == "support" || type == "other";
    }

    ThreeMfObject& object() {
        if (m_object == nullptr) throw PartFileError("mesh data outside of an object");
        return *m_object;
    }

    void addVertex(const XmlElement& element) {
        auto& vertices = object().vertices;
        const ThreeMfPoint p = {real(element, "x"), real(element, "y"), real(element, "z")};
        for (const double coordinate : {p.x, p.y, p.z}) {
            if (!std::isfinite(static_cast<float>(coordinate))) {
                throw PartFileError(message("vertex ", vertices.size() + 1, " of object ",
                                            m_objectId, " has a coordinate that is not finite"));
            }
        }
        vertices.push_back(p);
    }

    void addTriangle(const XmlElement& element) {
        std::array<std::int32_t, 3> corners{};
        const std::size_t count = object().vertices.size();
        constexpr std::array<const char*, 3> kNames = {"v1", "v2", "v3"};
        for (std::size_t k = 0; k < 3; ++k) {
            const std::uint32_t index = wholeNumber(element, kNames[k]);
            if (index >= count) {
                throw PartFileError(message("triangle ", object().triangles.size() + 1,
                                            " refers to vertex ", index, "; object ", m_objectId,
                                            " has ", count));
            }
            corners[k] = static_cast<std::int32_t>(index);
        }
        if (++m_triangles > m_maxTriangles) throw tooManyTriangles(m_maxTriangles);
        object().triangles.push_back(corners);
    }

    void addItem(const XmlElement& element) {
        m_model.items.push_back(
            {.placement = placement(element),
             .partNumber = std::string(element.attribute("partnumber").value_or("")),
             .isPrintable = isPrintable(element),
             .place = m_model.items.size()});
    }

    static bool isPrintable(const XmlElement& element) {
        const auto mark = element.attribute("printable");
        return mark != "0" && mark != "false";
    }

    ThreeMfPlacement placement(const XmlElement& element) const {
        ThreeMfPlacement placed;
        placed.objectId = wholeNumber(element, "objectid");
        placed.path = partOf(element);
        const auto transform = element.attribute("transform");
        if (!transform) return placed;
        TextScanner scanner(*transform);
        for (double& cell : placed.transform.m) {
            cell = number(scanner.next(), "transform");
            if (!std::isfinite(cell)) throw PartFileError("a transform that is not finite");
        }
        if (!scanner.next().empty()) throw PartFileError("a transform of more than 12 numbers");
        return placed;
    }

    std::string partOf(const XmlElement& element) const {
        if (const auto path = element.attribute(kProductionSpace, "path")) {
            return std::string(*path);
        }
        // Its object would be looked for in the wrong part.
        if (const auto written = element.undeclaredAttribute("path")) {
            throw PartFileError(message(element.localName(), " of object ",
                                        required(element, "objectid"), " has the attribute ",
                                        quoted(*written),
                                        ", whose prefix no namespace is declared for"));
        }
        return m_path;
    }

    static std::string_view required(const XmlElement& element, std::string_view name) {
        const auto value = element.attribute(name);
        if (!value) {
            throw PartFileError(message("element ", quoted(element.localName()),
                                        " has no attribute \"", name, "\""));
        }
        const std::size_t first = value->find_first_not_of(" \t\r\n");
        if (first == value->npos) return {};
        return value->substr(first, value->find_last_not_of(" \t\r\n") - first + 1);
    }

    static double real(const XmlElement& element, std::string_view name) {
        return number(required(element, name), name);
    }

    static double number(std::string_view text, std::string_view name) {
        const auto value = doubleOf(text);
        if (!value) throw PartFileError(message(name, ": ", quoted(text), " is not a number"));
        return *value;
    }

    static std::uint32_t wholeNumber(const XmlElement& element, std::string_view name) {
        const std::string_view text = required(element, name);
        std::uint32_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size()) {
            throw PartFileError(message(name, ": ", quoted(text), " is not a whole number"));
        }
        return value;
    }

    std::string m_path;
    std::size_t m_maxTriangles;
    std::size_t m_triangles = 0;
    std::optional<std::string> m_space;  ///< of the root element, once it is there
    ThreeMfModel m_model;
    ThreeMfObject* m_object = nullptr;
    std::uint32_t m_objectId = 0;
};

}  // namespace

ThreeMfModel readThreeMfModel(ZipReader& zip, const std::string& path, std::size_t maxTriangles,
                              Progress& progress) {
    return ModelReader(path, maxTriangles).run(zip, progress);
}

}  // namespace Tesk::files
