// Base64 decoding of narrow and wide text: both agree, stay within the
// announced output size, and re-encoding the bytes decodes to them again.
#include <string>
#include <vector>

#include <xch_api/xch_api_base64.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    const char* text = reinterpret_cast<const char*>(data);
    const std::vector<std::uint8_t> bytes = xch::Base64::decode(text, size);
    const std::wstring wide(text, text + size);
    require(xch::Base64::decode(wide) == bytes, "narrow and wide decoding agree");

    std::vector<std::uint8_t> buffer(xch::Base64::decodedSize(size) + 1, 0xA5);
    const auto result = xch::Base64::decodeInto(buffer.data(), text, size);
    require(result.first <= xch::Base64::decodedSize(size) && result.second <= size, "decodeInto stays in bounds");
    require(buffer[xch::Base64::decodedSize(size)] == 0xA5, "decodeInto writes no more than decodedSize");
    require(std::vector<std::uint8_t>(buffer.begin(), buffer.begin() + result.first) == bytes,
            "decodeInto and decode agree");

    const std::string encoded = xch::Base64::encode(bytes.data(), bytes.size());
    require(encoded.size() == xch::Base64::encodedSize(bytes.size()), "encoding has the announced size");
    require(xch::Base64::decode(encoded) == bytes, "encode then decode gives the same bytes");
    require(xch::Base64::encodeWide(bytes.data(), bytes.size()) == std::wstring(encoded.begin(), encoded.end()),
            "narrow and wide encoding agree");
    return 0;
}
