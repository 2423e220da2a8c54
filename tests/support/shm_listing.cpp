#include "support/shm_listing.h"

#include <mp/mp_shared_buffer.h>

#if defined(_WIN32)
#  include <windows.h>
#else
#  include <dirent.h>
#endif

namespace xch_test {

#if defined(_WIN32)

std::string sharedMemoryLocation() {
    char temp[MAX_PATH + 1] = {0};
    DWORD n = GetTempPathA(sizeof temp, temp);
    std::string dir(temp, n);
    if (!dir.empty() && dir.back() != '\\') dir += '\\';
    return dir + "mp-v26-Quillaro_26_MultiProcess";
}

namespace {
void collect(const std::string& dir, std::set<std::string>& out, int depth) {
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA((dir + "\\*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return;
    do {
        std::string name = data.cFileName;
        if (name == "." || name == "..") continue;
        if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            if (depth < 2) collect(dir + "\\" + name, out, depth + 1);
        } else if (mp::SharedBuffer<char>::isValidName(std::wstring(name.begin(), name.end()))) {
            out.insert(name);
        }
    } while (FindNextFileA(find, &data));
    FindClose(find);
}
} // namespace

std::set<std::string> sharedMemoryObjects() {
    std::set<std::string> out;
    collect(sharedMemoryLocation(), out, 0);
    return out;
}

#else

std::string sharedMemoryLocation() { return "/dev/shm"; }

std::set<std::string> sharedMemoryObjects() {
    std::set<std::string> out;
    if (DIR* dir = opendir("/dev/shm")) {
        while (dirent* entry = readdir(dir)) {
            std::string name = entry->d_name;
            if (mp::SharedBuffer<char>::isValidName(std::wstring(name.begin(), name.end())))
                out.insert(name);
        }
        closedir(dir);
    }
    return out;
}

#endif

} // namespace xch_test
