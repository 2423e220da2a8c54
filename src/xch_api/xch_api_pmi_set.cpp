// Annotation sets and PMI data.
#include <xch_api/xch_api_pmi_set.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

// ---- ExcPMIAnnotationSet -------------------------------------------------------------------------

ExcPMIAnnotationSet::ExcPMIAnnotationSet() = default;
ExcPMIAnnotationSet::ExcPMIAnnotationSet(std::uint64_t blockId) : m_blockId(blockId) {}
ExcPMIAnnotationSet::ExcPMIAnnotationSet(const ExcPMIAnnotationSet&) = default;
ExcPMIAnnotationSet& ExcPMIAnnotationSet::operator=(const ExcPMIAnnotationSet&) = default;
ExcPMIAnnotationSet::~ExcPMIAnnotationSet() = default;

void ExcPMIAnnotationSet::addView(const std::shared_ptr<ExcPMIAnnotationView>& view) {
    json::appendNonNull(m_views, view, "ExcPMIAnnotationSet: attempt to add null View object.");
}

void ExcPMIAnnotationSet::addCapture(const std::shared_ptr<ExcPMICapture>& capture) {
    json::appendNonNull(m_captures, capture, "ExcPMIAnnotationSet: attempt to add null Capture object.");
}

void ExcPMIAnnotationSet::addConstructedGeometry(const std::shared_ptr<ExcEntity>& entity) {
    json::appendNonNull(m_constructedGeometry, entity,
                        "ExcPMIAnnotationSet: attempt to add null Constructed Geometry Entity object.");
}

template <class Io, class Self>
void ExcPMIAnnotationSet::members(Io& io, Self& self) {
    io(L"block_id", self.m_blockId);
    io(L"name", self.m_name);
    io(L"hidden", self.m_hidden);
    io(L"standart", self.m_standart);
    io(L"annotation_views", self.m_views, json::objectsOnly);
    io(L"captures", self.m_captures, json::objectsOnly);
    io(L"constructed_geometry", self.m_constructedGeometry, json::objectsOnly);
}

XCH_JSON_IO(ExcPMIAnnotationSet)

// ---- ExcPMIData ------------------------------------------------------------------------------------

ExcPMIData::ExcPMIData() = default;
ExcPMIData::ExcPMIData(const ExcPMIData&) = default;
ExcPMIData& ExcPMIData::operator=(const ExcPMIData&) = default;
ExcPMIData::~ExcPMIData() = default;

void ExcPMIData::addAnnotationSet(const std::shared_ptr<ExcPMIAnnotationSet>& set) {
    json::appendNonNull(m_annotationSets, set, "ExcPMIData: attempt to add null PMI Annotation Set object.");
}

XCH_JSON_IO_ARRAY(ExcPMIData, m_annotationSets, json::objectsOnly)

} // namespace xch
