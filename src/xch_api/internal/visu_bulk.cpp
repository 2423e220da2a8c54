#include <xch_api/internal/visu_bulk.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_base64.h>

namespace xch {
namespace visu_bulk {

namespace {

// The wire order is little-endian; on a big-endian host every word is
// swapped on its way in and out. The test folds to a constant.
inline bool hostIsLittleEndian() {
    const std::uint32_t one = 1;
    std::uint8_t first;
    std::memcpy(&first, &one, 1);
    return first == 1;
}

inline std::uint32_t swapBytes(std::uint32_t w) {
    return (w >> 24) | ((w >> 8) & 0xFF00u) | ((w << 8) & 0xFF0000u) | (w << 24);
}

void swapWords(void* data, std::size_t words) {
    auto* bytes = static_cast<std::uint8_t*>(data);
    for (std::size_t i = 0; i < words; ++i, bytes += 4) {
        std::uint32_t w;
        std::memcpy(&w, bytes, 4);
        w = swapBytes(w);
        std::memcpy(bytes, &w, 4);
    }
}

constexpr std::size_t kMaxStringLength = std::numeric_limits<rapidjson::SizeType>::max() - 1;

// A base64 string of `bytes` bytes owned by `allocator`, terminated.
wchar_t* allocateText(JsonAllocator& allocator, std::size_t bytes, std::size_t& length, Key key) {
    length = Base64::encodedSize(bytes);
    if (length > kMaxStringLength)
        throw std::length_error(std::string(key.owner) + ": " + key.what + " data is too large for one JSON string");
    auto* text = static_cast<wchar_t*>(allocator.Malloc((length + 1) * sizeof(wchar_t)));
    if (!text)
        throw std::bad_alloc();
    text[length] = L'\0';
    return text;
}

void setText(JsonValue& value, const wchar_t* text, std::size_t length) {
    value.SetString(rapidjson::StringRef(text, static_cast<rapidjson::SizeType>(length)));
}

template <class T>
void writeWords(JsonValue& value, JsonAllocator& allocator, const std::vector<T>& x, Key key) {
    static_assert(sizeof(T) == 4, "bulk arrays hold 32-bit values");
    if (!hostIsLittleEndian()) {
        WordWriter writer(value, allocator, x.size(), key);
        writer.put(x.data(), x.size());
        writer.finish();
        return;
    }
    // The vector's bytes are already the wire bytes: one pass, no stage.
    std::size_t length = 0;
    wchar_t* text = allocateText(allocator, x.size() * 4, length, key);
    Base64::encodeInto(text, x.data(), x.size() * 4);
    setText(value, text, length);
}

template <class T>
void writeNumbers(JsonValue& value, JsonAllocator& allocator, const std::vector<T>& x) {
    value.SetArray();
    value.Reserve(static_cast<rapidjson::SizeType>(x.size()), allocator);
    for (T element : x)
        value.PushBack(JsonValue(element), allocator);
}

// Characters of `text` before its padding ("=" or "=="); -1 when the
// padding is longer or cannot end a group.
std::size_t dataLengthOf(const wchar_t* text, std::size_t length, std::string& error) {
    std::size_t data = length;
    while (data > 0 && length - data < 2 && text[data - 1] == L'=')
        --data;
    if (data != length && length % 4 != 0)
        error = "is not a valid base64 string (misplaced padding)";
    else if (data % 4 == 1)
        error = "is not a valid base64 string (a lone character ends it)";
    return data;
}

template <class T>
T elementOf(const JsonValue& v);

template <>
float elementOf<float>(const JsonValue& v) {
    return v.IsNumber() ? static_cast<float>(v.GetDouble()) : 0.0f;
}

template <>
std::int32_t elementOf<std::int32_t>(const JsonValue& v) {
    return v.IsInt() ? v.GetInt() : 0;
}

template <class T>
bool readWords(const JsonValue& value, std::vector<T>& x, Key key) {
    if (value.IsArray()) {
        x.clear();
        x.reserve(value.Size());
        for (const JsonValue& element : value.GetArray())
            x.push_back(elementOf<T>(element));
        return true;
    }
    if (!value.IsString()) {
        logUnknownType(key);
        return false;
    }
    const wchar_t* text = value.GetString();
    std::string error;
    std::size_t dataLength = 0;
    const std::size_t words = wordCount(text, value.GetStringLength(), dataLength, error);
    if (!error.empty()) {
        logBadData(key, error);
        return false;
    }
    // Room for what the decoder may write (whole groups), trimmed after.
    std::vector<T> decoded((Base64::decodedSize(dataLength) + 3) / 4);
    const auto result = Base64::decodeInto(reinterpret_cast<std::uint8_t*>(decoded.data()), text, dataLength);
    if (result.second != dataLength) {
        logBadData(key, "is not a valid base64 string (unexpected character at " + std::to_string(result.second) + ")");
        return false;
    }
    decoded.resize(words);
    if (!hostIsLittleEndian())
        swapWords(decoded.data(), words);
    x = std::move(decoded);
    return true;
}

} // namespace

// ---- WordWriter ---------------------------------------------------------------

WordWriter::WordWriter(JsonValue& value, JsonAllocator& allocator, std::size_t words, Key key)
    : m_value(value), m_text(allocateText(allocator, words * 4, m_length, key)) {}

template <class T>
void WordWriter::put(const T* values, std::size_t count) {
    static_assert(sizeof(T) == 4, "bulk arrays hold 32-bit values");
    putBytes(values, count);
}

template void WordWriter::put<float>(const float*, std::size_t);
template void WordWriter::put<std::int32_t>(const std::int32_t*, std::size_t);

void WordWriter::putBytes(const void* data, std::size_t words) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    while (words > 0) {
        const std::size_t n = std::min(words, kStageWords - m_staged);
        std::memcpy(m_stage + m_staged, bytes, n * 4);
        m_staged += n;
        bytes += n * 4;
        words -= n;
        if (m_staged == kStageWords) flush();
    }
}

void WordWriter::flush() {
    if (!hostIsLittleEndian())
        swapWords(m_stage, m_staged);
    const std::size_t bytes = m_staged * 4;
    if (m_written + Base64::encodedSize(bytes) > m_length)
        throw std::logic_error("visu_bulk::WordWriter: more words than announced");
    m_written += Base64::encodeInto(m_text + m_written, m_stage, bytes);
    m_staged = 0;
}

void WordWriter::finish() {
    flush();
    if (m_written != m_length)
        throw std::logic_error("visu_bulk::WordWriter: fewer words than announced");
    setText(m_value, m_text, m_length);
}

// ---- WordReader ---------------------------------------------------------------

std::size_t wordCount(const wchar_t* text, std::size_t length, std::size_t& dataLength, std::string& error) {
    dataLength = dataLengthOf(text, length, error);
    if (!error.empty()) return 0;
    const std::size_t bytes = dataLength / 4 * 3 + (dataLength % 4 ? dataLength % 4 - 1 : 0);
    if (bytes % 4 != 0) {
        error = "decodes to " + std::to_string(bytes) + " bytes, not a multiple of 4";
        return 0;
    }
    return bytes / 4;
}

WordReader::WordReader(const wchar_t* text, std::size_t length) : m_text(text) {
    m_remaining = wordCount(text, length, m_length, m_error);
}

bool WordReader::refill() {
    const std::size_t chars = std::min(kChunkChars, m_length - m_position);
    const auto result = Base64::decodeInto(m_stage, m_text + m_position, chars);
    if (result.second != chars) {
        m_error = "is not a valid base64 string (unexpected character at " +
                  std::to_string(m_position + result.second) + ")";
        return false;
    }
    m_position += chars;
    m_stageAt = 0;
    m_stageWords = result.first / 4;
    if (m_stageWords == 0) {
        m_error = "ends early";
        return false;
    }
    if (!hostIsLittleEndian())
        swapWords(m_stage, m_stageWords);
    return true;
}

bool WordReader::take(std::int32_t* dest, std::size_t count) {
    if (!ok() || count > m_remaining) {
        if (ok()) m_error = "ends early";
        return false;
    }
    m_remaining -= count;
    while (count > 0) {
        if (m_stageAt == m_stageWords && !refill())
            return false;
        const std::size_t n = std::min(count, m_stageWords - m_stageAt);
        std::memcpy(dest, m_stage + m_stageAt * 4, n * 4);
        m_stageAt += n;
        dest += n;
        count -= n;
    }
    return true;
}

// ---- entry points ---------------------------------------------------------------

void writeBase64(JsonValue& value, JsonAllocator& allocator, const std::vector<float>& x, Key key) {
    writeWords(value, allocator, x, key);
}

void writeBase64(JsonValue& value, JsonAllocator& allocator, const std::vector<std::int32_t>& x, Key key) {
    writeWords(value, allocator, x, key);
}

void writeArray(JsonValue& value, JsonAllocator& allocator, const std::vector<float>& x) {
    writeNumbers(value, allocator, x);
}

void writeArray(JsonValue& value, JsonAllocator& allocator, const std::vector<std::int32_t>& x) {
    writeNumbers(value, allocator, x);
}

bool read(const JsonValue& value, std::vector<float>& x, Key key) { return readWords(value, x, key); }

bool read(const JsonValue& value, std::vector<std::int32_t>& x, Key key) { return readWords(value, x, key); }

void logUnknownType(Key key) {
    VX_LOG(vx_link::LevelError,
           key.owner << ": unknown type of " << key.what << " data (not array, not base64 string)");
}

void logBadData(Key key, const std::string& error) {
    VX_LOG(vx_link::LevelError, key.owner << ": " << key.what << " data " << error);
}

} // namespace visu_bulk
} // namespace xch
