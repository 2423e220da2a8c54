// xch_step_generator: writes the demo's STEP files with Open CASCADE, so
// that the project ships no CAD file of others.
//
//   xch_step_generator OUTDIR
//     OUTDIR/bracket_assembly.stp  an AP214 assembly: a base plate, two
//                                  brackets (one red instance) and four
//                                  bolt kits (bolt and nut, a nested
//                                  sub-assembly), coloured parts
//     OUTDIR/plate_with_pmi.stp    an AP242 part with semantic GD&T: datum
//                                  A on its bottom face, the hole's diameter
//                                  with a +/- tolerance, the hole's
//                                  position relative to A and the top
//                                  face's flatness
#include <cstdio>
#include <filesystem>
#include <string>

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepGProp.hxx>
#include <GProp_GProps.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_PrinterOStream.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Ax2.hxx>
#include <gp_Trsf.hxx>

namespace {

Handle(TDocStd_Document) newDocument() {
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
    return document;
}

TopoDS_Shape cylinder(double x, double y, double z, double radius, double height) {
    return BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(x, y, z), gp::DZ()), radius, height).Shape();
}

TopLoc_Location at(double x, double y, double z, double turnDegrees = 0) {
    gp_Trsf rotation, translation;
    rotation.SetRotation(gp::OZ(), turnDegrees * M_PI / 180.0);
    translation.SetTranslation(gp_Vec(x, y, z));
    return TopLoc_Location(translation * rotation);
}

Quantity_Color rgb(double r, double g, double b) { return Quantity_Color(r, g, b, Quantity_TOC_sRGB); }

bool write(const Handle(TDocStd_Document)& document, const std::string& path, int schema) {
    Interface_Static::SetIVal("write.step.schema", schema);
    STEPCAFControl_Writer writer;
    writer.SetColorMode(true);
    writer.SetNameMode(true);
    writer.SetDimTolMode(true);
    if (!writer.Transfer(document, STEPControl_AsIs)) return false;
    return writer.Write(path.c_str()) == IFSelect_RetDone;
}

TDF_Label part(const Handle(XCAFDoc_ShapeTool)& shapes, const Handle(XCAFDoc_ColorTool)& colours,
               const TopoDS_Shape& shape, const char* name, const Quantity_Color& colour) {
    TDF_Label label = shapes->AddShape(shape, Standard_False);
    TDataStd_Name::Set(label, name);
    colours->SetColor(label, colour, XCAFDoc_ColorSurf);
    return label;
}

TDF_Label place(const Handle(XCAFDoc_ShapeTool)& shapes, const TDF_Label& assembly, const TDF_Label& child,
                const TopLoc_Location& location, const std::string& name) {
    TDF_Label component = shapes->AddComponent(assembly, child, location);
    TDataStd_Name::Set(component, name.c_str());
    return component;
}

bool writeAssembly(const std::string& path) {
    Handle(TDocStd_Document) document = newDocument();
    Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    Handle(XCAFDoc_ColorTool) colours = XCAFDoc_DocumentTool::ColorTool(document->Main());

    TopoDS_Shape plate = BRepPrimAPI_MakeBox(120, 80, 10).Shape();
    const double holes[4][2] = {{15, 15}, {105, 15}, {15, 65}, {105, 65}};
    for (const auto& h : holes) plate = BRepAlgoAPI_Cut(plate, cylinder(h[0], h[1], -1, 4.5, 12)).Shape();
    // An L-shaped bracket: a foot and an upright.
    TopoDS_Shape bracket = BRepAlgoAPI_Fuse(BRepPrimAPI_MakeBox(gp_Pnt(-20, -10, 0), 40, 20, 6).Shape(),
                                           BRepPrimAPI_MakeBox(gp_Pnt(-20, -10, 0), 6, 20, 50).Shape())
                               .Shape();
    TopoDS_Shape bolt = BRepAlgoAPI_Fuse(cylinder(0, 0, 0, 4, 30), cylinder(0, 0, 30, 6.5, 5.5)).Shape();
    TopoDS_Shape nut = BRepAlgoAPI_Cut(cylinder(0, 0, 0, 6.5, 6.5), cylinder(0, 0, -1, 4, 9)).Shape();

    TDF_Label plateL = part(shapes, colours, plate, "Base plate", rgb(0.62, 0.64, 0.68));
    TDF_Label bracketL = part(shapes, colours, bracket, "Bracket", rgb(0.15, 0.35, 0.75));
    TDF_Label boltL = part(shapes, colours, bolt, "Bolt M8x30", rgb(0.85, 0.7, 0.25));
    TDF_Label nutL = part(shapes, colours, nut, "Nut M8", rgb(0.3, 0.3, 0.3));

    TDF_Label kit = shapes->NewShape();
    TDataStd_Name::Set(kit, "Bolt kit");
    place(shapes, kit, boltL, at(0, 0, -38), "Bolt");
    place(shapes, kit, nutL, at(0, 0, -8), "Nut");

    TDF_Label top = shapes->NewShape();
    TDataStd_Name::Set(top, "Bracket assembly");
    place(shapes, top, plateL, at(0, 0, 0), "Base plate:1");
    place(shapes, top, bracketL, at(40, 40, 10), "Bracket:1");
    TDF_Label second = place(shapes, top, bracketL, at(80, 40, 10, 180), "Bracket:2");
    colours->SetColor(second, rgb(0.8, 0.15, 0.1), XCAFDoc_ColorSurf);
    int n = 0;
    for (const auto& h : holes) place(shapes, top, kit, at(h[0], h[1], 10), "Bolt kit:" + std::to_string(++n));
    shapes->UpdateAssemblies();
    return write(document, path, 2); // AP214
}

// The face of `shape` whose centre is nearest `point`.
TopoDS_Face faceNear(const TopoDS_Shape& shape, const gp_Pnt& point) {
    TopoDS_Face best;
    double bestDistance = 1e300;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        GProp_GProps props;
        BRepGProp::SurfaceProperties(it.Current(), props);
        const double distance = props.CentreOfMass().Distance(point);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = TopoDS::Face(it.Current());
        }
    }
    return best;
}

bool writePartWithPmi(const std::string& path) {
    Handle(TDocStd_Document) document = newDocument();
    Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    Handle(XCAFDoc_ColorTool) colours = XCAFDoc_DocumentTool::ColorTool(document->Main());
    Handle(XCAFDoc_DimTolTool) gdt = XCAFDoc_DocumentTool::DimTolTool(document->Main());

    TopoDS_Shape plate = BRepAlgoAPI_Cut(BRepPrimAPI_MakeBox(100, 60, 12).Shape(), cylinder(50, 30, -1, 8, 14)).Shape();
    TDF_Label plateL = part(shapes, colours, plate, "Plate with hole", rgb(0.55, 0.6, 0.65));
    TDF_Label bottom = shapes->AddSubShape(plateL, faceNear(plate, gp_Pnt(50, 30, 0)));
    TDF_Label topFace = shapes->AddSubShape(plateL, faceNear(plate, gp_Pnt(25, 30, 12)));
    TDF_Label hole = shapes->AddSubShape(plateL, faceNear(plate, gp_Pnt(50, 30, 6)));

    TDF_Label datum = gdt->AddDatum();
    Handle(XCAFDimTolObjects_DatumObject) datumObject = new XCAFDimTolObjects_DatumObject;
    datumObject->SetName(new TCollection_HAsciiString("A"));
    datumObject->SetPosition(1); // first in the position tolerance's datum system
    XCAFDoc_Datum::Set(datum)->SetObject(datumObject);
    TDF_LabelSequence datumFaces;
    datumFaces.Append(bottom);
    gdt->SetDatum(datumFaces, datum);

    TDF_Label diameter = gdt->AddDimension();
    Handle(XCAFDimTolObjects_DimensionObject) dimension = new XCAFDimTolObjects_DimensionObject;
    dimension->SetType(XCAFDimTolObjects_DimensionType_Size_Diameter);
    dimension->SetValue(16.0);
    dimension->SetUpperTolValue(0.1);
    dimension->SetLowerTolValue(0.05); // the writer gives the lower deviation its sign
    XCAFDoc_Dimension::Set(diameter)->SetObject(dimension);
    gdt->SetDimension(hole, diameter);

    TDF_Label position = gdt->AddGeomTolerance();
    Handle(XCAFDimTolObjects_GeomToleranceObject) positionObject = new XCAFDimTolObjects_GeomToleranceObject;
    positionObject->SetType(XCAFDimTolObjects_GeomToleranceType_Position);
    positionObject->SetTypeOfValue(XCAFDimTolObjects_GeomToleranceTypeValue_Diameter);
    positionObject->SetValue(0.2);
    positionObject->SetMaterialRequirementModifier(XCAFDimTolObjects_GeomToleranceMatReqModif_M);
    XCAFDoc_GeomTolerance::Set(position)->SetObject(positionObject);
    gdt->SetGeomTolerance(hole, position);
    gdt->SetDatumToGeomTol(datum, position);

    TDF_Label flatness = gdt->AddGeomTolerance();
    Handle(XCAFDimTolObjects_GeomToleranceObject) flatnessObject = new XCAFDimTolObjects_GeomToleranceObject;
    flatnessObject->SetType(XCAFDimTolObjects_GeomToleranceType_Flatness);
    flatnessObject->SetValue(0.05);
    XCAFDoc_GeomTolerance::Set(flatness)->SetObject(flatnessObject);
    gdt->SetGeomTolerance(topFace, flatness);
    return write(document, path, 5); // AP242
}

} // namespace

int main(int argc, char** argv) {
    // Open CASCADE's transfer statistics are not for the user.
    Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_PrinterOStream));
    if (argc != 2) {
        std::fprintf(stderr, "usage: xch_step_generator OUTDIR\n");
        return 2;
    }
    const std::filesystem::path dir(argv[1]);
    std::error_code error;
    std::filesystem::create_directories(dir, error);
    const std::string assembly = (dir / "bracket_assembly.stp").string();
    const std::string pmi = (dir / "plate_with_pmi.stp").string();
    if (!writeAssembly(assembly)) {
        std::fprintf(stderr, "xch_step_generator: cannot write %s\n", assembly.c_str());
        return 1;
    }
    if (!writePartWithPmi(pmi)) {
        std::fprintf(stderr, "xch_step_generator: cannot write %s\n", pmi.c_str());
        return 1;
    }
    std::printf("%s\n%s\n", assembly.c_str(), pmi.c_str());
    return 0;
}
