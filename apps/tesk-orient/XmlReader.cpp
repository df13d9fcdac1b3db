#include "XmlReader.h"

#include <expat.h>
#include <fmt/format.h>

#include <exception>

#include "Failure.h"

namespace App {

namespace {

constexpr char kSeparator = '|';

}  // namespace

std::string_view XmlElement::localName() const {
    const std::size_t separator = m_name.rfind(kSeparator);
    return separator == m_name.npos ? m_name : m_name.substr(separator + 1);
}

std::string_view XmlElement::space() const {
    const std::size_t separator = m_name.rfind(kSeparator);
    return separator == m_name.npos ? std::string_view() : m_name.substr(0, separator);
}

std::optional<std::string_view> XmlElement::attribute(std::string_view name) const {
    for (const char** att = m_atts; *att != nullptr; att += 2) {
        if (name == att[0]) return std::string_view(att[1]);
    }
    return std::nullopt;
}

struct XmlReader::Parser {
    std::string title;
    Handlers handlers;
    XML_Parser expat = XML_ParserCreateNS(nullptr, kSeparator);
    std::exception_ptr thrown;  ///< by a handler; carried around the parser's own frames

    ~Parser() { XML_ParserFree(expat); }

    template <class Work>
    void guarded(Work work) {
        if (thrown != nullptr) return;
        try {
            work();
        } catch (const InputFailure& failure) {
            thrown = std::make_exception_ptr(InputFailure(at(failure.what())));
        } catch (...) {
            thrown = std::current_exception();
        }
        if (thrown != nullptr) XML_StopParser(expat, XML_FALSE);
    }

    std::string at(const std::string& text) const {
        return fmt::format("{}, line {}: {}", title, XML_GetCurrentLineNumber(expat), text);
    }

    void parse(std::string_view piece, bool isLast) {
        const XML_Status status =
            XML_Parse(expat, piece.data(), static_cast<int>(piece.size()), isLast);
        if (thrown != nullptr) std::rethrow_exception(thrown);
        if (status != XML_STATUS_OK) {
            const char* reason = XML_ErrorString(XML_GetErrorCode(expat));
            throw InputFailure(at(fmt::format("not well-formed XML ({})", reason)));
        }
    }

    static Parser& of(void* userData) { return *static_cast<Parser*>(userData); }

    static void onStart(void* userData, const XML_Char* name, const XML_Char** attributes) {
        Parser& parser = of(userData);
        parser.guarded([&] { parser.handlers.start(XmlElement(name, attributes)); });
    }

    static void onEnd(void* userData, const XML_Char* name) {
        Parser& parser = of(userData);
        parser.guarded([&] { parser.handlers.end(name); });
    }

    static void onDoctype(void* userData, const XML_Char*, const XML_Char*, const XML_Char*, int) {
        of(userData).guarded(
            [] { throw InputFailure("a document type declaration, which 3MF forbids"); });
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

}  // namespace App
