#include "example_pmi.h"
#include "example_support.h"

#include <sstream>

using namespace xch;

namespace example {

namespace {

using GDT = ExcPMIGDT;


// Places an annotation at (x, y) in the view, attached to a face, with a
// leader from the annotation to the face.
template <class T>
std::shared_ptr<T> placed(const std::wstring& id, double x, double y, const std::shared_ptr<ExcEntity>& attachedTo) {
    auto annotation = std::make_shared<T>();
    annotation->setId(id);
    annotation->setPosition(ExcVector2d(x, y));
    annotation->addLinkedElement(attachedTo);
    auto leader = std::make_shared<ExcPMILeader>();
    leader->addPoint(ExcVector2d(x, y));
    leader->addPoint(ExcVector2d(x + 10.0, y - 10.0));
    annotation->addLeader(leader);
    return annotation;
}

// One compartment of a datum reference frame: the datum `letter`,
// referring to the datum annotation "datum-<letter>".
GDT::DatumRef datumRef(const wchar_t* letter, GDT::EToleranceModifier modifier = GDT::NoModifier) {
    GDT::DatumRef ref(letter);
    GDT::ModifiedDatum datum(std::wstring(L"datum-") + letter);
    if (modifier != GDT::NoModifier) datum.addZoneModifier(modifier);
    ref.addModifiedDatum(datum);
    return ref;
}

std::shared_ptr<ExcPMIGDT> positionTolerance(std::uint64_t blockId) {
    auto frame = std::make_shared<GDT::Frame>(L"A|B|C");
    frame->addDatumRef(datumRef(L"A"));
    frame->addDatumRef(datumRef(L"B"));
    frame->addDatumRef(datumRef(L"C"));
    auto row = std::make_shared<GDT::Row>();
    row->setToleranceValueType(GDT::ValueDiameter);
    row->setToleranceValue(0.2);
    row->addZoneModifier(GDT::MaterialConditionMaximum);
    row->setReferenceFrame(frame);
    auto gdt = placed<ExcPMIGDT>(L"position-holes", 60.0, 45.0, face(blockId, 101));
    gdt->setName(L"Position of the bolt holes");
    gdt->setToleranceType(GDT::LocationTruePosition);
    gdt->addGdtRow(row);
    auto text = std::make_shared<ExcPMIText>();
    text->setTextPrefix(L"6X");
    gdt->setNote(text);
    return gdt;
}

std::shared_ptr<ExcPMIGDT> flatness(std::uint64_t blockId) {
    auto row = std::make_shared<GDT::Row>();
    row->setToleranceValue(0.05);
    auto gdt = placed<ExcPMIGDT>(L"flatness-A", 20.0, -15.0, face(blockId, 1));
    gdt->setName(L"Flatness of datum face A");
    gdt->setToleranceType(GDT::FormFlatness);
    gdt->addGdtRow(row);
    return gdt;
}

std::shared_ptr<ExcPMIDimension> holeDiameter(std::uint64_t blockId) {
    auto dimension = placed<ExcPMIDimension>(L"diameter-holes", 60.0, 30.0, face(blockId, 101));
    dimension->setName(L"Bolt hole diameter");
    dimension->setMainType(ExcPMIDimension::MainTolerance);
    dimension->setSubType(ExcPMIDimension::SubDiameter);
    dimension->setValue(6.6);
    dimension->setUnit(ExcPMIDimension::UnitMm);
    dimension->setValuePrecision(1.0);
    dimension->setNumericalToleranceUpper(0.1);
    dimension->setNumericalToleranceLower(-0.1);
    auto text = std::make_shared<ExcPMIText>();
    text->setTextPrefix(L"6X \u2300");
    dimension->setNote(text);
    dimension->setLineStart(ExcVector2d(56.7, 30.0));
    dimension->setLineEnd(ExcVector2d(63.3, 30.0));
    dimension->setArrowSymbolStart(ExcPMIDimension::ArrowFilledArrow);
    dimension->setArrowSymbolEnd(ExcPMIDimension::ArrowFilledArrow);
    return dimension;
}

std::shared_ptr<ExcPMIAnnotationView> frontView(std::uint64_t blockId) {
    auto view = std::make_shared<ExcPMIAnnotationView>();
    view->setName(L"Front");
    view->setId(L"view-front");
    view->setOrigin(ExcVector3d(0.0, 0.0, 12.0));
    view->setU(ExcVector3d(1.0, 0.0, 0.0));
    view->setV(ExcVector3d(0.0, 1.0, 0.0));

    // The datum system: A the bottom face, B and C two side faces.
    const wchar_t* letters[] = {L"A", L"B", L"C"};
    for (std::uint64_t i = 0; i < 3; ++i) {
        auto datum = placed<ExcPMIDatum>(std::wstring(L"datum-") + letters[i], 10.0 * i, -20.0, face(blockId, i + 1));
        datum->setLabel(letters[i]);
        view->addDatum(datum);
    }
    view->addGdt(positionTolerance(blockId));
    view->addDimension(holeDiameter(blockId));
    view->addGdt(flatness(blockId));

    auto note = std::make_shared<ExcPMINote>();
    note->setId(L"note-general");
    note->setPosition(ExcVector2d(0.0, 80.0));
    auto text = std::make_shared<ExcPMINote::Text>(L"BREAK ALL SHARP EDGES 0.2 X 45\u00b0");
    text->setFontName(L"ISOCPEUR");
    text->setFontType(ExcPMINote::Text::ISO);
    text->setHeight(3.5);
    text->setRGBA(0.0, 0.0, 0.0, 1.0);
    note->addText(text);
    view->addNote(note);

    auto roughness = placed<ExcPMIRoughness>(L"roughness-A", 35.0, -15.0, face(blockId, 1));
    roughness->setObtentionType(ExcPMIRoughness::MatchingMandatory);
    roughness->setApplicabilityType(ExcPMIRoughness::SpecifiedSurfaceOnly);
    roughness->addField(L"Ra 1.6");
    view->addRoughness(roughness);
    return view;
}

std::shared_ptr<ExcPMICapture> datumCapture(std::uint64_t blockId) {
    auto camera = std::make_shared<ExcCamera>();
    camera->setType(ExcCamera::Orthographic);
    camera->setName(L"Datums");
    camera->setEye(ExcVector3d(150.0, -150.0, 120.0));
    camera->setTarget(ExcVector3d(50.0, 20.0, 6.0));
    camera->setUp(ExcVector3d(0.0, 0.0, 1.0));
    camera->setOrthographicZoomFactor(1.5);
    auto capture = std::make_shared<ExcPMICapture>();
    capture->setName(L"Datums and hole position");
    capture->setId(L"capture-datums");
    capture->setCurrent(true);
    capture->setCamera(camera);
    for (const wchar_t* id : {L"datum-A", L"datum-B", L"datum-C", L"position-holes"}) capture->addAnnotationId(id);
    capture->addBody(std::make_shared<ExcEntity>(ExcEntity::Original, L"#" + std::to_wstring(blockId), L"body"));
    return capture;
}

std::wstring describe(const ExcPMIGDT& gdt) {
    std::wstring line = L"GD&T " + enumToString(gdt.toleranceType());
    for (const auto& row : gdt.gdtRows()) {
        line += row->toleranceValueType() == GDT::ValueDiameter ? L" \u2300" : L" ";
        line += number(row->toleranceValue());
        for (const auto& zone : row->zoneModifiers()) line += L" (" + enumToString(zone.modifier) + L")";
        if (const auto& frame = row->referenceFrame()) {
            line += L" |";
            for (const auto& ref : frame->datumRefs()) line += ref.label() + L"|";
        }
    }
    return line;
}

std::wstring describe(const ExcPMIDimension& dimension) {
    std::wstring line = L"dimension " + enumToString(dimension.subType()) + L" " +
                        (dimension.note() ? dimension.note()->textPrefix() : std::wstring()) +
                        number(dimension.value()) + L" " + enumToString(dimension.unit());
    if (dimension.numericalToleranceUpper() != 0.0 || dimension.numericalToleranceLower() != 0.0)
        line += L" +" + number(dimension.numericalToleranceUpper()) + L"/" + number(dimension.numericalToleranceLower());
    return line;
}

} // namespace

std::shared_ptr<ExcPMIData> makeBlockPMI(std::uint64_t blockId) {
    auto set = std::make_shared<ExcPMIAnnotationSet>(blockId);
    set->setName(L"Bracket PMI");
    set->setStandart(L"ASME Y14.5-2009");
    set->addView(frontView(blockId));
    set->addCapture(datumCapture(blockId));
    auto pmi = std::make_shared<ExcPMIData>();
    pmi->addAnnotationSet(set);
    return pmi;
}

void printPMI(const ExcPMIData& pmi, const std::function<void(const std::wstring&)>& say) {
    for (const auto& set : pmi.annotationSets()) {
        const std::wstring prefix = L"block " + std::to_wstring(set->blockId()) + L" PMI: ";
        for (const auto& view : set->views()) {
            const std::wstring in = L" (view '" + view->name() + L"')";
            for (const auto& datum : view->datums()) say(prefix + L"datum " + datum->label() + in);
            for (const auto& target : view->datumTargets())
                say(prefix + L"datum target " + target->label() + L" " + enumToString(target->targetType()) + in);
            for (const auto& gdt : view->gdts()) say(prefix + describe(*gdt) + in);
            for (const auto& dimension : view->dimensions()) say(prefix + describe(*dimension) + in);
            for (const auto& note : view->notes()) {
                std::wstring text;
                for (const auto& run : note->texts()) text += run->label();
                say(prefix + L"note \"" + text + L"\"" + in);
            }
            for (const auto& roughness : view->roughnesses()) {
                std::wstring fields;
                for (const auto& field : roughness->fields()) fields += (fields.empty() ? L"" : L" ") + field;
                say(prefix + L"roughness " + fields + L" (" + enumToString(roughness->obtentionType()) + L")" + in);
            }
        }
        for (const auto& capture : set->captures()) {
            std::wstring shown;
            for (const auto& id : capture->annotationIds()) {
                // Ids resolve through the views' indexes.
                for (const auto& view : set->views())
                    if (view->getAnnotationById(id)) {
                        shown += (shown.empty() ? L"" : L", ") + id;
                        break;
                    }
            }
            say(prefix + L"capture '" + capture->name() + L"'" + (capture->isCurrent() ? L" (current)" : L"") +
                L" shows " + shown);
        }
    }
}

} // namespace example
