#include "xml/XmlReader.h"

#include <expat.h>

#include <exception>
#include <limits>

#include "TeskPartFiles/PartFiles.h"
#include "text/Message.h"

namespace Tesk::files {

XmlName::XmlName(std::string_view written, const XmlNamespaces& spaces) : local(written) {
    const std::size_t colon = written.find(':');
    if (colon == written.npos) {
        space = spaces.find({}).value_or(std::string_view());
        return;
    }
    local = written.substr(colon + 1);
    space = spaces.find(written.substr(0, colon)).value_or(written.substr(0, colon + 1));
}

std::optional<std::string_view> XmlElement::attribute(std::string_view name) const {
    for (const char** att = m_atts; *att != nullptr; att += 2) {
        if (name == att[0]) return std::string_view(att[1]);
    }
    return std::nullopt;
}

std::optional<std::string_view> XmlElement::attribute(std::string_view space,
                                                      std::string_view name) const {
    for (const char** att = m_atts; *att != nullptr; att += 2) {
        const std::string_view written = att[0];
        if (!written.ends_with(name) || written.size() == name.size()) continue;
        const XmlName found(written, m_spaces);
        if (found.local == name && found.space == space) return std::string_view(att[1]);
    }
    return std::nullopt;
}

std::optional<std::string_view> XmlElement::undeclaredAttribute(std::string_view name) const {
    for (const char** att = m_atts; *att != nullptr; att += 2) {
        const std::string_view written = att[0];
        const std::size_t colon = written.find(':');
        if (colon == written.npos || written.substr(colon + 1) != name) continue;
        if (!m_spaces.find(written.substr(0, colon))) return written;
    }
    return std::nullopt;
}

struct XmlReader::Parser {
    std::string title;
    Handlers handlers;
    // Not expat's own namespaces: it refuses prefixes that are not declared.
    XML_Parser expat = XML_ParserCreate(nullptr);
    XmlNamespaces spaces;
    std::size_t fed = 0;        ///< bytes, as far as they were passed to the parser
    std::exception_ptr thrown;  ///< by a handler; carried around the parser's own frames

    ~Parser() { XML_ParserFree(expat); }

    template <class Work>
    void guarded(Work work) {
        if (thrown != nullptr) return;
        try {
            work();
        } catch (const PartFileError& error) {
            thrown = std::make_exception_ptr(PartFileError(at(error.trouble())));
        } catch (...) {
            thrown = std::current_exception();
        }
        if (thrown != nullptr) XML_StopParser(expat, XML_FALSE);
    }

    std::string at(const std::string& text) const {
        return message(title, ", line ", XML_GetCurrentLineNumber(expat), ": ", text);
    }

    void parse(std::string_view piece, bool isLast) {
        fed += piece.size();
        const XML_Status status =
            XML_Parse(expat, piece.data(), static_cast<int>(piece.size()), isLast);
        if (thrown != nullptr) std::rethrow_exception(thrown);
        if (status != XML_STATUS_OK) {
            const char* reason = XML_ErrorString(XML_GetErrorCode(expat));
            throw PartFileError(at(message("not well-formed XML (", reason, ")")));
        }
    }

    static Parser& of(void* userData) { return *static_cast<Parser*>(userData); }

    static void onStart(void* userData, const XML_Char* name, const XML_Char** attributes) {
        Parser& parser = of(userData);
        parser.guarded([&] {
            parser.spaces.enter(attributes);
            parser.handlers.start(XmlElement(name, attributes, parser.spaces));
        });
    }

    static void onEnd(void* userData, const XML_Char* name) {
        Parser& parser = of(userData);
        parser.guarded([&] {
            parser.handlers.end(XmlName(name, parser.spaces));
            parser.spaces.leave();
        });
    }

    static void onDoctype(void* userData, const XML_Char*, const XML_Char*, const XML_Char*, int) {
        of(userData).guarded(
            [] { throw PartFileError("a document type declaration, which 3MF forbids"); });
    }
};

XmlReader::XmlReader(std::string title, Handlers handlers) : m_parser(std::make_unique<Parser>()) {
    if (m_parser->expat == nullptr) throw std::bad_alloc();
    m_parser->title = std::move(title);
    m_parser->handlers = std::move(handlers);
    XML_SetUserData(m_parser->expat, m_parser.get());
    XML_SetElementHandler(m_parser->expat, Parser::onStart, Parser::onEnd);
    XML_SetStartDoctypeDeclHandler(m_parser->expat, Parser::onDoctype);
}

XmlReader::~XmlReader() = default;

void XmlReader::feed(std::string_view piece) {
    m_parser->parse(piece, false);
}

void XmlReader::finish() {
    m_parser->parse({}, true);
}

XmlTag XmlReader::tag() const {
    constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<XML_Index>::max());
    if (m_parser->fed > kMost) throw PartFileError("is too big to be changed");
    const auto offset = static_cast<std::size_t>(XML_GetCurrentByteIndex(m_parser->expat));
    return {offset, static_cast<std::size_t>(XML_GetCurrentByteCount(m_parser->expat))};
}

}  // namespace Tesk::files
