// Camera and clipping plane.
#include <xch_api/xch_api_visu_camera.h>

#include <stdexcept>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcCamera::EType>& enumTable<ExcCamera::EType>() {
    static const EnumTable<ExcCamera::EType> table{
        {ExcCamera::Undefined, L"undefined"},
        {ExcCamera::Perspective, L"perspective"},
        {ExcCamera::Orthographic, L"orthographic"},
    };
    return table;
}

// ---- ExcCamera ------------------------------------------------------------------

ExcCamera::ExcCamera() = default;
ExcCamera::ExcCamera(const ExcCamera&) = default;
ExcCamera& ExcCamera::operator=(const ExcCamera&) = default;
ExcCamera::~ExcCamera() = default;

template <class Io, class Self>
void ExcCamera::members(Io& io, Self& self) {
    const EType type = self.m_type;  // the type read here does not pick the keys read
    io(L"type", self.m_type);
    io(L"name", self.m_name);
    io(L"perspective_view_angle", self.m_perspectiveViewAngle, json::writtenIf(type == Perspective));
    io(L"orthographic_zoom_factor", self.m_orthographicZoomFactor, json::writtenIf(type == Orthographic));
    io(L"eye", self.m_eye);
    io(L"target", self.m_target);
    io(L"up", self.m_up);
}

XCH_JSON_IO(ExcCamera)

// ---- ExcClippingPlane -----------------------------------------------------------

namespace {

// A part of the plane written only when its flag is set; reading it as a
// JSON array sets the flag (anything else goes to the vector's reader,
// which logs it, and leaves the flag). `Flag` is const bool when writing.
template <class Flag>
struct PlaneAxis {
    Flag& flag;
    bool write(JsonValue& v, JsonAllocator& a, const ExcVector3d& x) const {
        if (!flag) return false;
        x.writeObject(v, a);
        return true;
    }
    void read(const JsonValue& v, ExcVector3d& x) const {
        x.readObject(v);
        if (v.IsArray()) flag = true;
    }
};

// [a, b, c, d], written only when its flag is set; read only as an array of
// exactly four numbers, which sets the flag.
template <class Flag>
struct PlaneCoefficients {
    Flag& flag;
    bool write(JsonValue& v, JsonAllocator& a, const std::array<double, 4>& x) const {
        if (!flag) return false;
        v.SetArray();
        v.Reserve(4, a);
        for (double c : x)
            v.PushBack(JsonValue(c), a);
        return true;
    }
    void read(const JsonValue& v, std::array<double, 4>& x) const {
        if (!v.IsArray() || v.Size() != 4) return;
        for (const JsonValue& c : v.GetArray())
            if (!c.IsNumber()) return;
        for (rapidjson::SizeType i = 0; i < 4; ++i)
            x[i] = v[i].GetDouble();
        flag = true;
    }
};

template <class Flag>
PlaneAxis<Flag> planeAxis(Flag& flag) { return {flag}; }
template <class Flag>
PlaneCoefficients<Flag> planeCoefficients(Flag& flag) { return {flag}; }

std::size_t coefficientIndex(ExcClippingPlane::ECoefficient index) {
    if (index < ExcClippingPlane::A || index > ExcClippingPlane::D)
        throw std::out_of_range("ExcClippingPlane: coefficient index out of range");
    return static_cast<std::size_t>(index);
}

} // namespace

ExcClippingPlane::ExcClippingPlane() = default;
ExcClippingPlane::ExcClippingPlane(const ExcClippingPlane&) = default;
ExcClippingPlane& ExcClippingPlane::operator=(const ExcClippingPlane&) = default;
ExcClippingPlane::~ExcClippingPlane() = default;

void ExcClippingPlane::setOrigin(const ExcVector3d& origin) {
    m_origin = origin;
    m_hasPlane = true;
}

void ExcClippingPlane::setVectorU(const ExcVector3d& u) {
    m_vectorU = u;
    m_hasPlane = true;
}

void ExcClippingPlane::setVectorV(const ExcVector3d& v) {
    m_vectorV = v;
    m_hasPlane = true;
}

void ExcClippingPlane::setCoefficients(const std::array<double, 4>& coefficients) {
    m_coefficients = coefficients;
    m_hasCoefficients = true;
}

double ExcClippingPlane::coefficient(ECoefficient index) const { return m_coefficients[coefficientIndex(index)]; }

void ExcClippingPlane::setCoefficient(ECoefficient index, double value) {
    m_coefficients[coefficientIndex(index)] = value;
    m_hasCoefficients = true;
}

template <class Io, class Self>
void ExcClippingPlane::members(Io& io, Self& self) {
    io(L"origin", self.m_origin, planeAxis(self.m_hasPlane));
    io(L"u", self.m_vectorU, planeAxis(self.m_hasPlane));
    io(L"v", self.m_vectorV, planeAxis(self.m_hasPlane));
    io(L"plane_coefficients", self.m_coefficients, planeCoefficients(self.m_hasCoefficients));
}

void ExcClippingPlane::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readMembers(value, "ExcClippingPlane", *this);
}

void ExcClippingPlane::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    if (isEmpty()) {
        value.SetNull();
        return;
    }
    json::writeMembers(value, allocator, *this);
}

} // namespace xch
