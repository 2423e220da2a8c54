// Test fixture support: routes the process log into a fresh file and reads
// back what was written.
#pragma once

#include <string>
#include <vector>

namespace xch_test {

// A unique path under the system's temporary directory.
std::string tempPath(const std::string& stem);

class LogCapture {
public:
    // Starts logging at `level` into a new file.
    explicit LogCapture(int level = 6);
    ~LogCapture();

    // Whole lines written since construction or the last clear(), the
    // logger's own initialisation lines excluded.
    std::vector<std::string> lines() const;
    // The message part of those lines (after tag, time and thread id), of
    // one level (1 fatal .. 6 trace) or, for 0, of all levels.
    std::vector<std::string> messages(int level = 0) const;
    // Whether some message equals `message` exactly.
    bool has(const std::string& message) const;
    // Number of messages equal to `message`.
    int count(const std::string& message) const;
    // Forgets what was logged so far.
    void clear();

private:
    std::vector<std::string> allLines() const;
    std::string m_path;
    std::size_t m_skip = 0;
};

} // namespace xch_test
