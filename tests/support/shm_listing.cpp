#include "support/shm_listing.h"

#include <filesystem>

#include <mp/mp_shared_buffer.h>

#if defined(_WIN32)
#  include <windows.h>
#endif

namespace xch_test {

std::string sharedMemoryLocation() {
#if defined(_WIN32)
    char temp[MAX_PATH + 1] = {0};
    std::string dir(temp, GetTempPathA(sizeof temp, temp));
    if (!dir.empty() && dir.back() != '\\') dir += '\\';
    return dir + "mp-v26-Quillaro_26_MultiProcess";
#else
    return "/dev/shm";
#endif
}

std::set<std::string> sharedMemoryObjects() {
    // On Windows the objects are files in per-boot subdirectories.
    std::set<std::string> out;
    std::error_code error;
    for (std::filesystem::recursive_directory_iterator it(sharedMemoryLocation(), error), end; !error && it != end;
         it.increment(error)) {
        std::string name = it->path().filename().string();
        if (mp::SharedBuffer<char>::isValidName(std::wstring(name.begin(), name.end()))) out.insert(name);
    }
    return out;
}

} // namespace xch_test
