#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <utility>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_messages.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using xch_test::LogCapture;
using xch_test::readFromJsonText;
using xch_test::toJsonText;

namespace {

// Messages above trace level: these readers never log.
std::size_t reportedMessages(const LogCapture& log) {
    return log.messages().size() - log.messages(6).size();
}

template <class T>
std::shared_ptr<T> fromRegistry(const std::wstring& name) {
    std::shared_ptr<IExchangeObject> object = ExchangeObjectRegistry::instance().get(name);
    EXPECT_TRUE(object) << vx_link::utf8(name);
    EXPECT_EQ(object ? object->name() : std::wstring(), name);
    return std::dynamic_pointer_cast<T>(object);
}

} // namespace

TEST(Messages, RegisteredInlineTypes) {
    auto message = fromRegistry<ExcMessage>(L"exc_message");
    auto log = fromRegistry<ExcLog>(L"exc_log");
    auto progress = fromRegistry<ExcProgress>(L"exc_progress");
    auto stage = fromRegistry<ExcStageFinished>(L"exc_stage_finished");
    ASSERT_TRUE(message && log && progress && stage);
    EXPECT_NE(message, fromRegistry<ExcMessage>(L"exc_message"));
    for (IExchangeObject* object : std::initializer_list<IExchangeObject*>{
             message.get(), log.get(), progress.get(), stage.get()}) {
        EXPECT_FALSE(object->binary());
        EXPECT_FALSE(object->compress());
    }
}

TEST(Messages, MessageAndLogCarryOneStringMember) {
    ExcMessage message(L"Datei \u00fcbersetzt");
    EXPECT_EQ(toJsonText(message), L"{\"message\":\"Datei \u00fcbersetzt\"}");
    ExcLog line(std::wstring(L"line"));
    EXPECT_EQ(toJsonText(line), L"{\"message\":\"line\"}");
    EXPECT_EQ(toJsonText(ExcMessage()), L"{\"message\":\"\"}");

    std::shared_ptr<IExchangeObject> copy = message.clone();
    auto typed = std::dynamic_pointer_cast<ExcMessage>(copy);
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->message(), message.message());
    EXPECT_EQ(copy->name(), L"exc_message");
    EXPECT_EQ(line.clone()->name(), L"exc_log");

    LogCapture log;
    ExcLog read;
    readFromJsonText(read, L"{\"message\": 5}");
    EXPECT_EQ(read.message(), L"");
    readFromJsonText(read, L"{\"message\": \"first\", \"other\": 1}");
    EXPECT_EQ(read.message(), L"first");
    readFromJsonText(read, L"[\"second\"]");
    readFromJsonText(read, L"{}");
    EXPECT_EQ(read.message(), L"first");
    EXPECT_EQ(reportedMessages(log), 0u);
}

TEST(Messages, ProgressWritesAllFourKeys) {
    EXPECT_EQ(toJsonText(ExcProgress()),
              L"{\"progress\":0,\"progress_max\":100,\"pulse\":false,\"stage\":\"\"}");
    ExcProgress progress(-3, 7, true, L"Meshing");
    EXPECT_EQ(toJsonText(progress),
              L"{\"progress\":-3,\"progress_max\":7,\"pulse\":true,\"stage\":\"Meshing\"}");

    ExcProgress read;
    readFromJsonText(read, toJsonText(progress));
    EXPECT_EQ(read, progress);
    read.setStage(L"other");
    EXPECT_NE(read, progress);
    auto copy = std::dynamic_pointer_cast<ExcProgress>(progress.clone());
    ASSERT_TRUE(copy);
    EXPECT_EQ(*copy, progress);
}

TEST(Messages, ProgressReadsEachMemberOnlyFromItsOwnType) {
    LogCapture log;
    ExcProgress read(5, 50, false, L"keep");
    readFromJsonText(read, L"{\"progress\":\"9\",\"progress_max\":2.0,\"pulse\":1,\"stage\":null}");
    EXPECT_EQ(read, ExcProgress(5, 50, false, L"keep"));
    readFromJsonText(read, L"{\"pulse\":true,\"progress_max\":4294967295}");
    EXPECT_EQ(read, ExcProgress(5, 50, true, L"keep"));
    readFromJsonText(read, L"{\"pulse\":\"false\",\"progress\":-1}");
    EXPECT_EQ(read, ExcProgress(-1, 50, true, L"keep"));
    readFromJsonText(read, L"{\"pulse\":false,\"stage\":\"\"}");
    EXPECT_EQ(read, ExcProgress(-1, 50, false, L""));
    readFromJsonText(read, L"17");
    EXPECT_EQ(read, ExcProgress(-1, 50, false, L""));
    EXPECT_EQ(reportedMessages(log), 0u);
}

TEST(Messages, StageFinishedIsABareStringWithMechanicalFallback) {
    EXPECT_EQ(toJsonText(ExcStageFinished()), L"\"unknown\"");
    EXPECT_EQ(toJsonText(ExcStageFinished(ExcStageFinished::ProductStructure)), L"\"product_structure\"");
    EXPECT_EQ(toJsonText(ExcStageFinished(ExcStageFinished::VisuAndMech)), L"\"visu_and_mech\"");
    EXPECT_EQ(toJsonText(ExcStageFinished(ExcStageFinished::EStage(42))), L"\"unknown\"");

    LogCapture log;
    ExcStageFinished stage(ExcStageFinished::RootVisualization);
    // Read in sequence: a value that is not a string keeps the stage before.
    const std::pair<const wchar_t*, ExcStageFinished::EStage> reads[] = {
        {L"3", ExcStageFinished::RootVisualization},
        {L"{\"stage\":\"visualization\"}", ExcStageFinished::RootVisualization},
        {L"\"root_mechanical\"", ExcStageFinished::RootMechanical},
        {L"\"Visualization\"", ExcStageFinished::Mechanical},
        {L"\"unknown\"", ExcStageFinished::Unknown},
        {L"null", ExcStageFinished::Unknown},
        {L"\"\"", ExcStageFinished::Mechanical},
    };
    for (const auto& read : reads) {
        readFromJsonText(stage, read.first);
        EXPECT_EQ(stage.stage(), read.second) << vx_link::utf8(read.first);
    }
    EXPECT_EQ(reportedMessages(log), 0u);

    // Entry to both functions is traced.
    log.clear();
    toJsonText(stage);
    readFromJsonText(stage, L"\"visualization\"");
    EXPECT_EQ(stage.stage(), ExcStageFinished::Visualization);
    int traced = 0;
    for (const std::string& line : log.messages(6))
        traced += line.find("ExcStageFinished::") != std::string::npos;
    EXPECT_EQ(traced, 2);

    auto copy = std::dynamic_pointer_cast<ExcStageFinished>(stage.clone());
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->stage(), ExcStageFinished::Visualization);
}
