// Test support: further commands of the cross-process test peer, for the
// model classes (block geometry, messages). Returns false for a command it
// does not know.
#pragma once

#include <string>

namespace xch_test {

bool peerExtension(const std::string& command, const std::string& argument);

} // namespace xch_test
