#include <logging/vx_link_logger.h>

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

int LoggerHolder::s_level = 0;
std::unique_ptr<ILogger> LoggerHolder::s_logger;

namespace {

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

template <class Char>
void appendUtf8(std::string& out, const Char* text, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        std::uint32_t c = static_cast<std::uint32_t>(text[i]);
        if (sizeof(Char) == 2 && c >= 0xD800 && c <= 0xDBFF && i + 1 < size) {
            std::uint32_t low = static_cast<std::uint32_t>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        if ((c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF)
            c = 0xFFFD;
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
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

std::string utf8(const std::wstring& text) {
    std::string out;
    out.reserve(text.size());
    appendUtf8(out, text.data(), text.size());
    return out;
}

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
    // std::mutex::lock reports a deadlock it detects as std::system_error
    // with resource_deadlock_would_occur.
    m_mutex.lock();
}

void Logger::unlock() { m_mutex.unlock(); }

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
    s_level = level;
    auto logger = std::make_unique<Logger>(path);
    s_logger = std::move(logger);
    if (s_logger->isOpen()) {
        s_logger->begin(LevelInfo) << std::string(102, '=');
        s_logger->endLine();
        s_logger->begin(LevelInfo) << "Logger initialized with level " << level;
        s_logger->endLine();
    } else {
        s_logger.reset();
    }
}

ILogger* LoggerHolder::logger() noexcept { return s_logger.get(); }

bool LoggerHolder::levelEnabled(int level) noexcept {
    return level <= s_level && s_logger && s_logger->isOpen();
}

void logTrace(const char* file, int line, const char* signature) {
    if (!LoggerHolder::levelEnabled(LevelTrace))
        return;
    MTLogger entry(*LoggerHolder::logger());
    entry.begin(LevelTrace) << file << '(' << line << "): " << signature;
}

} // namespace vx_link
