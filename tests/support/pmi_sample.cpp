#include "support/pmi_sample.h"

#include <string>

using namespace xch;

namespace xch_test {

namespace {

std::shared_ptr<ExcEntity> face(std::uint64_t id) {
    auto path = std::make_shared<ExcFullSubentPath>(id);
    path->setSubentType(ExcFullSubentPath::Face);
    path->refs() = {L"R1"};
    return std::make_shared<ExcEntity>(path);
}

template <class T>
std::shared_ptr<T> annotation(const std::wstring& id, std::uint64_t faceId) {
    auto a = std::make_shared<T>();
    a->setId(id);
    a->setName(L"PMI " + id);
    a->setPosition(ExcVector2d(faceId * 0.5, -2.0));
    a->addLinkedElement(face(faceId));
    auto leader = std::make_shared<ExcPMILeader>();
    leader->setPoints({ExcVector2d(0.0, 0.0), ExcVector2d(faceId * 1.0, 4.25)});
    a->addLeader(leader);
    return a;
}

std::shared_ptr<ExcPMIGDT> tolerance(const std::wstring& id, ExcPMIGDT::EToleranceType type, double value,
                                     bool withFrame) {
    using GDT = ExcPMIGDT;
    auto gdt = annotation<GDT>(id, 20);
    gdt->setToleranceType(type);
    auto row = std::make_shared<GDT::Row>();
    row->setToleranceValue(value);
    row->setRateUnit(0.0, 0.0);
    if (withFrame) {
        row->setToleranceValueType(GDT::ValueDiameter);
        row->addZoneModifier(GDT::MaterialConditionMaximum);
        row->addZoneModifier(GDT::ProjectedStateProjected, 15.0);
        auto frame = std::make_shared<GDT::Frame>(L"A|B|C");
        for (const wchar_t* letter : {L"A", L"B", L"C"}) {
            GDT::DatumRef ref(letter);
            GDT::ModifiedDatum datum(std::wstring(L"datum-") + letter);
            if (letter[0] == L'B') datum.addZoneModifier(GDT::MaterialConditionLeast);
            ref.addModifiedDatum(datum);
            auto text = std::make_shared<ExcPMIText>();
            text->setTextAfter(letter);
            ref.setText(text);
            frame->addDatumRef(ref);
        }
        row->setReferenceFrame(frame);
        auto note = std::make_shared<ExcPMIText>();
        note->setTextPrefix(L"4X");
        gdt->setNote(note);
    }
    gdt->addGdtRow(row);
    return gdt;
}

std::shared_ptr<ExcPMIAnnotationView> sampleView(const std::wstring& prefix) {
    auto view = std::make_shared<ExcPMIAnnotationView>();
    view->setName(prefix + L"Front");
    view->setId(prefix + L"view");
    view->setOrigin(ExcVector3d(0.0, 0.0, 10.0));
    view->setU(ExcVector3d(1.0, 0.0, 0.0));
    view->setV(ExcVector3d(0.0, 1.0, 0.0));

    auto note = annotation<ExcPMINote>(prefix + L"note", 1);
    auto text = std::make_shared<ExcPMINote::Text>(L"ALL DIMENSIONS IN MM \u2300");
    text->setFontName(L"ISOCPEUR");
    text->setFontType(ExcPMINote::Text::ISO);
    text->setHeight(3.5);
    text->setRGBA(0.0, 0.0, 0.5, 1.0);
    note->addText(text);
    note->setFlagNote(true);
    view->addNote(note);

    for (const wchar_t* letter : {L"A", L"B", L"C"}) {
        auto datum = annotation<ExcPMIDatum>(prefix + L"datum-" + letter, 10);
        datum->setLabel(letter);
        if (letter[0] == L'A') datum->addTargetId(prefix + L"target-A1");
        view->addDatum(datum);
    }
    auto target = annotation<ExcPMIDatumTarget>(prefix + L"target-A1", 11);
    target->setLabel(L"A1");
    target->setTargetType(ExcPMIDatumTarget::AreaCircular);
    target->setHasDiameter(true);
    target->setUpperText(L"\u23006");
    target->setZonePoint1(ExcVector3d(5.0, 5.0, 0.0));
    target->setZonePoint2(ExcVector3d(8.0, 5.0, 0.0));
    view->addDatumTarget(target);

    view->addGdt(tolerance(prefix + L"position", ExcPMIGDT::LocationTruePosition, 0.1, true));
    view->addGdt(tolerance(prefix + L"flatness", ExcPMIGDT::FormFlatness, 0.05, false));

    auto dimension = annotation<ExcPMIDimension>(prefix + L"diameter", 30);
    dimension->setMainType(ExcPMIDimension::MainTolerance);
    dimension->setSubType(ExcPMIDimension::SubDiameter);
    dimension->setValue(12.0);
    dimension->setUnit(ExcPMIDimension::UnitMm);
    dimension->setValuePrecision(2.0);
    dimension->setNumericalToleranceUpper(0.1);
    dimension->setNumericalToleranceLower(-0.1);
    auto dimensionText = std::make_shared<ExcPMIText>();
    dimensionText->setTextPrefix(L"\u2300");
    dimension->setNote(dimensionText);
    dimension->setLineStart(ExcVector2d(-6.0, 0.0));
    dimension->setLineEnd(ExcVector2d(6.0, 0.0));
    dimension->setArrowSymbolStart(ExcPMIDimension::ArrowFilledArrow);
    dimension->setArrowSymbolEnd(ExcPMIDimension::ArrowFilledArrow);
    view->addDimension(dimension);

    auto roughness = annotation<ExcPMIRoughness>(prefix + L"roughness", 40);
    roughness->setObtentionType(ExcPMIRoughness::MatchingMandatory);
    roughness->setApplicabilityType(ExcPMIRoughness::SpecifiedSurfaceOnly);
    roughness->addField(L"Ra 1.6");
    view->addRoughness(roughness);
    return view;
}

} // namespace

std::shared_ptr<ExcPMIAnnotationSet> sampleAnnotationSet(std::uint64_t blockId, int views) {
    auto set = std::make_shared<ExcPMIAnnotationSet>(blockId);
    set->setName(L"PMI of block " + std::to_wstring(blockId));
    set->setStandart(L"ASME Y14.5-2009");
    auto capture = std::make_shared<ExcPMICapture>();
    capture->setName(L"Datums");
    capture->setId(L"capture-1");
    capture->setCurrent(true);
    capture->setManageHideShow(true);
    auto camera = std::make_shared<ExcCamera>();
    camera->setType(ExcCamera::Orthographic);
    camera->setEye(ExcVector3d(100.0, 100.0, 100.0));
    camera->setOrthographicZoomFactor(2.0);
    capture->setCamera(camera);
    auto plane = std::make_shared<ExcClippingPlane>();
    plane->setOrigin(ExcVector3d(0.0, 0.0, 5.0));
    capture->setClippingPlane(plane);
    capture->addBody(face(1));
    capture->addConstructedGeometry(face(2));
    for (int i = 0; i < views; ++i) {
        const std::wstring prefix = views == 1 ? std::wstring() : L"v" + std::to_wstring(i) + L"-";
        auto view = sampleView(prefix);
        set->addView(view);
        capture->addAnnotationId(prefix + L"datum-A");
        capture->addAnnotationId(prefix + L"position");
    }
    set->addCapture(capture);
    set->addConstructedGeometry(face(3));
    return set;
}

std::shared_ptr<ExcPMIData> samplePMIData(int blocks, int viewsPerSet) {
    auto data = std::make_shared<ExcPMIData>();
    for (int block = 0; block < blocks; ++block)
        data->addAnnotationSet(sampleAnnotationSet(static_cast<std::uint64_t>(block), viewsPerSet));
    return data;
}

} // namespace xch_test
