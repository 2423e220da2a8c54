// Datums (a datum feature symbol with its letter) and datum targets (a
// point, line or area of the part that a datum is established from).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <xch_api/xch_api_pmi_annotation.h>

namespace xch {

// JSON: the annotation keys (xch_api_pmi_annotation.h), then "label"
// (string), "target_ids" (array of strings; reading appends each string).
class XCH_API ExcPMIDatum : public ExcPMIAnnotation {
public:
    ExcPMIDatum();
    explicit ExcPMIDatum(const std::wstring& label);
    ExcPMIDatum(const ExcPMIDatum&);
    ExcPMIDatum& operator=(const ExcPMIDatum&);
    ~ExcPMIDatum() override;

    EPMIAnnotationType type() const override { return PMIDatum; }

    // The datum letter.
    const std::wstring& label() const { return m_label; }
    void setLabel(const std::wstring& label) { m_label = label; }
    // The ids of the datum targets that make up this datum.
    const std::vector<std::wstring>& targetIds() const { return m_targetIds; }
    void addTargetId(const std::wstring& id) { m_targetIds.push_back(id); }
    void setTargetIds(const std::vector<std::wstring>& ids) { m_targetIds = ids; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_label;
    std::vector<std::wstring> m_targetIds;
};

// JSON: the annotation keys, then "label", "target_type", "has_diameter",
// "upper_text", "lower_text", "target_zone" ([zonePoint1, zonePoint2], each
// an [x, y, z] array; each point is read only from an array). An unknown
// "target_type" string reads as AreaCircular.
class XCH_API ExcPMIDatumTarget : public ExcPMIAnnotation {
public:
    enum ETargetType : std::int32_t {
        Unknown = 0,          // "unknown"
        Point = 1,            // "point"
        Line = 2,             // "line"
        AreaCircular = 3,     // "area_circular"
        AreaRectangular = 4,  // "area_rectangular"
        AreaFace = 5,         // "area_face"
        Feature = 6,          // "feature"
        UserDefined = 7       // "user_defined"
    };

    ExcPMIDatumTarget();
    ExcPMIDatumTarget(const ExcPMIDatumTarget&);
    ExcPMIDatumTarget& operator=(const ExcPMIDatumTarget&);
    ~ExcPMIDatumTarget() override;

    EPMIAnnotationType type() const override { return PMIDatumTarget; }

    const std::wstring& label() const { return m_label; }
    void setLabel(const std::wstring& label) { m_label = label; }
    ETargetType targetType() const { return m_targetType; }
    void setTargetType(ETargetType targetType) { m_targetType = targetType; }
    bool hasDiameter() const { return m_hasDiameter; }
    void setHasDiameter(bool hasDiameter) { m_hasDiameter = hasDiameter; }
    const std::wstring& upperText() const { return m_upperText; }
    void setUpperText(const std::wstring& text) { m_upperText = text; }
    const std::wstring& lowerText() const { return m_lowerText; }
    void setLowerText(const std::wstring& text) { m_lowerText = text; }
    // The two points that span the target zone: a line's end points, a
    // rectangle's corners, a circle's centre and a point on its rim, as
    // the target type implies.
    const ExcVector3d& zonePoint1() const { return m_zone[0]; }
    void setZonePoint1(const ExcVector3d& point) { m_zone[0] = point; }
    const ExcVector3d& zonePoint2() const { return m_zone[1]; }
    void setZonePoint2(const ExcVector3d& point) { m_zone[1] = point; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_label;
    ETargetType m_targetType = Unknown;
    bool m_hasDiameter = false;
    std::wstring m_upperText;
    std::wstring m_lowerText;
    std::array<ExcVector3d, 2> m_zone;
};

template <> XCH_API const EnumTable<ExcPMIDatumTarget::ETargetType>& enumTable<ExcPMIDatumTarget::ETargetType>();

} // namespace xch
