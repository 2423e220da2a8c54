// Test support: the names of the shared-memory objects that currently exist
// (UUID-named ones only), to check that an exchange leaves none behind.
#pragma once

#include <set>
#include <string>

namespace xch_test {

std::set<std::string> sharedMemoryObjects();

// Where the objects live: /dev/shm on Linux, the shared directory on
// Windows.
std::string sharedMemoryLocation();

} // namespace xch_test
