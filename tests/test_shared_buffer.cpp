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
std::string contents(const std::wstring& name) {
    Buffer::View view = Buffer(name, Buffer::OpenMode::Open).view();
    std::vector<char> copy = Buffer(name, Buffer::OpenMode::Open).read();
    EXPECT_EQ(std::string(copy.begin(), copy.end()), std::string(view.data(), view.size()));
    return std::string(view.data(), view.size());
}
} // namespace

TEST(SharedBuffer, OnlyUuidNamesReachTheSystem) {
    EXPECT_TRUE(Buffer::isValidName(L"0123ABCD-89ab-4def-8123-456789ABCDEF"));
    for (const wchar_t* bad : {L"", L"../../etc/passwd", L"0123abcd-89ab-4def-8123-456789abcde",
                               L"0123abcd-89ab-4def-8123-456789abcdef0", L"0123abcd_89ab-4def-8123-456789abcdef",
                               L"0123abcd-89ab-4def-8123-456789abcdeg", L"/0123abcd-89ab-4def-8123-456789abcde"}) {
        EXPECT_FALSE(Buffer::isValidName(bad)) << vx_link::utf8(bad);
        EXPECT_THROW(Buffer(bad, Buffer::OpenMode::Create), mp::SharedMemoryException);
        EXPECT_THROW(Buffer::remove(bad), mp::SharedMemoryException);
    }
    // A missing object cannot be opened.
    EXPECT_THROW(Buffer(xch::IExchangeObject::generateUUID(), Buffer::OpenMode::Open), mp::SharedMemoryException);
}

TEST(SharedBuffer, WriteReadReplaceRemove) {
    std::wstring name = xch::IExchangeObject::generateUUID();
    std::string big(32 << 20, '\0');
    for (std::size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i * 2654435761u >> 24);
    for (const std::string& payload : {big, std::string("\x00\x01\xff \x78\x9c", 6), std::string()}) {
        // Writing again replaces the object with exactly the new size.
        Buffer(name, Buffer::OpenMode::Create).write(payload.data(), payload.size());
        EXPECT_EQ(contents(name), payload);
    }
#if !defined(_WIN32)
    struct stat info {};
    ASSERT_EQ(stat(("/dev/shm/" + vx_link::utf8(name)).c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
#endif
    EXPECT_TRUE(Buffer::remove(name));
    EXPECT_FALSE(Buffer::remove(name));
    EXPECT_FALSE(Buffer::exists(name));
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

    // The child creates a buffer; this process reads and removes it.
    std::wstring reply = xch::IExchangeObject::generateUUID();
    const std::string fromChild("\x1f\x8b from child", 13);
    peer.writeLine("write " + vx_link::utf8(reply) + " " + xch_test::toHex(fromChild));
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, "ok");
    EXPECT_EQ(contents(reply), fromChild);

    peer.writeLine("remove " + uuid);
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, "removed");
    EXPECT_FALSE(Buffer::exists(name));
    EXPECT_TRUE(Buffer::remove(reply));
    EXPECT_EQ(peer.wait(), 0);
    EXPECT_EQ(xch_test::sharedMemoryObjects(), before);
}
