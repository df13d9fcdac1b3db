#include "batch/BatchFormat.h"

#include <fmt/format.h>

namespace App {

namespace {

constexpr const char* kSchema = "tesk-orient/batch/1";

bool staysAsItIs(unsigned char c) {
    const bool isAlphanumeric =
        (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    return isAlphanumeric || c == '-' || c == '.' || c == '_' || c == '~' || c == '/';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

/// An object, or null.
Json parsed(std::string_view line) {
    Json object = Json::parse(line, nullptr, /*allow_exceptions=*/false);
    return object.is_object() ? object : Json();
}

std::string textAt(const Json& object, const char* name) {
    const auto member = object.find(name);
    return member != object.end() && member->is_string() ? member->get<std::string>()
                                                         : std::string();
}

template <class T>
Json orNull(const std::optional<T>& value) {
    return value ? Json(*value) : Json();
}

Json inputOf(const BatchEntry& entry) {
    Json input = {{"path", entry.path}};
    if (!isUtf8(entry.path)) input["pathBytes"] = percentEncoded(entry.path);
    input["size"] = entry.identity ? Json(entry.identity->size) : Json();
    input["hash"] = entry.identity ? Json(entry.identity->hash) : Json();
    return input;
}

}  // namespace

const char* codeNameOf(ExitCode code) {
    switch (code) {
        case ExitCode::kInput:
            return "cannot-read";
        case ExitCode::kOutput:
            return "cannot-write";
        case ExitCode::kNoPose:
            return "no-pose";
        case ExitCode::kUsage:
            return "invalid-settings";
        default:
            return "internal";
    }
}

std::string percentEncoded(std::string_view name) {
    std::string text;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (staysAsItIs(byte)) {
            text += c;
        } else {
            text += fmt::format("%{:02X}", byte);
        }
    }
    return text;
}

std::string percentDecoded(std::string_view text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isCode = text[i] == '%' && i + 2 < text.size() && hexDigit(text[i + 1]) >= 0 &&
                            hexDigit(text[i + 2]) >= 0;
        if (isCode) {
            name += static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
            i += 2;
        } else {
            name += text[i];
        }
    }
    return name;
}

bool isUtf8(std::string_view text) {
    // The strict error handler of dump() throws what it cannot encode.
    try {
        (void)Json(std::string(text)).dump();
        return true;
    } catch (const Json::type_error&) {
        return false;
    }
}

std::string lineOf(const Json& object) {
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string lineOf(const WorkerJob& job) {
    return lineOf(Json{{"job", job.id},
                       {"input", percentEncoded(job.input)},
                       {"output", percentEncoded(job.output)},
                       {"folder", percentEncoded(job.folder)},
                       {"report", percentEncoded(job.report)},
                       {"reportFolder", percentEncoded(job.reportFolder)}});
}

std::optional<WorkerJob> jobIn(std::string_view line) {
    const Json object = parsed(line);
    if (!object.contains("job") || !object["job"].is_number_unsigned()) return std::nullopt;
    const auto name = [&](const char* member) { return percentDecoded(textAt(object, member)); };
    return WorkerJob{object["job"].get<std::size_t>(),
                     name("input"),
                     name("output"),
                     name("folder"),
                     name("report"),
                     name("reportFolder")};
}

void takeAnswer(BatchEntry& entry, const Json& answer) {
    if (const auto peak = answer.find("peakMemoryBytes"); peak != answer.end()) {
        entry.peakMemoryBytes = peak->get<std::uint64_t>();
    }
    if (const auto result = answer.find("result"); result != answer.end()) {
        entry.status = "ok";
        entry.result = *result;
        return;
    }
    const Json error = answer.value("error", Json::object());
    entry.errorCode = error.value("code", "internal");
    entry.errorText = error.value("text", "");
    entry.status = entry.errorCode == kOutOfMemory ? kOutOfMemory : "failed";
}

std::string lineOf(const BatchEntry& entry) {
    Json line = {{"schema", kSchema},
                 {"input", inputOf(entry)},
                 {"settingsHash", entry.settingsHash},
                 {"status", entry.status}};
    if (entry.status == "ok") {
        line["result"] = entry.result;
    } else {
        line["error"] = {{"code", entry.errorCode}, {"text", entry.errorText}};
    }
    if (!entry.output.empty()) line["output"] = entry.output;
    if (!entry.report.empty()) line["report"] = entry.report;
    line["seconds"] = orNull(entry.seconds);
    line["peakMemoryBytes"] = orNull(entry.peakMemoryBytes);
    return lineOf(line);
}

std::optional<HeldLine> heldLineIn(std::string_view text) {
    const Json line = parsed(text);
    if (textAt(line, "schema") != kSchema || !line.contains("input")) return std::nullopt;
    const Json& input = line["input"];
    const std::string bytes = textAt(input, "pathBytes");
    return HeldLine{bytes.empty() ? textAt(input, "path") : percentDecoded(bytes),
                    textAt(input, "hash"), textAt(line, "settingsHash"), textAt(line, "status")};
}

}  // namespace App
