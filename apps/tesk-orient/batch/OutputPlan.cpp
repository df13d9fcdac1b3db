#include "batch/OutputPlan.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <unordered_map>
#include <unordered_set>

#include "Failure.h"
#include "part/MeshOutput.h"
#include "part/PathText.h"

namespace App {

namespace {

namespace fs = std::filesystem;
using Name = fs::path::string_type;

/// What two paths of one file have in common. Links in folders are followed, each folder once.
class Keys {
 public:
    Name of(const fs::path& file) {
        const fs::path folder = file.parent_path();
        const auto [at, isNew] = m_folders.try_emplace(folder.native());
        if (isNew) at->second = real(folder);
        Name key = (at->second / file.filename()).lexically_normal().native();
#if defined(_WIN32)
        for (auto& c : key) {
            if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
        }
#endif
        return key;
    }

 private:
    static fs::path real(const fs::path& folder) {
        std::error_code error;
        fs::path path = fs::absolute(folder.empty() ? fs::path(".") : folder, error);
        const fs::path canonical = fs::weakly_canonical(path, error);
        return error ? path : canonical;
    }

    std::unordered_map<Name, fs::path> m_folders;
};

void removeIn(const fs::path& folder, const std::unordered_set<Name>& outputs) {
    std::error_code error;
    std::vector<fs::path> leftovers;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        const fs::path name = outputOfTemporary(at->path().filename());
        if (!name.empty() && outputs.count(name.native()) != 0) leftovers.push_back(at->path());
    }
    for (const fs::path& path : leftovers) fs::remove(path, error);
}

}  // namespace

std::vector<PlannedOutput> planOutputs(const std::vector<BatchInput>& inputs,
                                       const fs::path& folder, const std::string& extension) {
    std::vector<PlannedOutput> plan(inputs.size());
    if (folder.empty()) return plan;
    Keys keys;
    std::unordered_map<Name, std::size_t> inputAt;
    for (std::size_t i = 0; i < inputs.size(); ++i) inputAt.emplace(keys.of(inputs[i].path), i);
    std::unordered_map<Name, std::size_t> outputOf;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        fs::path output = folder / inputs[i].relative;
        if (!extension.empty()) output.replace_extension(extension);
        const Name key = keys.of(output);
        const auto input = inputAt.find(key);
        const auto [taken, isFree] = outputOf.try_emplace(key, i);
        if (input != inputAt.end()) {
            plan[i].problem = fmt::format("cannot be written: it is the input {}",
                                          displayName(inputs[input->second].path));
        } else if (!isFree) {
            plan[i].problem = fmt::format("cannot be written: it is the output of {} already",
                                          displayName(inputs[taken->second].path));
        }
        plan[i].path = std::move(output);
    }
    return plan;
}

void makeFolderFor(const fs::path& output, const fs::path& folder) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        throw Failure(ExitCode::kOutput,
                      fmt::format("{}: cannot be written: the output folder {} is gone",
                                  displayName(output), displayName(folder)));
    }
    fs::create_directories(output.parent_path(), error);
    if (error) {
        throw Failure(ExitCode::kOutput,
                      fmt::format("{}: cannot be written: {}: {}", displayName(output),
                                  displayName(output.parent_path()), error.message()));
    }
}

void removeLeftovers(const fs::path& output) {
    if (!output.empty()) removeIn(output.parent_path(), {output.filename().native()});
}

void removeLeftovers(const std::vector<PlannedOutput>& outputs) {
    std::unordered_map<Name, std::unordered_set<Name>> namesIn;
    for (const PlannedOutput& output : outputs) {
        if (!output.path.empty())
            namesIn[output.path.parent_path().native()].insert(output.path.filename().native());
    }
    for (const auto& [folder, names] : namesIn) removeIn(folder, names);
}

}  // namespace App
