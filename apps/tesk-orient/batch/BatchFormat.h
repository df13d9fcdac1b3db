#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Failure.h"
#include "batch/ContentHash.h"
#include "reports/ReportValues.h"

/// What a batch writes and what its processes say to each other.
///
/// **The results file** has one JSON object per line, in the order in which the files ended. A line
/// ends in a line feed; a last line without one is torn, and a batch that resumes cuts it off.
///
///     {"schema": "tesk-orient/batch/1",
///      "input": {"path": "parts/a.stl", "size": 684, "hash": "xxh128:<32 hex digits>"},
///      "settingsHash": "xxh128:<32 hex digits>",
///      "status": "ok",
///      "result": {"schema": "tesk-orient/orient/2", ...},
///      "output": "out/a.stl",
///      "report": "pages/a.html",
///      "seconds": 0.012, "peakMemoryBytes": 9437184}
///
/// - `path` is the file's name as it was given or found. Where a name is not UTF-8, `path` has
///   U+FFFD in place of what is wrong, and `pathBytes` the bytes themselves, percent-encoded.
/// - `size` and `hash` are null where the file could not be read.
/// - `settingsHash` stands for the program's version, the command, its options and the form of the
///   output.
/// - `status` is "ok", or "failed", "timeout", "crashed" or "out-of-memory"; then there is no
///   `result` but `"error": {"code": "cannot-read", "text": "..."}`. The codes are "cannot-read",
///   "cannot-write", "no-pose", "invalid-settings" and "internal" of a part that failed, and else
///   the status again.
/// - `output` and `report` are there where a part or a page was written.
/// - `seconds` is the time from handing the job out to its end, and `peakMemoryBytes` the most
///   memory that the worker held meanwhile (on Windows: since it was started). Null where the file
///   was not handed to a worker; the peak also where the worker did not live to tell it.
///
/// **A worker** is `tesk-orient batch-worker MEMORY-LIMIT COMMAND [OPTION...]`, with the limit in
/// bytes (0 for none) and the options of the command but for the part and the output. It says
///
///     {"ready": true}
///
/// and is then told one job after another, a line each, on its standard input:
///
///     {"job": 7, "input": "parts/a%20b.stl", "output": "out/a%20b.stl", "folder": "out",
///      "report": "pages/a%20b.html", "reportFolder": "pages"}
///
/// Names are percent-encoded, as they may hold any byte. `output` and `report` are empty for none;
/// `folder` and `reportFolder` are the folders that they are below. These have to be there, while
/// folders below them are made. The worker answers each job with one line on its standard output:
///
///     {"job": 7, "result": {...}, "peakMemoryBytes": 9437184}
///     {"job": 7, "error": {"code": "cannot-read", "text": "..."}, "peakMemoryBytes": 9437184}
///
/// When its standard input ends, it removes what is half written and ends at once.
namespace App {

/// The code of a failure's kind in a line.
const char* codeNameOf(ExitCode code);

constexpr const char* kOutOfMemory = "out-of-memory";

/// A name with all bytes but letters, digits and "-._~/" as %XX.
std::string percentEncoded(std::string_view name);
/// The name again. A % that no two hex digits follow stays.
std::string percentDecoded(std::string_view text);

bool isUtf8(std::string_view text);

/// One JSON object and a line feed. Bytes that are no UTF-8 are replaced.
std::string lineOf(const Json& object);

/// What a worker is told.
struct WorkerJob {
    std::size_t id = 0;
    std::string input;   ///< as displayName() gives it
    std::string output;  ///< empty for none
    std::string folder;  ///< the output folder
    std::string report;  ///< empty for none
    std::string reportFolder;
};

std::string lineOf(const WorkerJob& job);
/// Empty where the line is none.
std::optional<WorkerJob> jobIn(std::string_view line);

/// How a file ended, in the order of a line's members.
struct BatchEntry {
    std::string path;
    std::optional<FileIdentity> identity;
    std::string settingsHash;
    std::string status;
    Json result;  ///< of "ok"; else null
    std::string errorCode;
    std::string errorText;
    std::string output;  ///< empty for none
    std::string report;  ///< empty for none
    std::optional<double> seconds;
    std::optional<std::uint64_t> peakMemoryBytes;
};

/// Puts what a worker answered into the entry: status, result or error, memory.
void takeAnswer(BatchEntry& entry, const Json& answer);

std::string lineOf(const BatchEntry& entry);

/// What a later run needs to know of a line.
struct HeldLine {
    std::string path;  ///< the bytes
    std::string hash;  ///< empty where the file could not be read
    std::string settingsHash;
    std::string status;
};

/// Empty where the text is no line of a results file.
std::optional<HeldLine> heldLineIn(std::string_view text);

}  // namespace App
