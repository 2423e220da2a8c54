#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <system_error>
#include <thread>
#include <vector>

#include <logging/vx_link_logger.h>

#include "support/log_capture.h"

using vx_link::LoggerHolder;

namespace {

std::vector<std::string> readLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

} // namespace

// Runs first in this executable: nothing has initialised the logger yet.
TEST(Logger, OffUntilInitialised) {
    EXPECT_EQ(LoggerHolder::logger(), nullptr);
    for (int level = 1; level <= 6; ++level) EXPECT_FALSE(LoggerHolder::levelEnabled(level));
    VX_LOG(1, "never written");
    LoggerHolder::initLogger(0, xch_test::tempPath("never.txt"));
    LoggerHolder::initLogger(-3, xch_test::tempPath("never.txt"));
    EXPECT_EQ(LoggerHolder::logger(), nullptr);
    EXPECT_EQ(LoggerHolder::level(), 0);
}

TEST(Logger, InitialisationLinesThresholdAndAppending) {
    std::string path = xch_test::tempPath("init.txt");
    {
        std::ofstream existing(path);
        existing << "earlier line\n";
    }
    LoggerHolder::initLogger(3, path);
    EXPECT_TRUE(LoggerHolder::levelEnabled(1));
    EXPECT_TRUE(LoggerHolder::levelEnabled(3));
    EXPECT_FALSE(LoggerHolder::levelEnabled(4));
    EXPECT_FALSE(LoggerHolder::levelEnabled(6));
    VX_LOG(3, "kept " << 42);
    VX_LOG(4, "dropped");

    std::vector<std::string> lines = readLines(path);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], "earlier line");
    const std::regex prefix(R"(\[INFO\]    \[\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d\] )");
    std::smatch m;
    ASSERT_TRUE(std::regex_search(lines[1], m, prefix));
    EXPECT_EQ(m.position(0), 0);
    EXPECT_EQ(lines[1].substr(m.length(0)), std::string(102, '='));
    ASSERT_TRUE(std::regex_search(lines[2], m, prefix));
    EXPECT_EQ(lines[2].substr(m.length(0)), "Logger initialized with level 3");
    // A message line carries the thread id in decimal after the time.
    EXPECT_TRUE(std::regex_match(lines[3],
                                 std::regex(R"(\[WARNING\] \[\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d\] \[\d+\] kept 42)")))
        << lines[3];
    LoggerHolder::initLogger(6, "/nonexistent-dir/sub/log.txt"); // releases the file
    std::remove(path.c_str());
}

TEST(Logger, UnopenablePathLeavesNoLogger) {
    LoggerHolder::initLogger(6, "/nonexistent-dir/sub/log.txt");
    EXPECT_EQ(LoggerHolder::logger(), nullptr);
    EXPECT_EQ(LoggerHolder::level(), 6);
    EXPECT_FALSE(LoggerHolder::levelEnabled(1));
}

TEST(Logger, TagsAndUnknownLevels) {
    xch_test::LogCapture log(6);
    for (int level : {1, 2, 3, 4, 5, 6, 0, 7}) {
        vx_link::MTLogger line(*LoggerHolder::logger());
        line.begin(level) << "level " << level;
    }
    std::vector<std::string> lines = log.lines();
    ASSERT_EQ(lines.size(), 8u);
    const char* tags[] = {"[FATAL]   ", "[ERROR]   ", "[WARNING] ", "[INFO]    ",
                          "[DEBUG]   ", "[TRACE]   ", "[UNKNOWN] ", "[UNKNOWN] "};
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(lines[i].substr(0, 10), tags[i]) << lines[i];
}

void tracedFunction(int, const std::wstring&) { VX_TRACE(); }

TEST(Logger, TraceLineNamesFileLineAndSignature) {
    {
        xch_test::LogCapture log(6);
        tracedFunction(1, L"x");
        std::vector<std::string> trace = log.messages(6);
        ASSERT_EQ(trace.size(), 1u);
        std::smatch m;
        ASSERT_TRUE(std::regex_match(trace[0], m, std::regex(R"((.*test_logger\.cpp)\((\d+)\): (.*))"))) << trace[0];
        EXPECT_GT(std::stoi(m[2]), 0);
        EXPECT_NE(m[3].str().find("tracedFunction(int, const std::"), std::string::npos) << m[3];
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
    const std::regex whole(R"(thread \d line \d+ end)");
    for (std::size_t i = 1; i < messages.size(); ++i) ASSERT_TRUE(std::regex_match(messages[i], whole)) << messages[i];
}

namespace {
int loggingHelper() {
    VX_LOG(4, "inner");
    return 1;
}
} // namespace

TEST(Logger, LoggingFromInsideAMessageThrowsInsteadOfHanging) {
    xch_test::LogCapture log(4);
    EXPECT_THROW(VX_LOG(4, "outer " << loggingHelper()), std::system_error);
    // The lock was released: logging goes on.
    VX_LOG(4, "after");
    EXPECT_TRUE(log.has("after"));
}
