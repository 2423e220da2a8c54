// xch: converts between JSON text and the exchange's binary JSON encoding.
//
//   xch encode [--gzip] INPUT OUTPUT   JSON text (UTF-8) -> binary JSON
//   xch decode INPUT                   binary JSON (plain, gzip or zlib)
//                                      -> pretty JSON text (UTF-8) on stdout
//   xch import FILE [...]              imports FILE through a translator
//                                      worker (xch_import.h)
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <rapidjson/error/en.h>

#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>
#include <xch_api/xch_api_utf8.h>

#include "xch_shm.h"
#include "xch_import.h"

namespace {

const char* const kUsage =
    "usage:\n"
    "  xch encode [--gzip] INPUT OUTPUT\n"
    "      Reads the JSON text file INPUT (UTF-8) and writes its binary JSON\n"
    "      encoding to OUTPUT; with --gzip the encoding is gzip-compressed.\n"
    "  xch decode INPUT\n"
    "      Reads the binary JSON file INPUT, compressed (gzip or zlib, recognised\n"
    "      from its header) or not, and prints the document as pretty JSON text\n"
    "      (UTF-8) on standard output.\n"
    "  xch --help\n"
    "      Shows this text.\n"
    "Errors are reported on one line on standard error with a non-zero exit status.\n";

std::vector<char> readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot open " + path);
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad())
        throw std::runtime_error("cannot read " + path);
    return bytes;
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out)
        throw std::runtime_error("cannot write " + path);
}

int encode(const std::string& input, const std::string& output, bool gzip) {
    std::vector<char> utf8 = readFile(input);
    std::wistringstream text(xch::fromUtf8(utf8.data(), utf8.size()));
    xch::JsonDocument doc;
    xch::JsonTextIO::read(text, doc);
    if (doc.HasParseError())
        throw std::runtime_error(input + ": invalid JSON: " + rapidjson::GetParseError_En(doc.GetParseError()) +
                                 " (character " + std::to_string(doc.GetErrorOffset()) + ")");
    std::string bytes;
    xch::JsonBinaryIO::write(bytes, doc);
    if (gzip) {
        std::string packed;
        xch::Compressor::compress(packed, bytes.data(), bytes.size(), -1);
        bytes.swap(packed);
    }
    writeFile(output, bytes);
    return 0;
}

int decode(const std::string& input) {
    std::vector<char> bytes = readFile(input);
    if (xch::Compressor::isCompressed(bytes.data(), bytes.size())) {
        std::vector<char> inflated;
        xch::Compressor::decompress(inflated, bytes.data(), bytes.size());
        bytes.swap(inflated);
    }
    xch::JsonDocument doc;
    std::size_t used = xch::JsonBinaryIO::read(bytes.data(), bytes.size(), doc);
    if (used != bytes.size())
        throw std::runtime_error(input + ": " + std::to_string(bytes.size() - used) +
                                 " bytes follow the encoded document");
    std::wostringstream text;
    xch::JsonTextIO::write(text, doc, true);
    std::string out = xch::toUtf8(text.str());
    out += '\n';
    std::fwrite(out.data(), 1, out.size(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    try {
        if (args.empty()) {
            std::cerr << "xch: missing command (try xch --help)\n";
            return 2;
        }
        if (args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
            std::cout << kUsage << xch_tool::shmUsage() << xch_tool::kImportUsage;
            return 0;
        }
        if (args[0] == "encode") {
            bool gzip = args.size() > 1 && args[1] == "--gzip";
            std::size_t first = gzip ? 2 : 1;
            if (args.size() != first + 2) {
                std::cerr << "xch: usage: xch encode [--gzip] INPUT OUTPUT\n";
                return 2;
            }
            return encode(args[first], args[first + 1], gzip);
        }
        if (args[0] == "shm")
            return xch_tool::runShm(std::vector<std::string>(args.begin() + 1, args.end()));
        if (args[0] == "decode") {
            if (args.size() != 2) {
                std::cerr << "xch: usage: xch decode INPUT\n";
                return 2;
            }
            return decode(args[1]);
        }
        if (args[0] == "import")
            return xch_tool::runImportCommand(std::vector<std::string>(args.begin() + 1, args.end()), argv[0]);
        std::cerr << "xch: unknown command '" << args[0] << "' (try xch --help)\n";
        return 2;
    } catch (const std::exception& e) {
        std::cerr << "xch: " << e.what() << '\n';
        return 1;
    } catch (...) {
        std::cerr << "xch: unexpected error\n";
        return 1;
    }
}
