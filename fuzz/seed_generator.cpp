// Writes the seed corpus of every fuzz target, made by the library itself:
//   seed_generator OUTDIR
// creates OUTDIR/<target>/<name> files (UTF-8 JSON text, binary JSON,
// compressed and base64 bodies, model class selectors) and OUTDIR/json.dict,
// a libFuzzer dictionary of every key and enumeration string written.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <xch_api/xch_api_base64.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_structure.h>
#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_result.h>
#include <xch_api/xch_api_utf8.h>
#include <xch_api/xch_api_varnex_info.h>

#include "fuzz_support.h"
#include "model_classes.h"

namespace fs = std::filesystem;
using namespace xch;

namespace {

fs::path g_out;
std::set<std::string> g_dictionary;

void writeFile(const std::string& target, const std::string& name, const std::string& bytes) {
    fs::create_directories(g_out / target);
    std::ofstream(g_out / target / name, std::ios::binary) << bytes;
}

// Collects member names and string values for the dictionary.
void collect(const JsonValue& value) {
    if (value.IsString()) {
        std::string s = toUtf8(std::wstring(value.GetString(), value.GetStringLength()));
        if (!s.empty() && s.size() < 40) g_dictionary.insert(s);
    } else if (value.IsObject()) {
        for (auto m = value.MemberBegin(); m != value.MemberEnd(); ++m) {
            collect(m->name);
            collect(m->value);
        }
    } else if (value.IsArray()) {
        for (const JsonValue& element : value.GetArray()) collect(element);
    }
}

// A JSON text seed, plus its binary, compressed and base64 forms for the
// byte-level targets.
void textSeed(const std::string& target, const std::string& name, const std::wstring& text) {
    const std::string utf8 = toUtf8(text);
    writeFile(target, name, utf8);
    writeFile("json_text", target + "_" + name, utf8);
    JsonDocument doc;
    if (!xch_fuzz::parse(text, doc)) return;
    collect(doc);
    std::string binary;
    JsonBinaryIO::write(binary, doc);
    writeFile("json_binary", target + "_" + name, binary);
    std::string packed;
    Compressor::compress(packed, binary.data(), binary.size(), -1);
    writeFile("inflate", target + "_" + name, packed);
    writeFile("base64", target + "_" + name, Base64::encode(binary.data(), std::min<std::size_t>(binary.size(), 300)));
}

template <class T>
std::wstring streamText(const T& object) {
    std::wostringstream out;
    object.writeObject(out);
    return out.str();
}

void commandSeeds() {
    Command ping;
    ping.setType(Command::Ping);
    textSeed("command", "ping", streamText(ping));

    Command import;
    import.setType(Command::Import);
    import.setUseMultiThreading(true);
    auto options = Command::newImportOptions();
    options->setFile(L"C:\\models\\assembly.stp");
    for (const wchar_t* group : {L"general", L"graphical", L"mechanical", L"modeler"}) {
        JsonDocument doc;
        xch_fuzz::parse(std::wstring(L"{\"operation_type\":\"options\",\"format_type\":\"") + group + L"\"}", doc);
        options->addFormatOptions(IFormatOptions::readOptions(doc));
    }
    import.setImportOptions(options);
    textSeed("command", "import", streamText(import));

    Command exportCommand;
    exportCommand.setType(Command::Export);
    auto exportOptions = Command::newExportOptions();
    exportOptions->setFile(L"/tmp/out.sat");
    exportCommand.setExportOptions(exportOptions);
    textSeed("command", "export", streamText(exportCommand));

    Command legacy;
    legacy.setType(Command::Import);
    legacy.setInternalInterface(LegacyInterface);
    legacy.setLegacyImportOptions(Command::newLegacyImportOptions());
    textSeed("command", "legacy_import", streamText(legacy));
}

void resultSeeds() {
    Result ok;
    textSeed("result", "ok", streamText(ok));
    Result error;
    error.setCode(Result::Error);
    error.setMessage(L"Translation failed: caf\u00e9");
    error.setFinished(true);
    textSeed("result", "error", streamText(error));
}

void varnexInfoSeeds() {
    VarnexInfo info;
    info.setName(L"Seed worker");
    info.setVersion(L"1.0");
    info.setRequestedInterface(ConnectInterface);
    info.newThirdpartyCore().setName(L"core").setVersion(L"4.2");
    info.newImportFormat().setDescription(L"STEP files").addExtension(L"stp").addFilterExtensions(L"*.stp;*.step");
    info.newImportFormat().setDescription(L"IGES files").addExtension(L"igs").addFilterExtensions(L"*.ig?s;*.[iI]ges");
    info.newExportFormat().setDescription(L"ACIS").addExtension(L"sat").addFilterExtensions(L"*.sat;*.sab");
    textSeed("varnex_info", "worker", streamText(info));
    textSeed("varnex_info", "empty", streamText(VarnexInfo()));
}

void formatOptionSeeds() {
    for (const auto& op : enumTable<EOperationType>().entries())
        for (const auto& format : enumTable<EFormatType>().entries()) {
            JsonDocument doc;
            xch_fuzz::parse(L"{\"operation_type\":\"" + std::wstring(op.second) + L"\",\"format_type\":\"" +
                                std::wstring(format.second) + L"\"}",
                            doc);
            if (auto options = IFormatOptions::readOptions(doc))
                textSeed("format_options", toUtf8(std::wstring(op.second) + L"_" + format.second),
                         xch_fuzz::text(*options));
        }
}

void modelSeeds() {
    const auto& classes = xch_fuzz::modelClasses();
    for (std::size_t i = 0; i < classes.size(); ++i) {
        const std::wstring text = xch_fuzz::text(*classes[i].make());
        textSeed("model", classes[i].name + "_default", text);
        writeFile("model", classes[i].name + "_default", std::string(1, char(i)) + toUtf8(text));
        // The envelope around it, as a receiver reads it when inline.
        std::wstring name(classes[i].name.begin(), classes[i].name.end());
        if (i < 12)
            textSeed("envelope", classes[i].name,
                     L"{\"exchange_object_name\":\"" + name + L"\",\"exchange_object_data\":" + text + L"}");
    }
    // A small assembly: two blocks, references with transforms and colours.
    ExcProductStructure structure;
    structure.setProductName(L"assembly");
    for (std::uint64_t id = 1; id <= 2; ++id) {
        auto block = std::make_shared<ExcBlock>();
        block->setId(id);
        block->setName(L"block " + std::to_wstring(id));
        auto reference = std::make_shared<ExcBlockReference>();
        reference->setBlockId(id);
        reference->setName(L"ref");
        reference->setColor(ExcColor(10, 20, 30));
        if (id == 1) structure.addRootBlockReference(reference);
        structure.addBlock(block);
    }
    const std::wstring text = xch_fuzz::text(structure);
    for (std::size_t i = 0; i < classes.size(); ++i)
        if (classes[i].name == "exc_product_structure")
            writeFile("model", "assembly", std::string(1, char(i)) + toUtf8(text));
    textSeed("envelope", "assembly",
             L"{\"exchange_object_name\":\"exc_product_structure\",\"exchange_object_data\":" + text + L"}");
    textSeed("envelope", "binary_reference",
             L"{\"exchange_object_name\":\"exc_product_structure\",\"binary\":true,"
             L"\"exchange_object_data\":\"0f8fad5b-d9cb-469f-a165-70867728950e\"}");
    ExcProgress progress(40, 100, false, L"reading");
    textSeed("envelope", "progress",
             L"{\"exchange_object_name\":\"exc_progress\",\"exchange_object_data\":" + xch_fuzz::text(progress) + L"}");
}

void byteSeeds() {
    writeFile("base64", "all_lengths", Base64::encode("any carnal pleasure.", 20) + "==x");
    writeFile("inflate", "empty", [] {
        std::string packed;
        Compressor::compress(packed, "", 0, -1);
        return packed;
    }());
    writeFile("inflate", "pieces", [] { // a stream in indexed pieces, small enough for the fuzzer
        std::string text((1 << 20) + 4096, 'x');  // two pieces, the second short
        for (std::size_t i = 0; i < text.size(); i += 4099) text[i] = char('a' + i % 26);
        std::string packed;
        Compressor::compress(packed, text.data(), text.size(), 9);
        return packed;
    }());
    writeFile("json_text", "numbers", "[0,-1,3000000000,-3000000000,18446744073709551615,1.5e300,-0.0,1e-320]");
    writeFile("json_text", "escapes", "{\"\\u00e9\\ud83d\\ude00\":\"a\\\"\\\\\\/\\b\\f\\n\\r\\t\"}");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: seed_generator OUTDIR\n");
        return 2;
    }
    g_out = argv[1];
    commandSeeds();
    resultSeeds();
    varnexInfoSeeds();
    formatOptionSeeds();
    modelSeeds();
    byteSeeds();
    // libFuzzer's dictionary syntax: one quoted entry per line, with \\, \"
    // and \xAB escapes. Every word also comes as a quoted JSON string.
    std::ofstream dict(g_out / "json.dict", std::ios::binary);
    auto entry = [&dict](const std::string& word) {
        dict << '"';
        for (unsigned char c : word) {
            if (c == '"' || c == '\\')
                dict << '\\' << c;
            else if (c < 0x20 || c >= 0x7F) {
                char hex[8];
                std::snprintf(hex, sizeof hex, "\\x%02X", c);
                dict << hex;
            } else
                dict << c;
        }
        dict << "\"\n";
    };
    for (const char* token : {"{", "}", "[", "]", ":", ",", "null", "true", "false", "\\u", "1e308", "-0.0"})
        entry(token);
    for (const std::string& word : g_dictionary) {
        entry(word);
        entry('"' + word + '"');
    }
    std::printf("seeds written to %s\n", argv[1]);
    return 0;
}
