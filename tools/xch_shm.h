// `xch shm`: lists and removes this user's exchange buffers (the UUID-named
// shared-memory objects that carry envelope bodies and block geometry).
#pragma once

#include <string>
#include <vector>

namespace xch_tool {

// The help text of the shm subcommands.
const char* shmUsage();

// Runs `xch shm ARGS...` (ARGS without "shm"); returns the exit status.
// Throws std::exception on failures that are reported as one error line.
int runShm(const std::vector<std::string>& args);

} // namespace xch_tool
