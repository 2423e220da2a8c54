#include "support/peer_echo.h"

#include <sstream>

#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_utf8.h>

namespace xch_test {

std::string envelopeLine(const std::string& command, const std::shared_ptr<xch::IExchangeObject>& object) {
    std::wostringstream out;
    xch::ExchangeObjectWrapper(object).writeObject(out);
    return command + " " + xch::toUtf8(out.str());
}

std::shared_ptr<xch::IExchangeObject> readAnswer(ChildProcess& peer) {
    std::string line;
    EXPECT_TRUE(peer.readLine(line));
    EXPECT_EQ(line.substr(0, 9), "envelope ") << line.substr(0, 200);
    if (line.compare(0, 9, "envelope ") != 0) return nullptr;
    xch::ExchangeObjectWrapper in;
    in.setReleaseAfterLoad(true);
    std::wistringstream text(xch::fromUtf8(line.substr(9)));
    in.readObject(text);
    return in.get();
}

} // namespace xch_test
