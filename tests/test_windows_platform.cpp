// Windows code paths: the directory of the emulated shared-memory objects, UUIDs from BCrypt, writeToFile's code page.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <windows.h>
#include <bcrypt.h>

#include <boost/uuid/entropy_error.hpp>
#include <logging/vx_link_logger.h>
#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_json_text_io.h>

#include "support/child_process.h"
#include "support/hex.h"
#include "support/log_capture.h"

namespace fs = std::filesystem;
using Buffer = mp::SharedBuffer<char>;
using xch::IExchangeObject;

struct TemporaryDirectory { // a fresh one; while it lives, `path + use` is TMP and TEMP here and in child processes
    explicit TemporaryDirectory(const std::string& use = "") : path(xch_test::tempPath("shared_dir")) {
        fs::create_directory(path);
        for (const char* name : {"TMP", "TEMP"}) SetEnvironmentVariableA(name, (path + use).c_str());
    }
    ~TemporaryDirectory() {
        for (const char* name : {"TMP", "TEMP"}) SetEnvironmentVariableA(name, std::getenv(name)); // C runtime's copy
        std::error_code ignored; fs::remove_all(path, ignored);
    }
    const std::string path;
};

// A stand-in for the system's random-number provider (its handle: &fake): hands out 0, 1, 2, ..., records its use.
static struct { NTSTATUS openStatus, randomStatus; int opened, closed; bool rng, sameHandle; } fake;
static NTSTATUS WINAPI fakeOpen(BCRYPT_ALG_HANDLE* handle, LPCWSTR algorithm, LPCWSTR, ULONG) {
    fake.rng = algorithm && std::wstring(algorithm) == BCRYPT_RNG_ALGORITHM, ++fake.opened, *handle = &fake;
    return fake.openStatus;
}
static NTSTATUS WINAPI fakeRandom(BCRYPT_ALG_HANDLE handle, PUCHAR out, ULONG size, ULONG) {
    for (ULONG i = 0; i < size; ++i) out[i] = static_cast<UCHAR>(i);
    fake.sameHandle &= handle == &fake;
    return fake.randomStatus;
}
static NTSTATUS WINAPI fakeClose(BCRYPT_ALG_HANDLE handle, ULONG) {
    ++fake.closed, fake.sameHandle &= handle == &fake;
    return 0;
}

struct FakeBCrypt { // while it lives, xch_api.dll's imports of the BCrypt functions lead to the fakes
    FakeBCrypt() { for (auto& [slot, value] : patches) if (slot) std::swap(*slot, value); }
    ~FakeBCrypt() { for (auto& [slot, value] : patches) if (slot) std::swap(*slot, value); }
    template <class F> static std::pair<void**, void*> patch(const char* function, F* replacement) {
        auto base = reinterpret_cast<char*>(GetModuleHandleA("xch_api.dll"));
        auto nt = reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
        const IMAGE_DATA_DIRECTORY& iat = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
        auto first = reinterpret_cast<void**>(base + iat.VirtualAddress), last = first + iat.Size / sizeof(void*);
        void* real = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("bcrypt.dll"), function));
        void** found = std::find(first, last, real);
        DWORD old = 0; // the slot stays writable
        found = real && found != last && VirtualProtect(found, sizeof(void*), PAGE_READWRITE, &old) ? found : nullptr;
        return {found, reinterpret_cast<void*>(replacement)};
    }
    std::pair<void**, void*> patches[3] = {patch("BCryptOpenAlgorithmProvider", fakeOpen),
        patch("BCryptGenRandom", fakeRandom), patch("BCryptCloseAlgorithmProvider", fakeClose)};
};

TEST(WindowsSharedDirectory, CreatedUnderTheTemporaryDirectoryReadByASecondProcessOrASharedMemoryError) {
    TemporaryDirectory temp; // an object makes this directory, in it one per-boot directory (digits), in that a file
    const fs::path release = temp.path + "\\mp-v26-Quillaro_26_MultiProcess";
    const std::wstring name = IExchangeObject::generateUUID();
    const std::string bytes("written by the first process\0\xff", 30);
    Buffer(name, Buffer::OpenMode::Create).write(bytes.data(), bytes.size());
    ASSERT_EQ(std::distance(fs::directory_iterator(release), {}), 1);
    const fs::path boot = fs::directory_iterator(release)->path();
    EXPECT_EQ(boot.filename().string().find_first_not_of("0123456789"), std::string::npos) << boot;
    EXPECT_EQ(fs::file_size(boot / vx_link::utf8(name)), bytes.size());
    xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer")); // inherits the temporary directory
    peer.writeLine("dump " + vx_link::utf8(name));
    std::string dumped;
    EXPECT_TRUE(peer.readLine(dumped) && dumped == xch_test::toHex(bytes)) << dumped;
    EXPECT_EQ(peer.wait(), 0); // its view of the object is closed
    EXPECT_TRUE(Buffer::remove(name));
    EXPECT_TRUE(fs::is_empty(boot));
    TemporaryDirectory blocked("\\not_a_directory\\"); // a file: no directory can be made in it
    std::ofstream(blocked.path + "\\not_a_directory").put('x');
    EXPECT_THROW(Buffer(name, Buffer::OpenMode::Create).write("x", 1), mp::SharedMemoryException);
    EXPECT_EQ(std::distance(fs::directory_iterator(blocked.path), {}), 1) << "only the file";
}

TEST(WindowsUuid, RandomBytesComeFromTheBCryptProvider) {
    FakeBCrypt patched;
    for (const auto& patch : patched.patches) ASSERT_TRUE(patch.first) << "xch_api.dll imports no BCrypt functions";
    fake = {0, 0, 0, 0, false, true}; // bytes 00 .. 0f: version 4 in byte 6, the RFC 4122 variant in byte 8
    EXPECT_EQ(IExchangeObject::generateUUID(), L"00010203-0405-4607-8809-0a0b0c0d0e0f");
    EXPECT_TRUE(fake.rng && fake.sameHandle && fake.opened == 1 && fake.closed == 1);
    for (const bool openFails : {true, false}) { // failures name the call, carry its status, close an opened provider
        fake = {openFails ? NTSTATUS(0xC0000225L) : 0, openFails ? 0 : NTSTATUS(0xC000000DL), 0, 0, false, true};
        const std::string call = openFails ? "BCryptOpenAlgorithmProvider" : "BCryptGenRandom";
        try {
            IExchangeObject::generateUUID();
            ADD_FAILURE() << "no entropy_error for " << call;
        } catch (const boost::uuids::entropy_error& e) {
            EXPECT_NE(std::string(e.what()).find(call), std::string::npos) << e.what();
            EXPECT_EQ(e.errcode(), openFails ? fake.openStatus : fake.randomStatus);
        }
        EXPECT_EQ(fake.closed, openFails ? 0 : 1) << call;
    }
}

TEST(WindowsWriteToFile, ConvertsTextAndPathThroughTheAnsiCodePage) {
    if (GetACP() != 1252) GTEST_SKIP() << "expects the ANSI code page 1252, this system uses " << GetACP();
    const std::wstring base = fs::path(xch_test::tempPath("")).wstring(), path = base + L"\u00e9\u20ac.json";
    xch::JsonDocument doc;
    doc.Parse(L"{\"text\": \"\u00e9\u20ac\u4e2d\"}");
    xch::JsonTextIO::writeToFile(doc, path);
    const std::string file(std::istreambuf_iterator<char>(std::ifstream(fs::path(path), std::ios::binary).rdbuf()), {});
    // Found by its wide name; 1252 has no byte for U+4E2D; a text-mode file
    // has CRLF line ends.
    EXPECT_EQ(file, "{\r\n  \"text\": \"\xe9\x80?\"\r\n}");
    fs::remove(path);
    EXPECT_NO_THROW(xch::JsonTextIO::writeToFile(doc, base + L"\u4e2d.json")); // a path 1252 cannot hold: no file
    EXPECT_FALSE(fs::exists(base + L"\u4e2d.json"));
}
