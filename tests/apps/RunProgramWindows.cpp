#include <windows.h>

#include <chrono>
#include <stdexcept>

#include "RunProgram.h"

namespace {

using Clock = std::chrono::steady_clock;

/// An argument as the C library's start-up code takes it apart again: in quotes, a backslash before
/// each quote and before each backslash that a quote follows.
std::wstring quoted(const std::string& argument) {
    const std::wstring wide =
        std::filesystem::path(std::u8string(argument.begin(), argument.end())).wstring();
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : wide) {
        if (c == L'"') text.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        text += c;
    }
    text.append(backslashes, L'\\');
    return text + L'"';
}

/// A file that a child can inherit.
class File {
 public:
    File(const std::filesystem::path& path, DWORD access, DWORD creation) {
        SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        m_handle = CreateFileW(path.wstring().c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                               &inheritable, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (m_handle == INVALID_HANDLE_VALUE) throw std::runtime_error("cannot open a file");
    }
    ~File() { CloseHandle(m_handle); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    HANDLE handle() const { return m_handle; }

 private:
    HANDLE m_handle;
};

/// Where memory is laid out at random, Wine fails to start one process of a thousand; what the
/// tests are about is what the program does once it runs.
PROCESS_INFORMATION startProcess(const std::string& program, std::wstring& line,
                                 STARTUPINFOW& startup) {
    constexpr int kAttempts = 5;
    PROCESS_INFORMATION process{};
    for (int attempt = 1;; ++attempt) {
        if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                           &startup, &process) != FALSE) {
            return process;
        }
        const DWORD error = GetLastError();
        if (attempt == kAttempts) {
            throw std::runtime_error("cannot start " + program + ": Windows error " +
                                     std::to_string(error));
        }
        Sleep(500);
    }
}

int runToItsEnd(const std::string& program, const std::vector<std::string>& arguments,
                const std::string& out, const std::string& error) {
    std::wstring line = quoted(program);
    for (const std::string& argument : arguments) line += L' ' + quoted(argument);
    const File input("NUL", GENERIC_READ, OPEN_EXISTING);
    const File output(out, GENERIC_WRITE, CREATE_ALWAYS);
    const File errors(error, GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.handle();
    startup.hStdOutput = output.handle();
    startup.hStdError = errors.handle();
    const PROCESS_INFORMATION process = startProcess(program, line, startup);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(code);
}

/// Text mode ends lines with two characters.
std::string withPlainLineEnds(std::string text) {
    std::erase(text, '\r');
    return text;
}

}  // namespace

ProgramResult run(const std::string& program, const std::vector<std::string>& arguments,
                  int interruptAfterMs, InheritedSigint) {
    if (interruptAfterMs >= 0) throw std::runtime_error("programs cannot be interrupted here");
    const TemporaryFolder folder;
    const auto since = Clock::now();
    ProgramResult result;
    result.code = runToItsEnd(program, arguments, folder.file("out"), folder.file("error"));
    result.seconds = std::chrono::duration<double>(Clock::now() - since).count();
    result.out = withPlainLineEnds(readAll(folder.file("out")));
    result.error = withPlainLineEnds(readAll(folder.file("error")));
    return result;
}

bool canInterrupt() {
    return false;
}
