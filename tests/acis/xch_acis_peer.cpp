// The second process of the ACIS binding's cross-process test: the host
// side. It reads one command per line on standard input:
//   geometry <envelope>  -> reads the ExcBlockGeometry, load()s and
//                           getGeometry()s it and answers
//                           "block <id> product <product id> units <units> ids <face ids>"
//                           (bodies separated by " |"), or "not loaded" /
//                           "not restored"
//   bye                  -> ends
#include <memory>
#include <sstream>
#include <string>

#include "fileinfo.hxx"
#include "kernapi.hxx"

#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_utf8.h>

#include "acis/acis_models.h"
#include "support/child_process.h"

namespace {

std::string restore(const std::string& envelope) {
    xch::ExchangeObjectWrapper in;
    std::wistringstream stream(xch::fromUtf8(envelope));
    in.readObject(stream);
    auto geometry = std::dynamic_pointer_cast<xch::ExcBlockGeometry>(in.get());
    if (!geometry) return "no block geometry";
    geometry->load();
    if (!geometry->isLoaded()) return "not loaded";
    xch_test::OwnedEntities restored;
    if (!geometry->getGeometry(restored.list)) return "not restored";
    FileInfo info;
    api_get_file_info(info);
    std::ostringstream answer;
    answer << "block " << geometry->blockId() << " product " << info.product_id() << " units " << info.units()
           << " ids";
    for (int i = 0; i < restored.list.count(); ++i) {
        if (i > 0) answer << " |";
        for (long id : xch_test::faceIds(restored.list[i])) answer << ' ' << id;
    }
    return answer.str();
}

} // namespace

int main() {
    for (std::string line; xch_test::readStdinLine(line) && line != "bye";) {
        const std::string command = line.substr(0, line.find(' '));
        try {
            if (command == "geometry")
                xch_test::writeStdoutLine(restore(line.substr(command.size() + 1)));
            else
                xch_test::writeStdoutLine("error unknown command " + command);
        } catch (const std::exception& e) {
            xch_test::writeStdoutLine(std::string("error ") + e.what());
        }
    }
    return 0;
}
