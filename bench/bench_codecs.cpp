// Throughput of the codecs on the path of large exchange objects: base64
// for binary arrays inside JSON strings, gzip for shared-memory bodies,
// binary JSON for the bodies themselves, and JSON text for inline objects.
// Rates are reported per byte of the uncompressed / binary side (for JSON
// text: per character written).
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include <xch_api/xch_api_base64.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

namespace {

constexpr std::size_t kBlockSize = 16u << 20;

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

const std::vector<char>& mesh() {
    static const std::vector<char> block = meshBlock(kBlockSize);
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

void BM_Base64Encode(benchmark::State& state) {
    const auto& block = mesh();
    for (auto _ : state) {
        std::string text = xch::Base64::encode(block.data(), block.size());
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(block.size()));
}
BENCHMARK(BM_Base64Encode)->Unit(benchmark::kMillisecond);

// Decoding narrow text (char) and wide text (wchar_t, as held in JSON).
template <class Char>
void BM_Base64Decode(benchmark::State& state) {
    const auto& block = mesh();
    std::basic_string<Char> text(xch::Base64::encodedSize(block.size()), Char(0));
    xch::Base64::encodeInto(text.data(), block.data(), block.size());
    for (auto _ : state) {
        std::vector<std::uint8_t> bytes = xch::Base64::decode(text);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(block.size()));
}
BENCHMARK_TEMPLATE(BM_Base64Decode, char)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Base64Decode, wchar_t)->Unit(benchmark::kMillisecond);

// Argument: the compression level (-1 zlib's default, 1 fastest).
void BM_Compress(benchmark::State& state) {
    const auto& block = mesh();
    std::vector<char> out;
    for (auto _ : state) {
        xch::Compressor::compress(out, block.data(), block.size(), int(state.range(0)));
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(block.size()));
    state.counters["ratio"] = double(block.size()) / double(out.size());
}
BENCHMARK(BM_Compress)->Arg(-1)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_Decompress(benchmark::State& state) {
    const auto& block = mesh();
    std::vector<char> gz;
    xch::Compressor::compress(gz, block.data(), block.size(), -1);
    for (auto _ : state) {
        std::vector<char> out;
        xch::Compressor::decompress(out, gz.data(), gz.size());
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(block.size()));
}
BENCHMARK(BM_Decompress)->Unit(benchmark::kMillisecond);

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
