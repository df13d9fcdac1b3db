#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <variant>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "Failure.h"
#include "TeskDebug/Exception.h"
#include "batch/workers/WorkerProcess.h"
#include "commands/BatchCommand.h"
#include "commands/BoxCommand.h"
#include "commands/Interrupt.h"
#include "commands/LayFlatCommand.h"
#include "commands/OrientCommand.h"
#include "options/Options.h"

namespace {

int codeOf(App::ExitCode code) {
    return static_cast<int>(code);
}

}  // namespace

int main(int argc, char** argv) {
#if defined(_WIN32)
    SetConsoleOutputCP(CP_UTF8);
#endif
    if (App::isWorkerProcess(argc, argv)) return App::runWorkerProcess(argc, argv);
    const App::Interrupt interrupt;
    try {
        if (const std::optional<App::Command> command = App::readCommand(argc, argv)) {
            std::visit([](const auto& options) { App::run(options); }, *command);
        }
        return codeOf(App::ExitCode::kSuccess);
    } catch (const App::Failure& failure) {
        fmt::print(stderr, "tesk-orient: {}\n", failure.what());
        return codeOf(failure.code());
    } catch (const Tesk::AbortException&) {
        App::Interrupt::report();
        return codeOf(App::ExitCode::kAborted);
    } catch (const std::bad_alloc&) {
        fmt::print(stderr, "tesk-orient: out of memory\n");
    } catch (const std::exception& error) {
        fmt::print(stderr, "tesk-orient: internal error: {}\n", error.what());
    }
    return codeOf(App::ExitCode::kInternal);
}
