#include "occt_pmi.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDF_Tool.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_View.hxx>
#include <XCAFDoc_ViewTool.hxx>
#include <XCAFView_Object.hxx>

#include <xch_api/xch_api_utf8.h>

using namespace xch;

namespace occt_worker {

namespace {

ExcVector3d vector(const gp_XYZ& v) { return ExcVector3d(v.X(), v.Y(), v.Z()); }

// The camera of a saved view: central projection from the projection
// point, or parallel with the view's zoom.
ExcCamera cameraOf(const Handle(XCAFView_Object)& view, const std::wstring& name) {
    ExcCamera camera;
    camera.setName(name);
    const bool central = view->Type() == XCAFView_ProjectionType_Central;
    camera.setType(central ? ExcCamera::Perspective : ExcCamera::Orthographic);
    if (!central) camera.setOrthographicZoomFactor(view->ZoomFactor());
    const gp_Pnt eye = view->ProjectionPoint();
    camera.setEye(vector(eye.XYZ()));
    camera.setTarget(vector(eye.XYZ() + view->ViewDirection().XYZ()));
    camera.setUp(vector(view->UpDirection().XYZ()));
    return camera;
}

std::wstring text(const Handle(TCollection_HAsciiString)& value) {
    if (value.IsNull()) return std::wstring();
    const std::string bytes = value->ToCString();
    return fromUtf8(bytes.data(), bytes.size());
}

std::wstring entry(const TDF_Label& label) {
    TCollection_AsciiString out;
    TDF_Tool::Entry(label, out);
    const std::string bytes = out.ToCString();
    return fromUtf8(bytes.data(), bytes.size());
}

ExcPMIDimension::EDimUnit lengthUnit(ELengthUnitType units) {
    switch (units) {
    case LengthInch: return ExcPMIDimension::UnitInch;
    case LengthMeter: return ExcPMIDimension::UnitMeter;
    case LengthCentimeter: return ExcPMIDimension::UnitCm;
    case LengthKilometer: return ExcPMIDimension::UnitKm;
    case LengthFoot: return ExcPMIDimension::UnitFoot;
    default: return ExcPMIDimension::UnitMm;
    }
}

ExcPMIDimension::ESubType subType(XCAFDimTolObjects_DimensionType type) {
    switch (type) {
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance:
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance_FromCenterToOuter:
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance_FromCenterToInner:
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance_FromOuterToCenter:
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance_FromOuterToOuter:
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance_FromOuterToInner:
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance_FromInnerToCenter:
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance_FromInnerToOuter:
    case XCAFDimTolObjects_DimensionType_Location_LinearDistance_FromInnerToInner:
    case XCAFDimTolObjects_DimensionType_Location_Oriented:
        return ExcPMIDimension::SubDistance;
    case XCAFDimTolObjects_DimensionType_Location_CurvedDistance:
    case XCAFDimTolObjects_DimensionType_Location_WithPath:
    case XCAFDimTolObjects_DimensionType_Size_CurveLength:
    case XCAFDimTolObjects_DimensionType_Size_WithPath:
        return ExcPMIDimension::SubLengthCurvilinear;
    case XCAFDimTolObjects_DimensionType_Location_Angular:
    case XCAFDimTolObjects_DimensionType_Size_Angular:
        return ExcPMIDimension::SubAngle;
    case XCAFDimTolObjects_DimensionType_Size_Diameter:
    case XCAFDimTolObjects_DimensionType_Size_SphericalDiameter:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalMinorDiameter:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalMajorDiameter:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalHighMajorDiameter:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalLowMajorDiameter:
        return ExcPMIDimension::SubDiameter;
    case XCAFDimTolObjects_DimensionType_Size_Radius:
    case XCAFDimTolObjects_DimensionType_Size_SphericalRadius:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalMinorRadius:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalMajorRadius:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalHighMajorRadius:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalLowMajorRadius:
        return ExcPMIDimension::SubRadius;
    case XCAFDimTolObjects_DimensionType_Size_Thickness:
        return ExcPMIDimension::SubLength;
    case XCAFDimTolObjects_DimensionType_Location_None:
        return ExcPMIDimension::SubLengthOrDistance;
    default:
        return ExcPMIDimension::SubNoDim;
    }
}

ExcPMIGDT::EToleranceType toleranceType(XCAFDimTolObjects_GeomToleranceType type) {
    switch (type) {
    case XCAFDimTolObjects_GeomToleranceType_Angularity: return ExcPMIGDT::OrientationAngularity;
    case XCAFDimTolObjects_GeomToleranceType_CircularRunout: return ExcPMIGDT::RunOutCircular;
    case XCAFDimTolObjects_GeomToleranceType_CircularityOrRoundness: return ExcPMIGDT::FormCircularity;
    case XCAFDimTolObjects_GeomToleranceType_Coaxiality: return ExcPMIGDT::LocationCoaxiality;
    case XCAFDimTolObjects_GeomToleranceType_Concentricity: return ExcPMIGDT::LocationConcentricity;
    case XCAFDimTolObjects_GeomToleranceType_Cylindricity: return ExcPMIGDT::FormCylindricity;
    case XCAFDimTolObjects_GeomToleranceType_Flatness: return ExcPMIGDT::FormFlatness;
    case XCAFDimTolObjects_GeomToleranceType_Parallelism: return ExcPMIGDT::OrientationParallelism;
    case XCAFDimTolObjects_GeomToleranceType_Perpendicularity: return ExcPMIGDT::OrientationPerpendicularity;
    case XCAFDimTolObjects_GeomToleranceType_Position: return ExcPMIGDT::LocationTruePosition;
    case XCAFDimTolObjects_GeomToleranceType_ProfileOfLine: return ExcPMIGDT::FormProfileAnyLine;
    case XCAFDimTolObjects_GeomToleranceType_ProfileOfSurface: return ExcPMIGDT::FormProfileAnySurface;
    case XCAFDimTolObjects_GeomToleranceType_Straightness: return ExcPMIGDT::FormStraightness;
    case XCAFDimTolObjects_GeomToleranceType_Symmetry: return ExcPMIGDT::LocationSymmetry;
    case XCAFDimTolObjects_GeomToleranceType_TotalRunout: return ExcPMIGDT::RunOutTotal;
    default: return ExcPMIGDT::Unknown;
    }
}

ExcPMIDatumTarget::ETargetType targetType(XCAFDimTolObjects_DatumTargetType type) {
    switch (type) {
    case XCAFDimTolObjects_DatumTargetType_Point: return ExcPMIDatumTarget::Point;
    case XCAFDimTolObjects_DatumTargetType_Line: return ExcPMIDatumTarget::Line;
    case XCAFDimTolObjects_DatumTargetType_Rectangle: return ExcPMIDatumTarget::AreaRectangular;
    case XCAFDimTolObjects_DatumTargetType_Circle: return ExcPMIDatumTarget::AreaCircular;
    case XCAFDimTolObjects_DatumTargetType_Area: return ExcPMIDatumTarget::AreaFace;
    default: return ExcPMIDatumTarget::Unknown;
    }
}

// A part's sub-entities by number.
struct PartTopology {
    const PmiPart* part = nullptr;
    TopTools_IndexedMapOfShape faces, edges, vertices;
};

class Mapper {
public:
    Mapper(const Handle(TDocStd_Document)& document, const std::vector<PmiPart>& parts, ELengthUnitType units)
        : m_gdt(XCAFDoc_DocumentTool::DimTolTool(document->Main())), m_units(units) {
        m_topology.resize(parts.size());
        for (std::size_t i = 0; i < parts.size(); ++i) {
            PartTopology& t = m_topology[i];
            t.part = &parts[i];
            TopExp::MapShapes(parts[i].shape, TopAbs_FACE, t.faces);
            TopExp::MapShapes(parts[i].shape, TopAbs_EDGE, t.edges);
            TopExp::MapShapes(parts[i].shape, TopAbs_VERTEX, t.vertices);
        }
    }

    void run(const Handle(TDocStd_Document)& document, PmiMapping& out) {
        if (m_topology.empty()) return;
        TDF_LabelSequence labels;
        m_gdt->GetDatumLabels(labels);
        for (int i = 1; i <= labels.Length(); ++i) datum(labels(i), out);
        labels.Clear();
        m_gdt->GetDimensionLabels(labels);
        for (int i = 1; i <= labels.Length(); ++i) dimension(labels(i), out);
        labels.Clear();
        m_gdt->GetGeomToleranceLabels(labels);
        for (int i = 1; i <= labels.Length(); ++i) tolerance(labels(i), out);
        captures(document);
        for (auto& entry : m_sets) {
            auto data = std::make_shared<ExcPMIData>();
            data->addAnnotationSet(entry.second.set);
            out.byBlock[entry.first] = data;
        }
    }

private:
    struct BlockPmi {
        std::shared_ptr<ExcPMIAnnotationSet> set;
        std::shared_ptr<ExcPMIAnnotationView> view;
    };

    BlockPmi& pmiOf(std::uint64_t blockId) {
        BlockPmi& pmi = m_sets[blockId];
        if (!pmi.set) {
            pmi.set = std::make_shared<ExcPMIAnnotationSet>();
            pmi.set->setBlockId(blockId);
            pmi.set->setName(L"Semantic PMI");
            pmi.view = std::make_shared<ExcPMIAnnotationView>();
            pmi.view->setName(L"Semantic PMI");
            pmi.view->setId(L"semantic-pmi");
            pmi.set->addView(pmi.view);
        }
        return pmi;
    }

    // The part that `label` (a part, a sub-shape of one, or an instance of
    // one) belongs to, or -1.
    int partOf(TDF_Label label) const {
        TDF_Label referred;
        if (XCAFDoc_ShapeTool::IsReference(label) && XCAFDoc_ShapeTool::GetReferredShape(label, referred)) label = referred;
        for (int guard = 0; guard < 64 && !label.IsNull(); ++guard, label = label.Father())
            for (std::size_t i = 0; i < m_topology.size(); ++i)
                if (m_topology[i].part->label == label) return static_cast<int>(i);
        return -1;
    }

    std::shared_ptr<ExcEntity> link(ExcFullSubentPath::ESubentType type, int number) const {
        auto path = std::make_shared<ExcFullSubentPath>(static_cast<std::uint64_t>(number));
        path->setSubentType(type);
        return std::make_shared<ExcEntity>(path);
    }

    // Attaches `annotation` to the sub-entities of `shapes`; returns the
    // block it belongs to.
    std::uint64_t attach(ExcPMIAnnotation& annotation, const TDF_LabelSequence& shapes, PmiMapping& out) {
        int owner = -1;
        for (int i = 1; i <= shapes.Length(); ++i) {
            const int part = partOf(shapes(i));
            if (part < 0 || (owner >= 0 && part != owner)) continue;
            owner = part;
            const PartTopology& t = m_topology[static_cast<std::size_t>(part)];
            const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(shapes(i));
            if (shape.IsNull()) continue;
            if (int n = t.faces.FindIndex(shape)) {
                annotation.addLinkedElement(link(ExcFullSubentPath::Face, n));
            } else if (int e = t.edges.FindIndex(shape)) {
                annotation.addLinkedElement(link(ExcFullSubentPath::Edge, e));
            } else if (int v = t.vertices.FindIndex(shape)) {
                annotation.addLinkedElement(link(ExcFullSubentPath::Vertex, v));
            } else {
                // A shell, a solid or the whole part: its faces.
                bool any = false;
                for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next())
                    if (int f = t.faces.FindIndex(it.Current())) {
                        annotation.addLinkedElement(link(ExcFullSubentPath::Face, f));
                        any = true;
                    }
                if (!any) annotation.addLinkedElement(link(ExcFullSubentPath::Body, 0));
            }
        }
        if (owner < 0) {
            ++out.unattached;
            owner = 0;
        }
        return m_topology[static_cast<std::size_t>(owner)].part->blockId;
    }

    // attach(), remembering the block by the annotation's id.
    std::uint64_t owner(ExcPMIAnnotation& annotation, const TDF_LabelSequence& shapes, PmiMapping& out) {
        const std::uint64_t block = attach(annotation, shapes, out);
        m_owners[annotation.id()] = block;
        return block;
    }

    void datum(const TDF_Label& label, PmiMapping& out) {
        Handle(XCAFDoc_Datum) attribute;
        Handle(XCAFDimTolObjects_DatumObject) object;
        if (label.FindAttribute(XCAFDoc_Datum::GetID(), attribute)) object = attribute->GetObject();
        TDF_LabelSequence shapes, unused;
        m_gdt->GetRefShapeLabel(label, shapes, unused);
        const std::wstring name = object.IsNull() ? std::wstring() : text(object->GetName());
        std::shared_ptr<ExcPMIAnnotation> annotation;
        if (!object.IsNull() && object->IsDatumTarget()) {
            auto target = std::make_shared<ExcPMIDatumTarget>();
            target->setLabel(name + std::to_wstring(object->GetDatumTargetNumber()));
            target->setTargetType(targetType(object->GetDatumTargetType()));
            target->setHasDiameter(object->GetDatumTargetType() == XCAFDimTolObjects_DatumTargetType_Circle);
            const gp_Ax2 axis = object->GetDatumTargetAxis();
            target->setZonePoint1(vector(axis.Location().XYZ()));
            target->setZonePoint2(vector(axis.Location().XYZ() +
                                         axis.XDirection().XYZ() * object->GetDatumTargetLength() +
                                         axis.YDirection().XYZ() * object->GetDatumTargetWidth()));
            annotation = target;
        } else {
            auto plain = std::make_shared<ExcPMIDatum>();
            plain->setLabel(name);
            annotation = plain;
        }
        annotation->setId(entry(label));
        annotation->setName(L"Datum " + name);
        BlockPmi& pmi = pmiOf(owner(*annotation, shapes, out));
        if (auto target = std::dynamic_pointer_cast<ExcPMIDatumTarget>(annotation))
            pmi.view->addDatumTarget(target);
        else
            pmi.view->addDatum(std::dynamic_pointer_cast<ExcPMIDatum>(annotation));
        ++out.datums;
    }

    void dimension(const TDF_Label& label, PmiMapping& out) {
        auto annotation = std::make_shared<ExcPMIDimension>();
        annotation->setId(entry(label));
        Handle(XCAFDoc_Dimension) attribute;
        Handle(XCAFDimTolObjects_DimensionObject) object;
        if (label.FindAttribute(XCAFDoc_Dimension::GetID(), attribute)) object = attribute->GetObject();
        if (!object.IsNull()) {
            annotation->setName(text(object->GetSemanticName()));
            const ExcPMIDimension::ESubType sub = subType(object->GetType());
            annotation->setSubType(sub);
            annotation->setUnit(sub == ExcPMIDimension::SubAngle ? ExcPMIDimension::UnitRadian : lengthUnit(m_units));
            double value = object->GetValue();
            if (object->IsDimWithRange()) {
                value = 0.5 * (object->GetUpperBound() + object->GetLowerBound());
                annotation->setNumericalToleranceUpper(object->GetUpperBound() - value);
                annotation->setNumericalToleranceLower(object->GetLowerBound() - value);
            } else if (object->IsDimWithPlusMinusTolerance()) {
                annotation->setNumericalToleranceUpper(object->GetUpperTolValue());
                // Open CASCADE keeps the size of the lower deviation; the
                // exchange carries it signed, as the STEP file does.
                annotation->setNumericalToleranceLower(-std::abs(object->GetLowerTolValue()));
            }
            annotation->setValue(value);
            const bool toleranced = object->IsDimWithRange() || object->IsDimWithPlusMinusTolerance() ||
                                    object->IsDimWithClassOfTolerance();
            annotation->setMainType(toleranced ? ExcPMIDimension::MainTolerance : ExcPMIDimension::MainBasic);
            if (object->HasTextPoint()) annotation->setCoord(vector(object->GetPointTextAttach().XYZ()));
        }
        if (annotation->name().empty()) annotation->setName(L"Dimension " + entry(label));
        TDF_LabelSequence first, second;
        m_gdt->GetRefShapeLabel(label, first, second);
        first.Append(second);
        pmiOf(owner(*annotation, first, out)).view->addDimension(annotation);
        ++out.dimensions;
    }

    void tolerance(const TDF_Label& label, PmiMapping& out) {
        auto annotation = std::make_shared<ExcPMIGDT>();
        annotation->setId(entry(label));
        auto row = std::make_shared<ExcPMIGDT::Row>();
        Handle(XCAFDoc_GeomTolerance) attribute;
        Handle(XCAFDimTolObjects_GeomToleranceObject) object;
        if (label.FindAttribute(XCAFDoc_GeomTolerance::GetID(), attribute)) object = attribute->GetObject();
        if (!object.IsNull()) {
            annotation->setName(text(object->GetSemanticName()));
            annotation->setToleranceType(toleranceType(object->GetType()));
            row->setToleranceValue(object->GetValue());
            switch (object->GetTypeOfValue()) {
            case XCAFDimTolObjects_GeomToleranceTypeValue_Diameter: row->setToleranceValueType(ExcPMIGDT::ValueDiameter); break;
            case XCAFDimTolObjects_GeomToleranceTypeValue_SphericalDiameter: row->setToleranceValueType(ExcPMIGDT::ValueSpherical); break;
            default: row->setToleranceValueType(ExcPMIGDT::ValueNone);
            }
            if (object->GetMaterialRequirementModifier() == XCAFDimTolObjects_GeomToleranceMatReqModif_M)
                row->addZoneModifier(ExcPMIGDT::MaterialConditionMaximum);
            else if (object->GetMaterialRequirementModifier() == XCAFDimTolObjects_GeomToleranceMatReqModif_L)
                row->addZoneModifier(ExcPMIGDT::MaterialConditionLeast);
            if (object->GetZoneModifier() == XCAFDimTolObjects_GeomToleranceZoneModif_Projected)
                row->addZoneModifier(ExcPMIGDT::ProjectedStateProjected, object->GetValueOfZoneModifier());
            else if (object->GetZoneModifier() == XCAFDimTolObjects_GeomToleranceZoneModif_NonUniform)
                row->addZoneModifier(ExcPMIGDT::UnequallyDisposedZone, object->GetValueOfZoneModifier());
            const XCAFDimTolObjects_GeomToleranceModifiersSequence modifiers = object->GetModifiers();
            for (int i = 1; i <= modifiers.Length(); ++i) {
                switch (modifiers(i)) {
                case XCAFDimTolObjects_GeomToleranceModif_Common_Zone: row->addZoneModifier(ExcPMIGDT::CommonZone); break;
                case XCAFDimTolObjects_GeomToleranceModif_Free_State: row->addZoneModifier(ExcPMIGDT::FreeStateFree); break;
                case XCAFDimTolObjects_GeomToleranceModif_Tangent_Plane: row->addZoneModifier(ExcPMIGDT::TangentPlaneTangent); break;
                case XCAFDimTolObjects_GeomToleranceModif_Statistical_Tolerance: row->addZoneModifier(ExcPMIGDT::StatisticalSymbol); break;
                case XCAFDimTolObjects_GeomToleranceModif_Separate_Requirement: row->addZoneModifier(ExcPMIGDT::SeparateZone); break;
                case XCAFDimTolObjects_GeomToleranceModif_All_Around: annotation->setAllAround(1.0); break;
                default: break;
                }
            }
        }
        if (annotation->name().empty()) annotation->setName(L"Geometric tolerance " + entry(label));
        row->setReferenceFrame(frame(label));
        annotation->addGdtRow(row);
        TDF_LabelSequence shapes, unused;
        m_gdt->GetRefShapeLabel(label, shapes, unused);
        pmiOf(owner(*annotation, shapes, out)).view->addGdt(annotation);
        ++out.tolerances;
    }

    // The datum reference frame of a tolerance: one compartment per
    // precedence (primary, secondary, tertiary), each naming its datums.
    std::shared_ptr<ExcPMIGDT::Frame> frame(const TDF_Label& tolerance) const {
        TDF_LabelSequence datums;
        m_gdt->GetDatumWithObjectOfTolerLabels(tolerance, datums);
        if (datums.IsEmpty()) m_gdt->GetDatumOfTolerLabels(tolerance, datums);
        if (datums.IsEmpty()) return nullptr;
        std::map<int, ExcPMIGDT::DatumRef> compartments;
        for (int i = 1; i <= datums.Length(); ++i) {
            Handle(XCAFDoc_Datum) attribute;
            Handle(XCAFDimTolObjects_DatumObject) object;
            if (datums(i).FindAttribute(XCAFDoc_Datum::GetID(), attribute)) object = attribute->GetObject();
            const int position = object.IsNull() ? i : std::max(1, object->GetPosition());
            const std::wstring name = object.IsNull() ? std::wstring() : text(object->GetName());
            ExcPMIGDT::DatumRef& ref = compartments[position];
            ref.setLabel(ref.label().empty() ? name : ref.label() + L"-" + name);
            ExcPMIGDT::ModifiedDatum modified(entry(datums(i)));
            if (!object.IsNull()) {
                const XCAFDimTolObjects_DatumModifiersSequence modifiers = object->GetModifiers();
                for (int k = 1; k <= modifiers.Length(); ++k) {
                    if (modifiers(k) == XCAFDimTolObjects_DatumSingleModif_MaximumMaterialRequirement)
                        modified.addZoneModifier(ExcPMIGDT::MaterialConditionMaximum);
                    else if (modifiers(k) == XCAFDimTolObjects_DatumSingleModif_LeastMaterialRequirement)
                        modified.addZoneModifier(ExcPMIGDT::MaterialConditionLeast);
                    else if (modifiers(k) == XCAFDimTolObjects_DatumSingleModif_FreeState)
                        modified.addZoneModifier(ExcPMIGDT::FreeStateFree);
                }
            }
            ref.addModifiedDatum(std::move(modified));
        }
        auto out = std::make_shared<ExcPMIGDT::Frame>();
        std::wstring label;
        for (const auto& compartment : compartments) {
            label += (label.empty() ? L"" : L"|") + compartment.second.label();
            out->addDatumRef(compartment.second);
        }
        out->setLabel(label);
        return out;
    }

    // Saved views as captures of the part whose annotations they show.
    void captures(const Handle(TDocStd_Document)& document) {
        const TDF_Label main = document->Main();
        if (!XCAFDoc_DocumentTool::CheckViewTool(main)) return;
        Handle(XCAFDoc_ViewTool) views = XCAFDoc_DocumentTool::ViewTool(main);
        TDF_LabelSequence labels;
        views->GetViewLabels(labels);
        for (int i = 1; i <= labels.Length(); ++i) {
            auto capture = std::make_shared<ExcPMICapture>();
            capture->setId(entry(labels(i)));
            capture->setName(L"View " + std::to_wstring(i));
            Handle(XCAFDoc_View) view;
            if (labels(i).FindAttribute(XCAFDoc_View::GetID(), view) && !view->GetObject().IsNull()) {
                Handle(XCAFView_Object) object = view->GetObject();
                if (!text(object->Name()).empty()) capture->setName(text(object->Name()));
                capture->setCamera(std::make_shared<ExcCamera>(cameraOf(object, capture->name())));
            }
            TDF_LabelSequence shown;
            views->GetRefGDTLabel(labels(i), shown);
            std::uint64_t owner = m_topology.front().part->blockId;
            for (int k = 1; k <= shown.Length(); ++k) {
                capture->addAnnotationId(entry(shown(k)));
                auto found = m_owners.find(entry(shown(k)));
                if (k == 1 && found != m_owners.end()) owner = found->second;
            }
            pmiOf(owner).set->addCapture(capture);
        }
    }

    Handle(XCAFDoc_DimTolTool) m_gdt;
    ELengthUnitType m_units;
    std::vector<PartTopology> m_topology;
    std::map<std::uint64_t, BlockPmi> m_sets;
    std::map<std::wstring, std::uint64_t> m_owners;
};

} // namespace

PmiMapping mapPmi(const Handle(TDocStd_Document)& document, const std::vector<PmiPart>& parts, ELengthUnitType units) {
    PmiMapping out;
    if (!XCAFDoc_DocumentTool::CheckDimTolTool(document->Main()) && !XCAFDoc_DocumentTool::CheckViewTool(document->Main()))
        return out;
    Mapper(document, parts, units).run(document, out);
    return out;
}

void addSavedViews(const Handle(TDocStd_Document)& document, ExcVisualizationData& data) {
    const TDF_Label main = document->Main();
    if (!XCAFDoc_DocumentTool::CheckViewTool(main)) return;
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::ViewTool(main)->GetViewLabels(labels);
    for (int i = 1; i <= labels.Length(); ++i) {
        auto capture = std::make_shared<ExcVisuCapture>();
        capture->setId(entry(labels(i)));
        capture->setDisplayName(L"View " + std::to_wstring(i));
        Handle(XCAFDoc_View) view;
        if (labels(i).FindAttribute(XCAFDoc_View::GetID(), view) && !view->GetObject().IsNull()) {
            Handle(XCAFView_Object) object = view->GetObject();
            if (!text(object->Name()).empty()) capture->setDisplayName(text(object->Name()));
            capture->setCamera(cameraOf(object, capture->displayName()));
            TDF_LabelSequence shown;
            XCAFDoc_DocumentTool::ViewTool(main)->GetRefGDTLabel(labels(i), shown);
            for (int k = 1; k <= shown.Length(); ++k) capture->addAnnotationId(entry(shown(k)));
        }
        data.addCapture(capture);
    }
}

} // namespace occt_worker
