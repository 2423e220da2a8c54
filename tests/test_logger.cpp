#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <regex>
#include <system_error>
#include <thread>
#include <vector>

#include <logging/vx_link_logger.h>

#include "support/log_capture.h"

using vx_link::LoggerHolder;

// Runs first in this executable: nothing has initialised the logger yet.
TEST(Logger, OffUntilInitialisedAndAfterAFailedInitialisation) {
    for (int level = 1; level <= 6; ++level) EXPECT_FALSE(LoggerHolder::levelEnabled(level));
    LoggerHolder::initLogger(0, xch_test::tempPath("never.txt"));
    EXPECT_EQ(LoggerHolder::logger(), nullptr);
    LoggerHolder::initLogger(6, "/nonexistent-dir/sub/log.txt");
    EXPECT_EQ(LoggerHolder::logger(), nullptr);
    EXPECT_EQ(LoggerHolder::level(), 6);
    EXPECT_FALSE(LoggerHolder::levelEnabled(1));
}

TEST(Logger, InitialisationLinesThresholdAndAppending) {
    std::string path = xch_test::tempPath("init.txt");
    std::ofstream(path) << "earlier line\n";
    LoggerHolder::initLogger(3, path);
    EXPECT_TRUE(LoggerHolder::levelEnabled(3));
    EXPECT_FALSE(LoggerHolder::levelEnabled(4));
    VX_LOG(3, "kept " << 42);
    VX_LOG(4, "dropped");
    LoggerHolder::initLogger(6, "/nonexistent-dir/sub/log.txt"); // releases the file

    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    in.close();
    std::remove(path.c_str());
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], "earlier line");
    const std::string time = R"(\[\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d\] )";
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(R"(\[INFO\]    )" + time + std::string(102, '='))));
    EXPECT_TRUE(std::regex_match(lines[2], std::regex(R"(\[INFO\]    )" + time + "Logger initialized with level 3")));
    // A message line carries the thread id in decimal after the time.
    EXPECT_TRUE(std::regex_match(lines[3], std::regex(R"(\[WARNING\] )" + time + R"(\[\d+\] kept 42)"))) << lines[3];
}

TEST(Logger, TagsIncludingUnknownLevels) {
    xch_test::LogCapture log(6);
    for (int level : {1, 2, 3, 4, 5, 6, 0, 7}) vx_link::MTLogger(*LoggerHolder::logger()).begin(level) << "x";
    const char* tags[] = {"[FATAL]   ", "[ERROR]   ", "[WARNING] ", "[INFO]    ",
                          "[DEBUG]   ", "[TRACE]   ", "[UNKNOWN] ", "[UNKNOWN] "};
    std::vector<std::string> lines = log.lines();
    ASSERT_EQ(lines.size(), 8u);
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(lines[i].substr(0, 10), tags[i]);
}

void tracedFunction(int, const std::wstring&) { VX_TRACE(); }

TEST(Logger, TraceLineNamesFileLineAndSignatureOnlyAtLevelSix) {
    {
        xch_test::LogCapture log(6);
        tracedFunction(1, L"x");
        ASSERT_EQ(log.messages(6).size(), 1u);
        EXPECT_TRUE(std::regex_match(log.messages(6)[0],
                                     std::regex(R"(.*test_logger\.cpp\(\d+\): .*tracedFunction\(int, const std::.*)")))
            << log.messages(6)[0];
    }
    xch_test::LogCapture quiet(5);
    tracedFunction(2, L"y");
    EXPECT_TRUE(quiet.lines().empty());
}

TEST(Logger, WideTextIsUtf8AndLinesDoNotInterleave) {
    xch_test::LogCapture log(4);
    VX_LOG(4, vx_link::utf8(std::wstring(L"caf\u00e9 \u4e2d")));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < 200; ++i) VX_LOG(4, "thread " << t << " line " << i << " end");
        });
    for (auto& th : threads) th.join();
    std::vector<std::string> messages = log.messages();
    ASSERT_EQ(messages.size(), 801u);
    EXPECT_EQ(messages[0], "caf\xc3\xa9 \xe4\xb8\xad");
    for (std::size_t i = 1; i < messages.size(); ++i)
        ASSERT_TRUE(std::regex_match(messages[i], std::regex(R"(thread \d line \d+ end)"))) << messages[i];
}

int loggingHelper() {
    VX_LOG(4, "inner");
    return 1;
}

TEST(Logger, LoggingFromInsideAMessageThrowsInsteadOfHanging) {
    xch_test::LogCapture log(4);
    EXPECT_THROW(VX_LOG(4, "outer " << loggingHelper()), std::system_error);
    VX_LOG(4, "after"); // the lock was released
    EXPECT_TRUE(log.has("after"));
}

// Eight threads log while the logger is re-initialised again and again,
// cycling over a few files: every line ends up whole in one of them, none
// is lost, and no thread writes through a logger that was replaced under it.
TEST(Logger, ReinitialisingWhileEightThreadsLogLosesAndBreaksNoLine) {
    // A file of its own per initialisation: a line still being written
    // through the previous logger never shares a file with the next one
    // (appends from two handles are not atomic on every platform).
    std::vector<std::string> paths;
    auto nextPath = [&paths] {
        paths.push_back(xch_test::tempPath("reinit" + std::to_string(paths.size()) + ".txt"));
        return paths.back();
    };
    LoggerHolder::initLogger(4, nextPath());
    const int threadCount = 8, linesPerThread = 300;
    std::atomic<int> running{threadCount};
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([t, &running] {
            for (int i = 0; i < linesPerThread; ++i) {
                VX_LOG(4, "thread " << t << " line " << i << " end");
                VX_TRACE(); // below the threshold: only the level is read
            }
            --running;
        });
    int inits = 0;
    for (; running.load() > 0 || inits < 20; ++inits) LoggerHolder::initLogger(4, nextPath());
    for (auto& th : threads) th.join();
    LoggerHolder::initLogger(4, "/nonexistent-dir/sub/log.txt");

    int initialised = 0;
    std::vector<int> seen(threadCount, 0);
    const std::regex message(R"(\[INFO\]    \[[^\]]+\] \[\d+\] thread (\d) line \d+ end)");
    for (const std::string& path : paths) {
        std::ifstream in(path);
        for (std::string line; std::getline(in, line);) {
            std::smatch m;
            if (std::regex_match(line, m, message))
                ++seen[std::stoi(m[1])];
            else if (line.find("Logger initialized with level 4") != std::string::npos)
                ++initialised;
            else
                ASSERT_NE(line.find(std::string(102, '=')), std::string::npos) << line;
        }
        in.close();
        std::remove(path.c_str());
    }
    EXPECT_EQ(initialised, inits + 1);
    for (int t = 0; t < threadCount; ++t) EXPECT_EQ(seen[t], linesPerThread) << "thread " << t;
}
