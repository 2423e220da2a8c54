#if defined(_WIN32)

#include <mp/internal/shared_dir.h>

#include <cstdio>

#include <windows.h>

#include <boost/interprocess/exceptions.hpp>

namespace mp {
namespace internal {

namespace {

void createDirectory(const std::string& path) {
    if (!CreateDirectoryA(path.c_str(), nullptr)) {
        DWORD error = GetLastError();
        if (error != ERROR_ALREADY_EXISTS)
            throw boost::interprocess::interprocess_exception(
                boost::interprocess::error_info(static_cast<int>(error)));
    }
}

// The system boot time as text, so that objects of an earlier boot are not
// found. Taken from the kernel's time-of-day information; empty when that
// is not available (all objects then share the release directory).
std::string bootStamp() {
    struct TimeOfDay {
        LARGE_INTEGER bootTime;
        LARGE_INTEGER currentTime;
        LARGE_INTEGER timeZoneBias;
        ULONG timeZoneId;
        ULONG reserved;
        ULONGLONG bootTimeBias;
        ULONGLONG sleepTimeBias;
    };
    using Query = LONG(WINAPI*)(int, void*, ULONG, ULONG*);
    HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    if (!ntdll)
        return std::string();
    auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(ntdll, "NtQuerySystemInformation")));
    if (!query)
        return std::string();
    TimeOfDay info{};
    ULONG size = 0;
    const int kSystemTimeOfDayInformation = 3;
    if (query(kSystemTimeOfDayInformation, &info, sizeof info, &size) < 0 || info.bootTime.QuadPart == 0)
        return std::string();
    // Whole seconds, so that rounding in the kernel's value cannot split
    // one boot into two stamps.
    unsigned long long seconds = static_cast<unsigned long long>(info.bootTime.QuadPart) / 10000000ULL;
    char text[32];
    std::snprintf(text, sizeof text, "%llu", seconds);
    return text;
}

} // namespace

std::string releaseDirectory() {
    char temp[MAX_PATH + 1] = {0};
    DWORD length = GetTempPathA(sizeof temp, temp);
    if (length == 0 || length > MAX_PATH)
        throw boost::interprocess::interprocess_exception(
            boost::interprocess::error_info(static_cast<int>(GetLastError())));
    std::string dir(temp, length);
    if (dir.back() != '\\')
        dir += '\\';
    dir += "mp-v26-";
    dir += "Quillaro_26_MultiProcess";
    return dir;
}

std::string sharedDirectory() {
    std::string dir = releaseDirectory();
    createDirectory(dir);
    std::string stamp = bootStamp();
    if (!stamp.empty()) {
        dir += '\\';
        dir += stamp;
        createDirectory(dir);
    }
    return dir;
}

} // namespace internal
} // namespace mp

#endif
