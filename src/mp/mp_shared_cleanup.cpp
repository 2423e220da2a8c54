#include <mp/mp_shared_cleanup.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include <mp/mp_shared_buffer.h>

#if defined(_WIN32)
#  include <windows.h>
#  include <mp/internal/shared_dir.h>
#else
#  include <dirent.h>
#  include <fcntl.h>
#  include <pwd.h>
#  include <sys/stat.h>
#  include <time.h>
#  include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace mp {

namespace {

struct Found {
    ExchangeBufferInfo info;
    fs::path path;  // Windows: the object's file
    bool current = true; // Windows: in this boot's directory (Boost removes it)
};

std::wstring widen(const std::string& ascii) { return std::wstring(ascii.begin(), ascii.end()); }

#if defined(_WIN32)

std::wstring userName() {
    wchar_t name[256] = {0};
    DWORD size = 256;
    return GetUserNameW(name, &size) ? std::wstring(name) : std::wstring(L"?");
}

std::vector<Found> scan() {
    std::vector<Found> out;
    std::string release;
    fs::path current;
    try {
        release = internal::releaseDirectory();
        current = fs::path(internal::sharedDirectory());
    } catch (const std::exception& e) {
        throw SharedMemoryException(std::string("cannot find the shared memory directory: ") + e.what());
    }
    std::error_code error;
    if (!fs::exists(release, error)) return out;
    const std::wstring owner = userName();
    const auto now = fs::file_time_type::clock::now();
    for (fs::recursive_directory_iterator it(release, error), end; !error && it != end; it.increment(error)) {
        std::error_code statError;
        if (!it->is_regular_file(statError) || statError) continue;
        std::wstring name = it->path().filename().wstring();
        if (!SharedBuffer<char>::isValidName(name)) continue;
        Found found;
        found.info.name = name;
        found.info.size = it->file_size(statError);
        auto written = it->last_write_time(statError);
        if (statError) continue;
        found.info.age = std::max(std::chrono::seconds(0),
                                  std::chrono::duration_cast<std::chrono::seconds>(now - written));
        found.info.owner = owner;
        found.path = it->path();
        found.current = fs::equivalent(it->path().parent_path(), current, statError);
        out.push_back(found);
    }
    if (error) throw SharedMemoryException("cannot list " + release + ": " + error.message());
    return out;
}

bool removeFound(const Found& found) {
    if (found.current) return SharedBuffer<char>::remove(found.info.name);
    std::error_code error;
    return fs::remove(found.path, error);
}

#else

const char* const kLocation = "/dev/shm";

std::wstring ownerName(uid_t uid) {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* result = nullptr;
    if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &result) == 0 && result)
        return widen(result->pw_name);
    return std::to_wstring(uid);
}

std::vector<Found> scan() {
    std::vector<Found> out;
    DIR* dir = opendir(kLocation);
    if (!dir) {
        std::error_code error(errno, std::generic_category());
        if (error == std::errc::no_such_file_or_directory) return out;
        throw SharedMemoryException(std::string("cannot list ") + kLocation + ": " + error.message());
    }
    const uid_t self = geteuid();
    const std::wstring owner = ownerName(self);
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    while (dirent* entry = readdir(dir)) {
        std::string name = entry->d_name;
        if (!SharedBuffer<char>::isValidName(widen(name))) continue;
        struct stat info {};
        // Never follows a link; objects that vanished meanwhile are skipped.
        if (fstatat(dirfd(dir), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) continue;
        if (!S_ISREG(info.st_mode) || info.st_uid != self) continue;
        Found found;
        found.info.name = widen(name);
        found.info.size = static_cast<std::uint64_t>(info.st_size);
        found.info.age = std::chrono::seconds(std::max<long long>(0, now.tv_sec - info.st_mtim.tv_sec));
        found.info.owner = owner;
        out.push_back(found);
    }
    closedir(dir);
    return out;
}

bool removeFound(const Found& found) { return SharedBuffer<char>::remove(found.info.name); }

#endif

std::vector<std::wstring> removeOld(std::chrono::seconds minimumAge, const std::set<std::wstring>* only) {
    std::vector<std::wstring> removed;
    for (const Found& found : scan()) {
        if (found.info.age < minimumAge) continue;
        if (only && !only->count(found.info.name)) continue;
        try {
            if (removeFound(found)) removed.push_back(found.info.name);
        } catch (const SharedMemoryException&) {
            // Removed by someone else meanwhile, or not removable: skipped.
        }
    }
    std::sort(removed.begin(), removed.end());
    return removed;
}

} // namespace

std::vector<ExchangeBufferInfo> listExchangeBuffers() {
    std::vector<ExchangeBufferInfo> out;
    for (Found& found : scan()) out.push_back(std::move(found.info));
    std::sort(out.begin(), out.end(),
              [](const ExchangeBufferInfo& a, const ExchangeBufferInfo& b) { return a.name < b.name; });
    return out;
}

std::vector<std::wstring> removeExchangeBuffersOlderThan(std::chrono::seconds minimumAge) {
    return removeOld(minimumAge, nullptr);
}

std::vector<std::wstring> removeExchangeBuffersOlderThan(std::chrono::seconds minimumAge,
                                                         const std::vector<std::wstring>& names) {
    std::set<std::wstring> only;
    for (const std::wstring& name : names)
        if (SharedBuffer<char>::isValidName(name)) only.insert(name);
    return removeOld(minimumAge, &only);
}

} // namespace mp
