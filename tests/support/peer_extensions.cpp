#include "support/peer_extensions.h"

namespace xch_test {

bool peerExtension(const std::string&, const std::string&) { return false; }

} // namespace xch_test
