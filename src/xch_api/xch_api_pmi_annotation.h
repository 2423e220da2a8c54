// The common base of product and manufacturing information (PMI): what
// every PMI item has (ExcPMIObject: name, id, hidden), the decorative text
// block of frames and dimensions (ExcPMIText), leader lines (ExcPMILeader)
// and the annotation base class (ExcPMIAnnotation) from which every
// annotation kind derives (notes, datums, datum targets, GD&T frames,
// dimensions, roughness symbols).
//
// JSON rules shared by every PMI class: a derived class writes its base's
// keys first, then its own; every key is always written. Reading is
// lenient: every key is optional, a member of the wrong JSON kind leaves
// its field unchanged, numbers are taken from any JSON number, lists of
// nested objects append one new object per object element (others are
// skipped), and an enumeration string outside its table reads as the value
// of the table's smallest string (writing a value outside it gives the
// table's first string). A value that is not an object logs "<Class>
// object should have a JSON object type." at error level and changes
// nothing. Nothing here throws.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// The kind of an annotation, as ExcPMIAnnotation::type() reports it. JSON
// carries the string in the comment; an unknown string reads as PMIGDT
// ("GDT" is the table's smallest string), a value outside the table writes
// as "unknown". Flag notes and notes-on-annotation report PMINote; the
// values PMIFlagNote and PMINOA exist in the table only.
enum EPMIAnnotationType : std::int32_t {
    PMIUnknown = 0,      // "unknown"
    PMIDatum = 1,        // "datum"
    PMIDatumTarget = 2,  // "datum_target"
    PMINote = 3,         // "note"
    PMIFlagNote = 4,     // "flag_note"
    PMINOA = 5,          // "NOA"
    PMIRoughness = 6,    // "roughness"
    PMIGDT = 7,          // "GDT"
    PMIDimension = 8     // "dimension"
};

template <> XCH_API const EnumTable<EPMIAnnotationType>& enumTable<EPMIAnnotationType>();

using ExcEntityList = std::vector<std::shared_ptr<ExcEntity>>;

// What every PMI item has. Only derived classes are built.
// JSON: "name", "id", "hidden".
class XCH_API ExcPMIObject : public IJsonObject {
public:
    ~ExcPMIObject() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    // The identifier by which views index annotations and captures list
    // the annotations they show.
    const std::wstring& id() const { return m_id; }
    void setId(const std::wstring& id) { m_id = id; }
    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden) { m_hidden = hidden; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

protected:
    ExcPMIObject();
    ExcPMIObject(const ExcPMIObject&);
    ExcPMIObject& operator=(const ExcPMIObject&);

private:
    std::wstring m_name;
    std::wstring m_id;
    bool m_hidden = false;
};

// The text around a tolerance frame, datum reference or dimension value.
// JSON: "text_after", "text_before", "text_below", "text_lower",
// "text_prefix", "text_suffix", "text_upper" (strings).
class XCH_API ExcPMIText : public IJsonObject {
public:
    ExcPMIText();
    ExcPMIText(const ExcPMIText&);
    ExcPMIText& operator=(const ExcPMIText&);
    ~ExcPMIText() override;

    const std::wstring& textAfter() const { return m_textAfter; }
    void setTextAfter(const std::wstring& text) { m_textAfter = text; }
    const std::wstring& textBefore() const { return m_textBefore; }
    void setTextBefore(const std::wstring& text) { m_textBefore = text; }
    const std::wstring& textBelow() const { return m_textBelow; }
    void setTextBelow(const std::wstring& text) { m_textBelow = text; }
    const std::wstring& textLower() const { return m_textLower; }
    void setTextLower(const std::wstring& text) { m_textLower = text; }
    const std::wstring& textPrefix() const { return m_textPrefix; }
    void setTextPrefix(const std::wstring& text) { m_textPrefix = text; }
    const std::wstring& textSuffix() const { return m_textSuffix; }
    void setTextSuffix(const std::wstring& text) { m_textSuffix = text; }
    const std::wstring& textUpper() const { return m_textUpper; }
    void setTextUpper(const std::wstring& text) { m_textUpper = text; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_textAfter;
    std::wstring m_textBefore;
    std::wstring m_textBelow;
    std::wstring m_textLower;
    std::wstring m_textPrefix;
    std::wstring m_textSuffix;
    std::wstring m_textUpper;
};

// A leader line: a polyline in the annotation plane, from the annotation
// to what it points at. JSON: "points" (array of [x, y] arrays; reading
// appends each array element and skips the others).
class XCH_API ExcPMILeader : public IJsonObject {
public:
    ExcPMILeader();
    ExcPMILeader(const ExcPMILeader&);
    ExcPMILeader& operator=(const ExcPMILeader&);
    ~ExcPMILeader() override;

    const std::vector<ExcVector2d>& points() const { return m_points; }
    // Replaces the polyline.
    void setPoints(const std::vector<ExcVector2d>& points) { m_points = points; }
    // Appends one point.
    void addPoint(const ExcVector2d& point) { m_points.push_back(point); }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<ExcVector2d> m_points;
};

// An annotation placed in an annotation plane, attached to model entities,
// with leader lines. Each kind reports itself through type().
//
// JSON: the ExcPMIObject keys, then "type" (the string of type(); written
// only, never read: the reader knows the kind from where the object
// stands), "orientation", "angle", "z_depth", "position" ([x, y], read only
// from an array), "linked_elements" (entity objects), "leaders" (leader
// objects). An unknown "orientation" string reads as DimAngle.
class XCH_API ExcPMIAnnotation : public ExcPMIObject {
public:
    // How the annotation's text runs.
    enum EOrientation : std::int32_t {
        Horizontal = 0,     // "horizontal"
        Vertical = 1,       // "vertical"
        Parallel = 2,       // "parallel"
        Perpendicular = 3,  // "perpendicular"
        DimAngle = 4        // "dim_angle"
    };

    ~ExcPMIAnnotation() override;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    virtual EPMIAnnotationType type() const = 0;

    // Position in the annotation plane.
    const ExcVector2d& position() const { return m_position; }
    void setPosition(const ExcVector2d& position) { m_position = position; }
    EOrientation orientation() const { return m_orientation; }
    void setOrientation(EOrientation orientation) { m_orientation = orientation; }
    double angle() const { return m_angle; }
    void setAngle(double angle) { m_angle = angle; }
    double zDepth() const { return m_zDepth; }
    void setZDepth(double zDepth) { m_zDepth = zDepth; }

    // The model entities the annotation is attached to. The adders skip a
    // null element with the warning "ExcPMIAnnotation: attempt to add null
    // linked element"; setLinkedElements takes the list as given.
    const ExcEntityList& linkedElements() const { return m_linkedElements; }
    void addLinkedElement(const std::shared_ptr<ExcEntity>& element);
    void addLinkedElements(const ExcEntityList& elements);
    void setLinkedElements(const ExcEntityList& elements) { m_linkedElements = elements; }

    // Leader lines. The adders skip a null leader with the warning
    // "ExcPMIAnnotation: attempt to add null PMI leader."; setLeaders takes
    // the list as given.
    const std::vector<std::shared_ptr<ExcPMILeader>>& leaders() const { return m_leaders; }
    void addLeader(const std::shared_ptr<ExcPMILeader>& leader);
    void addLeaders(const std::vector<std::shared_ptr<ExcPMILeader>>& leaders);
    void setLeaders(const std::vector<std::shared_ptr<ExcPMILeader>>& leaders) { m_leaders = leaders; }

    template <class Io, class Self>
    static void members(Io& io, Self& self);

protected:
    ExcPMIAnnotation();
    ExcPMIAnnotation(const ExcPMIAnnotation&);
    ExcPMIAnnotation& operator=(const ExcPMIAnnotation&);

private:
    ExcVector2d m_position;
    EOrientation m_orientation = Horizontal;
    double m_angle = 0.0;
    double m_zDepth = 0.0;
    ExcEntityList m_linkedElements;
    std::vector<std::shared_ptr<ExcPMILeader>> m_leaders;
};

template <> XCH_API const EnumTable<ExcPMIAnnotation::EOrientation>& enumTable<ExcPMIAnnotation::EOrientation>();

} // namespace xch
