// What the library shares between threads, used from eight threads at once:
// the registry, the enumeration tables (built on first use), UUIDs, the
// logger, format matching and the JSON codecs. Run under ThreadSanitizer
// by scripts/test-sanitizers.sh; the checks here hold under any build.
#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_varnex_info.h>

#include "support/log_capture.h"

using namespace xch;

namespace {

constexpr int kThreads = 8;

// Starts `work(thread index)` on eight threads released together, so that
// first uses of lazily built state overlap as much as they can.
template <class Work>
void onEightThreads(Work work) {
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            ++ready;
            while (ready.load() < kThreads) std::this_thread::yield();
            work(t);
        });
    for (auto& th : threads) th.join();
}

const wchar_t* const kRegisteredNames[] = {
    L"exc_message", L"exc_log", L"exc_progress", L"exc_stage_finished", L"legacy_component_instance_names",
    L"legacy_component_material_map", L"exc_product_structure", L"exc_block_geometry", L"exc_root_mechanical_data",
    L"exc_block_mechanical_data", L"exc_root_assembly_visualization", L"exc_block_visualization"};

} // namespace

TEST(SharedState, EightThreadsUseTheLibrarySimultaneously) {
    xch_test::LogCapture log(4);
    Format step;
    step.addFilterExtensions(L"*.stp;*.step").addRegex(L"[A-Z]+_\\d+\\.model");

    std::vector<std::vector<std::wstring>> uuids(kThreads);
    std::vector<std::wstring> texts(kThreads);
    std::atomic<int> failures{0};
    onEightThreads([&](int t) {
        for (int round = 0; round < 50; ++round) {
            for (const wchar_t* name : kRegisteredNames) {
                std::shared_ptr<IExchangeObject> object = ExchangeObjectRegistry::instance().get(name);
                if (!object || object->name() != name) ++failures;
            }
            uuids[t].push_back(IExchangeObject::generateUUID());
            if (enumFromString<EFormatType>(L"STEP") != FormatSTEP || enumToString(FormatIGES) != L"IGES" ||
                enumFromString<EOperationType>(L"Import") != OperationExport)
                ++failures;
            if (!step.is(L"dir/a.step") || step.is(L"a.STEP") || !step.is(L"HULL_001.model")) ++failures;

            // A command through text, and a document through binary JSON.
            Command command;
            command.setType(Command::Import);
            auto options = Command::newImportOptions();
            options->setFile(L"part" + std::to_wstring(t) + L".stp");
            command.setImportOptions(options);
            std::wostringstream out;
            command.writeObject(out);
            Command back;
            std::wistringstream in(out.str());
            back.readObject(in);
            if (back.importOptions()->file() != options->file()) ++failures;
            JsonDocument doc;
            ExcProgress(round, 50, false, L"stage").writeObject(doc, doc.GetAllocator());
            std::string bytes;
            JsonBinaryIO::write(bytes, doc);
            JsonDocument decoded;
            JsonBinaryIO::read(bytes.data(), bytes.size(), decoded);
            ExcProgress progress;
            progress.readObject(decoded);
            if (progress.progress() != round) ++failures;
            texts[t] = out.str().substr(out.str().find(L"\"mt_mode\""));

            VX_LOG(4, "thread " << t << " round " << round);
        }
    });
    EXPECT_EQ(failures.load(), 0);
    std::set<std::wstring> distinct;
    for (const auto& list : uuids) distinct.insert(list.begin(), list.end());
    EXPECT_EQ(distinct.size(), std::size_t(kThreads * 50));
    for (const std::wstring& text : texts) EXPECT_EQ(text, texts[0]);
    EXPECT_EQ(log.messages(4).size(), std::size_t(kThreads * 50));
}
