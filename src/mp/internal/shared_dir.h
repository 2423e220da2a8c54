// The directory that holds the emulated shared-memory objects on Windows.
#pragma once

#include <string>

namespace mp {
namespace internal {

// "<temp>\mp-v26-Quillaro_26_MultiProcess\<boot stamp>": the user's
// temporary directory (GetTempPathA), the fixed per-release directory and a
// per-boot subdirectory, each created when missing. Throws
// boost::interprocess::interprocess_exception when a directory cannot be
// created for another reason than that it already exists.
std::string sharedDirectory();

// The fixed per-release directory without the boot stamp.
std::string releaseDirectory();

} // namespace internal
} // namespace mp
