// Thread data of manufacturing features: the dimensions and designation
// shared by every thread (ExcMfgThreading), the data of a thread feature
// (ExcMfgThread) and the thread of a hole (ExcMfgHoleThread).
//
// Numbers are read from any JSON number; an enumeration string outside its
// table reads as the value of the table's smallest string (given per
// enumeration below). A value that is not an object logs "<Class> object
// should have a JSON object type." at error level and changes nothing.
#pragma once

#include <cstdint>
#include <string>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// JSON: "diameter", "depth", "pitch", "orientation", "designation",
// "designation_system_type".
class XCH_API ExcMfgThreading : public IJsonObject {
public:
    // The hand of the thread; an unknown string reads as LeftHanded.
    enum EOrientation : std::int32_t {
        OrientationUnknown = 0,  // "unknown"
        RightHanded,             // "right_handed"
        LeftHanded               // "left_handed"
    };
    // The standard the designation belongs to; an unknown string reads as
    // American.
    enum EDesignationSystemType : std::int32_t {
        DesignationUnknown = 0,  // "unknown"
        Metric,                  // "metric"
        American,                // "american"
        British                  // "british"
    };

    ExcMfgThreading();
    ~ExcMfgThreading() override;

    double diameter() const { return m_diameter; }
    void setDiameter(double diameter) { m_diameter = diameter; }
    double depth() const { return m_depth; }
    void setDepth(double depth) { m_depth = depth; }
    double pitch() const { return m_pitch; }
    void setPitch(double pitch) { m_pitch = pitch; }
    EOrientation orientation() const { return m_orientation; }
    void setOrientation(EOrientation orientation) { m_orientation = orientation; }
    // The thread's designation text (for example "M6x1").
    const std::wstring& designation() const { return m_designation; }
    void setDesignation(const std::wstring& designation) { m_designation = designation; }
    EDesignationSystemType designationSystemType() const { return m_designationSystemType; }
    void setDesignationSystemType(EDesignationSystemType type) { m_designationSystemType = type; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    double m_diameter = 0.0;
    double m_depth = 0.0;
    double m_pitch = 0.0;
    EOrientation m_orientation = OrientationUnknown;
    std::wstring m_designation;
    EDesignationSystemType m_designationSystemType = DesignationUnknown;
};

// The thread of a thread feature. JSON: the threading keys, then
// "support_diameter", "support_depth", "bottom_type" (an unknown string
// reads as Dimension).
class XCH_API ExcMfgThread : public ExcMfgThreading {
public:
    // How the thread's end is defined.
    enum EBottomType : std::int32_t {
        BottomUnknown = 0,  // "unknown"
        Dimension,          // "dimension"
        SupportDepth,       // "support_depth"
        SupportUpToPlane    // "support_up_to_plane"
    };

    ExcMfgThread();
    ~ExcMfgThread() override;

    double supportDiameter() const { return m_supportDiameter; }
    void setSupportDiameter(double diameter) { m_supportDiameter = diameter; }
    double supportDepth() const { return m_supportDepth; }
    void setSupportDepth(double depth) { m_supportDepth = depth; }
    EBottomType bottomType() const { return m_bottomType; }
    void setBottomType(EBottomType type) { m_bottomType = type; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    double m_supportDiameter = 0.0;
    double m_supportDepth = 0.0;
    EBottomType m_bottomType = BottomUnknown;
};

// The thread of a hole. JSON: the threading keys, then "standart" (the
// thread standard; the key is spelt so), "min_tol", "max_tol".
class XCH_API ExcMfgHoleThread : public ExcMfgThreading {
public:
    ExcMfgHoleThread();
    ~ExcMfgHoleThread() override;

    const std::wstring& standard() const { return m_standard; }
    void setStandard(const std::wstring& standard) { m_standard = standard; }
    double minTol() const { return m_minTol; }
    void setMinTol(double tolerance) { m_minTol = tolerance; }
    double maxTol() const { return m_maxTol; }
    void setMaxTol(double tolerance) { m_maxTol = tolerance; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_standard;
    double m_minTol = 0.0;
    double m_maxTol = 0.0;
};

template <> XCH_API const EnumTable<ExcMfgThreading::EOrientation>& enumTable<ExcMfgThreading::EOrientation>();
template <> XCH_API const EnumTable<ExcMfgThreading::EDesignationSystemType>&
enumTable<ExcMfgThreading::EDesignationSystemType>();
template <> XCH_API const EnumTable<ExcMfgThread::EBottomType>& enumTable<ExcMfgThread::EBottomType>();

} // namespace xch
