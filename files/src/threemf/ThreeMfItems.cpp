#include "threemf/ThreeMfItems.h"

#include <optional>

#include "TeskPartFiles/PartFiles.h"
#include "text/Message.h"

namespace Tesk::files {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

void refuseWideCharacters(std::string_view model, const std::string& name) {
    const std::string_view start = model.substr(0, 2);
    if (start != "\xfe\xff" && start != "\xff\xfe" && start.find('\0') == start.npos) return;
    throw PartFileError(
        message(name, ": is encoded in UTF-16; only models in UTF-8 can be changed"));
}

/// Steps through the attributes of a sound tag.
class TagScanner {
 public:
    explicit TagScanner(std::string_view tag)
        : m_tag(tag), m_at(tag.find_first_of(" \t\r\n/>")), m_endOfName(m_at) {}

    std::size_t endOfName() const { return m_endOfName; }

    struct Attribute {
        std::string_view name;
        std::size_t value;  ///< after the quote
        std::size_t size;
    };

    std::optional<Attribute> next() {
        m_at = m_tag.find_first_not_of(kBlanks, m_at);
        if (m_at == m_tag.npos || m_tag[m_at] == '/' || m_tag[m_at] == '>') return std::nullopt;
        const std::size_t endOfName = m_tag.find_first_of(" \t\r\n=", m_at);
        const std::size_t quote = m_tag.find_first_of("\"'", endOfName);
        const std::size_t end = m_tag.find(m_tag[quote], quote + 1);
        const Attribute found = {m_tag.substr(m_at, endOfName - m_at), quote + 1, end - quote - 1};
        m_at = end + 1;
        return found;
    }

 private:
    std::string_view m_tag;
    std::size_t m_at;
    std::size_t m_endOfName;
};

std::string textOf(const PartTransform& transform) {
    std::string text;
    for (const double cell : transform.m) {
        if (!text.empty()) text += ' ';
        appendText(text, cell);
    }
    return text;
}

}  // namespace

std::vector<XmlTag> itemTags(std::string_view model, const std::string& name) {
    refuseWideCharacters(model, name);
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    std::vector<XmlTag> tags;
    std::optional<std::string> space;  // of the root; only elements of the same one count
    XmlReader* reader = nullptr;
    const auto start = [&](const XmlElement& element) {
        if (!space) {
            space = std::string(element.space());
        } else if (element.localName() == "item" && element.space() == *space) {
            tags.push_back(reader->tag());
        }
    };
    XmlReader xml(name, {start, [](const XmlName&) {}});
    reader = &xml;
    for (std::string_view rest = model; !rest.empty();
         rest.remove_prefix(rest.substr(0, kPiece).size())) {
        xml.feed(rest.substr(0, kPiece));
    }
    xml.finish();
    return tags;
}

std::string tagWithTransform(std::string_view tag, const PartTransform& transform) {
    TagScanner scanner(tag);
    std::string changed(tag);
    while (const auto attribute = scanner.next()) {
        if (attribute->name != "transform") continue;
        return changed.replace(attribute->value, attribute->size, textOf(transform));
    }
    return changed.insert(scanner.endOfName(), " transform=\"" + textOf(transform) + "\"");
}

}  // namespace Tesk::files
