// All manufacturing features of one block (the block mechanical data's
// "mfg_data").
#pragma once

#include <memory>
#include <vector>

#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>
#include <xch_api/xch_api_mfg_feature.h>

namespace xch {

// JSON: "has_data" (bool), then the arrays "simple_holes", "taper_holes",
// "counter_bore_holes", "counter_sink_holes", "counter_drill_holes",
// "internal_threads", "external_threads", "unclassified_features". Reading
// takes "has_data" only from a JSON bool and appends a new feature of the
// list's kind for each object item of each list (other items are skipped).
// "has_data" is carried as the producer sets it; the lists do not change
// it. Copies share the features.
class XCH_API ExcMfgData : public IJsonObject {
public:
    template <class T>
    using List = std::vector<std::shared_ptr<T>>;

    ExcMfgData();
    ~ExcMfgData() override;

    bool hasData() const { return m_hasData; }
    void setHasData(bool hasData) { m_hasData = hasData; }

    // Each adder appends one feature; a null one is not added (logged as a
    // warning).
    void addSimpleHole(const std::shared_ptr<ExcMfgFeatureSimpleHole>& hole);
    void addTaperHole(const std::shared_ptr<ExcMfgFeatureTaperHole>& hole);
    void addCounterBoreHole(const std::shared_ptr<ExcMfgFeatureCounterBoreHole>& hole);
    void addCounterSinkHole(const std::shared_ptr<ExcMfgFeatureCounterSinkHole>& hole);
    void addCounterDrillHole(const std::shared_ptr<ExcMfgFeatureCounterDrillHole>& hole);
    void addInternalThread(const std::shared_ptr<ExcMfgFeatureInternalThread>& thread);
    void addExternalThread(const std::shared_ptr<ExcMfgFeatureExternalThread>& thread);
    void addUnclassifiedFeature(const std::shared_ptr<ExcMfgFeatureUnclassified>& feature);

    const List<ExcMfgFeatureSimpleHole>& simpleHoles() const { return m_simpleHoles; }
    const List<ExcMfgFeatureTaperHole>& taperHoles() const { return m_taperHoles; }
    const List<ExcMfgFeatureCounterBoreHole>& counterBoreHoles() const { return m_counterBoreHoles; }
    const List<ExcMfgFeatureCounterSinkHole>& counterSinkHoles() const { return m_counterSinkHoles; }
    const List<ExcMfgFeatureCounterDrillHole>& counterDrillHoles() const { return m_counterDrillHoles; }
    const List<ExcMfgFeatureInternalThread>& internalThreads() const { return m_internalThreads; }
    const List<ExcMfgFeatureExternalThread>& externalThreads() const { return m_externalThreads; }
    const List<ExcMfgFeatureUnclassified>& unclassifiedFeatures() const { return m_unclassifiedFeatures; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    bool m_hasData = false;
    List<ExcMfgFeatureSimpleHole> m_simpleHoles;
    List<ExcMfgFeatureTaperHole> m_taperHoles;
    List<ExcMfgFeatureCounterBoreHole> m_counterBoreHoles;
    List<ExcMfgFeatureCounterSinkHole> m_counterSinkHoles;
    List<ExcMfgFeatureCounterDrillHole> m_counterDrillHoles;
    List<ExcMfgFeatureInternalThread> m_internalThreads;
    List<ExcMfgFeatureExternalThread> m_externalThreads;
    List<ExcMfgFeatureUnclassified> m_unclassifiedFeatures;
};

} // namespace xch
