#include <xch_api/xch_api_json_text_io.h>

#include <fstream>
#include <stdexcept>

#include <logging/vx_link_logger.h>
#include <xch_api/internal/json_text_parser.h>
#include <xch_api/internal/json_text_writer.h>
#include <xch_api/internal/platform.h>
#include <xch_api/xch_api_limits.h>

namespace xch {

namespace {

const char* const kWriteFailed = "Cannot write object into json document";

// Characters handed to the caller's stream, or read from it, at a time.
constexpr std::size_t kBlock = 1 << 16;

// The whole of `in`, read in blocks, followed by a NUL (not counted).
//
// A stream that tells how much it holds (a string stream, a file) is read
// into one allocation of that size plus one: the read that asks for the one
// more finds the end, and the room left holds the NUL. Where the stream
// tells nothing, the room already there is filled before the buffer grows,
// so that finding the end never reallocates (and copies) the whole text.
void readAll(std::wistream& in, json::TextBuffer& text) {
    if (std::wstreambuf* buffer = in.rdbuf()) {
        for (;;) {
            const std::streamsize available = buffer->in_avail();
            const std::size_t block = available > 0 ? static_cast<std::size_t>(available) + 1
                                      : text.room() > 0 ? text.room()
                                                        : kBlock;
            wchar_t* p = text.reserve(block);
            const std::streamsize n = buffer->sgetn(p, static_cast<std::streamsize>(block));
            if (n <= 0) break;
            text.commit(p + n);
        }
    }
    *text.reserve(1) = 0;
}

} // namespace

std::wostream& JsonTextIO::write(std::wostream& out, const JsonDocument& doc, bool pretty) {
    // Everything that can make the writer fail is known before the first
    // character is written, so a refused document leaves nothing on the
    // stream; a document that can be written goes out in blocks, without a
    // copy of the whole text in memory.
    if (!json::canRender(doc))
        throw std::runtime_error(kWriteFailed);
    json::TextBuffer text(out, kBlock);
    const bool written = json::renderText(text, doc, pretty);
    text.flush();
    if (!written || !out)
        throw std::runtime_error(kWriteFailed);
    return out;
}

std::wistream& JsonTextIO::read(std::wistream& in, JsonDocument& doc) {
    json::TextBuffer text;
    readAll(in, text);
    if (json::parseText(text.data(), text.size(), doc).tooDeep)
        VX_LOG(vx_link::LevelError, "JsonTextIO: JSON text is nested deeper than "
                                        << limits::kMaxJsonDepth << " levels.");
    return in;
}

void JsonTextIO::writeToFile(const JsonDocument& doc, const std::wstring& path) {
    json::TextBuffer text;
    if (!json::renderText(text, doc, true))
        throw std::runtime_error(kWriteFailed);
    std::string bytes = platform::toNarrow(text.data(), text.size());
    // Text mode: line ends become the platform's own (CRLF on Windows).
    std::ofstream file(platform::toNarrow(path), std::ios::out | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
}

void JsonTextIO::writeToFile(const IJsonObject& object, const std::wstring& path) {
    JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    writeToFile(doc, path);
}

} // namespace xch
