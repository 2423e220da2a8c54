// Manufacturing features recognised in a part: holes of five kinds,
// internal and external threads and unclassified features, each with the
// entities that make it up and, when it repeats, its pattern.
//
// JSON: a derived class writes its base's keys first. Lists of entities
// append one new entity per object item (other items are skipped), nested
// data ("hole_data", "thread_data") is read into a new object only when it
// is an object, and a missing pointer is written as null. "pattern" is read
// through ExcMfgPattern::readPattern; a JSON null there (what a feature
// without a pattern writes) reads back as no pattern, without a message. A
// value that is not an object logs "<Class> object should have a JSON
// object type." at error level and changes nothing.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>
#include <xch_api/xch_api_mfg_hole.h>
#include <xch_api/xch_api_mfg_pattern.h>
#include <xch_api/xch_api_mfg_thread.h>

namespace xch {

using ExcEntityList = std::vector<std::shared_ptr<ExcEntity>>;

// What every manufacturing item has: the model entities it is linked to.
// JSON: "linked_elements".
class XCH_API ExcMfgObject : public IJsonObject {
public:
    ExcMfgObject();
    ~ExcMfgObject() override;

    const ExcEntityList& linkedElements() const { return m_linkedElements; }
    // A null element is not added (logged as a warning).
    void addLinkedElement(const std::shared_ptr<ExcEntity>& element);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcEntityList m_linkedElements;
};

// A named feature, possibly repeated in a pattern.
// JSON: "linked_elements", "name", "pattern".
class XCH_API ExcMfgFeature : public ExcMfgObject {
public:
    ExcMfgFeature();
    ~ExcMfgFeature() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    const std::shared_ptr<ExcMfgPattern>& pattern() const { return m_pattern; }
    void setPattern(const std::shared_ptr<ExcMfgPattern>& pattern) { m_pattern = pattern; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    std::shared_ptr<ExcMfgPattern> m_pattern;
};

// A hole feature: the faces that limit the hole and those that define it.
// JSON: the feature keys, then "limiting", "defining".
class XCH_API ExcMfgFeatureHole : public ExcMfgFeature {
public:
    ExcMfgFeatureHole();
    ~ExcMfgFeatureHole() override;

    const ExcEntityList& limitingGeometry() const { return m_limitingGeometry; }
    const ExcEntityList& definingGeometry() const { return m_definingGeometry; }
    // A null entity is not added (logged as a warning).
    void addLimitingGeometry(const std::shared_ptr<ExcEntity>& entity);
    void addDefiningGeometry(const std::shared_ptr<ExcEntity>& entity);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcEntityList m_limitingGeometry;
    ExcEntityList m_definingGeometry;
};

// A hole feature of one kind T (ExcMfgSimpleHole, ExcMfgTaperHole,
// ExcMfgCounterBoreHole, ExcMfgCounterSinkHole, ExcMfgCounterDrillHole).
// JSON: the hole feature keys, then "hole_data" (T's object). Not an object:
// "ExcMfgFeatureHoleType object should have a JSON object type." for every T.
template <class T>
class ExcMfgFeatureHoleType : public ExcMfgFeatureHole {
public:
    // Members are defined in the library (not inline), so that the exported
    // instantiations serve every module, also across a Windows DLL boundary.
    ExcMfgFeatureHoleType();
    ~ExcMfgFeatureHoleType() override;

    const std::shared_ptr<T>& holeData() const;
    void setHoleData(const std::shared_ptr<T>& holeData);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::shared_ptr<T> m_holeData;
};

extern template class XCH_API ExcMfgFeatureHoleType<ExcMfgSimpleHole>;
extern template class XCH_API ExcMfgFeatureHoleType<ExcMfgTaperHole>;
extern template class XCH_API ExcMfgFeatureHoleType<ExcMfgCounterBoreHole>;
extern template class XCH_API ExcMfgFeatureHoleType<ExcMfgCounterSinkHole>;
extern template class XCH_API ExcMfgFeatureHoleType<ExcMfgCounterDrillHole>;

using ExcMfgFeatureSimpleHole = ExcMfgFeatureHoleType<ExcMfgSimpleHole>;
using ExcMfgFeatureTaperHole = ExcMfgFeatureHoleType<ExcMfgTaperHole>;
using ExcMfgFeatureCounterBoreHole = ExcMfgFeatureHoleType<ExcMfgCounterBoreHole>;
using ExcMfgFeatureCounterSinkHole = ExcMfgFeatureHoleType<ExcMfgCounterSinkHole>;
using ExcMfgFeatureCounterDrillHole = ExcMfgFeatureHoleType<ExcMfgCounterDrillHole>;

// A thread feature: its thread data and the side, top and bottom faces.
// JSON: the feature keys, then "thread_data", "side_faces", "top_faces",
// "bottom_faces".
class XCH_API ExcMfgFeatureThread : public ExcMfgFeature {
public:
    ExcMfgFeatureThread();
    ~ExcMfgFeatureThread() override;

    const std::shared_ptr<ExcMfgThread>& thread() const { return m_thread; }
    void setThread(const std::shared_ptr<ExcMfgThread>& thread) { m_thread = thread; }
    const ExcEntityList& sideFaces() const { return m_sideFaces; }
    const ExcEntityList& topFaces() const { return m_topFaces; }
    const ExcEntityList& bottomFaces() const { return m_bottomFaces; }
    // A null face is not added (logged as a warning).
    void addSideFace(const std::shared_ptr<ExcEntity>& face);
    void addTopFace(const std::shared_ptr<ExcEntity>& face);
    void addBottomFace(const std::shared_ptr<ExcEntity>& face);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::shared_ptr<ExcMfgThread> m_thread;
    ExcEntityList m_sideFaces;
    ExcEntityList m_topFaces;
    ExcEntityList m_bottomFaces;
};

// A thread cut into a hole (the keys of ExcMfgFeatureThread).
class XCH_API ExcMfgFeatureInternalThread : public ExcMfgFeatureThread {
public:
    ExcMfgFeatureInternalThread();
    ~ExcMfgFeatureInternalThread() override;
};

// A thread on a shaft (the keys of ExcMfgFeatureThread).
class XCH_API ExcMfgFeatureExternalThread : public ExcMfgFeatureThread {
public:
    ExcMfgFeatureExternalThread();
    ~ExcMfgFeatureExternalThread() override;
};

// A feature recognised as such but of no known kind (the keys of
// ExcMfgFeature).
class XCH_API ExcMfgFeatureUnclassified : public ExcMfgFeature {
public:
    ExcMfgFeatureUnclassified();
    ~ExcMfgFeatureUnclassified() override;
};

} // namespace xch
