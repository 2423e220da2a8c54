#include "frames.h"

#include <stdexcept>
#include <vector>

#include <xch_api/xch_api_utf8.h>

#if defined(_WIN32)
#  include <fcntl.h>
#  include <io.h>
#endif

namespace example {

void useBinaryStandardStreams() {
#if defined(_WIN32)
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
}

void writeFrame(std::FILE* out, const std::string& kind, const std::wstring& text) {
    std::string bytes = xch::toUtf8(text);
    std::fprintf(out, "%s %zu\n", kind.c_str(), bytes.size());
    std::fwrite(bytes.data(), 1, bytes.size(), out);
    std::fflush(out);
}

bool readFrame(std::FILE* in, std::string& kind, std::wstring& text) {
    char header[64];
    if (!std::fgets(header, sizeof header, in))
        return false;
    char name[32];
    unsigned long long size = 0;
    if (std::sscanf(header, "%31s %llu", name, &size) != 2 || size > (1ull << 30))
        throw std::runtime_error("malformed frame header");
    std::vector<char> bytes(static_cast<std::size_t>(size));
    if (std::fread(bytes.data(), 1, bytes.size(), in) != bytes.size())
        throw std::runtime_error("truncated frame");
    kind = name;
    text = xch::fromUtf8(bytes.data(), bytes.size());
    return true;
}

} // namespace example
