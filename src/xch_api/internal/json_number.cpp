#include <xch_api/internal/json_number.h>

#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

namespace xch {
namespace json {

namespace {

bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

} // namespace

bool parseDouble(const wchar_t* begin, const wchar_t* end, double& value) {
    // Numbers are ASCII; narrow them for the standard library's exact
    // conversion (from_chars is locale-independent and correctly rounded).
    char small[64];
    std::string large;
    const std::size_t size = static_cast<std::size_t>(end - begin);
    char* text = small;
    if (size > sizeof small) {
        large.resize(size);
        text = &large[0];
    }
    for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>(begin[i]);
    const std::from_chars_result r = std::from_chars(text, text + size, value);
    if (r.ec == std::errc()) return true;
    if (r.ec != std::errc::result_out_of_range) return false;
    // Out of range is either an overflow (refused) or an underflow, which
    // rounds to zero as every JSON reader does.
    if (numberOverflows(begin, end)) return false;
    value = begin[0] == L'-' ? -0.0 : 0.0;
    return true;
}

bool numberOverflows(const wchar_t* p, const wchar_t* end) {
    const wchar_t* const start = p;
    if (p != end && *p == L'-') ++p;
    if (p == end || !isDigit(*p)) return false;

    // The decimal exponent of the first non-zero digit, before the exponent
    // part is added; found stays false for a zero significand.
    std::int64_t lead = 0;
    bool found = false;
    const wchar_t* intBegin = p;
    if (*p == L'0') {
        ++p;
    } else {
        while (p != end && isDigit(*p)) ++p;
        lead = (p - intBegin) - 1;
        found = true;
    }
    if (p != end && *p == L'.') {
        ++p;
        const wchar_t* fracBegin = p;
        while (p != end && isDigit(*p)) {
            if (!found && *p != L'0') {
                lead = -((p - fracBegin) + 1);
                found = true;
            }
            ++p;
        }
        if (p == fracBegin) return false;
    }
    std::int64_t exponent = 0;
    if (p != end && (*p == L'e' || *p == L'E')) {
        ++p;
        bool negative = false;
        if (p != end && (*p == L'+' || *p == L'-')) negative = *p++ == L'-';
        const wchar_t* expBegin = p;
        while (p != end && isDigit(*p)) {
            if (exponent < 1000000000) exponent = exponent * 10 + (*p - L'0');
            ++p;
        }
        if (p == expBegin) return false;
        if (negative) exponent = -exponent;
    }
    if (!found) return false;
    const std::int64_t magnitude = lead + exponent; // value in [10^m, 10^(m+1))
    if (magnitude < 308) return false;
    if (magnitude > 308) return true;
    // Around the largest double (1.797...e308) the exact conversion decides.
    std::string text(static_cast<std::size_t>(p - start), '\0');
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>(start[i]);
    double value;
    return std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc::result_out_of_range;
}

} // namespace json
} // namespace xch
