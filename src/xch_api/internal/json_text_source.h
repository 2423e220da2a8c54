// A rapidjson input stream over wide JSON text in memory that keeps the
// parse within the library's limits.
#pragma once

#include <cstddef>

#include <xch_api/internal/json_number.h>
#include <xch_api/xch_api_limits.h>

namespace xch {
namespace json {

// Serves the text as it is, with two exceptions that turn input beyond the
// limits into ordinary rapidjson parse errors:
// - where an array or object would open beyond limits::kMaxJsonDepth, the
//   input ends (the parse fails instead of recursing without bound);
// - a number whose value lies beyond the range of a double is served as
//   "1e999", which rapidjson refuses with kParseErrorNumberTooBig at the
//   number's own offset (it would otherwise read it as infinity).
// It follows string state to tell brackets and digits in strings from
// structure.
class GuardedTextSource {
public:
    using Ch = wchar_t;

    GuardedTextSource(const wchar_t* text, std::size_t size) : m_begin(text), m_cur(text), m_end(text + size) {
        inspect();
    }

    Ch Peek() const {
        if (m_replacement) return *m_replacement;
        return m_cur == m_end || m_tooDeep ? 0 : *m_cur;
    }

    Ch Take() {
        const Ch c = Peek();
        if (c == 0) return 0;
        if (m_replacement) {
            ++m_replacement;
            ++m_replaced;
            return c;
        }
        ++m_cur;
        follow(c);
        inspect();
        return c;
    }

    std::size_t Tell() const { return static_cast<std::size_t>(m_cur - m_begin) + m_replaced; }
    bool tooDeep() const { return m_tooDeep; }

    // Not used for reading; required by the stream concept.
    Ch* PutBegin() { return nullptr; }
    void Put(Ch) {}
    void Flush() {}
    std::size_t PutEnd(Ch*) { return 0; }

private:
    static bool isNumberChar(Ch c) {
        return (c >= L'0' && c <= L'9') || c == L'-' || c == L'+' || c == L'.' || c == L'e' || c == L'E';
    }

    void follow(Ch c) {
        if (m_inString) {
            if (m_escaped) m_escaped = false;
            else if (c == L'\\') m_escaped = true;
            else if (c == L'"') m_inString = false;
            return;
        }
        m_inNumber = isNumberChar(c);
        switch (c) {
        case L'"': m_inString = true; break;
        case L'{': case L'[': ++m_depth; break;
        case L'}': case L']': if (m_depth) --m_depth; break;
        default: break;
        }
    }

    // Looks at the character about to be served.
    void inspect() {
        if (m_cur == m_end || m_inString) return;
        const Ch c = *m_cur;
        if ((c == L'{' || c == L'[') && m_depth >= limits::kMaxJsonDepth)
            m_tooDeep = true;
        else if (!m_inNumber && (c == L'-' || (c >= L'0' && c <= L'9')) && numberOverflows(m_cur, m_end))
            m_replacement = L"1e999";
    }

    const wchar_t* m_begin;
    const wchar_t* m_cur;
    const wchar_t* m_end;
    const wchar_t* m_replacement = nullptr;
    std::size_t m_replaced = 0;
    std::size_t m_depth = 0;
    bool m_inString = false;
    bool m_escaped = false;
    bool m_inNumber = false;
    bool m_tooDeep = false;
};

} // namespace json
} // namespace xch
