#include <frames/xch_worker_loop.h>

#include <cstring>
#include <sstream>
#include <stdexcept>

#include <frames/xch_frames.h>
#include <xch_api/xch_api_utf8.h>

namespace xch {
namespace frames {

void serveCommands(std::FILE* in, const WorkerHandlers& handlers) {
    std::string kind;
    std::wstring text;
    while (readFrame(in, kind, text)) {
        if (kind != "command")
            continue;
        Command command;
        std::wistringstream stream(text);
        try {
            command.readObject(stream);
        } catch (const std::invalid_argument& e) {
            handlers.result(Result::Error, L"Bad command: " + fromUtf8(e.what(), std::strlen(e.what())));
            continue;
        }
        switch (command.type()) {
        case Command::Info:
            handlers.describe();
            handlers.result(Result::Ok, L"");
            break;
        case Command::Ping:
            handlers.result(Result::Ok, L"");
            break;
        case Command::Import:
            if (command.importOptions())
                handlers.import(*command.importOptions());
            else
                handlers.result(Result::Error, L"This worker has no legacy interface.");
            break;
        case Command::Export:
            handlers.result(handlers.exportCode, L"This worker does not export files.");
            break;
        default:
            handlers.result(Result::Error, L"Unknown command.");
        }
    }
}

} // namespace frames
} // namespace xch
