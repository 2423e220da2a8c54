#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <logging/vx_link_logger.h>
#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_exchange_object.h>

#include "support/child_process.h"
#include "support/hex.h"
#include "support/shm_listing.h"

#if !defined(_WIN32)
#  include <sys/stat.h>
#endif

using Buffer = mp::SharedBuffer<char>;

namespace {
std::vector<char> bytesOf(const std::string& s) { return std::vector<char>(s.begin(), s.end()); }
} // namespace

TEST(SharedBuffer, OnlyUuidNamesReachTheSystem) {
    std::wstring good = xch::IExchangeObject::generateUUID();
    EXPECT_TRUE(Buffer::isValidName(good));
    EXPECT_TRUE(Buffer::isValidName(L"0123ABCD-89ab-4def-8123-456789ABCDEF"));
    for (const wchar_t* bad : {L"", L"../../etc/passwd", L"0123abcd-89ab-4def-8123-456789abcde",
                               L"0123abcd-89ab-4def-8123-456789abcdef0", L"0123abcd_89ab-4def-8123-456789abcdef",
                               L"0123abcd-89ab-4def-8123-456789abcdeg", L"/0123abcd-89ab-4def-8123-456789abcde"}) {
        EXPECT_FALSE(Buffer::isValidName(bad)) << vx_link::utf8(bad);
        EXPECT_THROW(Buffer(bad, Buffer::OpenMode::Create), mp::SharedMemoryException);
        EXPECT_THROW(Buffer::remove(bad), mp::SharedMemoryException);
        EXPECT_THROW(Buffer::exists(bad), mp::SharedMemoryException);
    }
    // A missing object cannot be opened; the error is a SharedMemoryException.
    EXPECT_THROW(Buffer(good, Buffer::OpenMode::Open), mp::SharedMemoryException);
    try {
        Buffer missing(good, Buffer::OpenMode::Open);
    } catch (const mp::Exception& e) {
        EXPECT_NE(std::string(e.what()).find("does not exist"), std::string::npos) << e.what();
    }
}

TEST(SharedBuffer, WriteReadReplaceRemove) {
    std::wstring name = xch::IExchangeObject::generateUUID();
    std::string payload("\x00\x01\xff payload \x78\x9c", 14);
    {
        Buffer out(name, Buffer::OpenMode::Create);
        out.write(payload.data(), payload.size());
    }
    EXPECT_TRUE(Buffer::exists(name));
    EXPECT_EQ(Buffer(name, Buffer::OpenMode::Open).read(), bytesOf(payload));
    {
        Buffer::View view = Buffer(name, Buffer::OpenMode::Open).view();
        EXPECT_EQ(std::string(view.data(), view.size()), payload);
    }

    // Writing again replaces the object with exactly the new size.
    Buffer(name, Buffer::OpenMode::Create).write("ab", 2);
    EXPECT_EQ(Buffer(name, Buffer::OpenMode::Open).read(), bytesOf("ab"));
    // An empty object is fine.
    Buffer(name, Buffer::OpenMode::Create).write(nullptr, 0);
    EXPECT_TRUE(Buffer(name, Buffer::OpenMode::Open).read().empty());
    EXPECT_EQ(Buffer(name, Buffer::OpenMode::Open).view().size(), 0u);

#if !defined(_WIN32)
    struct stat info {};
    ASSERT_EQ(stat(("/dev/shm/" + vx_link::utf8(name)).c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
#endif

    EXPECT_TRUE(Buffer::remove(name));
    EXPECT_FALSE(Buffer::remove(name));
    EXPECT_FALSE(Buffer::exists(name));
}

TEST(SharedBuffer, LargeBufferSurvives) {
    std::wstring name = xch::IExchangeObject::generateUUID();
    std::vector<char> big(32 << 20);
    for (std::size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i * 2654435761u >> 24);
    Buffer(name, Buffer::OpenMode::Create).write(big.data(), big.size());
    EXPECT_EQ(Buffer(name, Buffer::OpenMode::Open).read(), big);
    Buffer::remove(name);
}

TEST(SharedBuffer, SecondProcessReadsAndWritesTheSameBytes) {
    std::set<std::string> before = xch_test::sharedMemoryObjects();
    std::string payload;
    for (int i = 0; i < 70000; ++i) payload += static_cast<char>(i % 251);
    std::wstring name = xch::IExchangeObject::generateUUID();
    Buffer(name, Buffer::OpenMode::Create).write(payload.data(), payload.size());

    xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer"));
    std::string uuid = vx_link::utf8(name), line;
    peer.writeLine("dump " + uuid);
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, xch_test::toHex(payload));

    // The child creates a buffer; this process reads it and removes it.
    std::wstring reply = xch::IExchangeObject::generateUUID();
    peer.writeLine("write " + vx_link::utf8(reply) + " " + xch_test::toHex(std::string("\x1f\x8b from child", 13)));
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, "ok");
    EXPECT_EQ(Buffer(reply, Buffer::OpenMode::Open).read(), bytesOf(std::string("\x1f\x8b from child", 13)));

    peer.writeLine("remove " + uuid);
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, "removed");
    EXPECT_FALSE(Buffer::exists(name));
    EXPECT_TRUE(Buffer::remove(reply));
    EXPECT_EQ(peer.wait(), 0);
    EXPECT_EQ(xch_test::sharedMemoryObjects(), before);
}
