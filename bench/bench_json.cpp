// The JSON codecs side by side with their anchors, in one process on the
// same data: binary JSON and JSON text of a model-like document, against
// rapidjson parsing the document's compact wide text in memory and
// rapidjson's Writer rendering the same tree into its string buffer. Each
// codec runs at two sizes (1x and 10x the document) to show how its time
// scales. After the usual table the program prints the ratios (CPU time,
// which a loaded machine distorts less than wall time).
//
// Memory: with glibc, blocks above 32 MiB are mapped fresh at every
// allocation and returned at every free, while smaller ones are reused, so
// only the 10x document would pay the kernel's first-touch page faults on
// every iteration. The program therefore makes the allocator keep and reuse
// freed memory at both sizes (mallopt), for codecs and anchors alike; the
// figures compare the codecs' own work.
#include <benchmark/benchmark.h>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

namespace {

using xch::JsonDocument;
using xch::JsonValue;

// Blocks of the 1x document; each is about 22,000 characters of compact
// text (28,000 bytes of binary JSON), so 1x is about 4.5 M characters and
// 10x about 45 M.
constexpr int kBlocksPerScale = 200;

// A product structure with display data, as the large exchange objects
// carry it: per block a name, flags, a transform, property groups, face
// references and a mesh of full-precision coordinates and normals with
// integer indices, and a bulk array as base64 text.
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
        // Bulk arrays travel as base64 text in display data.
        std::wstring packed(6000, L'A');
        static const wchar_t digits[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (wchar_t& c : packed) c = digits[next() % 64];
        mesh.AddMember(L"packed_normals", str(packed), a);
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

// A wide output stream into memory kept from one iteration to the next, as
// a pipe's buffer would be: what is measured is the writer, not the growth
// of a string stream (measured separately). The memory is allocated and
// touched when the sink is made, outside the timed region, with room for
// the expected text: otherwise the first iteration of every run pays for
// growing it (copies, zero fill, first-touch page faults), a cost that is
// spread over the run's iterations, few at 10x and many at 1x.
class TextSink : public std::wstreambuf {
public:
    explicit TextSink(std::size_t expected) : m_text(expected > (1 << 20) ? expected : (1 << 20), L'\0') {}
    void rewind() { setp(&m_text[0], &m_text[0] + m_text.size()); }
    std::size_t size() const { return static_cast<std::size_t>(pptr() - pbase()); }

private:
    int_type overflow(int_type c) override {
        const std::size_t used = size();
        m_text.resize(2 * m_text.size());
        setp(&m_text[0], &m_text[0] + m_text.size());
        pbump(static_cast<int>(used)); // below 2^31 characters here
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(c);
            pbump(1);
        }
        return traits_type::not_eof(c);
    }
    std::wstring m_text;
};

// Every iteration starts with cold caches (a buffer twice the size of a
// large last-level cache is written outside the timed region), so that the
// 1x document, which would otherwise stay cached from one iteration to the
// next, is read from memory as the 10x one has to be.
void coldCaches(benchmark::State& state) {
    static std::vector<char> sweep(64u << 20);
    state.PauseTiming();
    for (std::size_t i = 0; i < sweep.size(); i += 64) sweep[i] = static_cast<char>(sweep[i] + 1);
    benchmark::DoNotOptimize(sweep.data());
    state.ResumeTiming();
}

void setCounters(benchmark::State& state, const Model& m) {
    state.counters["chars"] = static_cast<double>(m.text.size());
    state.counters["binary_bytes"] = static_cast<double>(m.binary.size());
}

// ---- anchors ----------------------------------------------------------------

void RapidjsonParse(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        coldCaches(state);
        JsonDocument doc;
        doc.Parse(m.text.c_str());
        benchmark::DoNotOptimize(doc.IsObject());
    }
    setCounters(state, m);
}

void RapidjsonParseFullPrecision(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        coldCaches(state);
        JsonDocument doc;
        doc.Parse<rapidjson::kParseFullPrecisionFlag>(m.text.c_str());
        benchmark::DoNotOptimize(doc.IsObject());
    }
    setCounters(state, m);
}

void RapidjsonWriter(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        coldCaches(state);
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
        coldCaches(state);
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
        coldCaches(state);
        JsonDocument doc;
        benchmark::DoNotOptimize(xch::JsonBinaryIO::read(m.binary.data(), m.binary.size(), doc));
    }
    setCounters(state, m);
}

void BinaryEncode(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        coldCaches(state);
        std::string out;
        xch::JsonBinaryIO::write(out, *m.doc);
        benchmark::DoNotOptimize(out.data());
    }
    setCounters(state, m);
}

void TextRead(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        coldCaches(state);
        TextView view(m.text);
        std::wistream in(&view);
        JsonDocument doc;
        xch::JsonTextIO::read(in, doc);
        benchmark::DoNotOptimize(doc.IsObject());
    }
    setCounters(state, m);
}

template <bool Pretty>
void writeText(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    TextSink sink(2 * m.text.size()); // the pretty text is longer than the compact one
    for (auto _ : state) {
        coldCaches(state);
        sink.rewind();
        std::wostream out(&sink);
        xch::JsonTextIO::write(out, *m.doc, Pretty);
        benchmark::DoNotOptimize(sink.size());
    }
    setCounters(state, m);
}

void TextWrite(benchmark::State& state) { writeText<false>(state); }
void TextWritePretty(benchmark::State& state) { writeText<true>(state); }

// Into a std::wostringstream, which grows its string as the text arrives.
void TextWriteStringStream(benchmark::State& state) {
    const Model& m = model(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        coldCaches(state);
        std::wostringstream out;
        xch::JsonTextIO::write(out, *m.doc, false);
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
XCH_JSON_BENCH(TextWriteStringStream);

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
            ratio("  JsonTextIO::write to a wostringstream / rapidjson Writer", "TextWriteStringStream" + s,
                  "RapidjsonWriter" + s);
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
#if defined(__GLIBC__)
    mallopt(M_MMAP_MAX, 0);                    // every block from the heap...
    mallopt(M_TRIM_THRESHOLD, INT_MAX); // ...which keeps what is freed
#endif
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
