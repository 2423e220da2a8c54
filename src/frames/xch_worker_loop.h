// The command loop of a translator worker: reads "command" frames until the
// host closes its end and answers each one, calling the worker's own
// handlers for what only it can do (describe itself, import a file).
#pragma once

#include <cstdio>
#include <functional>
#include <string>

#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_result.h>

namespace xch {
namespace frames {

struct WorkerHandlers {
    // Sends the worker's description (an "info" frame).
    std::function<void()> describe;
    // Translates a file; the handler ends the job with its own Result.
    std::function<void(const ImportOptions&)> import;
    // Sends a finished Result with this code and message.
    std::function<void(Result::ECode, const std::wstring&)> result;
    // How an export command, which a reading worker does not do, is answered.
    Result::ECode exportCode = Result::Error;
};

// Answers commands until the input ends between frames: a description
// followed by an Ok result, Ok to a ping, the import handler for an import,
// and an error result for a command that cannot be read or done. Throws what
// readFrame and the handlers throw (a peer that died).
void serveCommands(std::FILE* in, const WorkerHandlers& handlers);

} // namespace frames
} // namespace xch
