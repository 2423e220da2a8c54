// Who removes the shared-memory body of a binary envelope, and when: nobody
// by default (the body outlives its writer, clones and failed loads), the
// reader after a successful load when it asks to, and the age-based
// cleanup (library call and `xch shm`) for whatever is left.
//
// Other test runs may create shared memory on this machine at the same time:
// every check looks only at names created here.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <mp/mp_shared_buffer.h>
#include <mp/mp_shared_cleanup.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_utf8.h>

#include "support/child_process.h"
#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/shm_listing.h"
#include "support/test_types.h"

using namespace xch;
using xch_test::TestPackedRecord;
using Buffer = mp::SharedBuffer<char>;
namespace fs = std::filesystem;

namespace {

struct Lifetime : ::testing::Test {
    void SetUp() override { registerTestTypes(); }
    static void registerTestTypes() { xch_test::registerTestTypes(); }
};

std::wstring envelopeOf(const std::shared_ptr<IExchangeObject>& object) {
    std::wostringstream out;
    ExchangeObjectWrapper(object).writeObject(out);
    return out.str();
}

// The UUID in a binary envelope.
std::wstring bodyName(const std::wstring& envelope) {
    const std::wstring key = L"\"exchange_object_data\":\"";
    return envelope.substr(envelope.find(key) + key.size(), 36);
}

std::shared_ptr<IExchangeObject> readEnvelope(const std::wstring& text, bool delayed, bool release) {
    ExchangeObjectWrapper wrapper;
    wrapper.setDelayedLoading(delayed);
    wrapper.setReleaseAfterLoad(release);
    std::wistringstream in(text);
    wrapper.readObject(in);
    return wrapper.get();
}

std::shared_ptr<TestPackedRecord> record(const std::wstring& label) {
    auto r = std::make_shared<TestPackedRecord>();
    r->label = label;
    r->tags.assign(300, L"tag " + label);
    return r;
}

std::wstring labelOf(const std::shared_ptr<IExchangeObject>& object) {
    auto r = std::dynamic_pointer_cast<TestPackedRecord>(object);
    return r ? r->label : L"<not a record>";
}

std::string bytesOf(const std::wstring& name) {
    std::vector<char> bytes = Buffer(name, Buffer::OpenMode::Open).read();
    return std::string(bytes.begin(), bytes.end());
}

// The file behind a shared-memory object.
fs::path objectPath(const std::wstring& name) {
    const std::string narrow = toUtf8(name);
    for (fs::recursive_directory_iterator it(xch_test::sharedMemoryLocation()), end; it != end; ++it)
        if (it->path().filename() == narrow) return it->path();
    ADD_FAILURE() << "no file for " << narrow;
    return fs::path();
}

// Makes an object look as if it had been written `age` ago.
void makeOld(const fs::path& path, std::chrono::seconds age) {
    fs::last_write_time(path, fs::file_time_type::clock::now() - age);
}

std::wstring placeBuffer(const std::string& bytes) {
    std::wstring name = IExchangeObject::generateUUID();
    Buffer(name, Buffer::OpenMode::Create).write(bytes.data(), bytes.size());
    return name;
}

const mp::ExchangeBufferInfo* findInfo(const std::vector<mp::ExchangeBufferInfo>& list, const std::wstring& name) {
    for (const auto& info : list)
        if (info.name == name) return &info;
    return nullptr;
}

} // namespace

TEST_F(Lifetime, ABodyIsLoadedAfterItsWritingProcessHasExited) {
    std::string line;
    {
        xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer"));
        peer.writeLine("make written by a process that is gone");
        ASSERT_TRUE(peer.readLine(line));
        peer.writeLine("bye");
        ASSERT_EQ(peer.wait(), 0);
    }
    ASSERT_EQ(line.compare(0, 9, "envelope "), 0) << line;
    const std::wstring text = fromUtf8(line.substr(9));
    auto object = readEnvelope(text, true, true);
    ASSERT_TRUE(Buffer::exists(bodyName(text)));
    object->load();
    EXPECT_TRUE(object->isLoaded());
    EXPECT_EQ(labelOf(object), L"written by a process that is gone");
    EXPECT_FALSE(Buffer::exists(bodyName(text))); // released after the load
}

TEST_F(Lifetime, ClonesSecondReadersAndRetriesAfterACorruptBodyAllLoad) {
    const std::wstring text = envelopeOf(record(L"shared"));
    const std::wstring name = bodyName(text);
    const std::string good = bytesOf(name);

    // A clone made before load() and a second reader of the same text.
    auto first = readEnvelope(text, true, false);
    auto clone = first->clone();
    EXPECT_FALSE(clone->isLoaded());
    first->load();
    clone->load();
    auto second = readEnvelope(text, false, false);
    for (const auto& object : {first, clone, second}) {
        EXPECT_TRUE(object->isLoaded());
        EXPECT_EQ(xch_test::toJsonText(*object), xch_test::toJsonText(*record(L"shared")));
    }
    EXPECT_EQ(bytesOf(name), good); // nobody removed or changed it

    // A corrupt body (a gzip header, then garbage): the load fails, also
    // with release after load, and the body stays as it was for inspection.
    const std::string corrupt = good.substr(0, 10) + std::string(good.size() - 10, '\x5a');
    Buffer(name, Buffer::OpenMode::Create).write(corrupt.data(), corrupt.size());
    auto retried = readEnvelope(text, true, true);
    EXPECT_ANY_THROW(retried->load());
    EXPECT_ANY_THROW(readEnvelope(text, false, true));
    EXPECT_FALSE(retried->isLoaded());
    EXPECT_EQ(bytesOf(name), corrupt);

    // Once the body is good again a retry loads it, and releases it.
    Buffer(name, Buffer::OpenMode::Create).write(good.data(), good.size());
    retried->load();
    EXPECT_EQ(labelOf(retried), L"shared");
    EXPECT_FALSE(Buffer::exists(name));
}

TEST_F(Lifetime, ReleaseAfterLoadRemovesExactlyTheBodyLoaded) {
    xch_test::LogCapture log(5);
    std::vector<std::wstring> texts, names;
    for (const wchar_t* label : {L"a", L"b", L"c", L"d"}) {
        texts.push_back(envelopeOf(record(label)));
        names.push_back(bodyName(texts.back()));
        // Every body is named in the log before it is created.
        const std::string size = std::to_string(Buffer(names.back(), Buffer::OpenMode::Open).read().size());
        EXPECT_TRUE(log.has("Writing shared memory body " + toUtf8(names.back()) + " of " + size + " bytes"));
    }
    auto exists = [&] {
        std::vector<bool> out;
        for (const auto& name : names) out.push_back(Buffer::exists(name));
        return out;
    };

    auto a = readEnvelope(texts[0], false, true); // loaded at once, released
    EXPECT_EQ(labelOf(a), L"a");
    EXPECT_EQ(exists(), (std::vector<bool>{false, true, true, true}));

    auto b = readEnvelope(texts[1], true, true); // released by its own later load
    auto bClone = b->clone();                     // which the clone shares: it finds nothing then
    EXPECT_EQ(exists(), (std::vector<bool>{false, true, true, true}));
    b->load();
    EXPECT_EQ(labelOf(b), L"b");
    EXPECT_EQ(exists(), (std::vector<bool>{false, false, true, true}));
    EXPECT_THROW(bClone->load(), mp::SharedMemoryException);

    auto c = readEnvelope(texts[2], false, false); // without release the body stays
    EXPECT_EQ(labelOf(c), L"c");
    c->setReleaseAfterLoad(true);
    c->load(); // already loaded: nothing happens, nothing is removed
    EXPECT_EQ(exists(), (std::vector<bool>{false, false, true, true}));

    // An inline envelope read with release has nothing to remove.
    auto message = readEnvelope(envelopeOf(std::make_shared<xch_test::TestRecord>()), false, true);
    EXPECT_TRUE(message);
    EXPECT_EQ(exists(), (std::vector<bool>{false, false, true, true}));
    EXPECT_TRUE(Buffer::remove(names[2]));
    EXPECT_TRUE(Buffer::remove(names[3]));
}

TEST_F(Lifetime, AnEnvelopeThatCannotBeWrittenTakesItsBodyWithIt) {
    // Nobody could learn the body's name: it must not stay behind.
    xch_test::LogCapture log(5);
    std::wostringstream broken;
    broken.setstate(std::ios::badbit);
    EXPECT_THROW(ExchangeObjectWrapper(record(L"lost")).writeObject(broken), std::runtime_error);
    std::vector<std::string> written;
    for (const std::string& message : log.messages(5))
        if (message.compare(0, 27, "Writing shared memory body ") == 0) written.push_back(message.substr(27, 36));
    ASSERT_EQ(written.size(), 1u);
    EXPECT_FALSE(Buffer::exists(fromUtf8(written[0])));
}

TEST(ExchangeBufferCleanup, OnlyThisUsersOldExchangeBuffersAreRemoved) {
    const std::wstring old = placeBuffer(std::string(1000, 'o'));
    const std::wstring fresh = placeBuffer("fresh");
    const std::wstring empty = placeBuffer("");
    const fs::path oldPath = objectPath(old);
    makeOld(oldPath, std::chrono::hours(2));
    makeOld(objectPath(empty), std::chrono::hours(3));
    // A file beside them whose name is not a UUID: never touched.
    const fs::path stranger = oldPath.parent_path() / ("xch-test-not-a-buffer-" + toUtf8(fresh));
    std::ofstream(stranger) << "not mine to remove";
    makeOld(stranger, std::chrono::hours(5));

    std::vector<mp::ExchangeBufferInfo> list = mp::listExchangeBuffers();
    const mp::ExchangeBufferInfo* oldInfo = findInfo(list, old);
    const mp::ExchangeBufferInfo* freshInfo = findInfo(list, fresh);
    ASSERT_TRUE(oldInfo && freshInfo && findInfo(list, empty));
    EXPECT_EQ(oldInfo->size, 1000u);
    EXPECT_EQ(freshInfo->size, 5u);
    EXPECT_GE(oldInfo->age, std::chrono::seconds(7190));
    EXPECT_LT(freshInfo->age, std::chrono::seconds(600));
    EXPECT_FALSE(oldInfo->owner.empty());
    for (const auto& info : list) EXPECT_TRUE(Buffer::isValidName(info.name)) << toUtf8(info.name);

    std::vector<std::wstring> removed = mp::removeExchangeBuffersOlderThan(std::chrono::hours(1));
    EXPECT_EQ(std::count(removed.begin(), removed.end(), old), 1);
    EXPECT_EQ(std::count(removed.begin(), removed.end(), empty), 1);
    EXPECT_EQ(std::count(removed.begin(), removed.end(), fresh), 0);
    EXPECT_FALSE(Buffer::exists(old));
    EXPECT_FALSE(Buffer::exists(empty));
    EXPECT_EQ(bytesOf(fresh), "fresh");
    EXPECT_TRUE(fs::exists(stranger));

    // Restricted to given names; names that are not UUIDs are ignored.
    const std::wstring other = placeBuffer("other");
    EXPECT_EQ(mp::removeExchangeBuffersOlderThan(std::chrono::seconds(0), {fresh, L"../" + other, L"*"}),
              std::vector<std::wstring>{fresh});
    EXPECT_TRUE(Buffer::exists(other));
    EXPECT_TRUE(Buffer::remove(other));
    fs::remove(stranger);
}

TEST(ExchangeBufferCleanup, TheToolListsAndCleansByAge) {
    auto run = [](const std::vector<std::string>& arguments, std::vector<std::string>& lines) {
        lines.clear();
        xch_test::ChildProcess tool(xch_test::helperPath("xch"), arguments);
        for (std::string line; tool.readLine(line);) lines.push_back(line);
        return tool.wait();
    };
    auto has = [](const std::vector<std::string>& lines, const std::string& text) {
        for (const auto& line : lines)
            if (line.find(text) != std::string::npos) return true;
        return false;
    };
    const std::wstring old = placeBuffer(std::string(4242, 'x'));
    const std::wstring fresh = placeBuffer("y");
    makeOld(objectPath(old), std::chrono::hours(3));
    const std::string oldName = toUtf8(old), freshName = toUtf8(fresh);

    std::vector<std::string> out;
    ASSERT_EQ(run({"shm", "list"}, out), 0);
    ASSERT_FALSE(out.empty());
    EXPECT_TRUE(has(out, "NAME") && has(out, "SIZE") && has(out, "AGE") && has(out, "OWNER")) << out[0];
    EXPECT_TRUE(has(out, oldName + "           4242    3h00m")) << "old buffer not listed as 3h old";
    EXPECT_TRUE(has(out, freshName));

    // Refused before anything is removed: a bad duration, a name that is not a UUID.
    EXPECT_NE(run({"shm", "clean", "--older-than", "3 weeks"}, out), 0);
    EXPECT_NE(run({"shm", "clean", "--older-than", "0", oldName, "../etc"}, out), 0);
    EXPECT_TRUE(Buffer::exists(old));

    // The default minimum age (1h) spares the fresh buffer.
    ASSERT_EQ(run({"shm", "clean", oldName, freshName}, out), 0);
    EXPECT_TRUE(has(out, "removed " + oldName));
    EXPECT_FALSE(has(out, freshName));
    EXPECT_FALSE(Buffer::exists(old));
    EXPECT_TRUE(Buffer::exists(fresh));
    ASSERT_EQ(run({"shm", "clean", "--older-than", "0", freshName}, out), 0);
    EXPECT_EQ(out, (std::vector<std::string>{"removed " + freshName, "1 exchange buffer removed (at least 0s old)"}));
    EXPECT_FALSE(Buffer::exists(fresh));

    ASSERT_EQ(run({"shm", "--help"}, out), 0);
    EXPECT_TRUE(has(out, "older than 1h"));
}
