// Patterns in which a manufacturing feature repeats: rectangular (rows and
// columns), circular (around an axis, in rings) and user-defined (a list of
// positions). A feature holds its pattern by pointer; ExcMfgPattern::
// readPattern makes the right kind from the JSON "type".
//
// JSON: "type" (from the concrete class) first, then the keys of the kind.
// Numbers are read from any JSON number except the instance counts, which
// take 32-bit integers; vectors only as arrays; "base_instance" into a new
// Instance when it is an object (a missing one is written as null). A value
// that is not an object logs "<Class> object should have a JSON object
// type." at error level and changes nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

class XCH_API ExcMfgPattern : public IJsonObject {
public:
    enum EType : std::int32_t {
        Unknown = 0,     // "unknown"
        None,            // "none"
        Rectangular,     // "rectangular"
        Circular,        // "circular"
        UserDefined      // "user_defined"
    };

    // One occurrence of the patterned feature: whether it is the base
    // (modelled) one, and the geometry that limits and defines it.
    // JSON: "is_base", "limiting", "defining" (entity objects; reading
    // appends).
    class XCH_API Instance : public IJsonObject {
    public:
        Instance();
        ~Instance() override;

        bool isBase() const { return m_isBase; }
        void setBase(bool isBase) { m_isBase = isBase; }
        const std::vector<std::shared_ptr<ExcEntity>>& limiting() const { return m_limiting; }
        const std::vector<std::shared_ptr<ExcEntity>>& defining() const { return m_defining; }
        // A null entity is not added (logged as a warning).
        void addLimiting(const std::shared_ptr<ExcEntity>& entity);
        void addDefining(const std::shared_ptr<ExcEntity>& entity);

        void readObject(const JsonValue& value) override;
        void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

        template <class Io, class Self>
        static void members(Io& io, Self& self);

    private:
        bool m_isBase = false;
        std::vector<std::shared_ptr<ExcEntity>> m_limiting;
        std::vector<std::shared_ptr<ExcEntity>> m_defining;
    };

    ~ExcMfgPattern() override;

    // The kind, written as "type".
    virtual EType type() const = 0;

    // The point the pattern is laid out from.
    const ExcVector3d& anchorPoint() const { return m_anchorPoint; }
    void setAnchorPoint(const ExcVector3d& point) { m_anchorPoint = point; }
    const std::shared_ptr<Instance>& baseInstance() const { return m_baseInstance; }
    void setBaseInstance(const std::shared_ptr<Instance>& instance) { m_baseInstance = instance; }

    // Writes "type" only: the kind is chosen by readPattern, never read.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    // A new pattern of the kind named by the value's "type", read from the
    // value; null (with a message at error level) when the value is not an
    // object ("ExcMfgPattern object should have a JSON object type."), has
    // no string "type" ("ExcMfgPattern should have a type.") or names no
    // concrete kind, "none" and "unknown" included ("ExcMfgPattern: unknown
    // type.").
    static std::shared_ptr<ExcMfgPattern> readPattern(const JsonValue& value);

    template <class Io, class Self>
    static void members(Io& io, Self& self);

protected:
    ExcMfgPattern();
    ExcMfgPattern(const ExcMfgPattern&);
    ExcMfgPattern& operator=(const ExcMfgPattern&);

    ExcVector3d m_anchorPoint;
    std::shared_ptr<Instance> m_baseInstance;
};

template <> XCH_API const EnumTable<ExcMfgPattern::EType>& enumTable<ExcMfgPattern::EType>();

// The instances of a rectangular or circular pattern that are shown and
// those that are switched off, each named by its pair of indices (primary
// and secondary for a rectangular pattern, axial and radial for a circular
// one; JSON [first, second]), and whether the pattern is simplified. On
// reading, an item that is not an array of exactly two integers is skipped
// with a warning naming the class and the key.
class XCH_API ExcMfgPatternIndexedInstances {
public:
    using Index = std::pair<std::int32_t, std::int32_t>;

    bool isSimplified() const { return m_simplified; }
    void setSimplified(bool simplified) { m_simplified = simplified; }
    const std::vector<Index>& visibleInstances() const { return m_visibleInstances; }
    void addVisibleInstance(const Index& index) { m_visibleInstances.push_back(index); }
    const std::vector<Index>& deactivatedInstances() const { return m_deactivatedInstances; }
    void addDeactivatedInstance(const Index& index) { m_deactivatedInstances.push_back(index); }

protected:
    bool m_simplified = false;
    std::vector<Index> m_visibleInstances;
    std::vector<Index> m_deactivatedInstances;
};

// Rows and columns along two directions. JSON: "type": "rectangular",
// "anchor_point", "align_primary_dir", "align_secondary_dir",
// "primary_inst_count", "secondary_inst_count", "primary_spacing",
// "secondary_spacing", "base_instance", "simplified", "visible_instances",
// "deactivated_instances".
class XCH_API ExcMfgPatternRectangular : public ExcMfgPattern, public ExcMfgPatternIndexedInstances {
public:
    ExcMfgPatternRectangular();
    ~ExcMfgPatternRectangular() override;

    EType type() const override { return Rectangular; }

    const ExcVector3d& alignPrimaryDir() const { return m_alignPrimaryDir; }
    void setAlignPrimaryDir(const ExcVector3d& direction) { m_alignPrimaryDir = direction; }
    const ExcVector3d& alignSecondaryDir() const { return m_alignSecondaryDir; }
    void setAlignSecondaryDir(const ExcVector3d& direction) { m_alignSecondaryDir = direction; }
    std::int32_t primaryInstCount() const { return m_primaryInstCount; }
    void setPrimaryInstCount(std::int32_t count) { m_primaryInstCount = count; }
    std::int32_t secondaryInstCount() const { return m_secondaryInstCount; }
    void setSecondaryInstCount(std::int32_t count) { m_secondaryInstCount = count; }
    double primarySpacing() const { return m_primarySpacing; }
    void setPrimarySpacing(double spacing) { m_primarySpacing = spacing; }
    double secondarySpacing() const { return m_secondarySpacing; }
    void setSecondarySpacing(double spacing) { m_secondarySpacing = spacing; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcVector3d m_alignPrimaryDir;
    ExcVector3d m_alignSecondaryDir;
    std::int32_t m_primaryInstCount = 0;
    std::int32_t m_secondaryInstCount = 0;
    double m_primarySpacing = 0.0;
    double m_secondarySpacing = 0.0;
};

// Instances around an axis (axial) and in rings (radial). JSON: "type":
// "circular", "anchor_point", "center_of_rotation", "axis_of_rotation",
// "axial_inst_count", "radial_inst_count", "axial_dist_degrees",
// "radial_dist", "fixed_rot_orient", "base_instance", "simplified",
// "visible_instances", "deactivated_instances".
class XCH_API ExcMfgPatternCircular : public ExcMfgPattern, public ExcMfgPatternIndexedInstances {
public:
    ExcMfgPatternCircular();
    ~ExcMfgPatternCircular() override;

    EType type() const override { return Circular; }

    const ExcVector3d& centerOfRotation() const { return m_centerOfRotation; }
    void setCenterOfRotation(const ExcVector3d& center) { m_centerOfRotation = center; }
    const ExcVector3d& axisOfRotation() const { return m_axisOfRotation; }
    void setAxisOfRotation(const ExcVector3d& axis) { m_axisOfRotation = axis; }
    std::int32_t axialInstCount() const { return m_axialInstCount; }
    void setAxialInstCount(std::int32_t count) { m_axialInstCount = count; }
    std::int32_t radialInstCount() const { return m_radialInstCount; }
    void setRadialInstCount(std::int32_t count) { m_radialInstCount = count; }
    double axialDistDegrees() const { return m_axialDistDegrees; }
    void setAxialDistDegrees(double degrees) { m_axialDistDegrees = degrees; }
    double radialDist() const { return m_radialDist; }
    void setRadialDist(double distance) { m_radialDist = distance; }
    // Whether every instance keeps the base instance's orientation instead
    // of turning with the rotation.
    bool fixedRotOrient() const { return m_fixedRotOrient; }
    void setFixedRotOrient(bool fixed) { m_fixedRotOrient = fixed; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcVector3d m_centerOfRotation;
    ExcVector3d m_axisOfRotation;
    std::int32_t m_axialInstCount = 0;
    std::int32_t m_radialInstCount = 0;
    double m_axialDistDegrees = 0.0;
    double m_radialDist = 0.0;
    bool m_fixedRotOrient = false;
};

// Instances at listed positions. JSON: "type": "user_defined",
// "anchor_point", "base_instance", "instance_positions",
// "deactivated_positions" (arrays of vector arrays; reading appends and
// skips items that are not arrays).
class XCH_API ExcMfgPatternUserDefined : public ExcMfgPattern {
public:
    ExcMfgPatternUserDefined();
    ~ExcMfgPatternUserDefined() override;

    EType type() const override { return UserDefined; }

    const std::vector<ExcVector3d>& instancePositions() const { return m_instancePositions; }
    void addInstancePosition(const ExcVector3d& position) { m_instancePositions.push_back(position); }
    const std::vector<ExcVector3d>& deactivatedPositions() const { return m_deactivatedPositions; }
    void addDeactivatedPosition(const ExcVector3d& position) { m_deactivatedPositions.push_back(position); }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<ExcVector3d> m_instancePositions;
    std::vector<ExcVector3d> m_deactivatedPositions;
};

} // namespace xch
