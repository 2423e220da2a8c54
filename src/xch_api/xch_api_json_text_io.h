// JsonTextIO: JSON documents to and from wide-character text.
//
// Text is a stream of wchar_t without byte-order mark. The pretty form
// indents by two blanks and keeps arrays on one line; the compact form has
// no whitespace at all.
#pragma once

#include <istream>
#include <ostream>
#include <string>

#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

class XCH_API JsonTextIO {
public:
    // Writes `doc` pretty or compact. A document that cannot be written (a
    // NaN or infinite double, nesting deeper than limits::kMaxJsonDepth) is
    // refused before any character reaches `out`, so a failure leaves
    // nothing on the stream: it throws std::runtime_error "Cannot write
    // object into json document", as it does when `out` fails. Strings are
    // written code unit for code unit, with '"', '\\' and control characters
    // escaped.
    static std::wostream& write(std::wostream& out, const JsonDocument& doc, bool pretty);

    // Parses one JSON text (the whole stream) into `doc` with the default
    // grammar (no comments, trailing commas, NaN or infinity). Leading
    // whitespace is skipped; only whitespace may follow the root. Never
    // throws on bad input: the parse result stays in `doc`
    // (doc.HasParseError(), doc.GetParseError()) and the root is left null,
    // so callers test whether the root has the type they need.
    //
    // Numbers are read exactly: a double is the correctly rounded value of
    // its text, so every finite double written by write() reads back
    // bit-identical. A number beyond the range of a double ([21e308]) is
    // refused with kParseErrorNumberTooBig rather than read as infinity;
    // one below the smallest subnormal reads as zero. Nesting deeper than
    // limits::kMaxJsonDepth ends the parse with an error.
    static std::wistream& read(std::wistream& in, JsonDocument& doc);

    // Writes `doc` pretty into the file at `path`. Text and path are
    // converted to the system's narrow (ANSI) code page; characters it
    // cannot represent become its default character. Failures leave the
    // file stream failed and are not reported further.
    static void writeToFile(const JsonDocument& doc, const std::wstring& path);

    // Writes `object` (as the root of a new document) into a file.
    static void writeToFile(const IJsonObject& object, const std::wstring& path);
};

} // namespace xch
