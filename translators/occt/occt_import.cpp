#include "occt_import.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <BinTools.hxx>
#include <IFSelect_ReturnStatus.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <Message_PrinterOStream.hxx>
#include <OSD.hxx>
#include <Quantity_ColorRGBA.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <STEPControl_Reader.hxx>
#include <Standard_ErrorHandler.hxx>
#include <Standard_Failure.hxx>
#include <Standard_Version.hxx>
#include <TColStd_HSequenceOfExtendedString.hxx>
#include <TColStd_SequenceOfAsciiString.hxx>
#include <TDF_Label.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDF_Tool.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_Area.hxx>
#include <XCAFDoc_Centroid.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_Volume.hxx>

#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_exchange_mechanical.h>
#include <xch_api/xch_api_exchange_structure.h>
#include <xch_api/xch_api_exchange_visualization.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_utf8.h>

#include "occt_pmi.h"
#include "occt_visualization.h"

using namespace xch;

namespace occt_worker {

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::wstring wide(const TCollection_ExtendedString& text) {
    std::wstring out;
    const Standard_ExtString units = text.ToExtString();
    for (int i = 0; i < text.Length(); ++i) out += static_cast<wchar_t>(units[i]);
    return out;
}

std::wstring wide(const std::string& text) { return fromUtf8(text.data(), text.size()); }

std::wstring labelName(const TDF_Label& label) {
    Handle(TDataStd_Name) name;
    return label.FindAttribute(TDataStd_Name::GetID(), name) ? wide(name->Get()) : std::wstring();
}

std::string entry(const TDF_Label& label) {
    TCollection_AsciiString text;
    TDF_Tool::Entry(label, text);
    return text.ToCString();
}

std::wstring number(double value) {
    wchar_t text[40];
    std::swprintf(text, 40, L"%.10g", value);
    return text;
}

// Open CASCADE's own report lines (warnings and failures while reading)
// collected for the host's log instead of being printed.
class CollectingPrinter : public Message_Printer {
public:
    std::vector<std::wstring> lines;
    std::size_t dropped = 0;

protected:
    void send(const TCollection_AsciiString& text, const Message_Gravity gravity) const override {
        if (gravity < Message_Warning) return;
        auto* self = const_cast<CollectingPrinter*>(this);
        if (self->lines.size() < 200)
            self->lines.push_back(wide(std::string(text.ToCString())));
        else
            ++self->dropped;
    }
};

// The length unit of a STEP file, from the name its reader gives, with its
// size in metres.
struct FileUnit {
    ELengthUnitType type;
    double metres;
};

FileUnit fileUnit(const std::string& name) {
    std::string n;
    for (char c : name) n += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (n == "MM" || n == "MILLIMETRE" || n == "MILLIMETER") return {LengthMillimeter, 0.001};
    if (n == "M" || n == "METRE" || n == "METER") return {LengthMeter, 1.0};
    if (n == "CM" || n == "CENTIMETRE" || n == "CENTIMETER") return {LengthCentimeter, 0.01};
    if (n == "KM" || n == "KILOMETRE" || n == "KILOMETER") return {LengthKilometer, 1000.0};
    if (n == "UM" || n == "MICROMETRE" || n == "MICROMETER" || n == "MICRON") return {LengthMicrometer, 1e-6};
    if (n == "INCH" || n == "IN" || n == "INCHES") return {LengthInch, 0.0254};
    if (n == "FT" || n == "FOOT" || n == "FEET") return {LengthFoot, 0.3048};
    if (n == "MI" || n == "MILE" || n == "MILES") return {LengthMile, 1609.344};
    if (n == "MIL" || n == "MILLIINCH") return {LengthMilliinch, 0.0000254};
    return {LengthMillimeter, 0.001};
}

ExcColor colour(const Quantity_ColorRGBA& rgba) {
    Standard_Real r, g, b;
    rgba.GetRGB().Values(r, g, b, Quantity_TOC_sRGB);
    auto channel = [](double v) { return static_cast<std::uint16_t>(std::lround(std::min(1.0, std::max(0.0, v)) * 255)); };
    ExcColor out(channel(r), channel(g), channel(b));
    if (rgba.Alpha() < 1.0f) {
        out[ExcColor::Alpha] = channel(rgba.Alpha());
        out.setHasAlpha(true);
    }
    return out;
}

ExcTransformation transformation(const TopLoc_Location& location) {
    const gp_Trsf trsf = location.Transformation();
    ExcTransformation out;
    for (int row = 1; row <= 3; ++row)
        out.affine().row(static_cast<std::size_t>(row - 1))
            .set(trsf.Value(row, 1), trsf.Value(row, 2), trsf.Value(row, 3));
    out.translation().set(trsf.Value(1, 4), trsf.Value(2, 4), trsf.Value(3, 4));
    return out;
}

// One read of the file into a new document.
struct Reading {
    Handle(TDocStd_Document) document;
    FileUnit unit{LengthMillimeter, 0.001};
    std::wstring error;       // why it failed, empty on success
    bool transferFailed = false;
};

Reading readStep(const std::string& path, bool pmi, Channel& channel) {
    Reading out;
    Handle(XCAFApp_Application) application = XCAFApp_Application::GetApplication();
    application->NewDocument("BinXCAF", out.document);
    STEPCAFControl_Reader reader;
    reader.SetColorMode(true);
    reader.SetNameMode(true);
    reader.SetLayerMode(true);
    reader.SetPropsMode(true);
    reader.SetSHUOMode(false);
    reader.SetGDTMode(pmi);
    reader.SetViewMode(pmi);
    IFSelect_ReturnStatus status = IFSelect_RetFail;
    Clock::time_point start = Clock::now();
    try {
        OCC_CATCH_SIGNALS
        status = reader.ReadFile(path.c_str());
    } catch (const Standard_Failure& failure) {
        out.error = L"Open CASCADE failed while reading: " + wide(std::string(failure.GetMessageString()));
        return out;
    }
    channel.stageTime(L"read", millisecondsSince(start));
    if (status != IFSelect_RetDone) {
        out.error = L"not a STEP file, or one that cannot be read";
        return out;
    }
    TColStd_SequenceOfAsciiString lengths, angles, solidAngles;
    reader.ChangeReader().FileUnits(lengths, angles, solidAngles);
    if (lengths.Length() > 0) out.unit = fileUnit(lengths.First().ToCString());
    // Coordinates stay in the file's unit.
    XCAFDoc_DocumentTool::SetLengthUnit(out.document, out.unit.metres);

    channel.send(std::make_shared<ExcProgress>(0, 100, true, L"Translating the model"));
    start = Clock::now();
    bool transferred = false;
    try {
        OCC_CATCH_SIGNALS
        // Fault injection for the tests: some real files make Open CASCADE
        // throw while it transfers GD&T; this makes any file do so.
        if (pmi && std::getenv("XCH_OCCT_WORKER_FAIL_PMI"))
            throw Standard_Failure("injected failure while transferring GD&T");
        transferred = reader.Transfer(out.document);
    } catch (const Standard_Failure& failure) {
        out.error = L"Open CASCADE failed while translating: " + wide(std::string(failure.GetMessageString()));
        out.transferFailed = true;
        return out;
    }
    channel.stageTime(L"transfer", millisecondsSince(start));
    if (!transferred) {
        out.error = L"Open CASCADE could not translate the model";
        out.transferFailed = true;
    }
    return out;
}

// One part or sub-assembly definition of the document.
struct Definition {
    TDF_Label label;
    std::shared_ptr<ExcBlock> block;
    TopoDS_Shape shape;
    ExcColor colour;
};

class StructureBuilder {
public:
    StructureBuilder(const Handle(TDocStd_Document)& document, const FileUnit& unit)
        : m_shapes(XCAFDoc_DocumentTool::ShapeTool(document->Main())),
          m_colours(XCAFDoc_DocumentTool::ColorTool(document->Main())),
          m_layers(XCAFDoc_DocumentTool::LayerTool(document->Main())),
          m_unit(unit) {}

    std::shared_ptr<ExcProductStructure> build(const std::wstring& fileName) {
        auto structure = std::make_shared<ExcProductStructure>();
        structure->setUnits(m_unit.type);
        TDF_LabelSequence roots;
        m_shapes->GetFreeShapes(roots);
        for (int i = 1; i <= roots.Length(); ++i) {
            const std::size_t index = definition(roots(i));
            auto reference = std::make_shared<ExcBlockReference>(m_definitions[index].block->id(),
                                                                 m_definitions[index].block->name());
            reference->setGuid(ExcProductStructure::generateUUID());
            reference->setPersistentId(wide(entry(roots(i))));
            describeInstance(roots(i), *reference);
            structure->addRootBlockReference(reference);
        }
        for (const Definition& d : m_definitions) structure->addBlock(d.block);
        structure->setProductName(roots.Length() == 1 && !m_definitions.empty() && !m_definitions[0].block->name().empty()
                                      ? m_definitions[0].block->name()
                                      : fileName);
        return structure;
    }

    const std::vector<Definition>& definitions() const { return m_definitions; }
    const Handle(XCAFDoc_ShapeTool)& shapes() const { return m_shapes; }
    const Handle(XCAFDoc_ColorTool)& colours() const { return m_colours; }

private:
    std::size_t definition(const TDF_Label& label) {
        const std::string key = entry(label);
        auto found = m_index.find(key);
        if (found != m_index.end()) return found->second;
        const std::size_t index = m_definitions.size();
        m_index[key] = index;
        Definition d;
        d.label = label;
        d.block = std::make_shared<ExcBlock>(static_cast<std::uint64_t>(index + 1), labelName(label),
                                             !XCAFDoc_ShapeTool::IsAssembly(label));
        d.shape = XCAFDoc_ShapeTool::GetShape(label);
        d.colour = labelColour(label);
        describeDefinition(label, *d.block);
        m_definitions.push_back(d);
        if (XCAFDoc_ShapeTool::IsAssembly(label)) {
            TDF_LabelSequence components;
            XCAFDoc_ShapeTool::GetComponents(label, components, false);
            for (int i = 1; i <= components.Length(); ++i) {
                TDF_Label referred;
                if (!XCAFDoc_ShapeTool::GetReferredShape(components(i), referred)) continue;
                const std::size_t child = definition(referred);
                auto reference = std::make_shared<ExcBlockReference>(m_definitions[child].block->id(),
                                                                     labelName(components(i)));
                if (reference->name().empty()) reference->setName(m_definitions[child].block->name());
                reference->setGuid(ExcProductStructure::generateUUID());
                reference->setPersistentId(wide(entry(components(i))));
                reference->setTransformation(transformation(XCAFDoc_ShapeTool::GetLocation(components(i))));
                describeInstance(components(i), *reference);
                // m_definitions may have grown: find the block again.
                m_definitions[index].block->addBlockReference(reference);
            }
        }
        return index;
    }

    ExcColor labelColour(const TDF_Label& label) const {
        Quantity_ColorRGBA rgba;
        if (m_colours->GetColor(label, XCAFDoc_ColorSurf, rgba) || m_colours->GetColor(label, XCAFDoc_ColorGen, rgba))
            return colour(rgba);
        return ExcColor();
    }

    void addLayers(const TDF_Label& label, ExcMiscData& misc) const {
        Handle(TColStd_HSequenceOfExtendedString) layers;
        if (!m_layers->GetLayers(label, layers) || layers.IsNull() || layers->IsEmpty()) return;
        auto group = std::make_shared<ExcMiscPropertiesGroup>(L"Layers", false);
        for (int i = 1; i <= layers->Length(); ++i)
            group->addProperty(ExcMiscProperty(L"Layer", ExcMiscProperty::TypeString, wide(layers->Value(i))));
        misc.addGroup(group);
    }

    void describeInstance(const TDF_Label& label, ExcBlockReference& reference) const {
        reference.setColor(labelColour(label));
        reference.setHidden(!m_colours->IsVisible(label));
        addLayers(label, reference.miscData());
    }

    // Validation properties the file carries for the definition, and its
    // layers.
    void describeDefinition(const TDF_Label& label, ExcBlock& block) const {
        const std::wstring unit = enumToString(m_unit.type);
        auto group = std::make_shared<ExcMiscPropertiesGroup>(L"Validation properties", false);
        Standard_Real value = 0;
        if (XCAFDoc_Volume::Get(label, value))
            group->addProperty(ExcMiscProperty(L"Volume", ExcMiscProperty::TypeDouble, number(value), unit + L"^3",
                                               ExcMiscProperty::Volume));
        if (XCAFDoc_Area::Get(label, value))
            group->addProperty(ExcMiscProperty(L"Area", ExcMiscProperty::TypeDouble, number(value), unit + L"^2",
                                               ExcMiscProperty::Area));
        gp_Pnt centroid;
        if (XCAFDoc_Centroid::Get(label, centroid))
            group->addProperty(ExcMiscProperty(L"Centroid", ExcMiscProperty::TypeString,
                                               number(centroid.X()) + L" " + number(centroid.Y()) + L" " +
                                                   number(centroid.Z()),
                                               unit, ExcMiscProperty::Length));
        if (!group->properties().empty()) block.miscData().addGroup(group);
        addLayers(label, block.miscData());
    }

    Handle(XCAFDoc_ShapeTool) m_shapes;
    Handle(XCAFDoc_ColorTool) m_colours;
    Handle(XCAFDoc_LayerTool) m_layers;
    FileUnit m_unit;
    std::vector<Definition> m_definitions;
    std::map<std::string, std::size_t> m_index;
};

// Colours given to the faces of a part (or to sub-shapes holding faces),
// by face number.
std::vector<ExcColor> faceColours(const Definition& part, const TopTools_IndexedMapOfShape& faces,
                                  const StructureBuilder& builder) {
    std::vector<ExcColor> out(static_cast<std::size_t>(faces.Extent()));
    TDF_LabelSequence subShapes;
    XCAFDoc_ShapeTool::GetSubShapes(part.label, subShapes);
    for (int i = 1; i <= subShapes.Length(); ++i) {
        Quantity_ColorRGBA rgba;
        if (!builder.colours()->GetColor(subShapes(i), XCAFDoc_ColorSurf, rgba) &&
            !builder.colours()->GetColor(subShapes(i), XCAFDoc_ColorGen, rgba))
            continue;
        TopTools_IndexedMapOfShape covered;
        TopExp::MapShapes(XCAFDoc_ShapeTool::GetShape(subShapes(i)), TopAbs_FACE, covered);
        for (int k = 1; k <= covered.Extent(); ++k) {
            const int index = faces.FindIndex(covered(k));
            if (index > 0) out[static_cast<std::size_t>(index - 1)] = colour(rgba);
        }
    }
    return out;
}

std::string narrowPath(const std::wstring& file) { return toUtf8(file); }

Result failure(const std::wstring& message) {
    Result result;
    result.setCode(Result::Error);
    result.setMessage(message);
    result.setFinished(true);
    return result;
}

} // namespace

std::wstring occtVersion() { return wide(std::string(OCC_VERSION_COMPLETE)); }

Result importStep(const ImportSettings& settings, Channel& channel) {
    // Crashes inside Open CASCADE become exceptions; an interrupt from the
    // terminal is the host's to handle (the worker ends when the host has
    // gone, freeing its shared memory).
    static const bool signalsSet = (OSD::SetSignal(Standard_False), std::signal(SIGINT, SIG_IGN), true);
    (void)signalsSet;
    // Open CASCADE reports go to the host's log, not to our output.
    static Handle(CollectingPrinter) printer = [] {
        Handle(Message_Messenger) messenger = Message::DefaultMessenger();
        messenger->RemovePrinters(STANDARD_TYPE(Message_PrinterOStream));
        Handle(CollectingPrinter) p = new CollectingPrinter;
        messenger->AddPrinter(p);
        return p;
    }();
    auto flushReports = [&] {
        for (const std::wstring& line : printer->lines) channel.send(std::make_shared<ExcLog>(L"Open CASCADE: " + line));
        if (printer->dropped)
            channel.send(std::make_shared<ExcLog>(L"Open CASCADE: " + std::to_wstring(printer->dropped) +
                                                  L" more report lines not shown"));
        printer->lines.clear();
        printer->dropped = 0;
    };

    const std::string path = narrowPath(settings.file);
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return failure(L"Cannot import " + settings.file + L": no such file");

    channel.send(std::make_shared<ExcMessage>(L"Importing " + settings.file));
    channel.send(std::make_shared<ExcProgress>(0, 100, true, L"Reading the STEP file"));
    Reading reading = readStep(path, settings.pmi, channel);
    flushReports();
    bool pmiDropped = false;
    if (reading.transferFailed && settings.pmi) {
        channel.send(std::make_shared<ExcMessage>(
            L"Warning: " + reading.error + L"; translating again without GD&T and saved views"));
        reading = readStep(path, false, channel);
        flushReports();
        pmiDropped = reading.error.empty();
    }
    if (!reading.error.empty())
        return failure(L"Cannot import " + settings.file + L": " + reading.error);

    // ---- the assembly tree
    channel.send(std::make_shared<ExcProgress>(0, 100, true, L"Product structure"));
    StructureBuilder builder(reading.document, reading.unit);
    std::shared_ptr<ExcProductStructure> structure;
    try {
        OCC_CATCH_SIGNALS
        structure = builder.build(std::filesystem::path(path).filename().wstring());
    } catch (const Standard_Failure& failure) {
        return occt_worker::failure(L"Cannot import " + settings.file + L": Open CASCADE failed on the assembly: " +
                                    wide(std::string(failure.GetMessageString())));
    }
    if (structure->blocks().empty())
        return failure(L"Cannot import " + settings.file + L": the file holds no shapes");
    channel.send(structure);
    channel.send(std::make_shared<ExcStageFinished>(ExcStageFinished::ProductStructure));

    // ---- the GD&T, by part
    PmiMapping pmi;
    if (settings.pmi) {
        std::vector<PmiPart> pmiParts;
        for (const Definition& d : builder.definitions())
            if (d.block->isPart()) pmiParts.push_back({d.label, d.block->id(), d.shape});
        try {
            OCC_CATCH_SIGNALS
            pmi = mapPmi(reading.document, pmiParts, reading.unit.type);
        } catch (const Standard_Failure& failure) {
            pmi = PmiMapping();
            channel.send(std::make_shared<ExcMessage>(L"Warning: the GD&T could not be read: " +
                                                      wide(std::string(failure.GetMessageString()))));
        }
        if (pmi.unattached)
            channel.send(std::make_shared<ExcLog>(std::to_wstring(pmi.unattached) +
                                                  L" GD&T items name no face of a part; they are given to the first part"));
    }

    // ---- per part: exact geometry, display model, mechanical data
    std::size_t parts = 0, faceTotal = 0;
    for (const Definition& d : builder.definitions()) parts += d.block->isPart() ? 1 : 0;
    std::size_t done = 0;
    for (const Definition& d : builder.definitions()) {
        if (!d.block->isPart()) continue;
        ++done;
        channel.send(std::make_shared<ExcProgress>(static_cast<std::int32_t>(done - 1), static_cast<std::int32_t>(parts),
                                                   false,
                                                   L"Part " + std::to_wstring(done) + L" of " + std::to_wstring(parts) +
                                                       (d.block->name().empty() ? L"" : L": " + d.block->name())));
        const std::uint64_t id = d.block->id();
        try {
            OCC_CATCH_SIGNALS
            Clock::time_point start = Clock::now();
            std::ostringstream brep;
            BinTools::Write(d.shape, brep, Standard_False, Standard_False, BinTools_FormatVersion_CURRENT);
            const std::string bytes = brep.str();
            channel.stageTime(L"brep", millisecondsSince(start));
            auto geometry = std::make_shared<ExcBlockGeometry>();
            geometry->setBlockId(id);
            if (!bytes.empty() && !geometry->setBinaryData(bytes.data(), bytes.size(), true))
                throw std::runtime_error("the geometry could not be placed in shared memory");
            channel.keep(geometry);
            channel.send(geometry);

            start = Clock::now();
            TopTools_IndexedMapOfShape faces;
            TopExp::MapShapes(d.shape, TopAbs_FACE, faces);
            faceTotal += static_cast<std::size_t>(faces.Extent());
            PartDisplay display;
            display.name = d.block->name();
            display.faceColours = faceColours(d, faces, builder);
            display.partColour = d.colour;
            display.units = reading.unit.type;
            display.tessellate = settings.tessellate;
            display.chordalDeviation = settings.chordalDeviation;
            auto visualization = makePartVisualization(d.shape, display);
            channel.stageTime(L"mesh", millisecondsSince(start));
            channel.send(std::make_shared<ExcBlockVisualization>(id, visualization));
        } catch (const Standard_Failure& failure) {
            channel.send(std::make_shared<ExcMessage>(L"Warning: part " + std::to_wstring(id) + L" (" +
                                                      d.block->name() + L") could not be processed: " +
                                                      wide(std::string(failure.GetMessageString()))));
        }
        auto mechanical = std::make_shared<ExcBlockMechanicalData>(id);
        auto found = pmi.byBlock.find(id);
        if (found != pmi.byBlock.end()) mechanical->setPMIData(found->second);
        channel.send(mechanical);
    }
    flushReports();
    channel.send(std::make_shared<ExcStageFinished>(ExcStageFinished::Visualization));
    channel.send(std::make_shared<ExcStageFinished>(ExcStageFinished::Mechanical));

    // ---- the model as a whole
    auto assembly = std::make_shared<ExcVisualizationData>();
    assembly->setUnits(reading.unit.type);
    auto root = std::make_shared<ExcVisuNode>();
    root->setType(ExcVisuNode::Root);
    root->setGroupName(structure->productName());
    assembly->addSceneRootNode(root);
    addSavedViews(reading.document, *assembly);
    channel.send(std::make_shared<ExcRootAssemblyVisualization>(assembly));
    channel.send(std::make_shared<ExcStageFinished>(ExcStageFinished::RootVisualization));
    channel.send(std::make_shared<ExcRootMechanicalData>());
    channel.send(std::make_shared<ExcStageFinished>(ExcStageFinished::RootMechanical));
    channel.send(std::make_shared<ExcProgress>(100, 100, false, L"Done"));

    Result result;
    result.setFinished(true);
    result.setCode(pmiDropped ? Result::Warning : Result::Ok);
    result.setMessage(L"Imported " + std::to_wstring(structure->blocks().size()) + L" blocks (" +
                      std::to_wstring(parts) + L" parts, " + std::to_wstring(faceTotal) + L" faces) from " +
                      settings.file + (pmiDropped ? L" without GD&T and saved views" : L""));
    return result;
}

} // namespace occt_worker
