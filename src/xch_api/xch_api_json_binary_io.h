// JsonBinaryIO: the compact binary encoding of a JSON tree.
//
// Every value is a tag byte and a payload, little-endian, no header:
//   0x00 null, 0x01 false, 0x02 true,
//   0x03 object  uint64 byte count, then name (as a string value) and value
//                per member,
//   0x04 array   uint64 byte count, then the elements,
//   0x05 string  uint64 length in UTF-16 code units, then the code units,
//   0x06 int32, 0x07 uint32, 0x08 int64, 0x09 uint64, 0x0A double.
// A number takes the first of int32, uint32, int64, uint64, double that
// holds it exactly. Strings are UTF-16LE on every platform, so an encoding
// made on Linux and one made on Windows are byte-identical.
//
// Decoding treats its input as untrusted: truncated input throws
// std::length_error, an unknown tag std::invalid_argument, and nesting
// deeper than limits::kMaxJsonDepth std::length_error; nothing is
// allocated from a declared length before the input is known to hold it,
// and a tree larger than limits::maxDecodedBytes(input size) is refused
// with std::length_error. A failed decode leaves the document null.
#pragma once

#include <cstddef>
#include <istream>
#include <ostream>
#include <string>

#include <xch_api/xch_api_json.h>

namespace xch {

class XCH_API JsonBinaryIO {
public:
    // Encodes the root of `doc` onto `out`. The encoding is made in memory
    // first (object and array byte counts are patched in place there), so a
    // refused document (nesting deeper than limits::kMaxJsonDepth:
    // std::length_error) writes nothing.
    static std::ostream& write(std::ostream& out, const JsonDocument& doc);

    // Encodes the root of `doc`, appending to `out` (no stream involved);
    // a refused document leaves `out` as it was.
    static void write(std::string& out, const JsonDocument& doc);

    // Decodes one value from `in` into `doc`. Reads take only what the
    // stream has available, so `in` is expected to hold the whole encoding
    // in memory (a string stream).
    static std::istream& read(std::istream& in, JsonDocument& doc);

    // Decodes one value from `size` bytes at `data` into `doc`. Returns
    // the number of bytes consumed.
    static std::size_t read(const char* data, std::size_t size, JsonDocument& doc);
};

} // namespace xch
