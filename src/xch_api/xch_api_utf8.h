// UTF-8 text of wide strings and back, for putting envelopes and documents
// on byte channels (pipes, files). Wide strings are UTF-16 where wchar_t
// has 16 bits and UTF-32 where it has 32.
#pragma once

#include <cstddef>
#include <string>

#include <xch_api/xch_api_export.h>

namespace xch {

// UTF-8 of `text`. Unpaired surrogates and values beyond U+10FFFF become
// U+FFFD.
XCH_API std::string toUtf8(const wchar_t* text, std::size_t size);
inline std::string toUtf8(const std::wstring& text) { return toUtf8(text.data(), text.size()); }

// The wide text of UTF-8 bytes (a leading byte-order mark is skipped).
// Throws std::invalid_argument naming the byte offset of malformed input.
XCH_API std::wstring fromUtf8(const char* bytes, std::size_t size);
inline std::wstring fromUtf8(const std::string& bytes) { return fromUtf8(bytes.data(), bytes.size()); }

} // namespace xch
