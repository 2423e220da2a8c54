// The JSON codecs side by side with their anchors, in one process on the
// same data: binary JSON and JSON text of a model-like document, against
// rapidjson parsing the document's compact wide text in memory and
// rapidjson's Writer rendering the same tree. Each codec runs at two sizes
// (1x and 10x the document) to show how its time scales. After the usual
// table the program prints the ratios (CPU time, which a loaded machine
// distorts less than wall time).
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

namespace {

using xch::JsonDocument;
using xch::JsonValue;

// Blocks of the 1x document; each is about 20,000 characters of compact
// text, so 1x is about 4 M characters and 10x about 40 M.
constexpr int kBlocksPerScale = 200;

// A product structure with display data, as the large exchange objects
// carry it: per block a name, flags, a transform, property groups, face
// references and a mesh of full-precision coordinates and normals with
// integer indices.
std::unique_ptr<JsonDocument> makeModel(int scale) {
    auto doc = std::make_unique<JsonDocument>();
    auto& a = doc->GetAllocator();
    auto str = [&](const std::wstring& s) { return JsonValue(s.c_str(), static_cast<rapidjson::SizeType>(s.size()), a); };
    std::uint64_t seed = 88172645463325252ull;
    auto next = [&] { // xorshift: the same document on every run
        seed ^= seed << 13;
        seed ^= seed >> 7;
        seed ^= seed << 17;
        return seed;
    };
    doc->SetObject();
    doc->AddMember(L"name", str(L"assembly \u00e9tag\u00e8re"), a);
    doc->AddMember(L"length_unit", str(L"millimeter"), a);
    JsonValue blocks(rapidjson::kArrayType);
    for (int b = 0; b < kBlocksPerScale * scale; ++b) {
        JsonValue block(rapidjson::kObjectType);
        block.AddMember(L"id", b, a);
        block.AddMember(L"name", str(L"Bracket-" + std::to_wstring(b) + L" rev. C"), a);
        block.AddMember(L"visible", b % 3 != 0, a);
        block.AddMember(L"material", b % 4 ? str(L"steel S235") : JsonValue(), a);
        JsonValue affine(rapidjson::kArrayType);
        const double angle = b * 0.01;
        const double rows[3][3] = {{std::cos(angle), -std::sin(angle), 0}, {std::sin(angle), std::cos(angle), 0}, {0, 0, 1}};
        for (const auto& row : rows) {
            JsonValue r(rapidjson::kArrayType);
            for (double x : row) r.PushBack(x, a);
            affine.PushBack(r, a);
        }
        JsonValue translation(rapidjson::kArrayType);
        translation.PushBack(b * 12.5, a).PushBack(-40.0, a).PushBack(std::sqrt(b + 2.0), a);
        JsonValue transform(rapidjson::kObjectType);
        transform.AddMember(L"affine", affine, a);
        transform.AddMember(L"translation", translation, a);
        block.AddMember(L"transform", transform, a);
        JsonValue properties(rapidjson::kArrayType);
        const wchar_t* keys[] = {L"part_number", L"revision", L"mass", L"supplier"};
        for (int p = 0; p < 4; ++p) {
            JsonValue property(rapidjson::kObjectType);
            property.AddMember(L"key", str(keys[p]), a);
            if (p == 2) property.AddMember(L"value", 0.001 * double(next() % 100000), a);
            else property.AddMember(L"value", str(L"PN-" + std::to_wstring(next() % 1000000)), a);
            properties.PushBack(property, a);
        }
        block.AddMember(L"properties", properties, a);
        JsonValue faces(rapidjson::kArrayType);
        for (int f = 0; f < 20; ++f) faces.PushBack(static_cast<std::uint32_t>(next() % 100000), a);
        block.AddMember(L"faces", faces, a);
        JsonValue coordinates(rapidjson::kArrayType), normals(rapidjson::kArrayType), indices(rapidjson::kArrayType);
        for (int v = 0; v < 150; ++v) {
            const double u = (next() % 1000000) * 1e-6, w = (next() % 1000000) * 1e-6;
            coordinates.PushBack(100.0 * std::cos(6.283 * u), a).PushBack(100.0 * std::sin(6.283 * u), a).PushBack(w * 25.0, a);
            normals.PushBack(std::cos(6.283 * u), a).PushBack(std::sin(6.283 * u), a).PushBack(0.0, a);
        }
        for (int t = 0; t < 600; ++t) indices.PushBack(static_cast<int>(next() % 150), a);
        JsonValue mesh(rapidjson::kObjectType);
        mesh.AddMember(L"coordinates", coordinates, a);
        mesh.AddMember(L"normals", normals, a);
        mesh.AddMember(L"indices", indices, a);
        block.AddMember(L"mesh", mesh, a);
        blocks.PushBack(block, a);
    }
    doc->AddMember(L"blocks", blocks, a);
    return doc;
}

// The document at one scale with its compact text and binary encoding.
struct Model {
    std::unique_ptr<JsonDocument> doc;
    std::wstring text;
    std::string binary;
};

const Model& model(int scale) {
    static std::map<int, Model> models;
    Model& m = models[scale];
    if (!m.doc) {
        m.doc = makeModel(scale);
        rapidjson::GenericStringBuffer<xch::JsonEncoding> buffer;
        rapidjson::Writer<decltype(buffer), xch::JsonEncoding, xch::JsonEncoding> writer(buffer);
        m.doc->Accept(writer);
        m.text.assign(buffer.GetString(), buffer.GetSize() / sizeof(wchar_t));
        xch::JsonBinaryIO::write(m.binary, *m.doc);
    }
    return m;
}

// A wide input stream over text already in memory (no copy when made).
class TextView : public std::wstreambuf {
public:
    explicit TextView(const std::wstring& text) {
        wchar_t* p = const_cast<wchar_t*>(text.data());
        setg(p, p, p + text.size());
    }
};

void setCounters(benchmark::State& state, const Model& m) {
    state.counters["chars"] = static_cast<double>(m.text.size());
    state.counters["binary_bytes"] = static_cast<double>(m.binary.size());
}

// ---- anchors ----------------------------------------------------------------

void RapidjsonParse(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        JsonDocument doc;
        doc.Parse(m.text.c_str());
        benchmark::DoNotOptimize(doc.IsObject());
    }
    setCounters(state, m);
}

void RapidjsonParseFullPrecision(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        JsonDocument doc;
        doc.Parse<rapidjson::kParseFullPrecisionFlag>(m.text.c_str());
        benchmark::DoNotOptimize(doc.IsObject());
    }
    setCounters(state, m);
}

void RapidjsonWriter(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        rapidjson::GenericStringBuffer<xch::JsonEncoding> buffer;
        rapidjson::Writer<decltype(buffer), xch::JsonEncoding, xch::JsonEncoding> writer(buffer);
        m.doc->Accept(writer);
        benchmark::DoNotOptimize(buffer.GetString());
    }
    setCounters(state, m);
}

void RapidjsonPrettyWriter(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        rapidjson::GenericStringBuffer<xch::JsonEncoding> buffer;
        rapidjson::PrettyWriter<decltype(buffer), xch::JsonEncoding, xch::JsonEncoding> writer(buffer);
        writer.SetIndent(L' ', 2);
        writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        m.doc->Accept(writer);
        benchmark::DoNotOptimize(buffer.GetString());
    }
    setCounters(state, m);
}

// ---- the library's codecs ------------------------------------------------------

void BinaryDecode(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        JsonDocument doc;
        benchmark::DoNotOptimize(xch::JsonBinaryIO::read(m.binary.data(), m.binary.size(), doc));
    }
    setCounters(state, m);
}

void BinaryEncode(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::string out;
        xch::JsonBinaryIO::write(out, *m.doc);
        benchmark::DoNotOptimize(out.data());
    }
    setCounters(state, m);
}

void TextRead(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        TextView view(m.text);
        std::wistream in(&view);
        JsonDocument doc;
        xch::JsonTextIO::read(in, doc);
        benchmark::DoNotOptimize(doc.IsObject());
    }
    setCounters(state, m);
}

void TextWrite(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::wostringstream out;
        xch::JsonTextIO::write(out, *m.doc, false);
        benchmark::DoNotOptimize(out.tellp());
    }
    setCounters(state, m);
}

void TextWritePretty(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::wostringstream out;
        xch::JsonTextIO::write(out, *m.doc, true);
        benchmark::DoNotOptimize(out.tellp());
    }
    setCounters(state, m);
}

#define XCH_JSON_BENCH(f) BENCHMARK(f)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond)->MinTime(1.0)
XCH_JSON_BENCH(RapidjsonParse);
XCH_JSON_BENCH(RapidjsonParseFullPrecision);
XCH_JSON_BENCH(RapidjsonWriter);
XCH_JSON_BENCH(RapidjsonPrettyWriter);
XCH_JSON_BENCH(BinaryDecode);
XCH_JSON_BENCH(BinaryEncode);
XCH_JSON_BENCH(TextRead);
XCH_JSON_BENCH(TextWrite);
XCH_JSON_BENCH(TextWritePretty);

// Keeps the CPU time per iteration of every run, by name ("TextRead/10").
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (!run.error_occurred && run.run_type == Run::RT_Iteration)
                m_cpu[run.run_name.function_name + "/" + run.run_name.args] = run.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }

    void printRatios() const {
        std::printf("\nRatios (CPU time, same run, same data)%s\n",
                    m_cpu.empty() ? ": nothing measured" : "");
        for (int scale : {1, 10}) {
            const std::string s = "/" + std::to_string(scale);
            std::printf("document %dx (%zu characters compact, %zu bytes binary):\n", scale, model(scale).text.size(),
                        model(scale).binary.size());
            ratio("  binary decode, times faster than rapidjson Parse      (>= 3.0)", "RapidjsonParse" + s,
                  "BinaryDecode" + s);
            ratio("  binary encode, times faster than rapidjson Writer     (>= 3.0)", "RapidjsonWriter" + s,
                  "BinaryEncode" + s);
            ratio("  JsonTextIO::read, time / rapidjson Parse              (<= 1.5)", "TextRead" + s,
                  "RapidjsonParse" + s);
            ratio("  JsonTextIO::write compact, time / rapidjson Writer    (<= 1.2)", "TextWrite" + s,
                  "RapidjsonWriter" + s);
            ratio("  JsonTextIO::write pretty, time / rapidjson PrettyWriter (<= 1.2)", "TextWritePretty" + s,
                  "RapidjsonPrettyWriter" + s);
        }
        std::printf("scaling, time at 10x / time at 1x (<= 11):\n");
        for (const char* name : {"BinaryDecode", "BinaryEncode", "TextRead", "TextWrite", "TextWritePretty",
                                 "RapidjsonParse", "RapidjsonWriter"}) {
            const std::string n = name;
            ratio("  " + n, n + "/10", n + "/1");
        }
    }

private:
    void ratio(const std::string& label, const std::string& numerator, const std::string& denominator) const {
        auto a = m_cpu.find(numerator), b = m_cpu.find(denominator);
        if (a == m_cpu.end() || b == m_cpu.end() || b->second <= 0) return;
        std::printf("%-64s %6.2f\n", label.c_str(), a->second / b->second);
    }

    std::map<std::string, double> m_cpu;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
