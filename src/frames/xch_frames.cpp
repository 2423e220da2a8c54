#include "frames/xch_frames.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <xch_api/xch_api_utf8.h>

#if defined(_WIN32)
#  include <fcntl.h>
#  include <io.h>
#else
#  include <csignal>
#endif

namespace xch {
namespace frames {

namespace {

// Frames larger than this are refused.
const unsigned long long kMaxFrame = 1ull << 30;
// Bytes read at a time: a frame's buffer grows by at most this much beyond
// what actually arrived.
const std::size_t kChunk = 1 << 20;

[[noreturn]] void writeFailed() {
    throw std::runtime_error(std::string("cannot write a frame: ") + (errno ? std::strerror(errno) : "output closed"));
}

} // namespace

void prepareStandardStreams() {
#if defined(_WIN32)
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#else
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

void writeFrame(std::FILE* out, const std::string& kind, const std::wstring& text) {
    std::string bytes = xch::toUtf8(text);
    errno = 0;
    if (std::fprintf(out, "%s %zu\n", kind.c_str(), bytes.size()) < 0) writeFailed();
    if (std::fwrite(bytes.data(), 1, bytes.size(), out) != bytes.size()) writeFailed();
    if (std::fflush(out) != 0) writeFailed();
}

bool readFrameBytes(std::FILE* in, std::string& kind, std::string& bytes) {
    bytes.clear();
    char header[64];
    if (!std::fgets(header, sizeof header, in))
        return false;
    std::size_t length = std::strlen(header);
    if (length == 0 || header[length - 1] != '\n') {
        if (std::feof(in) || std::ferror(in)) throw std::runtime_error("input ended inside a frame");
        throw std::runtime_error("malformed frame header");
    }
    char name[32];
    unsigned long long size = 0;
    if (std::sscanf(header, "%31s %llu", name, &size) != 2 || size > kMaxFrame)
        throw std::runtime_error("malformed frame header");
    kind = name;
    while (bytes.size() < size) {
        std::size_t want = static_cast<std::size_t>(std::min<unsigned long long>(size - bytes.size(), kChunk));
        std::size_t have = bytes.size();
        bytes.resize(have + want);
        std::size_t got = std::fread(&bytes[have], 1, want, in);
        if (got != want) {
            bytes.resize(have + got);
            throw std::runtime_error("input ended inside a frame");
        }
    }
    return true;
}

bool readFrame(std::FILE* in, std::string& kind, std::wstring& text) {
    std::string bytes;
    if (!readFrameBytes(in, kind, bytes))
        return false;
    text = xch::fromUtf8(bytes.data(), bytes.size());
    return true;
}

} // namespace frames
} // namespace xch
