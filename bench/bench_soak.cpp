// Soak: 1,000 mixed exchanges between two processes, as a long-running host
// sees them. A worker process (this program, started again with --peer)
// answers each request with one envelope on a pipe: 890 inline progress
// reports, 100 small binary display models and 10 of about 50 MB (binary
// JSON; gzip-compressed in shared memory). The host reads each with
// release after load and checks what it got.
//
// Reported: exchanges per second, body megabytes per second (binary JSON
// size), the CPU time of each side (the worker's is mostly compression),
// and shared memory: this user's exchange buffers before and after
// the run (other processes may add their own meanwhile) and, exactly, how
// many of the bodies of this run are left (0 with release after load).
//
//   xch_bench_soak [benchmark options]
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#if !defined(_WIN32)
#  include <csignal>
#  include <fcntl.h>
#  include <sys/resource.h>
#  include <sys/wait.h>
#  include <unistd.h>
#endif

#include <mp/mp_shared_buffer.h>
#include <mp/mp_shared_cleanup.h>
#include <xch_api/xch_api_exchange_visualization.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_utf8.h>

using namespace xch;

namespace {

constexpr int kExchanges = 1000;

// Exchange i is large when i % 100 == 99, a small binary one when
// i % 10 == 0, inline otherwise.
char kindOf(int i) { return i % 100 == 99 ? 'L' : i % 10 == 0 ? 'S' : 'I'; }

// A tessellated torus: rings x segments vertices, two triangles each.
std::shared_ptr<ExcBlockVisualization> makeTorus(int rings, int segments, std::uint64_t blockId) {
    const double kPi = 3.14159265358979323846, R = 100.0, r = 30.0;
    std::vector<float> vertices, normals;
    for (int i = 0; i < rings; ++i) {
        const double u = 2 * kPi * i / rings;
        for (int j = 0; j < segments; ++j) {
            const double v = 2 * kPi * j / segments;
            vertices.insert(vertices.end(), {static_cast<float>((R + r * std::cos(v)) * std::cos(u)),
                                             static_cast<float>((R + r * std::cos(v)) * std::sin(u)),
                                             static_cast<float>(r * std::sin(v))});
            normals.insert(normals.end(), {static_cast<float>(std::cos(v) * std::cos(u)),
                                           static_cast<float>(std::cos(v) * std::sin(u)),
                                           static_cast<float>(std::sin(v))});
        }
    }
    ExcVisuFace::Polygon triangles(ExcVisuFace::Triangles, {});
    for (int i = 0; i < rings; ++i)
        for (int j = 0; j < segments; ++j) {
            const int a = i * segments + j, b = ((i + 1) % rings) * segments + j;
            const int c = ((i + 1) % rings) * segments + (j + 1) % segments, d = i * segments + (j + 1) % segments;
            triangles.indices.insert(triangles.indices.end(), {a, b, c, a, c, d});
        }
    auto face = std::make_shared<ExcVisuFace>();
    face->setVertices(std::move(vertices));
    face->setNormals(std::move(normals));
    face->addPolygon(std::move(triangles));
    auto mesh = std::make_shared<ExcVisuMesh>();
    mesh->addFace(face);
    auto node = std::make_shared<ExcVisuNode>();
    node->setType(ExcVisuNode::Mesh);
    node->setMesh(mesh);
    auto data = std::make_shared<ExcVisualizationData>();
    data->addSceneRootNode(node);
    return std::make_shared<ExcBlockVisualization>(blockId, data);
}

std::size_t binarySize(const IExchangeObject& object) {
    JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    std::string bytes;
    JsonBinaryIO::write(bytes, doc);
    return bytes.size();
}

// ---- the worker: one envelope per request line ----------------------------

int runPeer() {
#if !defined(_WIN32)
    std::signal(SIGPIPE, SIG_IGN);
#endif
    const auto large = makeTorus(780, 500, 2);   // about 50 MB of binary JSON
    const auto small = makeTorus(12, 10, 1);     // a few kilobytes
    char request[64];
    for (int i = 0; std::fgets(request, sizeof request, stdin); ++i) {
        std::shared_ptr<IExchangeObject> object;
        switch (request[0]) {
        case 'L': object = large; break;
        case 'S': object = small; break;
        default: object = std::make_shared<ExcProgress>(i, kExchanges, false, L"soak"); break;
        }
        std::wostringstream text;
        ExchangeObjectWrapper(object).writeObject(text);
        const std::string bytes = toUtf8(text.str());
        if (std::fprintf(stdout, "%zu\n", bytes.size()) < 0 || std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() ||
            std::fflush(stdout) != 0)
            return 1;
    }
    return 0;
}

// ---- the host --------------------------------------------------------------

#if !defined(_WIN32)
std::string selfPath() {
    char path[4096];
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    return std::string(path, n > 0 ? static_cast<std::size_t>(n) : 0);
}

struct Peer {
    pid_t pid = -1;
    std::FILE* requests = nullptr;
    std::FILE* answers = nullptr;

    Peer() {
        int toPeer[2], fromPeer[2];
        if (pipe2(toPeer, O_CLOEXEC) != 0 || pipe2(fromPeer, O_CLOEXEC) != 0) return;
        const std::string self = selfPath();
        char* argv[] = {const_cast<char*>(self.c_str()), const_cast<char*>("--peer"), nullptr};
        pid = fork();
        if (pid == 0) {
            dup2(toPeer[0], 0);
            dup2(fromPeer[1], 1);
            execv(argv[0], argv);
            _exit(127);
        }
        close(toPeer[0]);
        close(fromPeer[1]);
        requests = fdopen(toPeer[1], "w");
        answers = fdopen(fromPeer[0], "r");
    }
    ~Peer() {
        if (requests) std::fclose(requests);
        if (answers) std::fclose(answers);
        if (pid > 0) waitpid(pid, nullptr, 0);
    }

    bool exchange(char kind, std::wstring& envelope) {
        if (std::fprintf(requests, "%c\n", kind) < 0 || std::fflush(requests) != 0) return false;
        char header[32];
        unsigned long long size = 0;
        if (!std::fgets(header, sizeof header, answers) || std::sscanf(header, "%llu", &size) != 1) return false;
        std::string bytes(static_cast<std::size_t>(size), '\0');
        if (std::fread(&bytes[0], 1, bytes.size(), answers) != bytes.size()) return false;
        envelope = fromUtf8(bytes);
        return true;
    }
};
#endif

void BM_Soak(benchmark::State& state) {
#if defined(_WIN32)
    state.SkipWithError("the soak starts its worker with fork/exec: POSIX only");
    return;
#else
    const std::size_t largeSize = binarySize(*makeTorus(780, 500, 2));
    const std::size_t smallSize = binarySize(*makeTorus(12, 10, 1));
    for (auto _ : state) {
        const std::size_t before = mp::listExchangeBuffers().size();
        std::vector<std::wstring> bodies;
        double bodyBytes = 0;
        const auto start = std::chrono::steady_clock::now();
        {
            Peer peer;
            for (int i = 0; i < kExchanges; ++i) {
                std::wstring envelope;
                if (!peer.exchange(kindOf(i), envelope)) return state.SkipWithError("the worker stopped answering");
                ExchangeObjectWrapper in;
                in.setReleaseAfterLoad(true);
                std::wistringstream text(envelope);
                in.readObject(text);
                const auto& object = in.get();
                if (!object || (object->binary() && !object->isLoaded()))
                    return state.SkipWithError("an object did not arrive loaded");
                if (object->binary()) {
                    bodies.push_back(object->source());
                    bodyBytes += static_cast<double>(kindOf(i) == 'L' ? largeSize : smallSize);
                    auto visualization = std::static_pointer_cast<ExcBlockVisualization>(object);
                    if (visualization->blockId() != (kindOf(i) == 'L' ? 2u : 1u))
                        return state.SkipWithError("a display model came back wrong");
                }
            }
        }
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        rusage children{}, self{};
        getrusage(RUSAGE_CHILDREN, &children);
        getrusage(RUSAGE_SELF, &self);
        auto cpu = [](const rusage& u) {
            return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
                   static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
        };
        std::size_t leftover = 0;
        for (const std::wstring& name : bodies) leftover += mp::SharedBuffer<char>::exists(name) ? 1 : 0;
        const std::size_t after = mp::listExchangeBuffers().size();
        // Whatever of this run might remain goes; nothing else is touched.
        mp::removeExchangeBuffersOlderThan(std::chrono::seconds(0), bodies);
        state.SetIterationTime(seconds);
        state.counters["exchanges_per_s"] = kExchanges / seconds;
        state.counters["body_MB_per_s"] = bodyBytes / 1e6 / seconds;
        state.counters["worker_cpu_s"] = cpu(children);
        state.counters["host_cpu_s"] = cpu(self);
        state.counters["large_body_MB"] = static_cast<double>(largeSize) / 1e6;
        state.counters["binary_bodies"] = static_cast<double>(bodies.size());
        state.counters["shm_before"] = static_cast<double>(before);
        state.counters["shm_after"] = static_cast<double>(after);
        state.counters["leftover_bodies"] = static_cast<double>(leftover);
    }
#endif
}
BENCHMARK(BM_Soak)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--peer") == 0) return runPeer();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
