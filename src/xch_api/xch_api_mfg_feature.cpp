// Manufacturing features.
#include <xch_api/xch_api_mfg_feature.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

// ---- ExcMfgObject ----------------------------------------------------------------------

ExcMfgObject::ExcMfgObject() = default;
ExcMfgObject::~ExcMfgObject() = default;

void ExcMfgObject::addLinkedElement(const std::shared_ptr<ExcEntity>& element) {
    json::appendNonNull(m_linkedElements, element, "ExcMfgObject: attempt to add null Linked Element object.");
}

template <class Io, class Self>
void ExcMfgObject::members(Io& io, Self& self) {
    io(L"linked_elements", self.m_linkedElements, json::objectsOnly);
}

XCH_JSON_IO(ExcMfgObject)

// ---- ExcMfgFeature ----------------------------------------------------------------------

namespace {

// "pattern": the pattern's own object, or null when there is none; read
// through readPattern, JSON null reading as no pattern.
struct PatternOfFeature {
    bool write(JsonValue& v, JsonAllocator& a, const std::shared_ptr<ExcMfgPattern>& pattern) const {
        return json::newObject.write(v, a, pattern);
    }
    void read(const JsonValue& v, std::shared_ptr<ExcMfgPattern>& pattern) const {
        pattern = v.IsNull() ? nullptr : ExcMfgPattern::readPattern(v);
    }
};
constexpr PatternOfFeature patternOfFeature{};

} // namespace

ExcMfgFeature::ExcMfgFeature() = default;
ExcMfgFeature::~ExcMfgFeature() = default;

template <class Io, class Self>
void ExcMfgFeature::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"pattern", self.m_pattern, patternOfFeature);
}

XCH_JSON_IO_DERIVED(ExcMfgFeature, ExcMfgObject)

// ---- ExcMfgFeatureHole ----------------------------------------------------------------------

ExcMfgFeatureHole::ExcMfgFeatureHole() = default;
ExcMfgFeatureHole::~ExcMfgFeatureHole() = default;

void ExcMfgFeatureHole::addLimitingGeometry(const std::shared_ptr<ExcEntity>& entity) {
    json::appendNonNull(m_limitingGeometry, entity,
                        "ExcMfgFeatureHole: attempt to add null Limiting Geometry Entity object.");
}

void ExcMfgFeatureHole::addDefiningGeometry(const std::shared_ptr<ExcEntity>& entity) {
    json::appendNonNull(m_definingGeometry, entity,
                        "ExcMfgFeatureHole: attempt to add null Defining Geometry Entity object.");
}

template <class Io, class Self>
void ExcMfgFeatureHole::members(Io& io, Self& self) {
    io(L"limiting", self.m_limitingGeometry, json::objectsOnly);
    io(L"defining", self.m_definingGeometry, json::objectsOnly);
}

XCH_JSON_IO_DERIVED(ExcMfgFeatureHole, ExcMfgFeature)

// ---- ExcMfgFeatureHoleType<T> ----------------------------------------------------------------

template <class T>
ExcMfgFeatureHoleType<T>::ExcMfgFeatureHoleType() = default;
template <class T>
ExcMfgFeatureHoleType<T>::~ExcMfgFeatureHoleType() = default;

template <class T>
const std::shared_ptr<T>& ExcMfgFeatureHoleType<T>::holeData() const { return m_holeData; }
template <class T>
void ExcMfgFeatureHoleType<T>::setHoleData(const std::shared_ptr<T>& holeData) { m_holeData = holeData; }

template <class T>
template <class Io, class Self>
void ExcMfgFeatureHoleType<T>::members(Io& io, Self& self) {
    io(L"hole_data", self.m_holeData, json::newObject);
}

XCH_JSON_IO_DERIVED_AS(template <class T>, ExcMfgFeatureHoleType<T>, ExcMfgFeatureHole, "ExcMfgFeatureHoleType")

template class XCH_API_INSTANTIATION ExcMfgFeatureHoleType<ExcMfgSimpleHole>;
template class XCH_API_INSTANTIATION ExcMfgFeatureHoleType<ExcMfgTaperHole>;
template class XCH_API_INSTANTIATION ExcMfgFeatureHoleType<ExcMfgCounterBoreHole>;
template class XCH_API_INSTANTIATION ExcMfgFeatureHoleType<ExcMfgCounterSinkHole>;
template class XCH_API_INSTANTIATION ExcMfgFeatureHoleType<ExcMfgCounterDrillHole>;

// ---- thread features ----------------------------------------------------------------------------

ExcMfgFeatureThread::ExcMfgFeatureThread() = default;
ExcMfgFeatureThread::~ExcMfgFeatureThread() = default;

void ExcMfgFeatureThread::addSideFace(const std::shared_ptr<ExcEntity>& face) {
    json::appendNonNull(m_sideFaces, face, "ExcMfgFeatureThread: attempt to add null Side Face Entity object.");
}

void ExcMfgFeatureThread::addTopFace(const std::shared_ptr<ExcEntity>& face) {
    json::appendNonNull(m_topFaces, face, "ExcMfgFeatureThread: attempt to add null Top Face Entity object.");
}

void ExcMfgFeatureThread::addBottomFace(const std::shared_ptr<ExcEntity>& face) {
    json::appendNonNull(m_bottomFaces, face, "ExcMfgFeatureThread: attempt to add null Bottom Face Entity object.");
}

template <class Io, class Self>
void ExcMfgFeatureThread::members(Io& io, Self& self) {
    io(L"thread_data", self.m_thread, json::newObject);
    io(L"side_faces", self.m_sideFaces, json::objectsOnly);
    io(L"top_faces", self.m_topFaces, json::objectsOnly);
    io(L"bottom_faces", self.m_bottomFaces, json::objectsOnly);
}

XCH_JSON_IO_DERIVED(ExcMfgFeatureThread, ExcMfgFeature)

ExcMfgFeatureInternalThread::ExcMfgFeatureInternalThread() = default;
ExcMfgFeatureInternalThread::~ExcMfgFeatureInternalThread() = default;
ExcMfgFeatureExternalThread::ExcMfgFeatureExternalThread() = default;
ExcMfgFeatureExternalThread::~ExcMfgFeatureExternalThread() = default;
ExcMfgFeatureUnclassified::ExcMfgFeatureUnclassified() = default;
ExcMfgFeatureUnclassified::~ExcMfgFeatureUnclassified() = default;

} // namespace xch
