// One table of (value, string) pairs per enumeration.
//
// Enumerations travel in JSON as strings. Each enumeration has exactly one
// table, built on first use as a function-local static and read-only
// afterwards (safe from any thread). The table answers both directions with
// the exchange's fallback rules:
//   toString   - a value not in the table gives the string of the table's
//                smallest value;
//   fromString - a string not in the table gives the value paired with the
//                table's smallest string in code-unit order (upper case
//                sorts before lower case), not necessarily "unknown".
//
// A table is provided by specialising enumTable<E>():
//
//   template <> const EnumTable<EColor>& enumTable<EColor>() {
//       static const EnumTable<EColor> table{{Red, L"red"}, {Green, L"green"}};
//       return table;
//   }
#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <xch_api/xch_api_export.h>

namespace xch {

template <class E>
class EnumTable {
public:
    using Entry = std::pair<E, std::wstring>;

    EnumTable(std::initializer_list<std::pair<E, const wchar_t*>> entries)
        : EnumTable(std::vector<Entry>(entries.begin(), entries.end())) {}

    // A table whose unknown strings read as `unknownString` instead of the
    // value of the smallest string.
    EnumTable(std::initializer_list<std::pair<E, const wchar_t*>> entries, E unknownString)
        : EnumTable(std::vector<Entry>(entries.begin(), entries.end())) {
        m_unknownString = unknownString;
        m_hasUnknownString = true;
    }

    // A table whose entries are made at run time (e.g. a numbered series of
    // versions generated in a loop).
    explicit EnumTable(const std::vector<Entry>& entries) {
        for (const auto& e : entries) {
            m_byValue.emplace_back(e.first, e.second);
            m_byString.emplace_back(e.second, e.first);
        }
        std::stable_sort(m_byValue.begin(), m_byValue.end(),
                         [](const Entry& a, const Entry& b) { return a.first < b.first; });
        std::stable_sort(m_byString.begin(), m_byString.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
    }

    // The string of `value`, or of the smallest value when absent.
    const std::wstring& toString(E value) const {
        auto it = std::lower_bound(m_byValue.begin(), m_byValue.end(), value,
                                   [](const Entry& e, E v) { return e.first < v; });
        if (it != m_byValue.end() && it->first == value)
            return it->second;
        return m_byValue.front().second;
    }

    // Exact, case-sensitive lookup; false when `text` is not in the table.
    bool find(const std::wstring& text, E& value) const {
        auto it = std::lower_bound(m_byString.begin(), m_byString.end(), text,
                                   [](const auto& e, const std::wstring& t) { return e.first < t; });
        if (it == m_byString.end() || it->first != text)
            return false;
        value = it->second;
        return true;
    }

    // The value of `text`; when absent, the value of the smallest string
    // (or the table's own value for unknown strings, if it has one).
    E fromString(const std::wstring& text) const {
        E value;
        if (find(text, value))
            return value;
        return m_hasUnknownString ? m_unknownString : m_byString.front().second;
    }

    const std::vector<Entry>& entries() const { return m_byValue; }

private:
    std::vector<Entry> m_byValue;
    std::vector<std::pair<std::wstring, E>> m_byString;
    E m_unknownString{};
    bool m_hasUnknownString = false;
};

// The table of enumeration E; specialised once per enumeration.
template <class E>
const EnumTable<E>& enumTable();

// The string of `value` from the table of E (smallest value's string when
// the value has none).
template <class E>
const std::wstring& enumToString(E value) {
    return enumTable<E>().toString(value);
}

// The value of `text` from the table of E (exact match; otherwise the value
// of the table's smallest string).
template <class E>
E enumFromString(const std::wstring& text) {
    return enumTable<E>().fromString(text);
}

} // namespace xch
