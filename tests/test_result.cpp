#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

#include <xch_api/xch_api_json_text_io.h>
#include <xch_api/xch_api_result.h>

#include "support/log_capture.h"
#include "support/stream_text.h"

using namespace xch;
using xch_test::invalidArgumentMessage;
using xch_test::readText;
using xch_test::writtenText;

namespace {
std::string refusal(Result& result, const std::wstring& text) {
    return invalidArgumentMessage([&] { readText(result, text); });
}
} // namespace

TEST(Result, WritesCodeMessageAndFinishedFlag) {
    EXPECT_EQ(writtenText(Result()), L"{\n  \"code\": \"ok\",\n  \"is_finished\": false\n}");

    Result result;
    result.setCode(Result::Interrupted);
    result.setMessage(L"Abgebrochen: \"Teil\" \u00fcbersprungen");
    result.setFinished(true);
    EXPECT_EQ(writtenText(result), L"{\n  \"code\": \"interrupted\",\n"
                               L"  \"message\": \"Abgebrochen: \\\"Teil\\\" \u00fcbersprungen\",\n"
                               L"  \"is_finished\": true\n}");

    Result copy(result);
    Result read;
    readText(read, writtenText(copy));
    EXPECT_EQ(read.code(), Result::Interrupted);
    EXPECT_EQ(read.message(), result.message());
    EXPECT_TRUE(read.isFinished());

    for (int code : {0, 5, -1, 255}) {
        result.setCode(static_cast<Result::ECode>(code));
        EXPECT_NE(writtenText(result).find(L"\"code\": \"unknown\""), std::wstring::npos) << code;
    }
}

TEST(Result, ReadsCodesByExactMatch) {
    const std::pair<const wchar_t*, Result::ECode> codes[] = {
        {L"warning", Result::Warning}, {L"error", Result::Error},       {L"ok", Result::Ok},
        {L"interrupted", Result::Interrupted}, {L"unknown", Result::Unknown}, {L"OK", Result::Unknown},
        {L"", Result::Unknown},        {L"errors", Result::Unknown},
    };
    for (const auto& code : codes) {
        Result result;
        result.setCode(Result::Error);
        readText(result, L"{\"code\": \"" + std::wstring(code.first) + L"\"}");
        EXPECT_EQ(result.code(), code.second);
    }

    Result result;
    result.setMessage(L"kept");
    result.setFinished(true);
    readText(result, L"{\"code\": \"warning\", \"message\": 5, \"is_finished\": \"false\"}");
    EXPECT_EQ(result.message(), L"kept");
    EXPECT_TRUE(result.isFinished());
    readText(result, L"{\"code\": \"error\", \"message\": \"\", \"is_finished\": false}");
    EXPECT_EQ(result.message(), L"");
    EXPECT_FALSE(result.isFinished());
}

TEST(Result, RefusedDocumentsLeaveTheResultUnchanged) {
    Result result;
    result.setCode(Result::Warning);
    result.setMessage(L"before");
    const std::string noCode = "Result::readObject: json document has no result code.";
    const std::string invalid = "Result::readObject: invalid json document";
    EXPECT_EQ(refusal(result, L"{\"message\": \"x\", \"is_finished\": true}"), noCode);
    EXPECT_EQ(refusal(result, L"{\"code\": 3, \"message\": \"x\"}"), noCode);
    EXPECT_EQ(refusal(result, L"[\"ok\"]"), invalid);
    EXPECT_EQ(refusal(result, L"{\"code\": \"ok\""), invalid);
    EXPECT_EQ(refusal(result, L"   "), invalid);
    EXPECT_EQ(result.code(), Result::Warning);
    EXPECT_EQ(result.message(), L"before");
    EXPECT_FALSE(result.isFinished());

    // Nothing but trace lines is logged.
    xch_test::LogCapture log(5);
    EXPECT_EQ(refusal(result, L"{}"), noCode);
    EXPECT_TRUE(log.messages().empty());
}
