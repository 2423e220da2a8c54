// The JSON text writer behind JsonTextIO::write: a document to wide text
// in memory, character for character what rapidjson's Writer (compact) or
// PrettyWriter (indent of two blanks, arrays on one line) produces.
#pragma once

#include <cstddef>
#include <ostream>

#include <xch_api/xch_api_json.h>

namespace xch {
namespace json {

// Wide text in memory, growing in one block; or, made over a stream, a
// block of text that is handed to the stream whenever it fills. Allocation
// failure throws std::bad_alloc.
class TextBuffer {
public:
    TextBuffer() = default;
    TextBuffer(std::wostream& out, std::size_t block) : m_stream(&out) { grow(block); }
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;
    ~TextBuffer();

    const wchar_t* data() const { return m_data; }
    std::size_t size() const { return m_size; }
    // Characters that fit after the text without growing.
    std::size_t room() const { return m_capacity - m_size; }

    // Room for at least `n` more characters at the returned position.
    wchar_t* reserve(std::size_t n) {
        if (m_capacity - m_size < n) makeRoom(n);
        return m_data + m_size;
    }
    // Marks the characters up to `end` (within the reserved room) written.
    void commit(wchar_t* end) { m_size = static_cast<std::size_t>(end - m_data); }

    // Over a stream: hands what is held to the stream.
    void flush();

private:
    void makeRoom(std::size_t n);
    void grow(std::size_t n);

    std::wostream* m_stream = nullptr;
    wchar_t* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

// Whether renderText can write `value`: no NaN or infinite double, nesting
// within limits::kMaxJsonDepth.
bool canRender(const JsonValue& value);

// Appends `value` as compact or pretty text to `out`. Returns false when
// the value cannot be written: a NaN or infinite double, or nesting deeper
// than limits::kMaxJsonDepth. `out` then holds a partial text.
bool renderText(TextBuffer& out, const JsonValue& value, bool pretty);

} // namespace json
} // namespace xch
