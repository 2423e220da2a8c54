// The presentation side of PMI: annotation views (a plane holding
// annotations of every kind, indexed by id) and captures (a saved
// presentation state: camera, clipping plane, which annotations and bodies
// are shown).
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_pmi_annotation.h>
#include <xch_api/xch_api_pmi_datum.h>
#include <xch_api/xch_api_pmi_dimension.h>
#include <xch_api/xch_api_pmi_gdt.h>
#include <xch_api/xch_api_pmi_note.h>
#include <xch_api/xch_api_pmi_roughness.h>
#include <xch_api/xch_api_visu_camera.h>

namespace xch {

// An annotation plane (origin and two in-plane axes) with the annotations
// placed in it, one list per kind, and an index of all of them by id.
//
// JSON: "name", "id", "hidden", then "origin", "u", "v" ([x, y, z], read
// only from arrays), "notes", "datum", "datum_targets", "GDTs",
// "dimensions", "roughness" (arrays of the annotation objects). Reading
// makes one new annotation per object element (other elements are
// skipped) and adds it through its adder, so the index is filled and
// duplicated ids are reported while reading too. The index is not
// written.
class XCH_API ExcPMIAnnotationView : public ExcPMIObject {
public:
    ExcPMIAnnotationView();
    ExcPMIAnnotationView(const ExcPMIAnnotationView&);
    ExcPMIAnnotationView& operator=(const ExcPMIAnnotationView&);
    ~ExcPMIAnnotationView() override;

    const ExcVector3d& origin() const { return m_origin; }
    void setOrigin(const ExcVector3d& origin) { m_origin = origin; }
    const ExcVector3d& u() const { return m_u; }
    void setU(const ExcVector3d& u) { m_u = u; }
    const ExcVector3d& v() const { return m_v; }
    void setV(const ExcVector3d& v) { m_v = v; }

    // Each adder appends the annotation to its kind's list and indexes it
    // by id. A null annotation is not added ("ExcPMIAnnotationView: attempt
    // to add null PMI <Kind> object." as a warning; for GD&T the message
    // reads "attempt ot add"). An id already indexed keeps its earlier
    // annotation and logs "Duplicated PMI annotation id: <id>" as a
    // warning; the new annotation is in its list all the same. Ids are
    // shared by all kinds; the empty id is an id like any other.
    void addNote(const std::shared_ptr<ExcPMINote>& note);
    void addDatum(const std::shared_ptr<ExcPMIDatum>& datum);
    void addDatumTarget(const std::shared_ptr<ExcPMIDatumTarget>& datumTarget);
    void addGdt(const std::shared_ptr<ExcPMIGDT>& gdt);
    void addDimension(const std::shared_ptr<ExcPMIDimension>& dimension);
    void addRoughness(const std::shared_ptr<ExcPMIRoughness>& roughness);

    const std::vector<std::shared_ptr<ExcPMINote>>& notes() const { return m_notes; }
    const std::vector<std::shared_ptr<ExcPMIDatum>>& datums() const { return m_datums; }
    const std::vector<std::shared_ptr<ExcPMIDatumTarget>>& datumTargets() const { return m_datumTargets; }
    const std::vector<std::shared_ptr<ExcPMIGDT>>& gdts() const { return m_gdts; }
    const std::vector<std::shared_ptr<ExcPMIDimension>>& dimensions() const { return m_dimensions; }
    const std::vector<std::shared_ptr<ExcPMIRoughness>>& roughnesses() const { return m_roughnesses; }

    // The annotation first added under `id`, or null.
    std::shared_ptr<ExcPMIAnnotation> getAnnotationById(const std::wstring& id) const;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    template <class T>
    void add(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<T>& annotation, const char* nullMessage);

    ExcVector3d m_origin;
    ExcVector3d m_u;
    ExcVector3d m_v;
    std::vector<std::shared_ptr<ExcPMINote>> m_notes;
    std::vector<std::shared_ptr<ExcPMIDatum>> m_datums;
    std::vector<std::shared_ptr<ExcPMIDatumTarget>> m_datumTargets;
    std::vector<std::shared_ptr<ExcPMIGDT>> m_gdts;
    std::vector<std::shared_ptr<ExcPMIDimension>> m_dimensions;
    std::vector<std::shared_ptr<ExcPMIRoughness>> m_roughnesses;
    std::map<std::wstring, std::shared_ptr<ExcPMIAnnotation>> m_index;
};

// A saved presentation state: the camera, the clipping plane, the
// annotations shown (by id), and the bodies and construction geometry
// shown.
//
// JSON: "name", "id", "hidden", then "capture_hidden", "current",
// "hidden_text", "manage_hide_show" (JSON bools and a string), "camera"
// (ExcCamera object, null when there is none), "clipping_plane"
// (ExcClippingPlane object; null when there is none or it is empty),
// "annotation_ids" (array of strings), "constructed_geometry", "bodies"
// (arrays of entity objects). Camera and clipping plane are read into new
// objects when the members are objects; the lists append.
class XCH_API ExcPMICapture : public ExcPMIObject {
public:
    ExcPMICapture();
    ExcPMICapture(const ExcPMICapture&);
    ExcPMICapture& operator=(const ExcPMICapture&);
    ~ExcPMICapture() override;

    bool captureHidden() const { return m_captureHidden; }
    void setCaptureHidden(bool hidden) { m_captureHidden = hidden; }
    // The capture shown when the model is opened.
    bool isCurrent() const { return m_current; }
    void setCurrent(bool current) { m_current = current; }
    const std::wstring& hiddenText() const { return m_hiddenText; }
    void setHiddenText(const std::wstring& text) { m_hiddenText = text; }
    const std::shared_ptr<ExcCamera>& camera() const { return m_camera; }
    void setCamera(const std::shared_ptr<ExcCamera>& camera) { m_camera = camera; }
    const std::shared_ptr<ExcClippingPlane>& clippingPlane() const { return m_clippingPlane; }
    void setClippingPlane(const std::shared_ptr<ExcClippingPlane>& plane) { m_clippingPlane = plane; }
    // The ids of the annotations the capture shows.
    const std::vector<std::wstring>& annotationIds() const { return m_annotationIds; }
    void addAnnotationId(const std::wstring& id) { m_annotationIds.push_back(id); }
    // A null entity is not added ("ExcPMICapture: attempt to add null
    // Constructed Geometry Entity object." / "... null Body object." as a
    // warning).
    const ExcEntityList& constructedGeometry() const { return m_constructedGeometry; }
    void addConstructedGeometry(const std::shared_ptr<ExcEntity>& entity);
    const ExcEntityList& bodies() const { return m_bodies; }
    void addBody(const std::shared_ptr<ExcEntity>& body);
    // Whether the capture decides which bodies are shown.
    bool manageHideShow() const { return m_manageHideShow; }
    void setManageHideShow(bool manage) { m_manageHideShow = manage; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    bool m_captureHidden = false;
    bool m_current = false;
    std::wstring m_hiddenText;
    std::shared_ptr<ExcCamera> m_camera;
    std::shared_ptr<ExcClippingPlane> m_clippingPlane;
    std::vector<std::wstring> m_annotationIds;
    ExcEntityList m_constructedGeometry;
    ExcEntityList m_bodies;
    bool m_manageHideShow = false;
};

} // namespace xch
