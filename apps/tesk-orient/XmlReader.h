#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace App {

/// An XML element's start: names are "namespace|local", or "local" without a namespace.
class XmlElement {
 public:
    XmlElement(const char* name, const char** attributes) : m_name(name), m_atts(attributes) {}

    std::string_view name() const { return m_name; }
    std::string_view localName() const;
    std::string_view space() const;  ///< the namespace, perhaps empty

    /// The attribute's value, where it is there.
    std::optional<std::string_view> attribute(std::string_view name) const;

 private:
    std::string_view m_name;
    const char** m_atts;
};

/// Reads an XML document piece by piece and calls back for each element.
class XmlReader {
 public:
    struct Handlers {
        std::function<void(const XmlElement&)> start;
        std::function<void(std::string_view name)> end;
    };

    /// `title` goes in front of every message, with the line. Handlers may throw InputFailure.
    XmlReader(std::string title, Handlers handlers);
    ~XmlReader();
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;

    /// Throws InputFailure that names title and line for what is no sound XML, for a document type
    /// declaration, and for what a handler throws.
    void feed(std::string_view piece);
    void finish();

 private:
    struct Parser;
    std::unique_ptr<Parser> m_parser;
};

}  // namespace App
