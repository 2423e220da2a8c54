// Throughput of the codecs on the path of large exchange objects: base64
// for binary arrays inside JSON strings, gzip for shared-memory bodies,
// binary JSON for the bodies themselves, and JSON text for inline objects.
// Rates are reported per byte of the uncompressed / binary side (for JSON
// text: per character written).
#include <benchmark/benchmark.h>

#include "thread_time.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <map>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include <xch_api/xch_api_base64.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

#include <zlib.h>

namespace {

template <class T>
void append(std::vector<char>& out, const T& value) {
    const auto* p = reinterpret_cast<const char*>(&value);
    out.insert(out.end(), p, p + sizeof value);
}

// A tessellated surface as it travels in display data: float vertex
// positions and normals of a wavy grid, then the uint32 triangle indices,
// cut to `size` bytes.
std::vector<char> meshBlock(std::size_t size) {
    std::vector<char> block;
    block.reserve(size + 64);
    const std::uint32_t side = 512;
    for (std::uint32_t y = 0; y < side && block.size() < size / 2; ++y) {
        for (std::uint32_t x = 0; x < side; ++x) {
            const float fx = float(x) * 0.25f, fy = float(y) * 0.25f;
            append(block, fx);
            append(block, fy);
            append(block, std::sin(fx * 0.1f) * std::cos(fy * 0.1f) * 10.0f);
            append(block, std::cos(fx * 0.1f) * 0.1f);
            append(block, std::sin(fy * 0.1f) * 0.1f);
            append(block, 0.99f);
        }
    }
    for (std::uint32_t i = 0; block.size() < size; ++i) {
        const std::uint32_t x = i % (side - 1), y = (i / (side - 1)) % (side - 1);
        append(block, y * side + x);
        append(block, y * side + x + 1);
        append(block, (y + 1) * side + x);
    }
    block.resize(size);
    return block;
}

// A model-like document: a large array of doubles (~1M coordinates) and
// many small objects with a few members each.
const xch::JsonDocument& modelDocument() {
    static const xch::JsonDocument* doc = [] {
        auto* d = new xch::JsonDocument;
        auto& a = d->GetAllocator();
        d->SetObject();
        xch::JsonValue coordinates(rapidjson::kArrayType);
        coordinates.Reserve(1000000, a);
        for (int i = 0; i < 1000000; ++i) coordinates.PushBack(std::sin(i * 0.001) * 1000.0, a);
        xch::JsonValue nodes(rapidjson::kArrayType);
        for (int i = 0; i < 100000; ++i) {
            xch::JsonValue node(rapidjson::kObjectType);
            node.AddMember(L"id", i, a);
            node.AddMember(L"name", xch::JsonValue(L"component instance", a), a);
            node.AddMember(L"visible", i % 3 != 0, a);
            xch::JsonValue rgb(rapidjson::kArrayType);
            rgb.PushBack(0.25, a).PushBack(0.5, a).PushBack(1.0, a);
            node.AddMember(L"rgb", rgb, a);
            nodes.PushBack(node, a);
        }
        d->AddMember(L"coordinates", coordinates, a);
        d->AddMember(L"nodes", nodes, a);
        return d;
    }();
    return *doc;
}

// ---- base64 and compression against their anchors ----------------------------
//
// Each benchmark times its codec and its anchor (memcpy) in turns inside
// the same iterations, on thread CPU time (the machine is shared), and
// reports the codec's time as the benchmark's time plus the ratio to the
// anchor. Each runs at two sizes, 10x apart, both beyond the last-level
// cache: the summary at the end gives how the time scales.

// Runs `codec` and `anchor` once per iteration; the benchmark's time is the
// codec's, "x_<anchorName>" its time over the anchor's.
template <class Codec, class Anchor>
void againstAnchor(benchmark::State& state, const char* anchorName, std::size_t bytes, Codec&& codec, Anchor&& anchor) {
    double codecTime = 0, anchorTime = 0;
    for (auto _ : state) {
        anchorTime += timed(anchor);
        const double t = timed(codec);
        codecTime += t;
        state.SetIterationTime(t);
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(bytes));
    state.counters[std::string("x_") + anchorName] = codecTime / anchorTime;
}

constexpr std::size_t kMB = 1u << 20;

// Base64 of a mesh block of state.range(0) MB: encode into preallocated
// text, against a memcpy of as many bytes as the text has (wide: the wide
// characters' bytes) or, for narrow text, of the raw bytes.
template <class Char>
void BM_Base64Encode(benchmark::State& state) {
    const std::vector<char> block = meshBlock(std::size_t(state.range(0)) * kMB);
    std::vector<Char> text(xch::Base64::encodedSize(block.size()), Char(1));
    const std::size_t anchorBytes = sizeof(Char) == 1 ? block.size() : text.size() * sizeof(Char);
    std::vector<char> from(anchorBytes, 1), to(anchorBytes, 2);
    againstAnchor(
        state, "memcpy", block.size(),
        [&] { benchmark::DoNotOptimize(xch::Base64::encodeInto(text.data(), block.data(), block.size())); },
        [&] {
            std::memcpy(to.data(), from.data(), anchorBytes);
            benchmark::ClobberMemory();
        });
}
BENCHMARK_TEMPLATE(BM_Base64Encode, char)->Arg(48)->Arg(480)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Base64Encode, wchar_t)->Arg(48)->Arg(480)->UseManualTime()->Unit(benchmark::kMillisecond);

template <class Char>
void BM_Base64Decode(benchmark::State& state) {
    const std::vector<char> block = meshBlock(std::size_t(state.range(0)) * kMB);
    std::vector<Char> text(xch::Base64::encodedSize(block.size()));
    xch::Base64::encodeInto(text.data(), block.data(), block.size());
    std::vector<std::uint8_t> bytes(xch::Base64::decodedSize(text.size()), 1);
    const std::size_t anchorBytes = sizeof(Char) == 1 ? block.size() : text.size() * sizeof(Char);
    std::vector<char> from(anchorBytes, 1), to(anchorBytes, 2);
    againstAnchor(
        state, "memcpy", block.size(),
        [&] { benchmark::DoNotOptimize(xch::Base64::decodeInto(bytes.data(), text.data(), text.size())); },
        [&] {
            std::memcpy(to.data(), from.data(), anchorBytes);
            benchmark::ClobberMemory();
        });
    if (std::memcmp(bytes.data(), block.data(), block.size()) != 0) state.SkipWithError("decoding changed the data");
}
BENCHMARK_TEMPLATE(BM_Base64Decode, char)->Arg(48)->Arg(480)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Base64Decode, wchar_t)->Arg(48)->Arg(480)->UseManualTime()->Unit(benchmark::kMillisecond);

// What large bodies hold: the base64 text of mesh arrays as a body carries
// it, in UTF-16LE code units (binary JSON strings), state.range(0) MB.
std::vector<char> meshText(std::size_t size) {
    const std::vector<char> block = meshBlock(size / 8 * 3);
    std::vector<char> text(xch::Base64::encodedSize(block.size()));
    xch::Base64::encodeInto(text.data(), block.data(), block.size());
    std::vector<char> units(2 * text.size(), '\0');
    for (std::size_t i = 0; i < text.size(); ++i) units[2 * i] = text[i];
    return units;
}

// zlib's gzip deflate at `level`, the anchor of compression.
std::vector<unsigned char> zlibGzip(const std::vector<char>& data, int level) {
    z_stream strm{};
    deflateInit2(&strm, level, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::vector<unsigned char> out(deflateBound(&strm, uLong(data.size())));
    strm.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    strm.avail_in = uInt(data.size());
    strm.next_out = out.data();
    strm.avail_out = uInt(out.size());
    deflate(&strm, Z_FINISH);
    out.resize(strm.total_out);
    deflateEnd(&strm);
    return out;
}

// zlib's inflate of a whole gzip stream, the anchor of inflation.
void zlibGunzip(const std::vector<char>& gz, std::vector<unsigned char>& out) {
    z_stream strm{};
    inflateInit2(&strm, 15 + 32);
    strm.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(gz.data()));
    strm.avail_in = uInt(gz.size());
    strm.next_out = out.data();
    strm.avail_out = uInt(out.size());
    inflate(&strm, Z_FINISH);
    inflateEnd(&strm);
}

// Compression and inflation use every core for large gzip streams, so they
// are timed on the wall clock (the benchmark's time, and "x_zlib" against
// zlib on one thread) and on the CPU time of all threads ("cpu_x_zlib", the
// work done). The argument after the size is the number of threads (1, or
// 0 for one per core).
template <class Codec, class Anchor>
void againstZlib(benchmark::State& state, std::size_t bytes, Codec&& codec, Anchor&& anchor) {
    xch::Compressor::setThreads(unsigned(state.range(1)));
    WallAndCpu codecTime, anchorTime;
    for (auto _ : state) {
        anchorTime += timedAll(anchor);
        const WallAndCpu t = timedAll(codec);
        codecTime += t;
        state.SetIterationTime(t.wall);
    }
    xch::Compressor::setThreads(0);
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(bytes));
    state.counters["x_zlib"] = codecTime.wall / anchorTime.wall;
    state.counters["cpu_x_zlib"] = codecTime.cpu / anchorTime.cpu;
}

// Compression at the default level against zlib -6 on the same text:
// "ratio" and "zlib_ratio" are the compression ratios.
void BM_Compress(benchmark::State& state) {
    const std::vector<char> text = meshText(std::size_t(state.range(0)) * kMB);
    std::vector<char> out;
    std::size_t zlibSize = 0;
    againstZlib(
        state, text.size(), [&] { xch::Compressor::compress(out, text.data(), text.size(), -1); },
        [&] { zlibSize = zlibGzip(text, Z_DEFAULT_COMPRESSION).size(); });
    state.counters["ratio"] = double(text.size()) / double(out.size());
    state.counters["zlib_ratio"] = double(text.size()) / double(zlibSize);
}
BENCHMARK(BM_Compress)->Args({8, 1})->Args({80, 1})->Args({8, 0})->Args({80, 0})->UseManualTime()->Unit(benchmark::kMillisecond);

// Inflation of the stream the library wrote (what travels between the two
// sides) against zlib's inflation of the same stream.
void BM_Decompress(benchmark::State& state) {
    const std::vector<char> text = meshText(std::size_t(state.range(0)) * kMB);
    std::vector<char> gz, out;
    xch::Compressor::compress(gz, text.data(), text.size(), -1);
    std::vector<unsigned char> zlibOut(text.size());
    againstZlib(
        state, text.size(), [&] { xch::Compressor::decompress(out, gz.data(), gz.size()); },
        [&] { zlibGunzip(gz, zlibOut); });
    if (out != text || std::memcmp(zlibOut.data(), text.data(), text.size()) != 0)
        state.SkipWithError("inflation changed the data");
}
BENCHMARK(BM_Decompress)->Args({8, 1})->Args({80, 1})->Args({8, 0})->Args({80, 0})->UseManualTime()->Unit(benchmark::kMillisecond);

// Inflation of a stream another producer wrote (zlib -6, no index: read
// from start to end on one thread) against zlib's inflation of it.
void BM_DecompressForeign(benchmark::State& state) {
    const std::vector<char> text = meshText(std::size_t(state.range(0)) * kMB);
    const std::vector<unsigned char> packed = zlibGzip(text, Z_DEFAULT_COMPRESSION);
    const std::vector<char> gz(packed.begin(), packed.end());
    std::vector<char> out;
    std::vector<unsigned char> zlibOut(text.size());
    againstZlib(
        state, text.size(), [&] { xch::Compressor::decompress(out, gz.data(), gz.size()); },
        [&] { zlibGunzip(gz, zlibOut); });
    if (out != text) state.SkipWithError("inflation changed the data");
}
BENCHMARK(BM_DecompressForeign)->Args({8, 0})->Args({80, 0})->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_JsonBinaryWrite(benchmark::State& state) {
    const auto& doc = modelDocument();
    std::size_t size = 0;
    for (auto _ : state) {
        std::string out;
        xch::JsonBinaryIO::write(out, doc);
        size = out.size();
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(size));
}
BENCHMARK(BM_JsonBinaryWrite)->Unit(benchmark::kMillisecond);

void BM_JsonBinaryRead(benchmark::State& state) {
    std::string encoded;
    xch::JsonBinaryIO::write(encoded, modelDocument());
    for (auto _ : state) {
        xch::JsonDocument doc;
        benchmark::DoNotOptimize(xch::JsonBinaryIO::read(encoded.data(), encoded.size(), doc));
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(encoded.size()));
}
BENCHMARK(BM_JsonBinaryRead)->Unit(benchmark::kMillisecond);

void BM_JsonTextWriteCompact(benchmark::State& state) {
    const auto& doc = modelDocument();
    std::size_t size = 0;
    for (auto _ : state) {
        std::wostringstream out;
        xch::JsonTextIO::write(out, doc, false);
        size = static_cast<std::size_t>(out.tellp());
        benchmark::DoNotOptimize(size);
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(size));
}
BENCHMARK(BM_JsonTextWriteCompact)->Unit(benchmark::kMillisecond);

} // namespace

namespace {

// The console output, then how each codec's time grows with 10x the data:
// the time at the larger argument over the time at the smaller one.
class ScalingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred || run.run_name.args.empty()) continue;
            // "size" or "size/threads": the size varies, the rest names the row.
            const std::string& args = run.run_name.args;
            const std::size_t slash = args.find('/');
            const std::string name =
                run.run_name.function_name + (slash == std::string::npos ? "" : args.substr(slash));
            m_times[name][std::stol(args)] = run.GetAdjustedRealTime();
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        std::printf("\nScaling (time at 10x the data / time at 1x; at most 11 wanted):\n");
        for (const auto& [name, bySize] : m_times) {
            if (bySize.size() != 2 || bySize.rbegin()->first != 10 * bySize.begin()->first) continue;
            std::printf("  %-28s %5.2f\n", name.c_str(), bySize.rbegin()->second / bySize.begin()->second);
        }
    }

private:
    std::map<std::string, std::map<long, double>> m_times;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    ScalingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
