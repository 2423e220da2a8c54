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

// A fresh directory below the real temporary directory; while it lives, `path + use` is this process's temporary
// directory (TMP and TEMP, which GetTempPathA consults and child processes inherit). Removed with all it holds.
struct TemporaryDirectory {
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

// A stand-in for the system's random-number provider: hands out 0, 1, 2, ..., records its use, returns set statuses.
static struct { NTSTATUS openStatus, randomStatus; int opened, closed; ULONG requested; bool rng, sameHandle; } fake;
static int token; // the provider handle
static NTSTATUS WINAPI fakeOpen(BCRYPT_ALG_HANDLE* handle, LPCWSTR algorithm, LPCWSTR, ULONG) {
    fake.rng = algorithm && std::wstring(algorithm) == BCRYPT_RNG_ALGORITHM, ++fake.opened, *handle = &token;
    return fake.openStatus;
}
static NTSTATUS WINAPI fakeRandom(BCRYPT_ALG_HANDLE handle, PUCHAR out, ULONG size, ULONG) {
    for (ULONG i = 0; i < size; ++i) out[i] = static_cast<UCHAR>(i);
    fake.requested += size, fake.sameHandle &= handle == &token;
    return fake.randomStatus;
}
static NTSTATUS WINAPI fakeClose(BCRYPT_ALG_HANDLE handle, ULONG) {
    ++fake.closed, fake.sameHandle &= handle == &token;
    return 0;
}

// While it lives, xch_api.dll's import address table points at the fakes instead of the BCrypt functions.
struct FakeBCrypt {
    FakeBCrypt() { for (auto& [slot, value] : patches) swap(slot, value); }
    ~FakeBCrypt() { for (auto& [slot, value] : patches) swap(slot, value); }
    static void** slot(const char* function) {
        auto base = reinterpret_cast<char*>(GetModuleHandleA("xch_api.dll"));
        auto nt = reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
        const IMAGE_DATA_DIRECTORY& iat = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
        auto first = reinterpret_cast<void**>(base + iat.VirtualAddress), last = first + iat.Size / sizeof(void*);
        void* real = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("bcrypt.dll"), function));
        void** found = std::find(first, last, real);
        return real && found != last ? found : nullptr;
    }
    static void swap(void** slot, void*& value) { // the table stays writable
        DWORD old = 0;
        if (slot && VirtualProtect(slot, sizeof value, PAGE_READWRITE, &old)) std::swap(*slot, value);
    }
    std::pair<void**, void*> patches[3] = {{slot("BCryptOpenAlgorithmProvider"), reinterpret_cast<void*>(&fakeOpen)},
                                           {slot("BCryptGenRandom"), reinterpret_cast<void*>(&fakeRandom)},
                                           {slot("BCryptCloseAlgorithmProvider"), reinterpret_cast<void*>(&fakeClose)}};
};

TEST(WindowsSharedDirectory, CreatedUnderTheTemporaryDirectoryAndReadByASecondProcess) {
    TemporaryDirectory temp;
    const fs::path release = temp.path + "\\mp-v26-Quillaro_26_MultiProcess";
    // An object creates the release directory, in it one per-boot directory (named by digits), and in that a file.
    const std::wstring name = IExchangeObject::generateUUID();
    const std::string bytes("written by the first process\0\xff", 30);
    Buffer(name, Buffer::OpenMode::Create).write(bytes.data(), bytes.size());
    ASSERT_EQ(std::distance(fs::directory_iterator(release), {}), 1);
    const fs::path boot = fs::directory_iterator(release)->path();
    EXPECT_EQ(boot.filename().string().find_first_not_of("0123456789"), std::string::npos) << boot;
    EXPECT_EQ(fs::file_size(boot / vx_link::utf8(name)), bytes.size());
    // A second process, which inherits the temporary directory, reads it.
    xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer"));
    peer.writeLine("dump " + vx_link::utf8(name));
    std::string dumped;
    ASSERT_TRUE(peer.readLine(dumped));
    EXPECT_EQ(dumped, xch_test::toHex(bytes));
    peer.writeLine("bye");
    EXPECT_EQ(peer.wait(), 0); // its view of the object is closed
    EXPECT_TRUE(Buffer::remove(name));
    EXPECT_TRUE(fs::is_empty(boot));
}

TEST(WindowsSharedDirectory, AnUncreatableDirectoryIsASharedMemoryError) {
    TemporaryDirectory temp("\\not_a_directory\\"); // a file: no directory can be made in it
    std::ofstream(temp.path + "\\not_a_directory").put('x');
    const std::wstring name = IExchangeObject::generateUUID();
    EXPECT_THROW(Buffer(name, Buffer::OpenMode::Create).write("x", 1), mp::SharedMemoryException);
    EXPECT_FALSE(Buffer::exists(name));
    EXPECT_THROW(Buffer(name, Buffer::OpenMode::Open), mp::SharedMemoryException);
    EXPECT_EQ(std::distance(fs::directory_iterator(temp.path), {}), 1) << "only the file";
}

TEST(WindowsUuid, RandomBytesComeFromTheBCryptProvider) {
    FakeBCrypt patched;
    for (const auto& patch : patched.patches) ASSERT_TRUE(patch.first) << "xch_api.dll imports no BCrypt functions";
    // Bytes 00 01 .. 0f: version 4 in byte 6, the RFC 4122 variant in byte 8, lower-case 8-4-4-4-12 text.
    fake = {0, 0, 0, 0, 0, false, true};
    EXPECT_EQ(IExchangeObject::generateUUID(), L"00010203-0405-4607-8809-0a0b0c0d0e0f");
    EXPECT_TRUE(fake.rng && fake.sameHandle && fake.opened == 1 && fake.closed == 1);
    EXPECT_EQ(fake.requested, 16u);
    // Failures name the call and carry its status; a provider that was opened is closed again.
    const NTSTATUS notFound = static_cast<NTSTATUS>(0xC0000225L), invalid = static_cast<NTSTATUS>(0xC000000DL);
    for (const bool openFails : {true, false}) {
        fake = {openFails ? notFound : 0, openFails ? 0 : invalid, 0, 0, 0, false, true};
        const std::string call = openFails ? "BCryptOpenAlgorithmProvider" : "BCryptGenRandom";
        try {
            IExchangeObject::generateUUID();
            ADD_FAILURE() << "no entropy_error for " << call;
        } catch (const boost::uuids::entropy_error& e) {
            EXPECT_NE(std::string(e.what()).find(call), std::string::npos) << e.what();
            EXPECT_EQ(e.errcode(), openFails ? notFound : invalid);
        }
        EXPECT_EQ(fake.closed, openFails ? 0 : 1) << call;
    }
}

TEST(WindowsWriteToFile, ConvertsTextAndPathThroughTheAnsiCodePage) {
    if (GetACP() != 1252) GTEST_SKIP() << "expects the ANSI code page 1252, this system uses " << GetACP();
    const std::wstring base = fs::path(xch_test::tempPath("")).wstring(), path = base + L"\u00e9\u20ac.json";
    xch::JsonDocument doc;
    doc.SetObject();
    doc.AddMember(L"text", xch::JsonValue(L"\u00e9\u20ac\u4e2d", doc.GetAllocator()), doc.GetAllocator());
    xch::JsonTextIO::writeToFile(doc, path);
    // The wide name finds the file (the path took the same code page); 1252 has E9, 80 and no byte for the characters.
    const std::string bytes(std::istreambuf_iterator<char>(std::ifstream(fs::path(path), std::ios::binary).rdbuf()), {});
    EXPECT_EQ(bytes, "{\n  \"text\": \"\xe9\x80?\"\n}");
    fs::remove(path);
    // A path the code page cannot hold gives no file and no exception.
    EXPECT_NO_THROW(xch::JsonTextIO::writeToFile(doc, base + L"\u4e2d.json"));
    EXPECT_FALSE(fs::exists(base + L"\u4e2d.json"));
}
