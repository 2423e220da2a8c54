// The second process of the cross-process tests. It reads one command per
// line on standard input and answers on standard output:
//   dump <uuid>           -> hex of the shared buffer's bytes
//   write <uuid> <hex>    -> creates the buffer; "ok"
//   remove <uuid>         -> "removed" or "absent"
//   envelope <text>       -> reads the envelope (UTF-8 text), loads its body
//                            and answers "envelope <text>" with the same
//                            object sent back in a new envelope
//   delayed <text>        -> as envelope, with delayed loading; answers
//                            "pending" before loading
//   bye                   -> ends
// Errors are answered as "error <message>".
#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_utf8.h>

#include "support/child_process.h"
#include "support/hex.h"
#include "support/peer_extensions.h"
#include "support/test_types.h"

using Buffer = mp::SharedBuffer<char>;

namespace {

std::string echoEnvelope(const std::string& text, bool delayed) {
    xch::ExchangeObjectWrapper in;
    in.setDelayedLoading(delayed);
    std::wistringstream stream(xch::fromUtf8(text));
    in.readObject(stream);
    if (!in.get())
        return "none";
    if (delayed) {
        xch_test::writeStdoutLine(in.get()->isLoaded() ? "loaded" : "pending");
        in.get()->load();
    }
    std::wostringstream out;
    xch::ExchangeObjectWrapper(in.get()).writeObject(out);
    return "envelope " + xch::toUtf8(out.str());
}

} // namespace

int main() {
    xch_test::registerTestTypes();
    std::string line;
    while (xch_test::readStdinLine(line)) {
        std::string command = line.substr(0, line.find(' '));
        std::string rest = line.size() > command.size() ? line.substr(command.size() + 1) : std::string();
        try {
            if (command == "bye") {
                break;
            } else if (command == "dump") {
                xch_test::writeStdoutLine(
                    xch_test::toHex(Buffer(xch::fromUtf8(rest), Buffer::OpenMode::Open).read()));
            } else if (command == "write") {
                std::string name = rest.substr(0, rest.find(' '));
                std::string bytes = xch_test::fromHex(rest.substr(name.size() + 1));
                Buffer(xch::fromUtf8(name), Buffer::OpenMode::Create).write(bytes.data(), bytes.size());
                xch_test::writeStdoutLine("ok");
            } else if (command == "remove") {
                xch_test::writeStdoutLine(Buffer::remove(xch::fromUtf8(rest)) ? "removed" : "absent");
            } else if (command == "envelope" || command == "delayed") {
                xch_test::writeStdoutLine(echoEnvelope(rest, command == "delayed"));
            } else if (!xch_test::peerExtension(command, rest)) {
                xch_test::writeStdoutLine("error unknown command " + command);
            }
        } catch (const std::exception& e) {
            xch_test::writeStdoutLine(std::string("error ") + e.what());
        }
    }
    return 0;
}
