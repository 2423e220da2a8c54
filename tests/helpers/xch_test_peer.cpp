// The second process of the cross-process tests. It reads one command per
// line on standard input and answers on standard output:
//   dump <uuid>            -> hex of the shared buffer's bytes
//   write <uuid> <hex>     -> creates the buffer; "ok"
//   remove <uuid>          -> "removed" or "absent"
//   envelope <text>        -> reads the envelope (UTF-8), loads its body
//                             (releasing it) and answers "envelope <text>"
//                             with the same object
//   delayed <text>         -> as envelope, with delayed loading; "pending" first
//   block <0|1> <text>     -> loads the block geometry, answers "bytes <hex>",
//                             then an envelope of its own block geometry (the
//                             bytes reversed, compressed for 1, id + 1000)
//   make <label>           -> an envelope of a new binary record (label set)
//   report                 -> the worker's own messages, then "end"
//   bye                    -> ends; objects whose shared memory must outlive a
//                             command are kept until then
// Errors are answered as "error <message>".
#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_utf8.h>

#include "support/child_process.h"
#include "support/hex.h"
#include "support/test_types.h"

using namespace xch;
using Buffer = mp::SharedBuffer<char>;

namespace {

std::vector<std::shared_ptr<IExchangeObject>> g_kept;

std::shared_ptr<IExchangeObject> read(const std::string& text, bool delayed) {
    ExchangeObjectWrapper in;
    in.setDelayedLoading(delayed);
    in.setReleaseAfterLoad(true); // the bodies the tests send are read once
    std::wistringstream stream(fromUtf8(text));
    in.readObject(stream);
    return in.get();
}

void send(const std::shared_ptr<IExchangeObject>& object) {
    std::wostringstream out;
    ExchangeObjectWrapper(object).writeObject(out);
    xch_test::writeStdoutLine("envelope " + toUtf8(out.str()));
}

void block(const std::string& argument) {
    auto geometry = std::dynamic_pointer_cast<ExcBlockGeometry>(read(argument.substr(2), false));
    if (geometry) geometry->load();
    if (!geometry || !geometry->isLoaded()) return xch_test::writeStdoutLine("failed");
    g_kept.push_back(geometry);
    const std::vector<char>& bytes = geometry->binaryData();
    xch_test::writeStdoutLine("bytes " + xch_test::toHex(bytes));
    auto answer = std::make_shared<ExcBlockGeometry>();
    answer->setBlockId(geometry->blockId() + 1000);
    std::vector<char> reversed(bytes.rbegin(), bytes.rend());
    answer->setBinaryData(reversed.data(), reversed.size(), argument[0] == '1');
    g_kept.push_back(answer);
    send(answer);
}

void run(const std::string& command, const std::string& rest) {
    if (command == "dump") {
        xch_test::writeStdoutLine(xch_test::toHex(Buffer(fromUtf8(rest), Buffer::OpenMode::Open).read()));
    } else if (command == "write") {
        std::string name = rest.substr(0, rest.find(' '));
        std::string bytes = xch_test::fromHex(rest.substr(name.size() + 1));
        Buffer(fromUtf8(name), Buffer::OpenMode::Create).write(bytes.data(), bytes.size());
        xch_test::writeStdoutLine("ok");
    } else if (command == "remove") {
        xch_test::writeStdoutLine(Buffer::remove(fromUtf8(rest)) ? "removed" : "absent");
    } else if (command == "envelope" || command == "delayed") {
        auto object = read(rest, command == "delayed");
        if (!object) return xch_test::writeStdoutLine("none");
        if (command == "delayed") {
            xch_test::writeStdoutLine(object->isLoaded() ? "loaded" : "pending");
            object->load();
        }
        send(object);
    } else if (command == "make") {
        auto record = std::make_shared<xch_test::TestPackedRecord>();
        record->label = fromUtf8(rest);
        send(record);
    } else if (command == "block") {
        block(rest);
    } else if (command == "report") {
        send(std::make_shared<ExcMessage>(L"Import of \u00e9t\u00e9.stp started"));
        send(std::make_shared<ExcLog>(L"reading 3 bodies"));
        send(std::make_shared<ExcProgress>(42, 200, true, L"tessellation"));
        send(std::make_shared<ExcStageFinished>(ExcStageFinished::VisuAndMech));
        xch_test::writeStdoutLine("end");
    } else {
        xch_test::writeStdoutLine("error unknown command " + command);
    }
}

} // namespace

int main() {
    xch_test::registerTestTypes();
    for (std::string line; xch_test::readStdinLine(line) && line != "bye";) {
        std::string command = line.substr(0, line.find(' '));
        try {
            run(command, line.size() > command.size() ? line.substr(command.size() + 1) : std::string());
        } catch (const std::exception& e) {
            xch_test::writeStdoutLine(std::string("error ") + e.what());
        }
    }
    return 0;
}
