#include "support/peer_extensions.h"

#include <memory>
#include <sstream>
#include <vector>

#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_utf8.h>

#include "support/child_process.h"
#include "support/hex.h"

namespace xch_test {

namespace {

// Objects whose shared memory must outlive the command that made them:
// kept until the peer ends.
std::vector<std::shared_ptr<xch::IExchangeObject>>& kept() {
    static std::vector<std::shared_ptr<xch::IExchangeObject>> objects;
    return objects;
}

std::string envelope(const std::shared_ptr<xch::IExchangeObject>& object) {
    std::wostringstream out;
    xch::ExchangeObjectWrapper(object).writeObject(out);
    return "envelope " + xch::toUtf8(out.str());
}

// block <0|1> <envelope>: loads the block geometry, answers its bytes in
// hex, then answers with block geometry of its own (the bytes reversed,
// compressed when the flag is 1, block id + 1000).
void block(const std::string& argument) {
    bool compress = argument.compare(0, 1, "1") == 0;
    xch::ExchangeObjectWrapper in;
    std::wistringstream stream(xch::fromUtf8(argument.substr(2)));
    in.readObject(stream);
    auto geometry = std::dynamic_pointer_cast<xch::ExcBlockGeometry>(in.get());
    if (geometry)
        geometry->load();
    if (!geometry || !geometry->isLoaded()) {
        writeStdoutLine("failed");
        return;
    }
    kept().push_back(geometry);
    const std::vector<char>& bytes = geometry->binaryData();
    writeStdoutLine("bytes " + toHex(bytes));
    auto answer = std::make_shared<xch::ExcBlockGeometry>();
    answer->setBlockId(geometry->blockId() + 1000);
    std::vector<char> reversed(bytes.rbegin(), bytes.rend());
    answer->setBinaryData(reversed.data(), reversed.size(), compress);
    kept().push_back(answer);
    writeStdoutLine(envelope(answer));
}

// report: the worker's own messages, one envelope each, then "end".
void report() {
    writeStdoutLine(envelope(std::make_shared<xch::ExcMessage>(L"Import of \u00e9t\u00e9.stp started")));
    writeStdoutLine(envelope(std::make_shared<xch::ExcLog>(L"reading 3 bodies")));
    writeStdoutLine(envelope(std::make_shared<xch::ExcProgress>(42, 200, true, L"tessellation")));
    writeStdoutLine(envelope(std::make_shared<xch::ExcStageFinished>(xch::ExcStageFinished::VisuAndMech)));
    writeStdoutLine("end");
}

} // namespace

bool peerExtension(const std::string& command, const std::string& argument) {
    if (command == "block") {
        block(argument);
        return true;
    }
    if (command == "report") {
        report();
        return true;
    }
    if (command == "release") {
        kept().clear();
        writeStdoutLine("released");
        return true;
    }
    return false;
}

} // namespace xch_test
