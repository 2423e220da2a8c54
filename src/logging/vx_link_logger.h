// The process-wide diagnostic log.
//
// One file-based log is shared by all code of the library. A level threshold
// decides what is written (1 fatal, 2 error, 3 warning, 4 info, 5 debug,
// 6 trace); logging is off until the host calls LoggerHolder::initLogger.
// Each line reads
//   "[ERROR]   [14.11.2026 08:29:06] [5120] message"
// with the level tag padded to ten characters, the local time and the id of
// the writing thread.
//
// Write through the macros at the end of this header:
//   VX_LOG(2, "Failed to read " << vx_link::utf8(path));
//   VX_TRACE();   // "<file>(<line>): <signature>" at level 6
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <ostream>
#include <fstream>
#include <string>

#include <xch_api/xch_api_export.h>

namespace vx_link {

enum LogLevel : int {
    LevelFatal = 1,
    LevelError = 2,
    LevelWarning = 3,
    LevelInfo = 4,
    LevelDebug = 5,
    LevelTrace = 6
};

// The ten-character tag of a level ("[UNKNOWN] " outside 1..6).
XCH_API const char* levelTag(int level) noexcept;

// UTF-8 text of a wide string, for writing wide text into the narrow log.
XCH_API std::string utf8(const std::wstring& text);
XCH_API std::string utf8(const wchar_t* text);

// A log sink.
class XCH_API ILogger {
public:
    virtual ~ILogger();
    // Whether the log can be written.
    virtual bool isOpen() const = 0;
    // Starts a line (writes the level tag and the time) and returns the
    // stream to write the message into.
    virtual std::ostream& begin(int level) = 0;
    virtual void lock() = 0;
    virtual void unlock() = 0;
    virtual void flush() = 0;
    // Ends the line with a line feed and flushes.
    virtual void endLine() = 0;
};

// The file logger: appends lines to one file, guarded by one mutex.
class XCH_API Logger : public ILogger {
public:
    explicit Logger(const std::string& path);
    ~Logger() override;
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    bool isOpen() const override;
    std::ostream& begin(int level) override;
    // Locking again from the thread that holds the lock (a message whose
    // text logs itself) throws std::system_error (resource deadlock)
    // instead of hanging.
    void lock() override;
    void unlock() override;
    void flush() override;
    void endLine() override;

private:
    std::ofstream m_stream;
    std::mutex m_mutex;
    std::atomic<std::thread::id> m_owner{};
};

// Writes one whole line under the logger's lock: locks on construction,
// ends the line, flushes and unlocks on destruction.
class XCH_API MTLogger {
public:
    explicit MTLogger(ILogger& logger);
    ~MTLogger();
    MTLogger(const MTLogger&) = delete;
    MTLogger& operator=(const MTLogger&) = delete;

    // The logger's line prefix followed by "[<thread id>] ".
    std::ostream& begin(int level);

private:
    ILogger& m_logger;
};

// The process-wide threshold and logger.
//
// Any thread may log while another one calls initLogger: a line being
// written keeps the logger it started on alive (VX_LOG holds it through
// acquire()), and the replaced logger is closed when its last line ends.
class XCH_API LoggerHolder {
public:
    // Sets the threshold and (re)opens the log file at `path` for appending.
    // A level of 0 or less changes nothing. If the file cannot be opened no
    // logger remains and nothing is logged. Calls from several threads are
    // serialised.
    static void initLogger(int level, const std::string& path);

    // The current logger; null before initLogger or after a failed one.
    // The pointer is valid until the next initLogger; code that may run
    // beside one uses acquire().
    static ILogger* logger() noexcept;

    // The current logger, shared, when `level` is enabled; null otherwise.
    static std::shared_ptr<ILogger> acquire(int level);

    // True only if `level` is at most the threshold and an open logger
    // exists.
    static bool levelEnabled(int level) noexcept;

    // The current threshold (0: nothing is logged). Inline, so that a
    // disabled trace costs one integer comparison.
    static int level() noexcept { return s_level.load(std::memory_order_relaxed); }

private:
    static std::atomic<int> s_level;
};

// Writes the trace entry line "<file>(<line>): <signature>".
XCH_API void logTrace(const char* file, int line, const char* signature);

} // namespace vx_link

// Logs `message` (an expression for operator<<) at `level`.
#define VX_LOG(level, message)                                              \
    do {                                                                    \
        if (auto vxLogger_ = ::vx_link::LoggerHolder::acquire(level)) {     \
            ::vx_link::MTLogger vxLogLine_(*vxLogger_);                     \
            vxLogLine_.begin(level) << message;                             \
        }                                                                   \
    } while (false)

// Logs the entry line of the enclosing function at trace level.
#define VX_TRACE()                                                          \
    do {                                                                    \
        if (::vx_link::LoggerHolder::level() >= ::vx_link::LevelTrace)      \
            ::vx_link::logTrace(__FILE__, __LINE__, XCH_FUNCSIG);           \
    } while (false)
