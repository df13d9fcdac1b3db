#include "batch/InputList.h"

#include <algorithm>
#include <istream>
#include <iterator>
#include <system_error>
#include <unordered_set>

#include "batch/Glob.h"
#include "part/PathText.h"

namespace App {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFormats[] = {"*.stl", "*.obj", "*.ply", "*.off", "*.3mf"};

std::string genericName(const fs::path& path) {
    const std::u8string name = path.generic_u8string();
    return {name.begin(), name.end()};
}

/// Absolute, without "." and "..", links not followed.
fs::path plain(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    fs::path normal = (error ? path : absolute).lexically_normal();
    return normal.has_filename() ? normal : normal.parent_path();
}

/// Whether the path stays below the folder that it is taken from.
bool staysBelow(const fs::path& path) {
    if (path.is_absolute() || path.has_root_name() || path.empty()) return false;
    return std::none_of(path.begin(), path.end(), [](const fs::path& p) { return p == ".."; });
}

class Lister {
 public:
    explicit Lister(const InputRequest& request)
        : m_request(request), m_hasOneRoot(request.given.size() + request.listed.size() == 1) {
        if (!request.results.empty()) m_seen.insert(plain(request.results).native());
        for (const fs::path& folder : request.outputFolders) {
            if (!folder.empty()) m_outputs.insert(plain(folder).native());
        }
    }

    void take(const fs::path& path, const fs::path& relative) {
        std::error_code ignored;
        const fs::file_status status = fs::status(path, ignored);
        if (fs::is_directory(status)) {
            search(path, fs::path(), m_hasOneRoot ? fs::path() : relative);
            return;
        }
        // Pipes and devices may never end.
        const bool isFile = fs::is_regular_file(status) || !fs::exists(status);
        add(path, relative, isFile ? "" : "is not a regular file");
    }

    std::vector<BatchInput> result() { return std::move(m_inputs); }

 private:
    void add(const fs::path& path, const fs::path& relative, std::string problem) {
        if (!m_seen.insert(plain(path).native()).second) return;
        m_inputs.push_back({path, relative.lexically_normal(), std::move(problem)});
    }

    bool isWanted(const fs::path& relative) const {
        const std::string name = genericName(relative);
        const auto matches = [&](const auto& pattern) { return globMatchesFile(pattern, name); };
        if (m_request.include.empty())
            return std::any_of(std::begin(kFormats), std::end(kFormats), matches);
        return std::any_of(m_request.include.begin(), m_request.include.end(), matches);
    }

    void search(const fs::path& folder, const fs::path& below, const fs::path& prefix) {
        if (!below.empty() && m_outputs.count(plain(folder).native()) != 0) return;
        std::vector<fs::directory_entry> entries;
        std::error_code error;
        for (fs::directory_iterator at(folder, error), end; !error && at != end;
             at.increment(error)) {
            entries.push_back(*at);
        }
        if (error) add(folder, prefix / below, "the folder cannot be read: " + error.message());
        std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
            return a.path().native() < b.path().native();
        });
        for (const fs::directory_entry& entry : entries) {
            visit(entry, below / entry.path().filename(), prefix);
        }
    }

    void visit(const fs::directory_entry& entry, const fs::path& below, const fs::path& prefix) {
        std::error_code ignored;
        const fs::file_status status = entry.status(ignored);
        if (fs::is_directory(status)) {
            if (!entry.is_symlink(ignored)) search(entry.path(), below, prefix);
            return;
        }
        // A link that leads nowhere is a part that is missing.
        const bool isFile = fs::is_regular_file(status) || !fs::exists(status);
        if (isFile && isWanted(below)) add(entry.path(), prefix / below, "");
    }

    const InputRequest& m_request;
    bool m_hasOneRoot;
    std::unordered_set<fs::path::string_type> m_outputs;
    std::vector<BatchInput> m_inputs;
    std::unordered_set<fs::path::string_type> m_seen;
};

}  // namespace

std::vector<fs::path> namesIn(std::string_view list) {
    const char separator = list.find('\0') == std::string_view::npos ? '\n' : '\0';
    std::vector<fs::path> names;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(separator), list.size());
        std::string name(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
#if defined(_WIN32)
        if (separator == '\n' && name.ends_with('\r')) name.pop_back();
#endif
        if (!name.empty()) names.push_back(pathOf(name));
    }
    return names;
}

std::string readToEnd(std::istream& in) {
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<BatchInput> listInputs(const InputRequest& request) {
    Lister lister(request);
    for (const fs::path& path : request.given) lister.take(path, plain(path).filename());
    for (const fs::path& path : request.listed) {
        const fs::path normal = path.lexically_normal();
        lister.take(path, staysBelow(normal) ? normal : plain(path).filename());
    }
    return lister.result();
}

}  // namespace App
