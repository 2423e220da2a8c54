// Common value types of the exchange model.
//
// The small classes every geometric or graphical exchange object embeds
// (vectors, a 3x3 matrix, an affine transformation, a colour), the unit and
// orientation enumerations with their one string form, the length
// conversion factor and ExcUnitComponent<T>, the "dimension + unit" pair a
// quantity carries. None of them is a top-level object: an owner writes
// each one as the value of one of its own keys.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// ---- unit and orientation enumerations -------------------------------------
//
// The numbers are stored in objects and index the length conversion table;
// in JSON every value travels as its lower-case string. Reading a string
// that is not in a table gives the value of the table's smallest string
// (e.g. "centimeter" for lengths), not "unknown"; time units differ: an
// unknown string reads as TimeHour ("day" itself still reads as TimeDay).

enum ELengthUnitType : std::int32_t {
    LengthUnknown = 0,  // "unknown"
    LengthModelUnit,    // "model_unit"
    LengthNanometer,    // "nanometer"
    LengthMicrometer,   // "micrometer"
    LengthMillimeter,   // "millimeter"
    LengthCentimeter,   // "centimeter"
    LengthDecimeter,    // "decimeter"
    LengthMeter,        // "meter"
    LengthInch,         // "inch"
    LengthFoot,         // "foot"
    LengthMile,         // "mile"
    LengthKilometer,    // "kilometer"
    LengthMilliinch,    // "milliinch"
    LengthMicroinch     // "microinch"
};

// Value 2 is deliberately unused: it has no string and writes as "unknown".
enum EMassUnitType : std::int32_t {
    MassUnknown = 0,    // "unknown"
    MassModelUnit = 1,  // "model_unit"
    MassCentigram = 3,  // "centigram"
    MassDecigram,       // "decigram"
    MassGram,           // "gram"
    MassKilogram,       // "kilogram"
    MassPoundMass,      // "poind_mass" (the wire string is spelt so)
    MassTonne,          // "tonne"
    MassSlug,           // "slug"
    MassLbfSec2In       // "lbfsec2_in"
};

enum ETimeUnitType : std::int32_t {
    TimeUnknown = 0,    // "unknown"
    TimeModelUnit,      // "model_unit"
    TimeNanosecond,     // "nanosecond"
    TimeMicrosecond,    // "microsecond"
    TimeMillisecond,    // "millisecond"
    TimeSecond,         // "second"
    TimeMinute,         // "minute"
    TimeHour,           // "hour"
    TimeDay             // "day"
};

enum ETemperatureUnitType : std::int32_t {
    TemperatureUnknown = 0,   // "unknown"
    TemperatureModelUnit,     // "model_unit"
    TemperatureFahrenheit,    // "fahrenheit"
    TemperatureCelsius,       // "celsius"
    TemperatureKelvin         // "kelvin"
};

// The world's "up" axis.
enum EWorldOrientation : std::int32_t {
    OrientationUnknown = 0,   // "unknown"
    OrientationUpX,           // "up_x"
    OrientationUpY,           // "up_y"
    OrientationUpZ            // "up_z"
};

template <> XCH_API const EnumTable<ELengthUnitType>& enumTable<ELengthUnitType>();
template <> XCH_API const EnumTable<EMassUnitType>& enumTable<EMassUnitType>();
template <> XCH_API const EnumTable<ETimeUnitType>& enumTable<ETimeUnitType>();
template <> XCH_API const EnumTable<ETemperatureUnitType>& enumTable<ETemperatureUnitType>();
template <> XCH_API const EnumTable<EWorldOrientation>& enumTable<EWorldOrientation>();

// The factor by which a length expressed in `from` is multiplied to express
// it in `to`. Metric units convert through metres, imperial ones through
// inches; "unknown" and "model_unit" count as inches.
XCH_API double unitsScale(ELengthUnitType from, ELengthUnitType to);

// ---- unit component ---------------------------------------------------------

// A quantity's unit: the unit T raised to `dimension` (2 for an area, 3 for
// a volume, -1 for a rate). JSON: {"dimension": <integer>, "units": "<unit>"},
// both keys always written. Exists for the four unit enumerations.
template <class T>
class ExcUnitComponent : public IJsonObject {
public:
    // Members are defined in the library (not inline), so that the exported
    // instantiations serve every module, also across a Windows DLL boundary.
    ExcUnitComponent();
    ExcUnitComponent(std::int32_t dimension, T units);
    ExcUnitComponent(const ExcUnitComponent&);
    ExcUnitComponent& operator=(const ExcUnitComponent&);
    ~ExcUnitComponent() override;

    std::int32_t dimension() const;
    void setDimension(std::int32_t dimension);
    T units() const;
    void setUnits(T units);

    // "dimension" is read only from a JSON integer that fits 32 signed bits
    // (2.0 is kept out), "units" only from a string.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::int32_t m_dimension = 0;
    T m_units = T(0);
};

extern template class XCH_API ExcUnitComponent<ELengthUnitType>;
extern template class XCH_API ExcUnitComponent<EMassUnitType>;
extern template class XCH_API ExcUnitComponent<ETimeUnitType>;
extern template class XCH_API ExcUnitComponent<ETemperatureUnitType>;

// ---- vectors ----------------------------------------------------------------

// N doubles, written as a JSON array of N doubles. Reading is strict:
// producers always write doubles, so an element stored as an integer
// literal (or any non-double) ends the reading, and components not reached
// keep their values.
template <std::size_t N>
class ExcVectorBase : public IJsonObject {
public:
    // Members are defined in the library (not inline), so that the exported
    // instantiations serve every module, also across a Windows DLL boundary.
    ExcVectorBase();
    ExcVectorBase(const ExcVectorBase&);
    ExcVectorBase& operator=(const ExcVectorBase&);
    ~ExcVectorBase() override;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    // Component i (0 <= i < N, unchecked).
    double operator[](std::size_t i) const;
    double& operator[](std::size_t i);

protected:
    std::array<double, N> m_values{};
};

extern template class XCH_API ExcVectorBase<2>;
extern template class XCH_API ExcVectorBase<3>;

// A 2D point or direction.
class XCH_API ExcVector2d : public ExcVectorBase<2> {
public:
    ExcVector2d() = default;
    ExcVector2d(double x, double y) { set(x, y); }
    ExcVector2d(const ExcVector2d&) = default;
    ExcVector2d& operator=(const ExcVector2d&) = default;
    ~ExcVector2d() override;

    double x() const { return m_values[0]; }
    double& x() { return m_values[0]; }
    double y() const { return m_values[1]; }
    double& y() { return m_values[1]; }
    void set(double x, double y) {
        m_values[0] = x;
        m_values[1] = y;
    }
};

// A 3D point or direction.
class XCH_API ExcVector3d : public ExcVectorBase<3> {
public:
    ExcVector3d() = default;
    ExcVector3d(double x, double y, double z) { set(x, y, z); }
    ExcVector3d(const ExcVector3d&) = default;
    ExcVector3d& operator=(const ExcVector3d&) = default;
    ~ExcVector3d() override;

    double x() const { return m_values[0]; }
    double& x() { return m_values[0]; }
    double y() const { return m_values[1]; }
    double& y() { return m_values[1]; }
    double z() const { return m_values[2]; }
    double& z() { return m_values[2]; }
    void set(double x, double y, double z) {
        m_values[0] = x;
        m_values[1] = y;
        m_values[2] = z;
    }
};

// ---- matrix and transformation ------------------------------------------------

// A 3x3 matrix of three rows, identity by default. JSON: an array of the
// three rows, each in the ExcVector3d form. Reading stops at the first
// element that is not an array.
class XCH_API ExcMatrix3d : public IJsonObject {
public:
    ExcMatrix3d();
    ExcMatrix3d(const ExcMatrix3d&) = default;
    ExcMatrix3d& operator=(const ExcMatrix3d&) = default;
    ~ExcMatrix3d() override;

    // Row i (0..2, unchecked).
    ExcVector3d& row(std::size_t i) { return m_rows[i]; }
    const ExcVector3d& row(std::size_t i) const { return m_rows[i]; }
    ExcVector3d& operator[](std::size_t i) { return m_rows[i]; }
    const ExcVector3d& operator[](std::size_t i) const { return m_rows[i]; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

private:
    ExcVector3d m_rows[3];
};

// An affine transformation: a point is mapped by the matrix, then offset by
// the translation (the class itself does no arithmetic). JSON:
// {"affine": <matrix>, "translation": <vector>}, both always written.
class XCH_API ExcTransformation : public IJsonObject {
public:
    ExcTransformation() = default;
    ExcTransformation(const ExcTransformation&) = default;
    ExcTransformation& operator=(const ExcTransformation&) = default;
    ~ExcTransformation() override;

    const ExcMatrix3d& affine() const { return m_affine; }
    ExcMatrix3d& affine() { return m_affine; }
    const ExcVector3d& translation() const { return m_translation; }
    ExcVector3d& translation() { return m_translation; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcMatrix3d m_affine;
    ExcVector3d m_translation;
};

// ---- colour -------------------------------------------------------------------

// An RGB colour with optional alpha. The flags say which parts are set;
// writing a channel does not change them (producers set them explicitly).
// Channels hold whatever range the producer uses (customarily 0-255); the
// library neither scales nor clamps.
//
// JSON: {"rgb": [r, g, b], "alpha": a}, each key present only when its flag
// is set; a colour with neither flag is written as null. Reading null back
// is refused like any non-object (logged, colour unchanged), so an unset
// colour does not round-trip to itself through a reader that expected one.
class XCH_API ExcColor : public IJsonObject {
public:
    enum EChannel { Red = 0, Green = 1, Blue = 2, Alpha = 3 };

    // No flags, channels (0, 0, 0), alpha 255.
    ExcColor() = default;
    // hasRGB set, alpha 255 without hasAlpha.
    ExcColor(std::uint16_t r, std::uint16_t g, std::uint16_t b);
    // Both flags set.
    ExcColor(std::uint16_t r, std::uint16_t g, std::uint16_t b, std::uint16_t a);
    ExcColor(const ExcColor&) = default;
    ExcColor& operator=(const ExcColor&) = default;
    ~ExcColor() override;

    std::uint16_t operator[](EChannel c) const { return m_channels[c]; }
    std::uint16_t& operator[](EChannel c) { return m_channels[c]; }
    std::uint16_t channel(EChannel c) const { return m_channels[c]; }
    std::uint16_t& channel(EChannel c) { return m_channels[c]; }

    bool hasRGB() const { return m_hasRGB; }
    void setHasRGB(bool hasRGB) { m_hasRGB = hasRGB; }
    bool hasAlpha() const { return m_hasAlpha; }
    void setHasAlpha(bool hasAlpha) { m_hasAlpha = hasAlpha; }

    // "rgb" is taken only as exactly three unsigned integers, "alpha" only
    // as an unsigned integer; values are truncated to their low 16 bits.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    bool m_hasRGB = false;
    bool m_hasAlpha = false;
    std::uint16_t m_channels[4] = {0, 0, 0, 255};
};

} // namespace xch
