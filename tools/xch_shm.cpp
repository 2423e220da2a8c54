#include "xch_shm.h"

#include <chrono>
#include <cstdio>
#include <iostream>
#include <limits>
#include <stdexcept>

#include <mp/mp_shared_buffer.h>
#include <mp/mp_shared_cleanup.h>
#include <xch_api/xch_api_utf8.h>

namespace xch_tool {

namespace {

// Without --older-than, clean removes only buffers at least this old: a
// live peer's body is read within moments of being written, so this never
// removes a buffer in the middle of a transfer.
const std::chrono::seconds kDefaultMinimumAge = std::chrono::hours(1);

const char* const kUsage =
    "  xch shm list\n"
    "      Lists this user's exchange buffers (UUID-named shared-memory objects):\n"
    "      name, size in bytes, age (time since written) and owner.\n"
    "  xch shm clean [--older-than DURATION] [NAME...]\n"
    "      Removes this user's exchange buffers that are at least DURATION old\n"
    "      (a number with s, m, h or d; a bare number is seconds; 0 removes all).\n"
    "      Without --older-than only buffers older than 1h are removed, so that\n"
    "      a transfer in progress between live processes is never disturbed.\n"
    "      With NAMEs only those buffers are considered. Prints each name removed.\n";

std::chrono::seconds parseDuration(const std::string& text) {
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9') ++digits;
    std::string unit = text.substr(digits);
    long long factor = unit.empty() || unit == "s" ? 1 : unit == "m" ? 60 : unit == "h" ? 3600 : unit == "d" ? 86400 : 0;
    if (digits == 0 || digits > 12 || factor == 0)
        throw std::invalid_argument("invalid duration '" + text + "' (expected e.g. 30s, 10m, 2h, 1d)");
    return std::chrono::seconds(std::stoll(text.substr(0, digits)) * factor);
}

std::string formatAge(std::chrono::seconds age) {
    long long s = age.count();
    char text[32];
    if (s < 60)
        std::snprintf(text, sizeof text, "%llds", s);
    else if (s < 3600)
        std::snprintf(text, sizeof text, "%lldm%02llds", s / 60, s % 60);
    else if (s < 86400)
        std::snprintf(text, sizeof text, "%lldh%02lldm", s / 3600, s % 3600 / 60);
    else
        std::snprintf(text, sizeof text, "%lldd%02lldh", s / 86400, s % 86400 / 3600);
    return text;
}

int list() {
    std::vector<mp::ExchangeBufferInfo> buffers = mp::listExchangeBuffers();
    std::printf("%-36s %14s %8s  %s\n", "NAME", "SIZE", "AGE", "OWNER");
    for (const auto& b : buffers)
        std::printf("%-36s %14llu %8s  %s\n", xch::toUtf8(b.name).c_str(), static_cast<unsigned long long>(b.size),
                    formatAge(b.age).c_str(), xch::toUtf8(b.owner).c_str());
    return std::fflush(stdout) == 0 ? 0 : 1;
}

int clean(const std::vector<std::string>& args) {
    std::chrono::seconds minimumAge = kDefaultMinimumAge;
    std::vector<std::wstring> names;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--older-than") {
            if (i + 1 == args.size()) throw std::invalid_argument("--older-than needs a duration");
            minimumAge = parseDuration(args[++i]);
        } else if (args[i].compare(0, 13, "--older-than=") == 0) {
            minimumAge = parseDuration(args[i].substr(13));
        } else {
            std::wstring name(args[i].begin(), args[i].end());
            if (!mp::SharedBuffer<char>::isValidName(name))
                throw std::invalid_argument("not an exchange buffer name: '" + args[i] + "'");
            names.push_back(name);
        }
    }
    std::vector<std::wstring> removed = names.empty() ? mp::removeExchangeBuffersOlderThan(minimumAge)
                                                      : mp::removeExchangeBuffersOlderThan(minimumAge, names);
    for (const std::wstring& name : removed) std::printf("removed %s\n", xch::toUtf8(name).c_str());
    std::printf("%zu exchange buffer%s removed (at least %s old)\n", removed.size(), removed.size() == 1 ? "" : "s",
                formatAge(minimumAge).c_str());
    return std::fflush(stdout) == 0 ? 0 : 1;
}

} // namespace

const char* shmUsage() { return kUsage; }

int runShm(const std::vector<std::string>& args) {
    if (args.empty() || args[0] == "--help" || args[0] == "-h") {
        std::cout << "usage:\n" << kUsage;
        return args.empty() ? 2 : 0;
    }
    if (args[0] == "list") {
        if (args.size() != 1) throw std::invalid_argument("usage: xch shm list");
        return list();
    }
    if (args[0] == "clean") return clean(std::vector<std::string>(args.begin() + 1, args.end()));
    throw std::invalid_argument("unknown shm command '" + args[0] + "' (try xch shm --help)");
}

} // namespace xch_tool
