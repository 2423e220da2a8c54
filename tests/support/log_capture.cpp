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
    GetTempPathA(sizeof dir, dir);
    std::string base(dir);
    unsigned long pid = GetCurrentProcessId();
#else
    std::string base = "/tmp/";
    unsigned long pid = static_cast<unsigned long>(getpid());
#endif
    return base + "xch_test_" + std::to_string(pid) + "_" + std::to_string(counter++) + "_" + stem;
}

LogCapture::LogCapture(int level) : m_path(tempPath("log.txt")) {
    std::remove(m_path.c_str());
    vx_link::LoggerHolder::initLogger(level, m_path);
    m_skip = allLines().size();
}

LogCapture::~LogCapture() {
    // Point the process log at a path that cannot be opened: no logger
    // remains, so later tests start with logging off.
    vx_link::LoggerHolder::initLogger(6, m_path + ".missing/none/log.txt");
    std::remove(m_path.c_str());
}

std::vector<std::string> LogCapture::allLines() const {
    std::vector<std::string> out;
    std::ifstream in(m_path);
    std::string line;
    while (std::getline(in, line))
        out.push_back(line);
    return out;
}

std::vector<std::string> LogCapture::lines() const {
    std::vector<std::string> all = allLines();
    if (m_skip >= all.size())
        return {};
    return std::vector<std::string>(all.begin() + static_cast<long>(m_skip), all.end());
}

namespace {
// "[ERROR]   [14.11.2026 08:29:06] [5120] text" -> "text"
std::string messageOf(const std::string& line) {
    std::size_t time = line.find("] [", 10);
    if (time == std::string::npos) return line;
    std::size_t thread = line.find("] ", time + 3);
    if (thread == std::string::npos) return line;
    return line.substr(thread + 2);
}
const char* const kTags[] = {"", "[FATAL]   ", "[ERROR]   ", "[WARNING] ",
                             "[INFO]    ", "[DEBUG]   ", "[TRACE]   "};
} // namespace

std::vector<std::string> LogCapture::messages() const {
    std::vector<std::string> out;
    for (const std::string& line : lines())
        out.push_back(messageOf(line));
    return out;
}

std::vector<std::string> LogCapture::messages(int level) const {
    std::vector<std::string> out;
    for (const std::string& line : lines())
        if (level >= 1 && level <= 6 && line.compare(0, 10, kTags[level]) == 0)
            out.push_back(messageOf(line));
    return out;
}

bool LogCapture::has(const std::string& message) const {
    for (const std::string& m : messages())
        if (m == message) return true;
    return false;
}

int LogCapture::count(const std::string& message) const {
    int n = 0;
    for (const std::string& line : lines())
        if (line.compare(0, 10, kTags[6]) != 0 && messageOf(line) == message) ++n;
    return n;
}

void LogCapture::clear() { m_skip = allLines().size(); }

} // namespace xch_test
