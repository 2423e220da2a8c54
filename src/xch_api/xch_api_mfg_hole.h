// Hole data of manufacturing features: what every hole has (ExcMfgHole)
// and the five kinds (simple, taper, counterbore, countersink,
// counterdrill) with their own dimensions.
//
// Numbers are read from any JSON number, "center" and "direction" only as
// vector arrays, "hole_thread" into a new ExcMfgHoleThread only when it is
// an object (a missing thread is written as null). A value that is not an
// object logs "<Class> object should have a JSON object type." at error
// level and changes nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>
#include <xch_api/xch_api_mfg_thread.h>

namespace xch {

// JSON: "name", "primary_diameter", "primary_diameter_max_tol",
// "primary_diameter_min_tol", "primary_depth", "tip_angle_degrees",
// "bottom_limit_extent_type", "center", "direction", "hole_thread".
class XCH_API ExcMfgHole : public IJsonObject {
public:
    // How far the hole goes; an unknown string reads as Blind.
    enum EBottomLimitExtentType : std::int32_t {
        ExtentUnknown = 0,  // "unknown"
        Blind,              // "blind"
        UpToLast,           // "up_to_last"
        UpToPlane,          // "up_to_plane"
        UpToSurface,        // "up_to_surface"
        UpToNext            // "up_to_next"
    };

    ExcMfgHole();
    ~ExcMfgHole() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    double primaryDiameter() const { return m_primaryDiameter; }
    void setPrimaryDiameter(double diameter) { m_primaryDiameter = diameter; }
    double primaryDiameterMaxTol() const { return m_primaryDiameterMaxTol; }
    void setPrimaryDiameterMaxTol(double tolerance) { m_primaryDiameterMaxTol = tolerance; }
    double primaryDiameterMinTol() const { return m_primaryDiameterMinTol; }
    void setPrimaryDiameterMinTol(double tolerance) { m_primaryDiameterMinTol = tolerance; }
    double primaryDepth() const { return m_primaryDepth; }
    void setPrimaryDepth(double depth) { m_primaryDepth = depth; }
    double tipAngleDegrees() const { return m_tipAngleDegrees; }
    void setTipAngleDegrees(double angle) { m_tipAngleDegrees = angle; }
    EBottomLimitExtentType bottomLimitExtentType() const { return m_bottomLimitExtentType; }
    void setBottomLimitExtentType(EBottomLimitExtentType type) { m_bottomLimitExtentType = type; }
    const ExcVector3d& center() const { return m_center; }
    void setCenter(const ExcVector3d& center) { m_center = center; }
    const ExcVector3d& direction() const { return m_direction; }
    void setDirection(const ExcVector3d& direction) { m_direction = direction; }
    const std::shared_ptr<ExcMfgHoleThread>& holeThread() const { return m_holeThread; }
    void setHoleThread(const std::shared_ptr<ExcMfgHoleThread>& thread) { m_holeThread = thread; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    double m_primaryDiameter = 0.0;
    double m_primaryDiameterMaxTol = 0.0;
    double m_primaryDiameterMinTol = 0.0;
    double m_primaryDepth = 0.0;
    double m_tipAngleDegrees = 0.0;
    EBottomLimitExtentType m_bottomLimitExtentType = ExtentUnknown;
    ExcVector3d m_center;
    ExcVector3d m_direction;
    std::shared_ptr<ExcMfgHoleThread> m_holeThread;
};

template <> XCH_API const EnumTable<ExcMfgHole::EBottomLimitExtentType>&
enumTable<ExcMfgHole::EBottomLimitExtentType>();

// A plain drilled hole: the keys of ExcMfgHole only.
class XCH_API ExcMfgSimpleHole : public ExcMfgHole {
public:
    ExcMfgSimpleHole();
    ~ExcMfgSimpleHole() override;
};

// A tapered hole. JSON: the hole keys, then "angle".
class XCH_API ExcMfgTaperHole : public ExcMfgHole {
public:
    ExcMfgTaperHole();
    ~ExcMfgTaperHole() override;

    double angle() const { return m_angle; }
    void setAngle(double angle) { m_angle = angle; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    double m_angle = 0.0;
};

// The diameter and its tolerances of the widened part of a counterbore,
// countersink or counterdrill hole (JSON "diameter", "max_tol", "min_tol").
class XCH_API ExcMfgCounterDiameter {
public:
    double diameter() const { return m_diameter; }
    void setDiameter(double diameter) { m_diameter = diameter; }
    double maximumTolerance() const { return m_maximumTolerance; }
    void setMaximumTolerance(double tolerance) { m_maximumTolerance = tolerance; }
    double minimumTolerance() const { return m_minimumTolerance; }
    void setMinimumTolerance(double tolerance) { m_minimumTolerance = tolerance; }

protected:
    template <class Io, class Self>
    static void counterMembers(Io& io, Self& self);

private:
    double m_diameter = 0.0;
    double m_maximumTolerance = 0.0;
    double m_minimumTolerance = 0.0;
};

// A counterbored hole. JSON: the hole keys, then "diameter", "max_tol",
// "min_tol", "depth" of the counterbore.
class XCH_API ExcMfgCounterBoreHole : public ExcMfgHole, public ExcMfgCounterDiameter {
public:
    ExcMfgCounterBoreHole();
    ~ExcMfgCounterBoreHole() override;

    double depth() const { return m_depth; }
    void setDepth(double depth) { m_depth = depth; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    double m_depth = 0.0;
};

// A countersunk hole. JSON: the hole keys, then "diameter", "max_tol",
// "min_tol", "angle" of the countersink.
class XCH_API ExcMfgCounterSinkHole : public ExcMfgHole, public ExcMfgCounterDiameter {
public:
    ExcMfgCounterSinkHole();
    ~ExcMfgCounterSinkHole() override;

    double angle() const { return m_angle; }
    void setAngle(double angle) { m_angle = angle; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    double m_angle = 0.0;
};

// A counterdrilled hole. JSON: the hole keys, then "diameter", "max_tol",
// "min_tol", "depth", "sink_diameter", "angle".
class XCH_API ExcMfgCounterDrillHole : public ExcMfgHole, public ExcMfgCounterDiameter {
public:
    ExcMfgCounterDrillHole();
    ~ExcMfgCounterDrillHole() override;

    double depth() const { return m_depth; }
    void setDepth(double depth) { m_depth = depth; }
    double sinkDiameter() const { return m_sinkDiameter; }
    void setSinkDiameter(double diameter) { m_sinkDiameter = diameter; }
    double angle() const { return m_angle; }
    void setAngle(double angle) { m_angle = angle; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    double m_depth = 0.0;
    double m_sinkDiameter = 0.0;
    double m_angle = 0.0;
};

} // namespace xch
