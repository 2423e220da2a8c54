#include <xch_api/internal/json_text_writer.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include <rapidjson/internal/dtoa.h>
#include <rapidjson/internal/itoa.h>

#include <xch_api/xch_api_limits.h>

namespace xch {
namespace json {

TextBuffer::~TextBuffer() { std::free(m_data); }

void TextBuffer::flush() {
    if (m_stream && m_size) m_stream->write(m_data, static_cast<std::streamsize>(m_size));
    m_size = 0;
}

void TextBuffer::makeRoom(std::size_t n) {
    if (m_stream) {
        flush();
        if (m_capacity >= n) return;
    }
    grow(n);
}

void TextBuffer::grow(std::size_t n) {
    std::size_t capacity = m_capacity ? m_capacity * 2 : 4096;
    if (capacity - m_size < n) capacity = m_size + n;
    if (capacity > SIZE_MAX / sizeof(wchar_t)) throw std::bad_alloc();
    void* data = std::realloc(m_data, capacity * sizeof(wchar_t));
    if (!data) throw std::bad_alloc();
    m_data = static_cast<wchar_t*>(data);
    m_capacity = capacity;
}

namespace {

// What follows the backslash for characters below 256 that are escaped;
// 'u' means \u00XX with upper-case hex digits.
constexpr char kEscape[256] = {
    'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'b', 't', 'n', 'u', 'f', 'r', 'u', 'u', //
    'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', 'u', //
    0,   0,   '"', 0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   '\\'};
constexpr char kHexDigits[] = "0123456789ABCDEF";

// Characters of one string are written in blocks so that the room reserved
// (six characters per character, for \u00XX) stays small for long strings.
constexpr std::size_t kStringBlock = 4096;

template <bool Pretty>
class Writer {
public:
    explicit Writer(TextBuffer& out) : m_out(out) {}

    bool value(const JsonValue& v, std::size_t depth) {
        switch (v.GetType()) {
        case rapidjson::kNullType: return literal(L"null", 4);
        case rapidjson::kFalseType: return literal(L"false", 5);
        case rapidjson::kTrueType: return literal(L"true", 4);
        case rapidjson::kStringType: return string(v.GetString(), v.GetStringLength());
        case rapidjson::kNumberType: return number(v);
        case rapidjson::kObjectType: return object(v, depth);
        case rapidjson::kArrayType: return array(v, depth);
        }
        return false;
    }

private:
    bool literal(const wchar_t* text, std::size_t n) {
        wchar_t* p = m_out.reserve(n);
        std::memcpy(p, text, n * sizeof(wchar_t));
        m_out.commit(p + n);
        return true;
    }

    void put(wchar_t c) {
        wchar_t* p = m_out.reserve(1);
        *p = c;
        m_out.commit(p + 1);
    }

    // A newline and two blanks per level.
    void newline(std::size_t level) {
        wchar_t* p = m_out.reserve(1 + 2 * level);
        *p++ = L'\n';
        for (std::size_t i = 0; i < 2 * level; ++i) *p++ = L' ';
        m_out.commit(p);
    }

    // ASCII digits from rapidjson's own conversions, widened.
    bool ascii(const char* text, const char* end) {
        wchar_t* p = m_out.reserve(static_cast<std::size_t>(end - text));
        while (text != end) *p++ = static_cast<wchar_t>(*text++);
        m_out.commit(p);
        return true;
    }

    bool number(const JsonValue& v) {
        char buffer[32];
        if (v.IsDouble()) {
            const double d = v.GetDouble();
            if (rapidjson::internal::Double(d).IsNanOrInf()) return false;
            return ascii(buffer, rapidjson::internal::dtoa(d, buffer));
        }
        if (v.IsInt()) return ascii(buffer, rapidjson::internal::i32toa(v.GetInt(), buffer));
        if (v.IsUint()) return ascii(buffer, rapidjson::internal::u32toa(v.GetUint(), buffer));
        if (v.IsInt64()) return ascii(buffer, rapidjson::internal::i64toa(v.GetInt64(), buffer));
        return ascii(buffer, rapidjson::internal::u64toa(v.GetUint64(), buffer));
    }

    bool object(const JsonValue& v, std::size_t depth) {
        if (depth >= limits::kMaxJsonDepth) return false;
        put(L'{');
        bool first = true;
        for (const auto& member : v.GetObject()) {
            if (!first) put(L',');
            first = false;
            if (Pretty) newline(depth + 1);
            if (!string(member.name.GetString(), member.name.GetStringLength())) return false;
            if (Pretty) literal(L": ", 2);
            else put(L':');
            if (!value(member.value, depth + 1)) return false;
        }
        if (Pretty && !first) newline(depth);
        put(L'}');
        return true;
    }

    bool array(const JsonValue& v, std::size_t depth) {
        if (depth >= limits::kMaxJsonDepth) return false;
        put(L'[');
        bool first = true;
        for (const auto& element : v.GetArray()) {
            if (!first) {
                if (Pretty) literal(L", ", 2);
                else put(L',');
            }
            first = false;
            if (!value(element, depth + 1)) return false;
        }
        put(L']');
        return true;
    }

    // Whether none of the characters needs escaping (a counting loop, which
    // the compiler vectorizes).
    static bool plain(const wchar_t* s, std::size_t n) {
        std::uint32_t special = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const std::uint32_t c = static_cast<std::uint32_t>(s[i]);
            special |= (c < 0x20 || c == '"' || c == '\\') ? 1u : 0u;
        }
        return special == 0;
    }

    // The string quoted and escaped: '"', '\\' and control characters are
    // escaped, every other code unit is copied as it is (rapidjson's writer
    // does not validate a string in the document's own encoding).
    bool string(const wchar_t* s, std::size_t length) {
        put(L'"');
        std::size_t i = 0;
        while (i < length) {
            const std::size_t stop = length - i > kStringBlock ? i + kStringBlock : length;
            wchar_t* p = m_out.reserve(6 * (stop - i));
            if (plain(s + i, stop - i)) { // the common case: a straight copy
                std::memcpy(p, s + i, (stop - i) * sizeof(wchar_t));
                m_out.commit(p + (stop - i));
                i = stop;
                continue;
            }
            for (; i < stop; ++i) {
                const std::uint32_t c = static_cast<std::uint32_t>(s[i]);
                const char e = c < 256 ? kEscape[c] : 0;
                if (!e) {
                    *p++ = s[i];
                    continue;
                }
                *p++ = L'\\';
                *p++ = static_cast<wchar_t>(e);
                if (e == 'u') {
                    *p++ = L'0';
                    *p++ = L'0';
                    *p++ = static_cast<wchar_t>(kHexDigits[c >> 4]);
                    *p++ = static_cast<wchar_t>(kHexDigits[c & 0xF]);
                }
            }
            m_out.commit(p);
        }
        put(L'"');
        return true;
    }

    TextBuffer& m_out;
};

inline bool nonFinite(const JsonValue& v) {
    return v.IsDouble() && rapidjson::internal::Double(v.GetDouble()).IsNanOrInf();
}

// The elements of an array and the values of an object are checked in the
// loop over them; only arrays and objects among them are descended into.
// Most of a large document is bulk arrays of numbers, so the walk costs
// little more than reading the values once (which also brings them into
// the cache for the writer that follows).
bool canRenderAt(const JsonValue& v, std::size_t depth) {
    if (v.IsArray()) {
        if (depth >= limits::kMaxJsonDepth) return false;
        for (const auto& element : v.GetArray()) {
            if (nonFinite(element)) return false;
            if ((element.IsArray() || element.IsObject()) && !canRenderAt(element, depth + 1)) return false;
        }
        return true;
    }
    if (v.IsObject()) {
        if (depth >= limits::kMaxJsonDepth) return false;
        for (const auto& member : v.GetObject()) {
            if (nonFinite(member.value)) return false;
            if ((member.value.IsArray() || member.value.IsObject()) && !canRenderAt(member.value, depth + 1))
                return false;
        }
        return true;
    }
    return !nonFinite(v);
}

} // namespace

bool canRender(const JsonValue& value) { return canRenderAt(value, 0); }

bool renderText(TextBuffer& out, const JsonValue& value, bool pretty) {
    if (pretty) return Writer<true>(out).value(value, 0);
    return Writer<false>(out).value(value, 0);
}

} // namespace json
} // namespace xch
