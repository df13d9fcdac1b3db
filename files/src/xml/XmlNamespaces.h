#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tesk::files {

/// The XML namespace declarations that are in force.
class XmlNamespaces {
 public:
    XmlNamespaces();

    /// At an element's start: takes the declarations among its attributes (name, value, ..., null).
    void enter(const char** attributes);

    /// At its end.
    void leave();

    /// The namespace of a prefix, which is empty for names without one; nothing if the prefix is
    /// not declared.
    std::optional<std::string_view> find(std::string_view prefix) const;

 private:
    using Uris = std::map<std::string, std::vector<std::string>, std::less<>>;

    void declare(std::string_view prefix, std::string_view uri);

    struct Declaration {
        Uris::iterator prefix;
        std::size_t depth;
    };

    Uris m_uris;  ///< of each prefix, the innermost last
    std::vector<Declaration> m_declarations;
    std::size_t m_depth = 0;
};

}  // namespace Tesk::files
