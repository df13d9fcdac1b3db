#include "xml/XmlNamespaces.h"

namespace Tesk::files {

XmlNamespaces::XmlNamespaces() {
    m_uris["xml"].emplace_back("http://www.w3.org/XML/1998/namespace");
}

void XmlNamespaces::enter(const char** attributes) {
    constexpr std::string_view kDeclaration = "xmlns";
    ++m_depth;
    for (const char** attribute = attributes; *attribute != nullptr; attribute += 2) {
        const std::string_view name = attribute[0];
        if (name.substr(0, kDeclaration.size()) != kDeclaration) continue;
        const std::string_view rest = name.substr(kDeclaration.size());
        if (rest.empty()) {
            declare({}, attribute[1]);
        } else if (rest.front() == ':') {
            declare(rest.substr(1), attribute[1]);
        }
    }
}

void XmlNamespaces::leave() {
    while (!m_declarations.empty() && m_declarations.back().depth == m_depth) {
        m_declarations.back().prefix->second.pop_back();
        m_declarations.pop_back();
    }
    --m_depth;
}

std::optional<std::string_view> XmlNamespaces::find(std::string_view prefix) const {
    const auto found = m_uris.find(prefix);
    if (found == m_uris.end() || found->second.empty()) return std::nullopt;
    return found->second.back();
}

void XmlNamespaces::declare(std::string_view prefix, std::string_view uri) {
    auto found = m_uris.find(prefix);
    if (found == m_uris.end()) found = m_uris.emplace(prefix, std::vector<std::string>()).first;
    found->second.emplace_back(uri);
    m_declarations.push_back({found, m_depth});
}

}  // namespace Tesk::files
