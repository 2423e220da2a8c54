// The camera and the clipping plane of a saved presentation state. A
// visualization capture holds one of each by value; a PMI capture holds
// them by pointer.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// A camera: where the eye is, what it looks at, which way is up, and the
// projection.
//
// JSON: {"type", "name", "perspective_view_angle", "orthographic_zoom_factor",
// "eye", "target", "up"}. The view angle is written only for a perspective
// camera and the zoom factor only for an orthographic one; reading takes
// both whenever present (as JSON doubles), whatever the type. The vectors
// are ExcVector3d arrays. An unknown "type" string reads as
// "orthographic" (the table's smallest string).
//
// Defaults: type undefined, the eye at (0, 0, 1) looking at the origin with
// +Y up, view angle 0 (not given), zoom factor 1.
class XCH_API ExcCamera : public IJsonObject {
public:
    enum EType : std::int32_t {
        Undefined = 0,    // "undefined"
        Perspective = 1,  // "perspective"
        Orthographic = 2  // "orthographic"
    };

    ExcCamera();
    ExcCamera(const ExcCamera&);
    ExcCamera& operator=(const ExcCamera&);
    ~ExcCamera() override;

    EType type() const { return m_type; }
    void setType(EType type) { m_type = type; }
    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    // The field of view of a perspective camera, as the source gives it.
    double perspectiveViewAngle() const { return m_perspectiveViewAngle; }
    void setPerspectiveViewAngle(double angle) { m_perspectiveViewAngle = angle; }
    // The magnification of an orthographic camera.
    double orthographicZoomFactor() const { return m_orthographicZoomFactor; }
    void setOrthographicZoomFactor(double factor) { m_orthographicZoomFactor = factor; }
    const ExcVector3d& eye() const { return m_eye; }
    void setEye(const ExcVector3d& eye) { m_eye = eye; }
    const ExcVector3d& target() const { return m_target; }
    void setTarget(const ExcVector3d& target) { m_target = target; }
    const ExcVector3d& up() const { return m_up; }
    void setUp(const ExcVector3d& up) { m_up = up; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    EType m_type = Undefined;
    std::wstring m_name;
    double m_perspectiveViewAngle = 0.0;
    double m_orthographicZoomFactor = 1.0;
    ExcVector3d m_eye{0.0, 0.0, 1.0};
    ExcVector3d m_target{0.0, 0.0, 0.0};
    ExcVector3d m_up{0.0, 1.0, 0.0};
};

template <> XCH_API const EnumTable<ExcCamera::EType>& enumTable<ExcCamera::EType>();

// A clipping plane, given by a point and two in-plane axes, by the
// coefficients of its equation a*x + b*y + c*z + d = 0, or by both. Two
// flags say which forms are set.
//
// JSON: {"origin", "u", "v"} (ExcVector3d arrays) only when hasPlane,
// "plane_coefficients" ([a, b, c, d]) only when hasCoefficients; a plane
// with neither flag is written as JSON null. Reading "origin", "u" or "v"
// as an array sets hasPlane; reading "plane_coefficients" as an array of
// four numbers (integers accepted) sets hasCoefficients, anything else
// there is ignored. So a plane survives a round trip with its flags.
// Reading JSON null, like any non-object, is logged and changes nothing;
// an owner that writes null for "no plane" handles null itself.
//
// The setters of the point, the axes and the coefficients also set the
// matching flag.
class XCH_API ExcClippingPlane : public IJsonObject {
public:
    // Indices of the plane equation's coefficients.
    enum ECoefficient : std::int32_t { A = 0, B = 1, C = 2, D = 3 };

    ExcClippingPlane();
    ExcClippingPlane(const ExcClippingPlane&);
    ExcClippingPlane& operator=(const ExcClippingPlane&);
    ~ExcClippingPlane() override;

    bool hasPlane() const { return m_hasPlane; }
    void setHasPlane(bool hasPlane) { m_hasPlane = hasPlane; }
    const ExcVector3d& origin() const { return m_origin; }
    void setOrigin(const ExcVector3d& origin);
    const ExcVector3d& vectorU() const { return m_vectorU; }
    void setVectorU(const ExcVector3d& u);
    const ExcVector3d& vectorV() const { return m_vectorV; }
    void setVectorV(const ExcVector3d& v);

    bool hasCoefficients() const { return m_hasCoefficients; }
    void setHasCoefficients(bool hasCoefficients) { m_hasCoefficients = hasCoefficients; }
    const std::array<double, 4>& coefficients() const { return m_coefficients; }
    void setCoefficients(const std::array<double, 4>& coefficients);
    // One coefficient; an index outside A..D throws std::out_of_range.
    double coefficient(ECoefficient index) const;
    void setCoefficient(ECoefficient index, double value);

    // Neither form set: written as JSON null.
    bool isEmpty() const { return !m_hasPlane && !m_hasCoefficients; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    bool m_hasPlane = false;
    ExcVector3d m_origin;
    ExcVector3d m_vectorU{1.0, 0.0, 0.0};
    ExcVector3d m_vectorV{0.0, 1.0, 0.0};
    bool m_hasCoefficients = false;
    std::array<double, 4> m_coefficients{};
};

} // namespace xch
