#include <gtest/gtest.h>

#include <string>
#include <utility>

#include <xch_api/xch_api_result.h>

#include "support/stream_text.h"

using namespace xch;
using namespace xch_test;

TEST(Result, WritesPrettyDocumentsAndReadsThemBack) {
    EXPECT_EQ(writtenText(Result()), L"{\n  \"code\": \"ok\",\n  \"is_finished\": false\n}");
    Result result;
    const std::wstring text = L"{\n  \"code\": \"interrupted\",\n"
                              L"  \"message\": \"Abgebrochen: \\\"Teil\\\" \u00fcbersprungen\",\n"
                              L"  \"is_finished\": true\n}";
    readText(result, text);
    EXPECT_EQ(result.code(), Result::Interrupted);
    EXPECT_EQ(writtenText(result), text);
    for (int code : {0, 5, -1}) {
        result.setCode(static_cast<Result::ECode>(code));
        EXPECT_NE(writtenText(result).find(L"\"code\": \"unknown\""), std::wstring::npos) << code;
    }
}

TEST(Result, ReadsCodesExactlyAndRefusesWithoutChange) {
    const std::pair<const wchar_t*, Result::ECode> codes[] = {
        {L"warning", Result::Warning}, {L"OK", Result::Unknown}, {L"error", Result::Error},
        {L"", Result::Unknown},        {L"ok", Result::Ok},      {L"errors", Result::Unknown}};
    Result result;
    for (const auto& code : codes) {
        readText(result, L"{\"code\": \"" + std::wstring(code.first) + L"\"}");
        EXPECT_EQ(result.code(), code.second);
    }
    result.setMessage(L"old");
    result.setFinished(true);
    readText(result, L"{\"code\": \"warning\", \"message\": 5, \"is_finished\": \"false\"}");
    for (const wchar_t* text : {L"{\"message\": \"x\", \"is_finished\": false}", L"{\"code\": 3}"})
        EXPECT_EQ(readRefusal(result, text), "Result::readObject: json document has no result code.");
    for (const wchar_t* text : {L"[\"ok\"]", L"{\"code\": \"ok\"", L"   "})
        EXPECT_EQ(readRefusal(result, text), "Result::readObject: invalid json document");
    EXPECT_EQ(writtenText(result), L"{\n  \"code\": \"warning\",\n  \"message\": \"old\",\n  \"is_finished\": true\n}");
}
