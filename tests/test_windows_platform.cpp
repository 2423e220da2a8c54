// The Windows facilities behind the library: the directory of the emulated
// shared-memory objects, UUID randomness from BCrypt, the ANSI code page of
// writeToFile and the thread ids in the log. Built on Windows only.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <regex>
#include <string>
#include <thread>
#include <vector>

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

using Buffer = mp::SharedBuffer<char>;

namespace {

bool isDirectory(const std::string& path) {
    DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Names in a directory (without "." and ".."), sorted.
std::vector<std::string> entries(const std::string& dir) {
    std::vector<std::string> out;
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA((dir + "\\*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return out;
    do {
        std::string name = data.cFileName;
        if (name != "." && name != "..") out.push_back(name);
    } while (FindNextFileA(find, &data));
    FindClose(find);
    std::sort(out.begin(), out.end());
    return out;
}

void removeTree(const std::string& path) {
    if (isDirectory(path)) {
        for (const std::string& name : entries(path)) removeTree(path + "\\" + name);
        RemoveDirectoryA(path.c_str());
    } else {
        DeleteFileA(path.c_str());
    }
}

// A fresh directory below the real temporary directory, removed with all
// it holds at the end of the test.
class ScratchDirectory {
public:
    explicit ScratchDirectory(const std::string& stem) : m_path(xch_test::tempPath(stem)) {
        CreateDirectoryA(m_path.c_str(), nullptr);
    }
    ~ScratchDirectory() { removeTree(m_path); }
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

// Points this process's temporary directory (TMP and TEMP, which
// GetTempPathA consults) at `dir` while it lives. Child processes inherit it.
class TemporaryDirectoryOverride {
public:
    explicit TemporaryDirectoryOverride(const std::string& dir) {
        for (Saved& s : m_saved) {
            char value[32768];
            DWORD n = GetEnvironmentVariableA(s.name, value, sizeof value);
            s.present = n > 0 && n < sizeof value;
            if (s.present) s.value.assign(value, n);
            SetEnvironmentVariableA(s.name, dir.c_str());
        }
    }
    ~TemporaryDirectoryOverride() {
        for (const Saved& s : m_saved) SetEnvironmentVariableA(s.name, s.present ? s.value.c_str() : nullptr);
    }

private:
    struct Saved {
        const char* name;
        bool present;
        std::string value;
    };
    Saved m_saved[2] = {{"TMP", false, {}}, {"TEMP", false, {}}};
};

// Redirects one imported function of a loaded module (its import address
// table entry) to `replacement`, and restores it when destroyed.
class ImportPatch {
public:
    ImportPatch(const char* module, const char* dll, const char* function, void* replacement) {
        auto base = reinterpret_cast<unsigned char*>(GetModuleHandleA(module));
        if (!base) return;
        auto dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
        auto nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
        const IMAGE_DATA_DIRECTORY& imports = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        for (auto d = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress); d->Name; ++d) {
            if (_stricmp(reinterpret_cast<const char*>(base + d->Name), dll) != 0) continue;
            auto names = reinterpret_cast<const IMAGE_THUNK_DATA*>(
                base + (d->OriginalFirstThunk ? d->OriginalFirstThunk : d->FirstThunk));
            auto slots = reinterpret_cast<IMAGE_THUNK_DATA*>(base + d->FirstThunk);
            for (; names->u1.AddressOfData; ++names, ++slots) {
                if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
                auto byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
                if (std::strcmp(reinterpret_cast<const char*>(byName->Name), function) == 0) {
                    m_slot = reinterpret_cast<void**>(&slots->u1.Function);
                    m_original = *m_slot;
                    store(replacement);
                    return;
                }
            }
        }
    }
    ~ImportPatch() {
        if (m_slot) store(m_original);
    }
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;
    bool active() const { return m_slot != nullptr; }

private:
    void store(void* value) {
        DWORD old = 0;
        VirtualProtect(m_slot, sizeof(void*), PAGE_READWRITE, &old);
        *m_slot = value;
        VirtualProtect(m_slot, sizeof(void*), old, &old);
    }
    void** m_slot = nullptr;
    void* m_original = nullptr;
};

// A stand-in for the system's random-number provider: hands out the bytes
// 0, 1, 2, ... and records how it is used; each call can be made to fail.
struct FakeRandomProvider {
    static NTSTATUS openStatus;
    static NTSTATUS randomStatus;
    static int opened;
    static int closed;
    static ULONG requested;
    static bool rngAlgorithm;
    static bool sameHandle;
    static int token;

    static void reset(NTSTATUS open, NTSTATUS random) {
        openStatus = open;
        randomStatus = random;
        opened = closed = 0;
        requested = 0;
        rngAlgorithm = false;
        sameHandle = true;
    }
    static NTSTATUS WINAPI open(BCRYPT_ALG_HANDLE* handle, LPCWSTR algorithm, LPCWSTR, ULONG) {
        ++opened;
        rngAlgorithm = algorithm && std::wstring(algorithm) == BCRYPT_RNG_ALGORITHM;
        if (!BCRYPT_SUCCESS(openStatus)) return openStatus;
        *handle = &token;
        return 0;
    }
    static NTSTATUS WINAPI random(BCRYPT_ALG_HANDLE handle, PUCHAR out, ULONG size, ULONG) {
        sameHandle = sameHandle && handle == &token;
        requested += size;
        if (!BCRYPT_SUCCESS(randomStatus)) return randomStatus;
        for (ULONG i = 0; i < size; ++i) out[i] = static_cast<UCHAR>(i);
        return 0;
    }
    static NTSTATUS WINAPI close(BCRYPT_ALG_HANDLE handle, ULONG) {
        sameHandle = sameHandle && handle == &token;
        ++closed;
        return 0;
    }
};
NTSTATUS FakeRandomProvider::openStatus = 0;
NTSTATUS FakeRandomProvider::randomStatus = 0;
int FakeRandomProvider::opened = 0;
int FakeRandomProvider::closed = 0;
ULONG FakeRandomProvider::requested = 0;
bool FakeRandomProvider::rngAlgorithm = false;
bool FakeRandomProvider::sameHandle = true;
int FakeRandomProvider::token = 0;

const NTSTATUS kNotFound = static_cast<NTSTATUS>(0xC0000225L);
const NTSTATUS kInvalidParameter = static_cast<NTSTATUS>(0xC000000DL);

} // namespace

TEST(WindowsSharedDirectory, CreatedUnderTheTemporaryDirectoryAndFoundByASecondProcess) {
    ScratchDirectory temp("shared_dir");
    TemporaryDirectoryOverride useTemp(temp.path());
    const std::string release = temp.path() + "\\mp-v26-Quillaro_26_MultiProcess";
    ASSERT_FALSE(isDirectory(release));

    // The first object creates the release directory and one per-boot
    // directory in it; the object is a file of exactly the written size.
    const std::wstring first = xch::IExchangeObject::generateUUID();
    const std::string firstBytes("from the first process\0\xff", 24);
    Buffer(first, Buffer::OpenMode::Create).write(firstBytes.data(), firstBytes.size());
    ASSERT_TRUE(isDirectory(release));
    const std::vector<std::string> stamps = entries(release);
    ASSERT_EQ(stamps.size(), 1u);
    const std::string boot = release + "\\" + stamps[0];
    EXPECT_TRUE(isDirectory(boot));
    EXPECT_EQ(stamps[0].find_first_not_of("0123456789"), std::string::npos) << stamps[0];
    EXPECT_EQ(entries(boot), std::vector<std::string>{vx_link::utf8(first)});
    WIN32_FILE_ATTRIBUTE_DATA file{};
    ASSERT_TRUE(GetFileAttributesExA((boot + "\\" + vx_link::utf8(first)).c_str(), GetFileExInfoStandard, &file));
    EXPECT_EQ(file.nFileSizeLow, firstBytes.size());

    // A second process (it inherits the temporary directory) reads that
    // object and writes one that this process reads, in the same directory.
    xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer"));
    std::string line;
    peer.writeLine("dump " + vx_link::utf8(first));
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, xch_test::toHex(firstBytes));
    const std::wstring second = xch::IExchangeObject::generateUUID();
    const std::string secondBytes = "from the second process";
    peer.writeLine("write " + vx_link::utf8(second) + " " + xch_test::toHex(secondBytes));
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, "ok");
    peer.writeLine("bye");
    EXPECT_EQ(peer.wait(), 0);
    EXPECT_EQ(Buffer(second, Buffer::OpenMode::Open).read(), std::vector<char>(secondBytes.begin(), secondBytes.end()));
    EXPECT_EQ(entries(release), stamps);
    std::vector<std::string> both = {vx_link::utf8(first), vx_link::utf8(second)};
    std::sort(both.begin(), both.end());
    EXPECT_EQ(entries(boot), both);

    EXPECT_TRUE(Buffer::remove(first));
    EXPECT_TRUE(Buffer::remove(second));
    EXPECT_TRUE(entries(boot).empty());
}

TEST(WindowsSharedDirectory, AnUncreatableDirectoryIsASharedMemoryError) {
    // The temporary directory names a file, so no directory can be made in it.
    ScratchDirectory temp("shared_dir_blocked");
    const std::string blocker = temp.path() + "\\not_a_directory";
    std::FILE* f = std::fopen(blocker.c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fclose(f);
    TemporaryDirectoryOverride useTemp(blocker + "\\");

    const std::wstring name = xch::IExchangeObject::generateUUID();
    EXPECT_THROW(Buffer(name, Buffer::OpenMode::Create).write("x", 1), mp::SharedMemoryException);
    EXPECT_FALSE(Buffer::exists(name));
    EXPECT_THROW(Buffer(name, Buffer::OpenMode::Open), mp::SharedMemoryException);
    EXPECT_EQ(entries(temp.path()), std::vector<std::string>{"not_a_directory"});
}

TEST(WindowsUuid, RandomBytesComeFromTheBCryptProvider) {
    ImportPatch open("xch_api.dll", "bcrypt.dll", "BCryptOpenAlgorithmProvider",
                     reinterpret_cast<void*>(&FakeRandomProvider::open));
    ImportPatch random("xch_api.dll", "bcrypt.dll", "BCryptGenRandom",
                       reinterpret_cast<void*>(&FakeRandomProvider::random));
    ImportPatch close("xch_api.dll", "bcrypt.dll", "BCryptCloseAlgorithmProvider",
                      reinterpret_cast<void*>(&FakeRandomProvider::close));
    ASSERT_TRUE(open.active() && random.active() && close.active())
        << "xch_api.dll does not import the BCrypt random-number functions";

    // Bytes 00 01 .. 0f from the provider: version 4 in byte 6, the RFC 4122
    // variant in byte 8, lower-case 8-4-4-4-12 text.
    FakeRandomProvider::reset(0, 0);
    EXPECT_EQ(xch::IExchangeObject::generateUUID(), L"00010203-0405-4607-8809-0a0b0c0d0e0f");
    EXPECT_TRUE(FakeRandomProvider::rngAlgorithm);
    EXPECT_EQ(FakeRandomProvider::requested, 16u);
    EXPECT_EQ(FakeRandomProvider::opened, 1);
    EXPECT_EQ(FakeRandomProvider::closed, 1);
    EXPECT_TRUE(FakeRandomProvider::sameHandle);

    // Failures name the call and carry its status; a provider that was
    // opened is closed again.
    struct Case {
        NTSTATUS open, random;
        const char* call;
        int closed;
    };
    for (const Case& c : {Case{kNotFound, 0, "BCryptOpenAlgorithmProvider", 0},
                          Case{0, kInvalidParameter, "BCryptGenRandom", 1}}) {
        FakeRandomProvider::reset(c.open, c.random);
        try {
            xch::IExchangeObject::generateUUID();
            ADD_FAILURE() << "no entropy_error for " << c.call;
        } catch (const boost::uuids::entropy_error& e) {
            EXPECT_NE(std::string(e.what()).find(c.call), std::string::npos) << e.what();
            EXPECT_EQ(e.errcode(), BCRYPT_SUCCESS(c.open) ? c.random : c.open);
        }
        EXPECT_EQ(FakeRandomProvider::closed, c.closed) << c.call;
    }
}

TEST(WindowsWriteToFile, ConvertsTextAndPathThroughTheAnsiCodePage) {
    if (GetACP() != 1252)
        GTEST_SKIP() << "expects the Western European ANSI code page 1252, this system uses " << GetACP();
    const std::string base = xch_test::tempPath("");
    const std::wstring path = std::wstring(base.begin(), base.end()) + L"\u00e9\u20ac.json";

    xch::JsonDocument doc;
    doc.SetObject();
    doc.AddMember(L"text", xch::JsonValue(L"\u00e9\u20ac\u4e2d", doc.GetAllocator()), doc.GetAllocator());
    xch::JsonTextIO::writeToFile(doc, path);

    // The wide name finds the file: the path went through the same code page.
    // In 1252, U+00E9 is E9 and U+20AC is 80; U+4E2D has no byte and becomes
    // the default character.
    std::string bytes;
    if (std::FILE* f = _wfopen(path.c_str(), L"rb")) {
        char buffer[256];
        std::size_t n = 0;
        while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
        std::fclose(f);
    }
    _wremove(path.c_str());
    EXPECT_EQ(bytes, "{\n  \"text\": \"\xe9\x80?\"\n}");

    // A path the code page cannot hold gives no file and no exception.
    const std::wstring unrepresentable = std::wstring(base.begin(), base.end()) + L"\u4e2d.json";
    EXPECT_NO_THROW(xch::JsonTextIO::writeToFile(doc, unrepresentable));
    EXPECT_EQ(GetFileAttributesW(unrepresentable.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(WindowsLogger, LinesCarryTheWindowsThreadId) {
    xch_test::LogCapture log(4);
    DWORD mainId = GetCurrentThreadId();
    DWORD otherId = 0;
    VX_LOG(4, "from the main thread");
    std::thread([&otherId] {
        otherId = GetCurrentThreadId();
        VX_LOG(4, "from another thread");
    }).join();
    std::vector<std::string> lines = log.lines();
    ASSERT_EQ(lines.size(), 2u);
    const std::regex id(R"(\] \[(\d+)\] from)");
    std::smatch m;
    ASSERT_TRUE(std::regex_search(lines[0], m, id)) << lines[0];
    EXPECT_EQ(m[1].str(), std::to_string(mainId));
    ASSERT_TRUE(std::regex_search(lines[1], m, id)) << lines[1];
    EXPECT_EQ(m[1].str(), std::to_string(otherId));
    EXPECT_NE(mainId, otherId);
}
