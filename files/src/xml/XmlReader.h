#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "xml/XmlNamespaces.h"

namespace Tesk::files {

/// A name of XML and the namespace that it is in. If its prefix is not declared, as many
/// programs forget to do for their own extensions, the prefix with its colon stands for the
/// namespace.
struct XmlName {
    XmlName(std::string_view written, const XmlNamespaces& spaces);

    std::string_view space;  ///< empty without one
    std::string_view local;
};

/// An XML element's start.
class XmlElement {
 public:
    XmlElement(const char* name, const char** attributes, const XmlNamespaces& spaces)
        : m_name(name, spaces), m_atts(attributes), m_spaces(spaces) {}

    std::string_view localName() const { return m_name.local; }
    std::string_view space() const { return m_name.space; }

    /// The value of an attribute without a prefix; nothing if there is no such attribute.
    std::optional<std::string_view> attribute(std::string_view name) const;

    /// The value of an attribute in a namespace; nothing if there is no such attribute.
    std::optional<std::string_view> attribute(std::string_view space, std::string_view name) const;

    /// An attribute of this local name whose prefix is not declared, as it is written.
    std::optional<std::string_view> undeclaredAttribute(std::string_view name) const;

    const XmlNamespaces& namespaces() const { return m_spaces; }

 private:
    XmlName m_name;
    const char** m_atts;
    const XmlNamespaces& m_spaces;
};

/// The place of a tag in a document, from its '<' to after its '>'.
struct XmlTag {
    std::size_t offset = 0;
    std::size_t size = 0;
};

/// Reads an XML document piece by piece and calls back for each element.
class XmlReader {
 public:
    struct Handlers {
        std::function<void(const XmlElement&)> start;
        std::function<void(const XmlName&)> end;
    };

    /// `title` goes in front of every message, with the line. Handlers may throw PartFileError.
    XmlReader(std::string title, Handlers handlers);
    ~XmlReader();
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;

    /// Throws PartFileError that names title and line if the text is not well-formed XML or has a
    /// document type declaration, and if a handler throws PartFileError.
    void feed(std::string_view piece);
    void finish();

    /// The tag of the element whose start handler is running, in bytes of the document as it was
    /// fed. Throws PartFileError for documents so large that the parser cannot tell: 2 GiB on
    /// Windows.
    XmlTag tag() const;

 private:
    struct Parser;
    std::unique_ptr<Parser> m_parser;
};

}  // namespace Tesk::files
