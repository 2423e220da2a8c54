#include "support/log_capture.h"

#include <atomic>
#include <cstdio>
#include <fstream>

#include <logging/vx_link_logger.h>

#if defined(_WIN32)
#  include <windows.h>
#else
#  include <unistd.h>
#endif

namespace xch_test {

std::string tempPath(const std::string& stem) {
    static std::atomic<int> counter{0};
#if defined(_WIN32)
    char dir[MAX_PATH + 1] = {0};
    std::string base(dir, GetTempPathA(sizeof dir, dir));
    unsigned long pid = GetCurrentProcessId();
#else
    std::string base = "/tmp/";
    unsigned long pid = static_cast<unsigned long>(getpid());
#endif
    return base + "xch_test_" + std::to_string(pid) + "_" + std::to_string(counter++) + "_" + stem;
}

LogCapture::LogCapture(int level) : m_path(tempPath("log.txt")) {
    vx_link::LoggerHolder::initLogger(level, m_path);
    m_skip = allLines().size();
}

LogCapture::~LogCapture() {
    // A path that cannot be opened leaves no logger: later tests start with
    // logging off, and the file is released.
    vx_link::LoggerHolder::initLogger(6, m_path + ".missing/none/log.txt");
    std::remove(m_path.c_str());
}

std::vector<std::string> LogCapture::allLines() const {
    std::vector<std::string> out;
    std::ifstream in(m_path);
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

std::vector<std::string> LogCapture::lines() const {
    std::vector<std::string> all = allLines();
    return std::vector<std::string>(all.begin() + static_cast<long>(std::min(m_skip, all.size())), all.end());
}

std::vector<std::string> LogCapture::messages(int level) const {
    static const char* const tags[] = {"", "[FATAL]   ", "[ERROR]   ", "[WARNING] ",
                                       "[INFO]    ", "[DEBUG]   ", "[TRACE]   "};
    std::vector<std::string> out;
    for (const std::string& line : lines()) {
        if (level != 0 && line.compare(0, 10, tags[level]) != 0) continue;
        // "[ERROR]   [14.11.2026 08:29:06] [5120] text" -> "text"
        std::size_t thread = line.find("] ", line.find("] [", 10) + 3);
        out.push_back(thread == std::string::npos ? line : line.substr(thread + 2));
    }
    return out;
}

bool LogCapture::has(const std::string& message) const { return count(message) > 0; }

int LogCapture::count(const std::string& message) const {
    int n = 0;
    for (const std::string& m : messages()) n += m == message;
    return n;
}

void LogCapture::clear() { m_skip = allLines().size(); }

} // namespace xch_test
