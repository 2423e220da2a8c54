#include <xch_api/internal/json_text_parser.h>

#include <cstdint>
#include <vector>

#include <rapidjson/reader.h>

#include <xch_api/internal/json_number.h>
#include <xch_api/xch_api_limits.h>

namespace xch {
namespace json {

namespace {

using rapidjson::ParseErrorCode;

inline bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

inline int hexValue(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

// Exact powers of ten as doubles (10^22 is the largest exactly held).
constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Recursive descent over NUL-terminated text, sending values to the
// document's handler (values collect on the document's stack and each array
// and object is allocated once, at its final size, when it closes).
class Parser {
public:
    Parser(const wchar_t* text, std::size_t size) : m_begin(text), m_end(text + size), m_p(text) {}

    // The generator interface of JsonDocument::Populate.
    bool operator()(JsonDocument& handler) {
        m_h = &handler;
        skipWhitespace();
        if (*m_p == 0) return fail(rapidjson::kParseErrorDocumentEmpty, m_p);
        if (!value(0)) return false;
        skipWhitespace();
        if (*m_p != 0) return fail(rapidjson::kParseErrorDocumentRootNotSingular, m_p);
        return true;
    }

    const TextParseResult& result() const { return m_result; }

private:
    bool fail(ParseErrorCode code, const wchar_t* at) {
        m_result.code = code;
        m_result.offset = static_cast<std::size_t>(at - m_begin);
        return false;
    }

    void skipWhitespace() {
        while (*m_p == L' ' || *m_p == L'\n' || *m_p == L'\r' || *m_p == L'\t') ++m_p;
    }

    bool value(std::size_t depth) {
        switch (*m_p) {
        case L'{': return object(depth);
        case L'[': return array(depth);
        case L'"': return string(false);
        case L't': return literal(L"true") && m_h->Bool(true);
        case L'f': return literal(L"false") && m_h->Bool(false);
        case L'n': return literal(L"null") && m_h->Null();
        default:
            if (*m_p == L'-' || isDigit(*m_p)) return number();
            return fail(rapidjson::kParseErrorValueInvalid, m_p);
        }
    }

    bool literal(const wchar_t* word) {
        for (; *word; ++word, ++m_p)
            if (*m_p != *word) return fail(rapidjson::kParseErrorValueInvalid, m_p);
        return true;
    }

    bool enter(std::size_t depth) {
        if (depth < limits::kMaxJsonDepth) return true;
        m_result.tooDeep = true;
        return fail(rapidjson::kParseErrorValueInvalid, m_p);
    }

    static bool countFits(std::size_t n) { return n <= 0xFFFFFFFFu; }

    bool object(std::size_t depth) {
        if (!enter(depth)) return false;
        ++m_p;
        m_h->StartObject();
        skipWhitespace();
        if (*m_p == L'}') {
            ++m_p;
            return m_h->EndObject(0);
        }
        std::size_t members = 0;
        for (;;) {
            if (*m_p != L'"') return fail(rapidjson::kParseErrorObjectMissName, m_p);
            if (!string(true)) return false;
            skipWhitespace();
            if (*m_p != L':') return fail(rapidjson::kParseErrorObjectMissColon, m_p);
            ++m_p;
            skipWhitespace();
            if (!value(depth + 1)) return false;
            skipWhitespace();
            ++members;
            if (*m_p == L',') {
                ++m_p;
                skipWhitespace();
            } else if (*m_p == L'}') {
                ++m_p;
                if (!countFits(members)) return fail(rapidjson::kParseErrorObjectMissCommaOrCurlyBracket, m_p - 1);
                return m_h->EndObject(static_cast<rapidjson::SizeType>(members));
            } else {
                return fail(rapidjson::kParseErrorObjectMissCommaOrCurlyBracket, m_p);
            }
        }
    }

    bool array(std::size_t depth) {
        if (!enter(depth)) return false;
        ++m_p;
        m_h->StartArray();
        skipWhitespace();
        if (*m_p == L']') {
            ++m_p;
            return m_h->EndArray(0);
        }
        std::size_t elements = 0;
        for (;;) {
            if (!value(depth + 1)) return false;
            skipWhitespace();
            ++elements;
            if (*m_p == L',') {
                ++m_p;
                skipWhitespace();
            } else if (*m_p == L']') {
                ++m_p;
                if (!countFits(elements)) return fail(rapidjson::kParseErrorArrayMissCommaOrSquareBracket, m_p - 1);
                return m_h->EndArray(static_cast<rapidjson::SizeType>(elements));
            } else {
                return fail(rapidjson::kParseErrorArrayMissCommaOrSquareBracket, m_p);
            }
        }
    }

    bool emitString(const wchar_t* text, std::size_t length, bool key, const wchar_t* start) {
        if (!countFits(length)) return fail(rapidjson::kParseErrorStringMissQuotationMark, start);
        const auto n = static_cast<rapidjson::SizeType>(length);
        return key ? m_h->Key(text, n, true) : m_h->String(text, n, true);
    }

    bool string(bool key) {
        const wchar_t* const start = ++m_p;
        const wchar_t* q = start;
        // Most strings have no escapes: they are copied straight from the
        // text. Runs of plain characters are skipped eight at a time (a
        // check the compiler vectorizes), then one at a time.
        while (m_end - q >= 8) {
            std::uint32_t special = 0;
            for (int k = 0; k < 8; ++k) {
                const std::uint32_t c = static_cast<std::uint32_t>(q[k]);
                special |= (c < 0x20 || c == L'"' || c == L'\\') ? 1u : 0u;
            }
            if (special) break;
            q += 8;
        }
        for (;; ++q) {
            const wchar_t c = *q;
            if (c == L'"') {
                m_p = q + 1;
                return emitString(start, static_cast<std::size_t>(q - start), key, start);
            }
            if (c == L'\\' || static_cast<std::uint32_t>(c) < 0x20) break;
        }
        m_text.assign(start, q);
        for (;;) {
            const wchar_t c = *q;
            if (c == L'"') {
                m_p = q + 1;
                m_text.push_back(0); // the data pointer of an empty vector may be null
                return emitString(m_text.data(), m_text.size() - 1, key, start);
            }
            if (c == L'\\') {
                if (!escape(q)) return false;
            } else if (static_cast<std::uint32_t>(c) < 0x20) {
                return fail(c == 0 ? rapidjson::kParseErrorStringMissQuotationMark
                                   : rapidjson::kParseErrorStringEscapeInvalid,
                            q);
            } else {
                m_text.push_back(c);
                ++q;
            }
        }
    }

    // One escape sequence at `q` (the backslash), appended to m_text.
    bool escape(const wchar_t*& q) {
        const wchar_t* const at = q;
        wchar_t decoded;
        switch (q[1]) {
        case L'"': decoded = L'"'; break;
        case L'\\': decoded = L'\\'; break;
        case L'/': decoded = L'/'; break;
        case L'b': decoded = L'\b'; break;
        case L'f': decoded = L'\f'; break;
        case L'n': decoded = L'\n'; break;
        case L'r': decoded = L'\r'; break;
        case L't': decoded = L'\t'; break;
        case L'u': {
            unsigned code;
            if (!hex4(q + 2, code)) return fail(rapidjson::kParseErrorStringUnicodeEscapeInvalidHex, at);
            q += 6;
            if (code >= 0xD800 && code <= 0xDBFF) {
                if (q[0] != L'\\' || q[1] != L'u') return fail(rapidjson::kParseErrorStringUnicodeSurrogateInvalid, at);
                unsigned low;
                if (!hex4(q + 2, low)) return fail(rapidjson::kParseErrorStringUnicodeEscapeInvalidHex, at);
                if (low < 0xDC00 || low > 0xDFFF) return fail(rapidjson::kParseErrorStringUnicodeSurrogateInvalid, at);
                q += 6;
                if constexpr (sizeof(wchar_t) == 2) {
                    m_text.push_back(static_cast<wchar_t>(code));
                    m_text.push_back(static_cast<wchar_t>(low));
                } else {
                    m_text.push_back(static_cast<wchar_t>(0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00)));
                }
            } else {
                m_text.push_back(static_cast<wchar_t>(code)); // a lone low surrogate is kept as it is
            }
            return true;
        }
        default: return fail(rapidjson::kParseErrorStringEscapeInvalid, at);
        }
        m_text.push_back(decoded);
        q += 2;
        return true;
    }

    static bool hex4(const wchar_t* p, unsigned& code) {
        code = 0;
        for (int i = 0; i < 4; ++i) {
            const int h = hexValue(p[i]);
            if (h < 0) return false;
            code = code * 16 + static_cast<unsigned>(h);
        }
        return true;
    }

    bool number() {
        const wchar_t* const start = m_p;
        const wchar_t* q = m_p;
        const bool minus = *q == L'-';
        if (minus) ++q;
        const wchar_t* const intBegin = q;
        if (*q == L'0') ++q;
        else if (isDigit(*q)) while (isDigit(*q)) ++q;
        else return fail(rapidjson::kParseErrorValueInvalid, q);
        const wchar_t* const intEnd = q;
        const wchar_t* fracBegin = q;
        const wchar_t* fracEnd = q;
        bool isDouble = false;
        if (*q == L'.') {
            fracBegin = ++q;
            if (!isDigit(*q)) return fail(rapidjson::kParseErrorNumberMissFraction, q);
            while (isDigit(*q)) ++q;
            fracEnd = q;
            isDouble = true;
        }
        int exponent = 0;
        if (*q == L'e' || *q == L'E') {
            ++q;
            bool negative = false;
            if (*q == L'+' || *q == L'-') negative = *q++ == L'-';
            if (!isDigit(*q)) return fail(rapidjson::kParseErrorNumberMissExponent, q);
            for (; isDigit(*q); ++q)
                if (exponent < 100000) exponent = exponent * 10 + (*q - L'0');
            if (negative) exponent = -exponent;
            isDouble = true;
        }
        m_p = q;

        const std::size_t intDigits = static_cast<std::size_t>(intEnd - intBegin);
        if (!isDouble && intDigits <= 20) {
            // An integer: the narrowest form that holds it, else a double.
            std::uint64_t i = 0;
            bool fits = true;
            for (const wchar_t* d = intBegin; d != intEnd; ++d) {
                const unsigned digit = static_cast<unsigned>(*d - L'0');
                if (i > (UINT64_MAX - digit) / 10) {
                    fits = false;
                    break;
                }
                i = i * 10 + digit;
            }
            if (fits) {
                if (!minus) return i <= 0xFFFFFFFFu ? m_h->Uint(static_cast<unsigned>(i)) : m_h->Uint64(i);
                if (i <= 0x80000000u) return m_h->Int(static_cast<int>(-static_cast<std::int64_t>(i)));
                if (i <= (std::uint64_t(1) << 63))
                    return m_h->Int64(i == (std::uint64_t(1) << 63) ? INT64_MIN : -static_cast<std::int64_t>(i));
            }
        }

        // A double. Up to 19 significant digits with a small power of ten
        // are exact in one rounding (both operands are exact doubles);
        // everything else takes the correctly rounded conversion.
        const std::size_t fracDigits = static_cast<std::size_t>(fracEnd - fracBegin);
        if (intDigits + fracDigits <= 19) {
            std::uint64_t w = 0;
            for (const wchar_t* d = intBegin; d != intEnd; ++d) w = w * 10 + static_cast<unsigned>(*d - L'0');
            for (const wchar_t* d = fracBegin; d != fracEnd; ++d) w = w * 10 + static_cast<unsigned>(*d - L'0');
            const int e10 = exponent - static_cast<int>(fracDigits);
            if (w == 0) return m_h->Double(minus ? -0.0 : 0.0);
            if (w <= (std::uint64_t(1) << 53) && e10 >= -22 && e10 <= 22) {
                double d = static_cast<double>(w);
                d = e10 < 0 ? d / kPow10[-e10] : d * kPow10[e10];
                return m_h->Double(minus ? -d : d);
            }
        }
        double d;
        if (!parseDouble(start, q, d)) return fail(rapidjson::kParseErrorNumberTooBig, start);
        return m_h->Double(d);
    }

    const wchar_t* const m_begin;
    const wchar_t* const m_end;
    const wchar_t* m_p;
    JsonDocument* m_h = nullptr;
    std::vector<wchar_t> m_text; // strings with escapes, decoded
    TextParseResult m_result;
};

// A rapidjson input stream that makes rapidjson's own reader report a given
// error code at a given offset: it serves a short text that fails with that
// code, counting positions so that the failure lands on the offset. This is
// how a document's parse result, which only rapidjson's reader can set, is
// given the error found here.
class ErrorReplay {
public:
    using Ch = wchar_t;
    ErrorReplay(const wchar_t* text, std::size_t base) : m_text(text), m_base(base) {}
    Ch Peek() const { return m_text[m_pos]; }
    Ch Take() { return m_text[m_pos] ? m_text[m_pos++] : 0; }
    std::size_t Tell() const { return m_base + m_pos; } // wraps like the subtraction that made m_base
    Ch* PutBegin() { return nullptr; }
    void Put(Ch) {}
    void Flush() {}
    std::size_t PutEnd(Ch*) { return 0; }

private:
    const wchar_t* m_text;
    std::size_t m_base;
    std::size_t m_pos = 0;
};

// The shortest text failing with `code`; unknown codes fall back to an
// invalid value.
const wchar_t* failingText(ParseErrorCode code) {
    switch (code) {
    case rapidjson::kParseErrorDocumentEmpty: return L"";
    case rapidjson::kParseErrorDocumentRootNotSingular: return L"0 0";
    case rapidjson::kParseErrorObjectMissName: return L"{1";
    case rapidjson::kParseErrorObjectMissColon: return L"{\"\"1";
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket: return L"{\"\":0";
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket: return L"[0";
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex: return L"\"\\ux";
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid: return L"\"\\ud800\"";
    case rapidjson::kParseErrorStringEscapeInvalid: return L"\"\\x";
    case rapidjson::kParseErrorStringMissQuotationMark: return L"\"";
    case rapidjson::kParseErrorNumberTooBig: return L"1e999";
    case rapidjson::kParseErrorNumberMissFraction: return L"1.";
    case rapidjson::kParseErrorNumberMissExponent: return L"1e";
    default: return L"x";
    }
}

void setParseError(JsonDocument& doc, ParseErrorCode code, std::size_t offset) {
    const wchar_t* text = failingText(code);
    JsonDocument probe; // where in its text does rapidjson report the error?
    ErrorReplay calibrate(text, 0);
    probe.ParseStream<rapidjson::kParseDefaultFlags, JsonEncoding>(calibrate);
    ErrorReplay replay(text, offset - probe.GetErrorOffset());
    doc.ParseStream<rapidjson::kParseDefaultFlags, JsonEncoding>(replay);
}

} // namespace

TextParseResult parseText(const wchar_t* text, std::size_t size, JsonDocument& doc) {
    doc.Parse(L"null"); // clears a previous parse error; the root is null
    Parser parser(text, size);
    doc.Populate(parser);
    if (parser.result().code != rapidjson::kParseErrorNone)
        setParseError(doc, parser.result().code, parser.result().offset);
    return parser.result();
}

} // namespace json
} // namespace xch
