// Uses the installed headers and library: writes and reads an envelope and
// encodes a document as binary JSON.
#include <iostream>
#include <sstream>
#include <string>

#include <logging/vx_link_logger.h>
#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

int main() {
    std::wistringstream in(L"{\"a\":[1,2.5,\"x\"]}");
    xch::JsonDocument doc;
    xch::JsonTextIO::read(in, doc);
    std::string bytes;
    xch::JsonBinaryIO::write(bytes, doc);
    xch::JsonDocument back;
    xch::JsonBinaryIO::read(bytes.data(), bytes.size(), back);
    std::wostringstream out;
    xch::JsonTextIO::write(out, back, false);
    bool ok = out.str() == L"{\"a\":[1,2.5,\"x\"]}" && bytes.size() == 54 &&
              mp::SharedBuffer<char>::isValidName(xch::IExchangeObject::generateUUID()) &&
              !vx_link::LoggerHolder::levelEnabled(1);
    std::cout << (ok ? "consumer ok" : "consumer FAILED") << std::endl;
    return ok ? 0 : 1;
}
