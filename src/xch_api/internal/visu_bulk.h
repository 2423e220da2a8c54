// The bulk arrays of the display model (coordinates, normals, indices):
// vectors of 32-bit values that travel as one base64 string of their
// little-endian bytes, or as a plain JSON array of numbers.
//
// Both directions avoid a JSON value per element and a second full copy of
// the array: the base64 text is encoded straight into a string owned by the
// document's allocator, and decoded straight into the vector (or, for
// layouts that need unpacking, through a small fixed-size stage).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <xch_api/xch_api_json.h>

namespace xch {
namespace visu_bulk {

// A bulk key in log messages: "<owner>: ... <what> data ...".
struct Key {
    const char* owner;  // e.g. "ExcVisuFace"
    const char* what;   // e.g. "vertices", "line indices"
};

// ---- writing ------------------------------------------------------------------

// Writes 32-bit words as base64 into a JSON string value. The string's
// memory comes from the document's allocator and is referenced, not
// copied, by the value, like every string the document owns; a value
// copied into another document must copy its strings.
class WordWriter {
public:
    // Prepares `value` for exactly `words` words. Throws std::length_error
    // when the text would not fit one JSON string.
    WordWriter(JsonValue& value, JsonAllocator& allocator, std::size_t words, Key key);
    WordWriter(const WordWriter&) = delete;
    WordWriter& operator=(const WordWriter&) = delete;

    void put(std::uint32_t word) {
        m_stage[m_staged++] = word;
        if (m_staged == kStageWords) flush();
    }
    void put(std::int32_t word) { put(static_cast<std::uint32_t>(word)); }
    // `count` values of a 4-byte type (float, int32).
    template <class T>
    void put(const T* values, std::size_t count);

    // Encodes what is staged and makes `value` the string.
    void finish();

private:
    static constexpr std::size_t kStageWords = 3072;  // 12288 bytes: whole base64 groups
    void putBytes(const void* data, std::size_t words);
    void flush();

    JsonValue& m_value;
    wchar_t* m_text;
    std::size_t m_length;
    std::size_t m_written = 0;
    std::size_t m_staged = 0;
    std::uint32_t m_stage[kStageWords];
};

// `x` as one base64 string.
void writeBase64(JsonValue& value, JsonAllocator& allocator, const std::vector<float>& x, Key key);
void writeBase64(JsonValue& value, JsonAllocator& allocator, const std::vector<std::int32_t>& x, Key key);
// `x` as a JSON array of numbers.
void writeArray(JsonValue& value, JsonAllocator& allocator, const std::vector<float>& x);
void writeArray(JsonValue& value, JsonAllocator& allocator, const std::vector<std::int32_t>& x);

// ---- reading ------------------------------------------------------------------

// Reads the 32-bit words of a base64 string in order, decoding a chunk at
// a time. The number of words is known (and checked) before any is read.
class WordReader {
public:
    WordReader(const wchar_t* text, std::size_t length);
    WordReader(const WordReader&) = delete;
    WordReader& operator=(const WordReader&) = delete;

    // False once the text turned out not to be base64 of whole words (see
    // error()); the words read so far must then be discarded.
    bool ok() const { return m_error.empty(); }
    // Why reading failed, for "<owner>: <what> data <error>".
    const std::string& error() const { return m_error; }

    // The words not read yet.
    std::size_t remaining() const { return m_remaining; }
    // Reads `count` <= remaining() words (as int32); false on failure.
    bool take(std::int32_t* dest, std::size_t count);
    bool take(std::int32_t& word) { return take(&word, 1); }

private:
    bool refill();

    static constexpr std::size_t kChunkChars = 16384;   // 12288 bytes, 3072 words
    const wchar_t* m_text;
    std::size_t m_length;      // characters before the padding
    std::size_t m_position = 0;
    std::size_t m_remaining = 0;
    std::size_t m_stageAt = 0;
    std::size_t m_stageWords = 0;
    std::string m_error;
    std::uint8_t m_stage[kChunkChars / 4 * 3];
};

// Checks a base64 string of `length` characters for whole 32-bit words:
// returns the number of words, or sets `error` (the decoded size is
// computed from the length and the padding; the characters themselves
// are checked while decoding).
std::size_t wordCount(const wchar_t* text, std::size_t length, std::size_t& dataLength, std::string& error);

// Reads a bulk key: a JSON array replaces `x` with its elements (any number
// converted to float; an element of another kind reads as 0; for int32, a
// non-integer or an integer out of range reads as 0); a string replaces `x`
// with its base64-decoded words. Anything else, or a string that is not
// base64 of whole 4-byte values, is logged at error level and leaves `x`
// as it was. Returns whether `x` was replaced.
bool read(const JsonValue& value, std::vector<float>& x, Key key);
bool read(const JsonValue& value, std::vector<std::int32_t>& x, Key key);

// ---- member rules ---------------------------------------------------------------

// A bulk key written as base64 (skipped when empty if `onlyWhenSet`) and
// read with read() above.
struct Base64Rule {
    Key key;
    bool onlyWhenSet;
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const std::vector<T>& x) const {
        if (onlyWhenSet && x.empty()) return false;
        writeBase64(v, a, x, key);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, std::vector<T>& x) const { visu_bulk::read(v, x, key); }
};

// A bulk key written as a plain JSON array and read with read() above.
struct ArrayRule {
    Key key;
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const std::vector<T>& x) const {
        writeArray(v, a, x);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, std::vector<T>& x) const { visu_bulk::read(v, x, key); }
};

// Logs "<owner>: unknown type of <what> data (not array, not base64 string)".
void logUnknownType(Key key);
// Logs "<owner>: <what> data <error>".
void logBadData(Key key, const std::string& error);

} // namespace visu_bulk
} // namespace xch
