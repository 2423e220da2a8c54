// The manufacturing features of a block.
#include <xch_api/xch_api_mfg_data.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

ExcMfgData::ExcMfgData() = default;
ExcMfgData::~ExcMfgData() = default;

void ExcMfgData::addSimpleHole(const std::shared_ptr<ExcMfgFeatureSimpleHole>& hole) {
    json::appendNonNull(m_simpleHoles, hole, "ExcMfgData: attempt to add null Simple Hole object.");
}

void ExcMfgData::addTaperHole(const std::shared_ptr<ExcMfgFeatureTaperHole>& hole) {
    json::appendNonNull(m_taperHoles, hole, "ExcMfgData: attempt to add null Taper Hole object.");
}

void ExcMfgData::addCounterBoreHole(const std::shared_ptr<ExcMfgFeatureCounterBoreHole>& hole) {
    json::appendNonNull(m_counterBoreHoles, hole, "ExcMfgData: attempt to add null Counter Bore Hole object.");
}

void ExcMfgData::addCounterSinkHole(const std::shared_ptr<ExcMfgFeatureCounterSinkHole>& hole) {
    json::appendNonNull(m_counterSinkHoles, hole, "ExcMfgData: attempt to add null Counter Sink Hole object.");
}

void ExcMfgData::addCounterDrillHole(const std::shared_ptr<ExcMfgFeatureCounterDrillHole>& hole) {
    json::appendNonNull(m_counterDrillHoles, hole, "ExcMfgData: attempt to add null Counter Drill Hole object.");
}

void ExcMfgData::addInternalThread(const std::shared_ptr<ExcMfgFeatureInternalThread>& thread) {
    json::appendNonNull(m_internalThreads, thread, "ExcMfgData: attempt to add null Internal Thread object.");
}

void ExcMfgData::addExternalThread(const std::shared_ptr<ExcMfgFeatureExternalThread>& thread) {
    json::appendNonNull(m_externalThreads, thread, "ExcMfgData: attempt to add null External thread object.");
}

void ExcMfgData::addUnclassifiedFeature(const std::shared_ptr<ExcMfgFeatureUnclassified>& feature) {
    json::appendNonNull(m_unclassifiedFeatures, feature,
                        "ExcMfgData: attempt to add null Unclassified Feature object.");
}

template <class Io, class Self>
void ExcMfgData::members(Io& io, Self& self) {
    io(L"has_data", self.m_hasData);
    io(L"simple_holes", self.m_simpleHoles, json::objectsOnly);
    io(L"taper_holes", self.m_taperHoles, json::objectsOnly);
    io(L"counter_bore_holes", self.m_counterBoreHoles, json::objectsOnly);
    io(L"counter_sink_holes", self.m_counterSinkHoles, json::objectsOnly);
    io(L"counter_drill_holes", self.m_counterDrillHoles, json::objectsOnly);
    io(L"internal_threads", self.m_internalThreads, json::objectsOnly);
    io(L"external_threads", self.m_externalThreads, json::objectsOnly);
    io(L"unclassified_features", self.m_unclassifiedFeatures, json::objectsOnly);
}

XCH_JSON_IO(ExcMfgData)

} // namespace xch
