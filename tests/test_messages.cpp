#include <gtest/gtest.h>

#include <xch_api/xch_api_messages.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

TEST(Messages, RegisteredToTravelInline) {
    for (const wchar_t* name : {L"exc_message", L"exc_log", L"exc_progress", L"exc_stage_finished"}) {
        std::shared_ptr<IExchangeObject> object = ExchangeObjectRegistry::instance().get(name);
        EXPECT_TRUE(object && object->name() == name && !object->binary() && !object->compress()) << name;
    }
}

TEST(Messages, MessageAndLogCarryOneStringMember) {
    EXPECT_EQ(toJsonText(ExcMessage(L"Datei \u00fcbersetzt")), L"{\"message\":\"Datei \u00fcbersetzt\"}");
    LogCapture log;
    ExcLog line(std::wstring(L"line"));
    expectReads(line, {{L"{\"message\": 5}", L"{\"message\":\"line\"}"},
                       {L"{\"message\": \"first\", \"other\": 1}", L"{\"message\":\"first\"}"},
                       {L"[\"second\"]", L"{\"message\":\"first\"}"}, {L"{}", L"{\"message\":\"first\"}"}});
    EXPECT_EQ(log.messages().size(), log.messages(6).size()); // read quietly: nothing above trace level
}

TEST(Messages, ProgressWritesAllFourKeysAndReadsEachOnlyFromItsOwnType) {
    EXPECT_NE(ExcProgress(-3, 7, true, L"Meshing"), ExcProgress(-3, 7, true, L"other"));
    LogCapture log;
    ExcProgress progress(5, 50, false, L"keep"); // "pulse" becomes true only for JSON true
    expectReads(progress,
                {{L"{\"progress\":\"9\",\"progress_max\":2.0,\"pulse\":1,\"stage\":null}",
                  L"{\"progress\":5,\"progress_max\":50,\"pulse\":false,\"stage\":\"keep\"}"},
                 {L"{\"pulse\":true,\"progress_max\":4294967295}",
                  L"{\"progress\":5,\"progress_max\":50,\"pulse\":true,\"stage\":\"keep\"}"},
                 {L"{\"pulse\":\"false\",\"progress\":-1}",
                  L"{\"progress\":-1,\"progress_max\":50,\"pulse\":true,\"stage\":\"keep\"}"},
                 {L"17", L"{\"progress\":-1,\"progress_max\":50,\"pulse\":true,\"stage\":\"keep\"}"},
                 {L"{\"pulse\":false,\"stage\":\"Meshing\",\"progress_max\":7}",
                  L"{\"progress\":-1,\"progress_max\":7,\"pulse\":false,\"stage\":\"Meshing\"}"}});
    EXPECT_EQ(log.messages().size(), log.messages(6).size());
}

TEST(Messages, StageFinishedIsABareStringWithTheSmallestStringAsFallback) {
    EXPECT_EQ(toJsonText(ExcStageFinished(ExcStageFinished::EStage(42))), L"\"unknown\"");
    LogCapture log;
    // Unknown strings read as "mechanical", the smallest; a value that is not a string changes nothing.
    ExcStageFinished stage(ExcStageFinished::RootVisualization);
    expectReads(stage, {{L"3", L"\"root_visualization\""}, {L"[\"visualization\"]", L"\"root_visualization\""},
                        {L"\"root_mechanical\"", L"\"root_mechanical\""}, {L"\"Visualization\"", L"\"mechanical\""},
                        {L"\"unknown\"", L"\"unknown\""}, {L"null", L"\"unknown\""},
                        {L"\"\"", L"\"mechanical\""}, {L"\"product_structure\"", L"\"product_structure\""},
                        {L"\"visu_and_mech\"", L"\"visu_and_mech\""}});
    EXPECT_EQ(log.messages().size(), log.messages(6).size());
}
