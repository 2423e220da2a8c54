#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_utf8.h>

#include <ctime>
#include <ios>
#include <string>
#include <system_error>

#if defined(_WIN32)
#  include <windows.h>
#else
#  include <sys/syscall.h>
#  include <unistd.h>
#endif

namespace vx_link {

std::atomic<int> LoggerHolder::s_level{0};

namespace {

// The installed logger. Allocated once and never destroyed, so that a
// thread still logging while the process exits finds a valid holder; the
// logger flushes every line, so nothing is lost when it is not closed.
std::shared_ptr<ILogger>& installed() {
    static auto* logger = new std::shared_ptr<ILogger>();
    return *logger;
}

// Whether installed() holds a logger: the lock-free part of levelEnabled.
std::atomic<bool> s_present{false};

// Serialises initLogger calls.
std::mutex& initMutex() {
    static std::mutex mutex;
    return mutex;
}

std::string localTimeText() {
    std::time_t now = std::time(nullptr);
    std::tm local{};
#if defined(_WIN32)
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    char text[64];
    std::size_t n = std::strftime(text, sizeof text, "%d.%m.%Y %H:%M:%S", &local);
    return std::string(text, n);
}

std::string threadIdText() {
#if defined(_WIN32)
    return std::to_string(static_cast<unsigned long>(GetCurrentThreadId()));
#else
    return std::to_string(static_cast<long>(::syscall(SYS_gettid)));
#endif
}

} // namespace

const char* levelTag(int level) noexcept {
    switch (level) {
    case LevelFatal: return "[FATAL]   ";
    case LevelError: return "[ERROR]   ";
    case LevelWarning: return "[WARNING] ";
    case LevelInfo: return "[INFO]    ";
    case LevelDebug: return "[DEBUG]   ";
    case LevelTrace: return "[TRACE]   ";
    default: return "[UNKNOWN] ";
    }
}

std::string utf8(const std::wstring& text) { return xch::toUtf8(text); }

std::string utf8(const wchar_t* text) {
    return text ? utf8(std::wstring(text)) : std::string();
}

ILogger::~ILogger() = default;

Logger::Logger(const std::string& path)
    : m_stream(path, std::ios::out | std::ios::app) {}

Logger::~Logger() = default;

bool Logger::isOpen() const { return m_stream.is_open(); }

std::ostream& Logger::begin(int level) {
    m_stream << levelTag(level) << '[' << localTimeText() << "] ";
    return m_stream;
}

void Logger::lock() {
    if (m_owner.load() == std::this_thread::get_id())
        throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
    m_mutex.lock();
    m_owner.store(std::this_thread::get_id());
}

void Logger::unlock() {
    m_owner.store(std::thread::id());
    m_mutex.unlock();
}

void Logger::flush() { m_stream.flush(); }

void Logger::endLine() { m_stream << std::endl; }

MTLogger::MTLogger(ILogger& logger) : m_logger(logger) { m_logger.lock(); }

MTLogger::~MTLogger() {
    try {
        m_logger.endLine();
        m_logger.flush();
    } catch (...) {
    }
    m_logger.unlock();
}

std::ostream& MTLogger::begin(int level) {
    std::ostream& stream = m_logger.begin(level);
    stream << std::hex << '[' << threadIdText() << "] " << std::dec;
    return stream;
}

void LoggerHolder::initLogger(int level, const std::string& path) {
    if (level <= 0)
        return;
    std::lock_guard<std::mutex> serialised(initMutex());
    s_level.store(level, std::memory_order_relaxed);
    // The new logger writes its opening lines before anyone else sees it.
    std::shared_ptr<ILogger> logger = std::make_shared<Logger>(path);
    if (logger->isOpen()) {
        logger->begin(LevelInfo) << std::string(102, '=');
        logger->endLine();
        logger->begin(LevelInfo) << "Logger initialized with level " << level;
        logger->endLine();
    } else {
        logger.reset();
    }
    // The previous logger lives on until the last line started on it ends.
    s_present.store(logger != nullptr, std::memory_order_release);
    std::atomic_store(&installed(), std::move(logger));
}

ILogger* LoggerHolder::logger() noexcept { return std::atomic_load(&installed()).get(); }

std::shared_ptr<ILogger> LoggerHolder::acquire(int level) {
    if (level > s_level.load(std::memory_order_relaxed) || !s_present.load(std::memory_order_acquire))
        return nullptr;
    std::shared_ptr<ILogger> logger = std::atomic_load(&installed());
    if (!logger || !logger->isOpen()) return nullptr;
    return logger;
}

bool LoggerHolder::levelEnabled(int level) noexcept {
    return level <= s_level.load(std::memory_order_relaxed) && s_present.load(std::memory_order_acquire);
}

void logTrace(const char* file, int line, const char* signature) {
    std::shared_ptr<ILogger> logger = LoggerHolder::acquire(LevelTrace);
    if (!logger)
        return;
    MTLogger entry(*logger);
    entry.begin(LevelTrace) << file << '(' << line << "): " << signature;
}

} // namespace vx_link
