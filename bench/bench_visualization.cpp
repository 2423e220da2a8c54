// A large display model end to end: a tessellated torus of 1,000,000
// triangles (500,000 vertices with normals) in one ExcBlockVisualization,
// written through the envelope into shared memory and read back into the
// receiving object, against the floor that the transport alone costs:
// deflate + inflate + two copies of the same wire bytes, and zlib's own
// deflate + inflate. The stages are measured one by one as well, and the
// receiving side's peak memory is reported against the binary size.
#include <benchmark/benchmark.h>

#include "thread_time.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <zlib.h>

#if defined(__GLIBC__)
#  include <malloc.h>
#endif

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_exchange_visualization.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_json_binary_io.h>

using namespace xch;

namespace {

constexpr int kRings = 1000;     // around the main axis
constexpr int kSegments = 500;   // around the tube

std::shared_ptr<ExcBlockVisualization> makeTorus() {
    const double kPi = 3.14159265358979323846;
    const double R = 100.0, r = 30.0;
    std::vector<float> vertices, normals;
    vertices.reserve(3 * kRings * kSegments);
    normals.reserve(3 * kRings * kSegments);
    for (int i = 0; i < kRings; ++i) {
        const double u = 2 * kPi * i / kRings;
        for (int j = 0; j < kSegments; ++j) {
            const double v = 2 * kPi * j / kSegments;
            const double nx = std::cos(v) * std::cos(u), ny = std::cos(v) * std::sin(u), nz = std::sin(v);
            vertices.push_back(static_cast<float>((R + r * std::cos(v)) * std::cos(u)));
            vertices.push_back(static_cast<float>((R + r * std::cos(v)) * std::sin(u)));
            vertices.push_back(static_cast<float>(r * nz));
            normals.push_back(static_cast<float>(nx));
            normals.push_back(static_cast<float>(ny));
            normals.push_back(static_cast<float>(nz));
        }
    }
    ExcVisuFace::Polygon triangles(ExcVisuFace::Triangles, {});
    triangles.indices.reserve(6 * kRings * kSegments);
    for (int i = 0; i < kRings; ++i) {
        for (int j = 0; j < kSegments; ++j) {
            const int a = i * kSegments + j, b = ((i + 1) % kRings) * kSegments + j;
            const int c = ((i + 1) % kRings) * kSegments + (j + 1) % kSegments, d = i * kSegments + (j + 1) % kSegments;
            triangles.indices.insert(triangles.indices.end(), {a, b, c, a, c, d});
        }
    }
    auto face = std::make_shared<ExcVisuFace>();
    face->setVertices(std::move(vertices));
    face->setNormals(std::move(normals));
    face->addPolygon(std::move(triangles));
    face->setColor(ExcColor(180, 180, 190));
    auto mesh = std::make_shared<ExcVisuMesh>();
    mesh->setGeometryType(VisuGeometrySolid);
    mesh->addFace(face);
    auto node = std::make_shared<ExcVisuNode>();
    node->setLeaf(true);
    node->setType(ExcVisuNode::Mesh);
    node->setMesh(mesh);
    auto data = std::make_shared<ExcVisualizationData>();
    data->setUnits(LengthMillimeter);
    data->addSceneRootNode(node);
    return std::make_shared<ExcBlockVisualization>(1, data);
}

const std::shared_ptr<ExcBlockVisualization>& torus() {
    static const auto object = makeTorus();
    return object;
}

// The uncompressed binary JSON of the torus: the bytes the transport moves.
const std::string& wireBytes() {
    static const std::string bytes = [] {
        JsonDocument doc;
        torus()->writeObject(doc, doc.GetAllocator());
        std::string out;
        JsonBinaryIO::write(out, doc);
        return out;
    }();
    return bytes;
}

const std::vector<char>& compressedWire() {
    static const std::vector<char> packed = [] {
        std::vector<char> out;
        Compressor::compress(out, wireBytes().data(), wireBytes().size(), -1);
        return out;
    }();
    return packed;
}

void setBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(wireBytes().size()));
    state.counters["binary_MB"] = static_cast<double>(wireBytes().size()) / 1e6;
    state.counters["gzip_MB"] = static_cast<double>(compressedWire().size()) / 1e6;
}

std::wstring send(const std::shared_ptr<IExchangeObject>& object) {
    std::wostringstream out;
    ExchangeObjectWrapper(object).writeObject(out);
    return out.str();
}

std::shared_ptr<IExchangeObject> receive(const std::wstring& envelope) {
    ExchangeObjectWrapper in;
    in.setReleaseAfterLoad(true);
    std::wistringstream text(envelope);
    in.readObject(text);
    return in.get();
}

// ---- end to end and its floors ----------------------------------------------

// Sends and receives the object once.
void endToEnd(benchmark::State& state) {
    auto back = receive(send(torus()));
    benchmark::DoNotOptimize(back);
    if (!back || !back->isLoaded()) state.SkipWithError("the body was not loaded");
}

// The transport alone: compress the wire bytes, copy them into and out of a
// buffer, inflate.
void deflateInflateTwoCopies() {
    const std::string& wire = wireBytes();
    std::vector<char> packed;
    Compressor::compress(packed, wire.data(), wire.size(), -1);
    std::vector<char> shared(packed.size());
    std::memcpy(shared.data(), packed.data(), packed.size());
    std::vector<char> received(shared.size());
    std::memcpy(received.data(), shared.data(), shared.size());
    std::vector<char> inflated;
    Compressor::decompress(inflated, received.data(), received.size());
    benchmark::DoNotOptimize(inflated.data());
}

// zlib itself: gzip deflate at the default level, then inflate.
void zlibDeflateInflate() {
    const std::string& wire = wireBytes();
    z_stream d{};
    deflateInit2(&d, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::vector<unsigned char> packed(deflateBound(&d, wire.size()));
    d.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(wire.data()));
    d.avail_in = static_cast<uInt>(wire.size());
    d.next_out = packed.data();
    d.avail_out = static_cast<uInt>(packed.size());
    deflate(&d, Z_FINISH);
    packed.resize(d.total_out);
    deflateEnd(&d);
    z_stream i{};
    inflateInit2(&i, 15 + 32);
    std::vector<unsigned char> inflated(wire.size());
    i.next_in = packed.data();
    i.avail_in = static_cast<uInt>(packed.size());
    i.next_out = inflated.data();
    i.avail_out = static_cast<uInt>(inflated.size());
    inflate(&i, Z_FINISH);
    inflateEnd(&i);
    benchmark::DoNotOptimize(inflated.data());
}

// The three in turns within each iteration. Compression and inflation of
// large bodies use every core, so each is timed on the wall clock (the
// benchmark's time is the end to end) and on the CPU time of all threads:
// "x_floor" is the end to end over deflate + inflate + two copies,
// "zlib_over_e2e" zlib's deflate + inflate (one thread) over the end to
// end, both on the wall clock; the "cpu_" ones the same in CPU time.
void BM_EndToEnd(benchmark::State& state) {
    WallAndCpu e2e, floor, zlib;
    for (auto _ : state) {
        floor += timedAll(deflateInflateTwoCopies);
        zlib += timedAll(zlibDeflateInflate);
        const WallAndCpu t = timedAll([&] { endToEnd(state); });
        e2e += t;
        state.SetIterationTime(t.wall);
    }
    setBytes(state);
    const double n = static_cast<double>(state.iterations());
    state.counters["e2e_ms"] = e2e.wall / n * 1e3;
    state.counters["floor_ms"] = floor.wall / n * 1e3;
    state.counters["zlib_ms"] = zlib.wall / n * 1e3;
    state.counters["x_floor"] = e2e.wall / floor.wall;
    state.counters["zlib_over_e2e"] = zlib.wall / e2e.wall;
    state.counters["cpu_x_floor"] = e2e.cpu / floor.cpu;
    state.counters["cpu_zlib_over_e2e"] = zlib.cpu / e2e.cpu;
}
BENCHMARK(BM_EndToEnd)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

// ---- the stages of the end-to-end path ---------------------------------------------

// The object into its JSON document (the bulk arrays to base64).
void BM_StageWriteObject(benchmark::State& state) {
    for (auto _ : state) {
        JsonDocument doc;
        torus()->writeObject(doc, doc.GetAllocator());
        benchmark::DoNotOptimize(doc);
    }
    setBytes(state);
}
BENCHMARK(BM_StageWriteObject)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_StageBinaryEncode(benchmark::State& state) {
    JsonDocument doc;
    torus()->writeObject(doc, doc.GetAllocator());
    for (auto _ : state) {
        std::string out;
        JsonBinaryIO::write(out, doc);
        benchmark::DoNotOptimize(out.data());
    }
    setBytes(state);
}
BENCHMARK(BM_StageBinaryEncode)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_StageCompress(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<char> packed;
        Compressor::compress(packed, wireBytes().data(), wireBytes().size(), -1);
        benchmark::DoNotOptimize(packed.data());
    }
    setBytes(state);
}
BENCHMARK(BM_StageCompress)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_StageDecompress(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<char> inflated;
        Compressor::decompress(inflated, compressedWire().data(), compressedWire().size());
        benchmark::DoNotOptimize(inflated.data());
    }
    setBytes(state);
}
BENCHMARK(BM_StageDecompress)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_StageBinaryDecode(benchmark::State& state) {
    for (auto _ : state) {
        JsonDocument doc;
        JsonBinaryIO::read(wireBytes().data(), wireBytes().size(), doc);
        benchmark::DoNotOptimize(doc);
    }
    setBytes(state);
}
BENCHMARK(BM_StageBinaryDecode)->Unit(benchmark::kMillisecond)->UseRealTime();

// The JSON document into a fresh object (base64 to the vectors).
void BM_StageReadObject(benchmark::State& state) {
    JsonDocument doc;
    JsonBinaryIO::read(wireBytes().data(), wireBytes().size(), doc);
    for (auto _ : state) {
        ExcBlockVisualization back;
        back.readObject(doc);
        benchmark::DoNotOptimize(back);
    }
    setBytes(state);
}
BENCHMARK(BM_StageReadObject)->Unit(benchmark::kMillisecond)->UseRealTime();

// ---- peak memory of the receiving side ------------------------------------------------

#if defined(__linux__)
// A field of /proc/self/status in kB ("VmRSS", "VmHWM").
long statusKb(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    const std::string prefix = std::string(field) + ":";
    while (std::getline(status, line))
        if (line.compare(0, prefix.size(), prefix) == 0) return std::stol(line.substr(prefix.size()));
    return -1;
}

// Receives one envelope and reports how far the resident size rose above
// where it started (the high-water mark is reset first), with the object
// still alive at the end.
void BM_ReceivePeakMemory(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const std::wstring envelope = send(torus());
#  if defined(__GLIBC__)
        malloc_trim(0);
#  endif
        std::ofstream("/proc/self/clear_refs") << "5";  // resets VmHWM to the current RSS
        const long before = statusKb("VmRSS");
        state.ResumeTiming();
        auto back = receive(envelope);
        state.PauseTiming();
        const long peak = statusKb("VmHWM");
        const double peakMB = (peak - before) * 1024.0 / 1e6;
        state.counters["peak_receive_MB"] = peakMB;
        state.counters["peak_over_binary"] = peakMB * 1e6 / static_cast<double>(wireBytes().size());
        back.reset();
        state.ResumeTiming();
    }
    setBytes(state);
}
BENCHMARK(BM_ReceivePeakMemory)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
#endif

} // namespace

int main(int argc, char** argv) {
#if defined(__GLIBC__)
    // Large blocks come straight from the system and go back when freed, so
    // that resident size follows what is in use.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
#endif
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
