// Annotation views and captures.
#include <xch_api/xch_api_pmi_view.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

// ---- ExcPMIAnnotationView ----------------------------------------------------------------------

ExcPMIAnnotationView::ExcPMIAnnotationView() = default;
ExcPMIAnnotationView::ExcPMIAnnotationView(const ExcPMIAnnotationView&) = default;
ExcPMIAnnotationView& ExcPMIAnnotationView::operator=(const ExcPMIAnnotationView&) = default;
ExcPMIAnnotationView::~ExcPMIAnnotationView() = default;

template <class T>
void ExcPMIAnnotationView::add(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<T>& annotation,
                               const char* nullMessage) {
    if (!json::appendNonNull(list, annotation, nullMessage))
        return;
    if (!m_index.emplace(annotation->id(), annotation).second)
        VX_LOG(vx_link::LevelWarning, "Duplicated PMI annotation id: " << vx_link::utf8(annotation->id()));
}

void ExcPMIAnnotationView::addNote(const std::shared_ptr<ExcPMINote>& note) {
    add(m_notes, note, "ExcPMIAnnotationView: attempt to add null PMI Note object.");
}

void ExcPMIAnnotationView::addDatum(const std::shared_ptr<ExcPMIDatum>& datum) {
    add(m_datums, datum, "ExcPMIAnnotationView: attempt to add null PMI Datum object.");
}

void ExcPMIAnnotationView::addDatumTarget(const std::shared_ptr<ExcPMIDatumTarget>& datumTarget) {
    add(m_datumTargets, datumTarget, "ExcPMIAnnotationView: attempt to add null PMI Datum Target object.");
}

void ExcPMIAnnotationView::addGdt(const std::shared_ptr<ExcPMIGDT>& gdt) {
    add(m_gdts, gdt, "ExcPMIAnnotationView: attempt ot add null PMI GDT object.");
}

void ExcPMIAnnotationView::addDimension(const std::shared_ptr<ExcPMIDimension>& dimension) {
    add(m_dimensions, dimension, "ExcPMIAnnotationView: attempt to add null PMI Dimension object.");
}

void ExcPMIAnnotationView::addRoughness(const std::shared_ptr<ExcPMIRoughness>& roughness) {
    add(m_roughnesses, roughness, "ExcPMIAnnotationView: attempt to add null PMI Roughness object.");
}

std::shared_ptr<ExcPMIAnnotation> ExcPMIAnnotationView::getAnnotationById(const std::wstring& id) const {
    auto it = m_index.find(id);
    return it == m_index.end() ? nullptr : it->second;
}

template <class Io, class Self>
void ExcPMIAnnotationView::members(Io& io, Self& self) {
    io(L"origin", self.m_origin, json::whenArray);
    io(L"u", self.m_u, json::whenArray);
    io(L"v", self.m_v, json::whenArray);
    io(L"notes", self.m_notes, json::objectsAddedBy([&self](const auto& a) { self.addNote(a); }));
    io(L"datum", self.m_datums, json::objectsAddedBy([&self](const auto& a) { self.addDatum(a); }));
    io(L"datum_targets", self.m_datumTargets, json::objectsAddedBy([&self](const auto& a) { self.addDatumTarget(a); }));
    io(L"GDTs", self.m_gdts, json::objectsAddedBy([&self](const auto& a) { self.addGdt(a); }));
    io(L"dimensions", self.m_dimensions, json::objectsAddedBy([&self](const auto& a) { self.addDimension(a); }));
    io(L"roughness", self.m_roughnesses, json::objectsAddedBy([&self](const auto& a) { self.addRoughness(a); }));
}

XCH_JSON_IO_DERIVED(ExcPMIAnnotationView, ExcPMIObject)

// ---- ExcPMICapture ------------------------------------------------------------------------------

ExcPMICapture::ExcPMICapture() = default;
ExcPMICapture::ExcPMICapture(const ExcPMICapture&) = default;
ExcPMICapture& ExcPMICapture::operator=(const ExcPMICapture&) = default;
ExcPMICapture::~ExcPMICapture() = default;

void ExcPMICapture::addConstructedGeometry(const std::shared_ptr<ExcEntity>& entity) {
    json::appendNonNull(m_constructedGeometry, entity,
                        "ExcPMICapture: attempt to add null Constructed Geometry Entity object.");
}

void ExcPMICapture::addBody(const std::shared_ptr<ExcEntity>& body) {
    json::appendNonNull(m_bodies, body, "ExcPMICapture: attempt to add null Body object.");
}

template <class Io, class Self>
void ExcPMICapture::members(Io& io, Self& self) {
    io(L"capture_hidden", self.m_captureHidden);
    io(L"current", self.m_current);
    io(L"hidden_text", self.m_hiddenText);
    io(L"manage_hide_show", self.m_manageHideShow);
    io(L"camera", self.m_camera, json::newObject);
    io(L"clipping_plane", self.m_clippingPlane, json::newObject);
    io(L"annotation_ids", self.m_annotationIds);
    io(L"constructed_geometry", self.m_constructedGeometry, json::objectsOnly);
    io(L"bodies", self.m_bodies, json::objectsOnly);
}

XCH_JSON_IO_DERIVED(ExcPMICapture, ExcPMIObject)

} // namespace xch
