// Annotation sets (the views and captures of one block under one drafting
// standard) and the PMI data (the list of annotation sets) that the
// mechanical data objects carry under "pmi_data".
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_pmi_view.h>

namespace xch {

// JSON: "block_id" (number), "name", "hidden", "standart" (the drafting
// standard's name; the key is spelt so), "annotation_views" (array of
// ExcPMIAnnotationView objects), "captures" (array of ExcPMICapture
// objects), "constructed_geometry" (array of entity objects). "block_id"
// is read only from an unsigned 64-bit integer; the lists append one new
// object per object element.
class XCH_API ExcPMIAnnotationSet : public IJsonObject {
public:
    ExcPMIAnnotationSet();
    explicit ExcPMIAnnotationSet(std::uint64_t blockId);
    ExcPMIAnnotationSet(const ExcPMIAnnotationSet&);
    ExcPMIAnnotationSet& operator=(const ExcPMIAnnotationSet&);
    ~ExcPMIAnnotationSet() override;

    // The id of the block (product structure) the set belongs to.
    std::uint64_t blockId() const { return m_blockId; }
    void setBlockId(std::uint64_t blockId) { m_blockId = blockId; }
    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden) { m_hidden = hidden; }
    // The drafting standard (e.g. "ASME Y14.5-2009").
    const std::wstring& standart() const { return m_standart; }
    void setStandart(const std::wstring& standart) { m_standart = standart; }

    // The adders skip a null element with a warning ("ExcPMIAnnotationSet:
    // attempt to add null View object.", "... null Capture object.",
    // "... null Constructed Geometry Entity object.").
    const std::vector<std::shared_ptr<ExcPMIAnnotationView>>& views() const { return m_views; }
    void addView(const std::shared_ptr<ExcPMIAnnotationView>& view);
    const std::vector<std::shared_ptr<ExcPMICapture>>& captures() const { return m_captures; }
    void addCapture(const std::shared_ptr<ExcPMICapture>& capture);
    const ExcEntityList& constructedGeometry() const { return m_constructedGeometry; }
    void addConstructedGeometry(const std::shared_ptr<ExcEntity>& entity);

    // A value that is not an object logs "ExcPMIAnnotationSet object
    // should have a JSON object type." at error level and changes nothing.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::uint64_t m_blockId = 0;
    std::wstring m_name;
    bool m_hidden = false;
    std::wstring m_standart;
    std::vector<std::shared_ptr<ExcPMIAnnotationView>> m_views;
    std::vector<std::shared_ptr<ExcPMICapture>> m_captures;
    ExcEntityList m_constructedGeometry;
};

// The PMI of a model or a block: its annotation sets, in order.
//
// JSON: an array of ExcPMIAnnotationSet objects; reading appends one new
// set per object element and skips the others. A value that is not an
// array logs "ExcPMIData object should have a JSON array type." at error
// level and changes nothing. Copies share the sets.
class XCH_API ExcPMIData : public IJsonObject {
public:
    using List = std::vector<std::shared_ptr<ExcPMIAnnotationSet>>;

    ExcPMIData();
    ExcPMIData(const ExcPMIData&);
    ExcPMIData& operator=(const ExcPMIData&);
    ~ExcPMIData() override;

    const List& annotationSets() const { return m_annotationSets; }
    // A null set is not added ("ExcPMIData: attempt to add null PMI
    // Annotation Set object." as a warning).
    void addAnnotationSet(const std::shared_ptr<ExcPMIAnnotationSet>& set);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

private:
    List m_annotationSets;
};

} // namespace xch
