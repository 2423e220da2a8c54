// The Open CASCADE worker end to end: `xch import`'s host code runs the
// real worker on real STEP models and on broken input, and what arrives is
// checked against what Open CASCADE reports reading the same file here.
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include <BRepGProp.hxx>
#include <BinTools.hxx>
#include <GProp_GProps.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDF_Tool.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_ViewTool.hxx>

#include <tiny_gltf.h>

#include <frames/xch_frames.h>
#include <frames/xch_worker_process.h>
#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_utf8.h>

#include "xch_gltf.h"
#include "xch_import.h"

using namespace xch;
using xch_tool::ImportedModel;
using xch_tool::ImportRequest;
using xch_tool::ImportSummary;

namespace {

namespace fs = std::filesystem;

fs::path binDir() { return fs::canonical("/proc/self/exe").parent_path(); }

std::string workerPath() { return (binDir() / "xch_occt_worker").string(); }

fs::path dataDir() { return fs::path(XCH_STEP_DATA_DIR); }

std::vector<std::string> stepModels() {
    std::vector<std::string> out;
    std::error_code error;
    for (fs::directory_iterator it(dataDir(), error), end; !error && it != end; it.increment(error)) {
        const std::string ext = it->path().extension().string();
        if (ext == ".stp" || ext == ".step") out.push_back(it->path().filename().string());
    }
    std::sort(out.begin(), out.end());
    return out;
}

// A scratch directory of this test, removed afterwards.
struct Scratch {
    fs::path dir;
    Scratch() {
        dir = fs::temp_directory_path() / ("xch_occt_test_" + std::to_string(::getpid()) + "_" +
                                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(dir);
    }
    ~Scratch() {
        std::error_code error;
        fs::remove_all(dir, error);
    }
    std::string file(const std::string& name, const std::string& contents) const {
        const fs::path path = dir / name;
        std::ofstream(path, std::ios::binary) << contents;
        return path.string();
    }
};

ImportSummary runImport(const std::string& file, ImportedModel& model, const xch_tool::ImportObserver& observer = {}) {
    ImportRequest request;
    request.file = file;
    request.worker = workerPath();
    std::ostringstream progress;
    return xch_tool::importFile(request, model, progress, observer);
}

void expectNoSharedMemoryLeft(const ImportSummary& summary) {
    for (const std::wstring& name : summary.sharedMemoryNames)
        EXPECT_FALSE(mp::SharedBuffer<char>::exists(name)) << "left in shared memory: " << toUtf8(name);
}

// What Open CASCADE itself reports for a file, on the counting rules of
// the import summary.
struct DirectCounts {
    std::size_t blocks = 0, references = 0, faces = 0, dimensions = 0, tolerances = 0, datums = 0, views = 0;
};

DirectCounts readDirectly(const std::string& path) {
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
    STEPCAFControl_Reader reader;
    reader.SetColorMode(true);
    reader.SetNameMode(true);
    reader.SetLayerMode(true);
    reader.SetGDTMode(true);
    reader.SetViewMode(true);
    EXPECT_EQ(reader.ReadFile(path.c_str()), IFSelect_RetDone);
    EXPECT_TRUE(reader.Transfer(document));
    DirectCounts counts;
    Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    TDF_LabelSequence roots;
    shapes->GetFreeShapes(roots);
    counts.references = static_cast<std::size_t>(roots.Length());
    std::vector<TDF_Label> pending;
    for (int i = 1; i <= roots.Length(); ++i) pending.push_back(roots(i));
    std::set<std::string> seen;
    while (!pending.empty()) {
        TDF_Label label = pending.back();
        pending.pop_back();
        TCollection_AsciiString entry;
        TDF_Tool::Entry(label, entry);
        if (!seen.insert(entry.ToCString()).second) continue;
        ++counts.blocks;
        if (XCAFDoc_ShapeTool::IsAssembly(label)) {
            TDF_LabelSequence components;
            XCAFDoc_ShapeTool::GetComponents(label, components, false);
            counts.references += static_cast<std::size_t>(components.Length());
            for (int i = 1; i <= components.Length(); ++i) {
                TDF_Label referred;
                if (XCAFDoc_ShapeTool::GetReferredShape(components(i), referred)) pending.push_back(referred);
            }
        } else {
            TopTools_IndexedMapOfShape faces;
            TopExp::MapShapes(XCAFDoc_ShapeTool::GetShape(label), TopAbs_FACE, faces);
            counts.faces += static_cast<std::size_t>(faces.Extent());
        }
    }
    Handle(XCAFDoc_DimTolTool) gdt = XCAFDoc_DocumentTool::DimTolTool(document->Main());
    TDF_LabelSequence labels;
    gdt->GetDimensionLabels(labels);
    counts.dimensions = static_cast<std::size_t>(labels.Length());
    labels.Clear();
    gdt->GetGeomToleranceLabels(labels);
    counts.tolerances = static_cast<std::size_t>(labels.Length());
    labels.Clear();
    gdt->GetDatumLabels(labels);
    counts.datums = static_cast<std::size_t>(labels.Length());
    labels.Clear();
    XCAFDoc_DocumentTool::ViewTool(document->Main())->GetViewLabels(labels);
    counts.views = static_cast<std::size_t>(labels.Length());
    return counts;
}

// The area of a display face's triangles.
double triangleArea(const ExcVisuFace& face) {
    double area = 0;
    const std::vector<float>& v = face.vertices();
    for (const auto& polygon : face.polygons()) {
        if (polygon.type != ExcVisuFace::Triangles) continue;
        for (std::size_t k = 0; k + 2 < polygon.indices.size(); k += 3) {
            const std::size_t a = 3 * static_cast<std::size_t>(polygon.indices[k]);
            const std::size_t b = 3 * static_cast<std::size_t>(polygon.indices[k + 1]);
            const std::size_t c = 3 * static_cast<std::size_t>(polygon.indices[k + 2]);
            const gp_Vec ab(v[b] - v[a], v[b + 1] - v[a + 1], v[b + 2] - v[a + 2]);
            const gp_Vec ac(v[c] - v[a], v[c + 1] - v[a + 1], v[c + 2] - v[a + 2]);
            area += 0.5 * ab.Crossed(ac).Magnitude();
        }
    }
    return area;
}

const std::vector<std::shared_ptr<ExcVisuFace>>* displayFaces(const ImportedModel& model, std::uint64_t block) {
    auto it = model.visualization.find(block);
    if (it == model.visualization.end() || !it->second->visualizationData()) return nullptr;
    for (const auto& root : it->second->visualizationData()->sceneRootNodes())
        for (const auto& child : root->childNodes())
            if (child->mesh()) return &child->mesh()->faces();
    return nullptr;
}

// The PMI annotations a block's mechanical data carries.
std::vector<const ExcPMIAnnotation*> annotationsOf(const ImportedModel& model, std::uint64_t block) {
    std::vector<const ExcPMIAnnotation*> out;
    auto it = model.mechanical.find(block);
    if (it == model.mechanical.end() || !it->second->pmiData()) return out;
    for (const auto& set : it->second->pmiData()->annotationSets()) {
        EXPECT_EQ(set->blockId(), block);
        for (const auto& view : set->views()) {
            for (const auto& a : view->dimensions()) out.push_back(a.get());
            for (const auto& a : view->gdts()) out.push_back(a.get());
            for (const auto& a : view->datums()) out.push_back(a.get());
            for (const auto& a : view->datumTargets()) out.push_back(a.get());
        }
    }
    return out;
}

// Triangles of a .glb, each part's mesh counted once however often it is
// placed.
std::size_t glbTriangles(const std::string& path) {
    tinygltf::Model gltf;
    tinygltf::TinyGLTF loader;
    std::string error, warning;
    EXPECT_TRUE(loader.LoadBinaryFromFile(&gltf, &error, &warning, path)) << error;
    std::set<std::string> counted;
    std::size_t triangles = 0;
    for (const auto& mesh : gltf.meshes) {
        if (!counted.insert(mesh.name).second) continue;
        for (const auto& primitive : mesh.primitives)
            triangles += gltf.accessors[static_cast<std::size_t>(primitive.indices)].count / 3;
    }
    return triangles;
}

} // namespace

TEST(OcctImport, StepModelsArePresent) {
    if (stepModels().empty())
        GTEST_SKIP() << "no STEP models in " << dataDir() << " (configure with -DXCH_STEP_DATA_DIR=...)";
}

// Imports `path` and checks what arrived: counts equal Open CASCADE's own
// reading, references resolve, the restored geometry numbers its faces as
// the display model does, the .glb holds the same triangles, and no shared
// memory is left.
void checkImport(const std::string& path, const fs::path& scratch, ImportedModel& model, ImportSummary& summary) {
    summary = runImport(path, model);
    ASSERT_TRUE(summary.ok) << toUtf8(summary.error);
    expectNoSharedMemoryLeft(summary);

    const DirectCounts direct = readDirectly(path);
    EXPECT_EQ(summary.blocks, direct.blocks);
    EXPECT_EQ(summary.references, direct.references);
    EXPECT_EQ(summary.faces, direct.faces);
    EXPECT_EQ(summary.dimensions, direct.dimensions);
    EXPECT_EQ(summary.tolerances, direct.tolerances);
    EXPECT_EQ(summary.datums, direct.datums);
    EXPECT_EQ(summary.views, direct.views);
    EXPECT_GT(summary.triangles, 0u);

    ASSERT_TRUE(model.structure);
    for (const auto& reference : model.structure->rootBlockReferences())
        EXPECT_TRUE(model.structure->getBlockById(reference->blockId())) << "root reference to a missing block";
    for (const auto& block : model.structure->blocks())
        for (const auto& reference : block->blockReferences())
            EXPECT_TRUE(model.structure->getBlockById(reference->blockId())) << "reference to a missing block";

    std::size_t linkedFaces = 0;
    for (const auto& block : model.structure->blocks()) {
        if (!block->isPart()) continue;
        SCOPED_TRACE("block " + std::to_string(block->id()));
        auto geometry = model.geometry.find(block->id());
        ASSERT_NE(geometry, model.geometry.end());
        const std::vector<char>& bytes = geometry->second->binaryData();
        std::istringstream in(std::string(bytes.begin(), bytes.end()));
        TopoDS_Shape restored;
        BinTools::Read(restored, in);
        TopTools_IndexedMapOfShape faces;
        TopExp::MapShapes(restored, TopAbs_FACE, faces);
        const auto* display = displayFaces(model, block->id());
        ASSERT_TRUE(display);
        ASSERT_EQ(display->size(), static_cast<std::size_t>(faces.Extent()));
        // Face i of the restored shape is the face the display model calls
        // i: their areas agree.
        GProp_GProps whole;
        BRepGProp::SurfaceProperties(restored, whole);
        for (int i = 1; i <= faces.Extent(); ++i) {
            const ExcVisuFace& face = *(*display)[static_cast<std::size_t>(i - 1)];
            ASSERT_EQ(face.mechanicalId(), std::to_wstring(i));
            if (face.triangleCount() == 0) continue;
            GProp_GProps props;
            BRepGProp::SurfaceProperties(TopoDS::Face(faces(i)), props);
            EXPECT_NEAR(triangleArea(face), props.Mass(), 0.05 * props.Mass() + 1e-4 * whole.Mass())
                << "face " << i;
        }
        // Every sub-entity a PMI annotation of the block links to exists in
        // the restored shape.
        TopTools_IndexedMapOfShape edges, vertices;
        TopExp::MapShapes(restored, TopAbs_EDGE, edges);
        TopExp::MapShapes(restored, TopAbs_VERTEX, vertices);
        for (const ExcPMIAnnotation* annotation : annotationsOf(model, block->id())) {
            for (const auto& element : annotation->linkedElements()) {
                ASSERT_TRUE(element && element->fsp()) << toUtf8(annotation->id());
                const ExcFullSubentPath& path = *element->fsp();
                EXPECT_TRUE(path.refs().empty());
                const std::uint64_t id = path.subentId();
                if (path.subentType() == ExcFullSubentPath::Face) {
                    EXPECT_TRUE(id >= 1 && id <= static_cast<std::uint64_t>(faces.Extent())) << id;
                    ++linkedFaces;
                } else if (path.subentType() == ExcFullSubentPath::Edge) {
                    EXPECT_TRUE(id >= 1 && id <= static_cast<std::uint64_t>(edges.Extent())) << id;
                } else if (path.subentType() == ExcFullSubentPath::Vertex) {
                    EXPECT_TRUE(id >= 1 && id <= static_cast<std::uint64_t>(vertices.Extent())) << id;
                } else {
                    EXPECT_EQ(path.subentType(), ExcFullSubentPath::Body);
                }
            }
        }
    }
    if (summary.dimensions + summary.tolerances > 0) {
        EXPECT_GT(linkedFaces, 0u);
    }

    const std::string glb = (scratch / "model.glb").string();
    std::string error;
    ASSERT_TRUE(xch_tool::writeGlb(model, glb, error)) << error;
    EXPECT_EQ(glbTriangles(glb), summary.triangles);
}

class OcctStepModel : public ::testing::TestWithParam<std::string> {};

TEST_P(OcctStepModel, ImportsWhatOpenCascadeReads) {
    Scratch scratch;
    ImportedModel model;
    ImportSummary summary;
    checkImport((dataDir() / GetParam()).string(), scratch.dir, model, summary);
}

INSTANTIATE_TEST_SUITE_P(Models, OcctStepModel, ::testing::ValuesIn(stepModels()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                             std::string name;
                             for (char c : info.param) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
                             return name;
                         });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(OcctStepModel);

// Bad input ends in a clear error, not a hang or a crash: a missing file, a
// file that is not STEP under a STEP name, a name no format accepts, a
// missing worker.
TEST(OcctImport, BadInputGivesClearErrors) {
    Scratch scratch;
    struct Case {
        std::string file;
        std::string worker;
        std::string error;
    };
    const Case cases[] = {
        {(scratch.dir / "missing.stp").string(), workerPath(), "no such file"},
        {scratch.file("garbage.stp", "this is not ISO-10303-21 at all\n"), workerPath(), "not a STEP file"},
        {scratch.file("empty.step", ""), workerPath(), "not a STEP file"},
        {scratch.file("notes.txt", "ISO-10303-21;\n"), workerPath(), "imports no files like"},
        {scratch.file("part.stp", "x"), (scratch.dir / "no_worker").string(), "no translator worker"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        ImportRequest request;
        request.file = c.file;
        request.worker = c.worker;
        ImportedModel model;
        std::ostringstream progress;
        ImportSummary summary = xch_tool::importFile(request, model, progress);
        EXPECT_FALSE(summary.ok);
        EXPECT_NE(toUtf8(summary.error).find(c.error), std::string::npos) << toUtf8(summary.error);
        EXPECT_FALSE(model.structure);
        expectNoSharedMemoryLeft(summary);
    }
}

// The worker answers a failed import with an error Result and goes on
// serving: a missing file, then garbage, then a ping, then its description.
TEST(OcctImport, WorkerKeepsServingAfterAFailedImport) {
    Scratch scratch;
    const std::string garbage = scratch.file("garbage.step", std::string(5000, '#'));
    frames::WorkerProcess worker(workerPath());
    auto importOf = [](const std::string& file) {
        auto options = Command::newImportOptions();
        options->setFile(fromUtf8(file.data(), file.size()));
        Command command;
        command.setType(Command::Import);
        command.setImportOptions(options);
        return command;
    };
    Command ping;
    ping.setType(Command::Ping);
    const Command commands[] = {importOf((scratch.dir / "nothing.stp").string()), importOf(garbage), ping};
    for (const Command& command : commands) {
        std::wostringstream text;
        command.writeObject(text);
        frames::writeFrame(worker.input(), "command", text.str());
        std::string kind;
        std::wstring answer;
        Result result;
        while (frames::readFrame(worker.output(), kind, answer) && kind != "result") {
        }
        ASSERT_EQ(kind, "result");
        std::wistringstream in(answer);
        result.readObject(in);
        EXPECT_TRUE(result.isFinished());
        if (command.type() == Command::Ping) {
            EXPECT_EQ(result.code(), Result::Ok);
        } else {
            EXPECT_EQ(result.code(), Result::Error);
            EXPECT_NE(result.message().find(L"Cannot import"), std::wstring::npos) << toUtf8(result.message());
        }
    }
    bool normal = false;
    EXPECT_EQ(worker.wait(normal), "exit status 0");
}

// A worker killed in the middle of a job: the host says so, keeps what it
// had, and the shared memory named so far is gone.
TEST(OcctImport, WorkerKilledMidJobIsReported) {
    const std::vector<std::string> models = stepModels();
    if (models.empty()) GTEST_SKIP() << "no STEP models in " << dataDir();
    ImportedModel model;
    ImportSummary summary =
        runImport((dataDir() / models.front()).string(), model,
                  [&](const IExchangeObject& object, xch_tool::WorkerControl& worker) {
                      if (object.name() == L"exc_product_structure") worker.kill();
                  });
    EXPECT_FALSE(summary.ok);
    EXPECT_TRUE(model.structure);
    EXPECT_FALSE(summary.sharedMemoryNames.empty());
    const std::string error = toUtf8(summary.error);
    EXPECT_NE(error.find("the worker ended before it finished"), std::string::npos) << error;
    EXPECT_NE(error.find("killed by signal 9"), std::string::npos) << error;
    expectNoSharedMemoryLeft(summary);
}

// A host that goes away in the middle of a job: the worker ends (at its
// next write, or at the end of its input), and the shared memory it had
// sent but nobody read is gone.
TEST(OcctImport, WorkerEndsAndCleansUpWhenTheHostGoes) {
    const std::vector<std::string> models = stepModels();
    if (models.empty()) GTEST_SKIP() << "no STEP models in " << dataDir();
    const std::string file = (dataDir() / models.front()).string();
    frames::WorkerProcess worker(workerPath());
    auto options = Command::newImportOptions();
    options->setFile(fromUtf8(file.data(), file.size()));
    Command import;
    import.setType(Command::Import);
    import.setImportOptions(options);
    std::wostringstream text;
    import.writeObject(text);
    frames::writeFrame(worker.input(), "command", text.str());
    // Read up to the first block geometry, loading nothing.
    std::vector<std::wstring> unread;
    std::string kind, bytes;
    bool sawGeometry = false;
    while (!sawGeometry && frames::readFrameBytes(worker.output(), kind, bytes)) {
        static const std::regex uuid("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}");
        for (std::sregex_iterator it(bytes.begin(), bytes.end(), uuid), end; it != end; ++it)
            unread.push_back(fromUtf8(it->str().data(), it->str().size()));
        sawGeometry = bytes.find("exc_block_geometry") != std::string::npos;
    }
    ASSERT_TRUE(sawGeometry);
    ASSERT_FALSE(unread.empty());
    for (const std::wstring& name : unread) EXPECT_TRUE(mp::SharedBuffer<char>::exists(name));
    worker.closeOutput();
    bool normal = true;
    worker.wait(normal); // broken pipe or end of input, whichever it meets first
    for (const std::wstring& name : unread)
        EXPECT_FALSE(mp::SharedBuffer<char>::exists(name)) << "left in shared memory: " << toUtf8(name);
}

// When GD&T makes Open CASCADE fail, the file is translated again without
// it: the geometry arrives with a warning.
TEST(OcctImport, PmiFailureFallsBackToGeometry) {
    const std::vector<std::string> models = stepModels();
    auto nist = std::find_if(models.begin(), models.end(), [](const std::string& m) { return m.find("ctc_01") != std::string::npos; });
    if (nist == models.end()) GTEST_SKIP() << "no NIST model with PMI in " << dataDir();
    ::setenv("XCH_OCCT_WORKER_FAIL_PMI", "1", 1);
    ImportedModel model;
    ImportSummary summary = runImport((dataDir() / *nist).string(), model);
    ::unsetenv("XCH_OCCT_WORKER_FAIL_PMI");
    ASSERT_TRUE(summary.ok) << toUtf8(summary.error);
    EXPECT_EQ(model.result.code(), Result::Warning);
    EXPECT_NE(model.result.message().find(L"without GD&T"), std::wstring::npos);
    EXPECT_GE(summary.messages, 2u);
    EXPECT_GT(summary.faces, 0u);
    EXPECT_GT(summary.triangles, 0u);
    EXPECT_EQ(summary.dimensions + summary.tolerances + summary.datums + summary.views, 0u);
    expectNoSharedMemoryLeft(summary);
}

// The demo's generated files: the assembly keeps its tree, its instance
// colour and its names; the part keeps its GD&T.
TEST(OcctImport, GeneratedDemoFilesImport) {
    Scratch scratch;
    const std::string command = (binDir() / "xch_step_generator").string() + " " + scratch.dir.string() + " > /dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);

    ImportedModel assembly;
    ImportSummary summary;
    checkImport((scratch.dir / "bracket_assembly.stp").string(), scratch.dir, assembly, summary);
    ASSERT_TRUE(assembly.structure);
    EXPECT_EQ(summary.blocks, 6u);     // assembly, bolt kit, plate, bracket, bolt, nut
    EXPECT_EQ(summary.references, 10u); // 1 root, 7 in the assembly, 2 in the kit
    EXPECT_EQ(summary.instances, 11u);  // plate, 2 brackets, 4 x (bolt, nut)
    std::map<std::wstring, ExcColor> colours;
    assembly.structure->visit([&](const ExcBlockReference& reference, const ExcBlock*, std::size_t) {
        colours[reference.name()] = reference.color();
        return true;
    });
    ASSERT_EQ(colours.count(L"Bracket:2"), 1u);
    EXPECT_TRUE(colours[L"Bracket:2"].hasRGB());
    EXPECT_GT(colours[L"Bracket:2"][ExcColor::Red], 150);
    EXPECT_LT(colours[L"Bracket:2"][ExcColor::Green], 80);
    EXPECT_FALSE(colours[L"Bracket:1"].hasRGB());
    EXPECT_EQ(colours.count(L"Bolt kit:4"), 1u);

    ImportedModel part;
    checkImport((scratch.dir / "plate_with_pmi.stp").string(), scratch.dir, part, summary);
    EXPECT_EQ(summary.dimensions, 1u);
    EXPECT_EQ(summary.tolerances, 2u);
    EXPECT_EQ(summary.datums, 1u);
    ASSERT_EQ(part.mechanical.size(), 1u);
    const auto& view = part.mechanical.begin()->second->pmiData()->annotationSets().at(0)->views().at(0);
    const ExcPMIDimension& diameter = *view->dimensions().at(0);
    EXPECT_EQ(diameter.subType(), ExcPMIDimension::SubDiameter);
    EXPECT_NEAR(diameter.value(), 16.0, 1e-9);
    EXPECT_NEAR(diameter.numericalToleranceUpper(), 0.1, 1e-9);
    EXPECT_NEAR(diameter.numericalToleranceLower(), -0.05, 1e-9);
    std::shared_ptr<ExcPMIGDT> position;
    for (const auto& gdt : view->gdts())
        if (gdt->toleranceType() == ExcPMIGDT::LocationTruePosition) position = gdt;
    ASSERT_TRUE(position);
    const ExcPMIGDT::Row& row = *position->gdtRows().at(0);
    EXPECT_NEAR(row.toleranceValue(), 0.2, 1e-9);
    EXPECT_EQ(row.toleranceValueType(), ExcPMIGDT::ValueDiameter);
    ASSERT_EQ(row.zoneModifiers().size(), 1u);
    EXPECT_EQ(row.zoneModifiers()[0].modifier, ExcPMIGDT::MaterialConditionMaximum);
    ASSERT_TRUE(row.referenceFrame());
    EXPECT_EQ(row.referenceFrame()->label(), L"A");
    ASSERT_EQ(row.referenceFrame()->datumRefs().size(), 1u);
    const auto& datumId = row.referenceFrame()->datumRefs()[0].modifiedDatums().at(0).datumId();
    EXPECT_EQ(datumId, view->datums().at(0)->id());
    EXPECT_EQ(view->datums().at(0)->label(), L"A");
}

// The command line: `xch import --json` prints one JSON object with the
// counts on standard output and writes the .glb; a failure exits non-zero
// with the reason on standard error.
TEST(OcctImport, CommandLine) {
    Scratch scratch;
    const std::string generator = (binDir() / "xch_step_generator").string() + " " + scratch.dir.string() + " > /dev/null";
    ASSERT_EQ(std::system(generator.c_str()), 0);
    const std::string xch = (binDir() / "xch").string();
    const std::string glb = (scratch.dir / "plate.glb").string();
    auto run = [&](const std::string& arguments, std::string& out) {
        const std::string command = xch + " import " + arguments + " 2> " + (scratch.dir / "err.txt").string();
        out.clear();
        FILE* pipe = ::popen(command.c_str(), "r");
        char buffer[4096];
        for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
        return ::pclose(pipe);
    };
    std::string out;
    ASSERT_EQ(run((scratch.dir / "plate_with_pmi.stp").string() + " --json --out " + glb, out), 0) << out;
    JsonDocument json;
    std::wistringstream text(fromUtf8(out.data(), out.size()));
    json.Parse(text.str().c_str());
    ASSERT_TRUE(json.IsObject()) << out;
    for (const wchar_t* key : {L"blocks", L"references", L"faces", L"triangles", L"dimensions", L"tolerances", L"datums", L"views"})
        EXPECT_TRUE(json.HasMember(key) && json[key].IsUint64()) << toUtf8(key);
    EXPECT_EQ(json[L"blocks"].GetUint64(), 1u);
    EXPECT_EQ(json[L"dimensions"].GetUint64(), 1u);
    EXPECT_EQ(json[L"tolerances"].GetUint64(), 2u);
    EXPECT_EQ(json[L"datums"].GetUint64(), 1u);
    EXPECT_TRUE(json[L"ok"].IsTrue());
    EXPECT_EQ(glbTriangles(glb), json[L"triangles"].GetUint64());

    EXPECT_NE(run((scratch.dir / "none.stp").string() + " --json", out), 0);
    EXPECT_NE(out.find("\"ok\":false"), std::string::npos) << out;
    std::ifstream err(scratch.dir / "err.txt");
    const std::string errors((std::istreambuf_iterator<char>(err)), std::istreambuf_iterator<char>());
    EXPECT_NE(errors.find("no such file"), std::string::npos) << errors;
    EXPECT_NE(run("--deviation -1 x.stp", out), 0);
}
