// Vectors, matrix, transformation and colour.
#include <xch_api/xch_api_exchange_common.h>

#include <algorithm>
#include <initializer_list>

#include <xch_api/xch_api_json_members.h>

namespace xch {

namespace {

// Reads `object`'s members list from `value`, or logs `notObject` as a
// warning when `value` is not a JSON object.
template <class T>
void readObjectMembers(const JsonValue& value, const char* notObject, T& object) {
    if (!value.IsObject()) {
        VX_LOG(3, notObject);
        return;
    }
    json::Reader reader(value);
    T::members(reader, object);
}

} // namespace

// ---- vectors --------------------------------------------------------------------

template <std::size_t N>
ExcVectorBase<N>::ExcVectorBase() = default;
template <std::size_t N>
ExcVectorBase<N>::ExcVectorBase(const ExcVectorBase&) = default;
template <std::size_t N>
ExcVectorBase<N>& ExcVectorBase<N>::operator=(const ExcVectorBase&) = default;
template <std::size_t N>
ExcVectorBase<N>::~ExcVectorBase() = default;

template <std::size_t N>
double ExcVectorBase<N>::operator[](std::size_t i) const { return m_values[i]; }
template <std::size_t N>
double& ExcVectorBase<N>::operator[](std::size_t i) { return m_values[i]; }

template <std::size_t N>
void ExcVectorBase<N>::readObject(const JsonValue& value) {
    VX_TRACE();
    if (!json::expectArray(value, "Exchange vector/point (2D/3D) object should have a JSON array type."))
        return;
    const auto count = std::min<std::size_t>(N, value.Size());
    for (std::size_t i = 0; i < count; ++i)
        if (!json::Codec<double>::read(value[static_cast<rapidjson::SizeType>(i)], m_values[i]))
            return;
}

template <std::size_t N>
void ExcVectorBase<N>::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    value.SetArray();
    value.Reserve(static_cast<rapidjson::SizeType>(N), allocator);
    for (double component : m_values)
        value.PushBack(JsonValue(component), allocator);
}

template class XCH_API_INSTANTIATION ExcVectorBase<2>;
template class XCH_API_INSTANTIATION ExcVectorBase<3>;

ExcVector2d::~ExcVector2d() = default;
ExcVector3d::~ExcVector3d() = default;

// ---- matrix -----------------------------------------------------------------------

ExcMatrix3d::ExcMatrix3d()
    : m_rows{ExcVector3d(1.0, 0.0, 0.0), ExcVector3d(0.0, 1.0, 0.0), ExcVector3d(0.0, 0.0, 1.0)} {}

ExcMatrix3d::~ExcMatrix3d() = default;

void ExcMatrix3d::readObject(const JsonValue& value) {
    VX_TRACE();
    if (!value.IsArray()) {
        VX_LOG(3, "ExcMatrix3d::readObject: input JsonValue is not an array.");
        return;
    }
    for (rapidjson::SizeType i = 0; i < 3 && i < value.Size() && value[i].IsArray(); ++i)
        m_rows[i].readObject(value[i]);
}

void ExcMatrix3d::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    value.SetArray();
    value.Reserve(3, allocator);
    for (const ExcVector3d& row : m_rows) {
        JsonValue item;
        row.writeObject(item, allocator);
        value.PushBack(item, allocator);
    }
}

// ---- transformation -----------------------------------------------------------------

ExcTransformation::~ExcTransformation() = default;

template <class Io, class Self>
void ExcTransformation::members(Io& io, Self& self) {
    io(L"affine", self.m_affine, json::whenArray);
    io(L"translation", self.m_translation, json::whenArray);
}

void ExcTransformation::readObject(const JsonValue& value) {
    VX_TRACE();
    readObjectMembers(value, "ExcTransformation::readObject: input JsonValue is not an object.", *this);
}

void ExcTransformation::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

// ---- colour ---------------------------------------------------------------------------

namespace {

// A channel from an unsigned JSON integer, truncated to its low 16 bits.
bool readChannel(const JsonValue& v, std::uint16_t& channel) {
    if (!v.IsUint()) return false;
    channel = static_cast<std::uint16_t>(v.GetUint());
    return true;
}

// "rgb": [r, g, b], written only when hasRGB; read only when all three
// elements are unsigned integers, which also sets hasRGB.
struct ColorRgb {
    bool write(JsonValue& v, JsonAllocator& a, const ExcColor& c) const {
        if (!c.hasRGB()) return false;
        v.SetArray();
        for (auto channel : {ExcColor::Red, ExcColor::Green, ExcColor::Blue})
            v.PushBack(JsonValue(static_cast<unsigned>(c[channel])), a);
        return true;
    }
    void read(const JsonValue& v, ExcColor& c) const {
        if (!v.IsArray() || v.Size() != 3) return;
        std::uint16_t rgb[3];
        for (rapidjson::SizeType i = 0; i < 3; ++i)
            if (!readChannel(v[i], rgb[i])) return;
        c[ExcColor::Red] = rgb[0];
        c[ExcColor::Green] = rgb[1];
        c[ExcColor::Blue] = rgb[2];
        c.setHasRGB(true);
    }
};

// "alpha": written only when hasAlpha; read only from an unsigned integer,
// which also sets hasAlpha.
struct ColorAlpha {
    bool write(JsonValue& v, JsonAllocator&, const ExcColor& c) const {
        if (!c.hasAlpha()) return false;
        v.SetUint(c[ExcColor::Alpha]);
        return true;
    }
    void read(const JsonValue& v, ExcColor& c) const {
        if (readChannel(v, c[ExcColor::Alpha])) c.setHasAlpha(true);
    }
};

constexpr ColorRgb colorRgb{};
constexpr ColorAlpha colorAlpha{};

} // namespace

ExcColor::ExcColor(std::uint16_t r, std::uint16_t g, std::uint16_t b)
    : m_hasRGB(true), m_channels{r, g, b, 255} {}

ExcColor::ExcColor(std::uint16_t r, std::uint16_t g, std::uint16_t b, std::uint16_t a)
    : m_hasRGB(true), m_hasAlpha(true), m_channels{r, g, b, a} {}

ExcColor::~ExcColor() = default;

template <class Io, class Self>
void ExcColor::members(Io& io, Self& self) {
    io(L"rgb", self, colorRgb);
    io(L"alpha", self, colorAlpha);
}

void ExcColor::readObject(const JsonValue& value) {
    VX_TRACE();
    readObjectMembers(value, "ExcColor::readObject: input JsonValue is not an object.", *this);
}

void ExcColor::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    if (!m_hasRGB && !m_hasAlpha) {
        value.SetNull();
        return;
    }
    json::writeMembers(value, allocator, *this);
}

} // namespace xch
