// Appearance: fonts, line attributes, textures, materials, attributes,
// texts and PMI display forms.
#include <xch_api/xch_api_visu_appearance.h>

#include <stdexcept>

#include <xch_api/internal/checked_add.h>
#include <xch_api/xch_api_json_members.h>

namespace xch {

// ---- enumeration tables ------------------------------------------------------------

template <>
const EnumTable<ExcVisuFont::EFontPitch>& enumTable<ExcVisuFont::EFontPitch>() {
    static const EnumTable<ExcVisuFont::EFontPitch> table{
        {ExcVisuFont::PitchUnknown, L"unknown"},
        {ExcVisuFont::PitchFixed, L"fixed"},
        {ExcVisuFont::PitchVariable, L"variable"},
    };
    return table;
}

template <>
const EnumTable<ExcVisuLineAttribute::ELineStyle>& enumTable<ExcVisuLineAttribute::ELineStyle>() {
    using L = ExcVisuLineAttribute;
    static const EnumTable<L::ELineStyle> table{
        {L::StyleUndefined, L"undefined"},
        {L::SolidLine, L"solid_line"},
        {L::DashDotLine, L"dash_dot_line"},
        {L::DashLine, L"dash_line"},
        {L::DotLine, L"dot_line"},
        {L::DashDotDotLine, L"dash_dot_dot_line"},
        {L::DashDotDotDotLine, L"dash_dot_dot_dot_line"},
        {L::CenterLine, L"center_line"},
        {L::PhantomLine, L"phantom_line"},
    };
    return table;
}

template <>
const EnumTable<ExcVisuTexture::EMethod>& enumTable<ExcVisuTexture::EMethod>() {
    using T = ExcVisuTexture;
    static const EnumTable<T::EMethod> table{
        {T::MethodUndefined, L"undefined"},
        {T::Decal, L"decal"},
        {T::Modulate, L"modulate"},
        {T::Replace, L"replace"},
    };
    return table;
}

template <>
const EnumTable<ExcVisuTexture::EWrapMode>& enumTable<ExcVisuTexture::EWrapMode>() {
    using T = ExcVisuTexture;
    static const EnumTable<T::EWrapMode> table{
        {T::WrapUndefined, L"undefined"}, {T::Repeat, L"repeat"}, {T::Clamp, L"clamp"},
        {T::Border, L"border"},           {T::Edge, L"edge"},     {T::Mirror, L"mirror"},
    };
    return table;
}

template <>
const EnumTable<ExcVisuTexture::EMappingMode>& enumTable<ExcVisuTexture::EMappingMode>() {
    using T = ExcVisuTexture;
    static const EnumTable<T::EMappingMode> table{
        {T::MappingUndefined, L"undefined"},
        {T::Planar, L"planar"},
        {T::Spherical, L"spherical"},
        {T::Cylindrical, L"cylindrical"},
        {T::EnvironmentSpherical, L"environment_spherical"},
        {T::EnvironmentCubic, L"environment_cubic"},
    };
    return table;
}

template <>
const EnumTable<ExcVisuTexture::EFilter>& enumTable<ExcVisuTexture::EFilter>() {
    using T = ExcVisuTexture;
    static const EnumTable<T::EFilter> table{
        {T::FilterUndefined, L"undefined"},
        {T::Nearest, L"nearest"},
        {T::Linear, L"linear"},
        {T::NearestMipmapNearest, L"nearest_mipmap_nearest"},
        {T::LinearMipmapNearest, L"linear_mipmap_nearest"},
        {T::NearestMipmapLinear, L"nearest_mipmap_linear"},
        {T::LinearMipmapLinear, L"linear_mipmap_linear"},
    };
    return table;
}

template <>
const EnumTable<ExcVisuMaterial::EColorType>& enumTable<ExcVisuMaterial::EColorType>() {
    using M = ExcVisuMaterial;
    static const EnumTable<M::EColorType> table{
        {M::ColorUnknown, L"unknown"},   {M::Ambient, L"ambient"},   {M::Diffuse, L"diffuse"},
        {M::Specular, L"specular"},      {M::Emissive, L"emissive"}, {M::Transparency, L"transparency"},
        {M::Reflection, L"reflection"},
    };
    return table;
}

template <>
const EnumTable<ExcVisuMaterial::ETextureType>& enumTable<ExcVisuMaterial::ETextureType>() {
    using M = ExcVisuMaterial;
    static const EnumTable<M::ETextureType> table{
        {M::TextureUnknown, L"unknown"},
        {M::AmbientColor, L"ambient_color"},
        {M::AmbientCoefficient, L"ambient_coefficient"},
        {M::DiffuseColor, L"diffuse_color"},
        {M::DiffuseCoefficient, L"diffuse_coefficient"},
        {M::SpecularColor, L"specular_color"},
        {M::SpecularCoefficient, L"specular_coefficient"},
        {M::EmissiveColor, L"emissive_color"},
        {M::EmissiveCoefficient, L"emissive_coefficient"},
        {M::Normal, L"normal"},
    };
    return table;
}

// ---- ExcVisuFont ---------------------------------------------------------------------

ExcVisuFont::ExcVisuFont() = default;
ExcVisuFont::ExcVisuFont(const ExcVisuFont&) = default;
ExcVisuFont& ExcVisuFont::operator=(const ExcVisuFont&) = default;
ExcVisuFont::~ExcVisuFont() = default;

template <class Io, class Self>
void ExcVisuFont::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"text_height", self.m_textHeight, json::anyNumber);
    io(L"font_pitch", self.m_fontPitch);
    io(L"spacing_factor", self.m_spacingFactor, json::anyNumber);
    io(L"width_scaling_factor", self.m_widthScalingFactor, json::anyNumber);
}

XCH_JSON_IO(ExcVisuFont)

// ---- ExcVisuLineAttribute ------------------------------------------------------------

ExcVisuLineAttribute::ExcVisuLineAttribute() = default;
ExcVisuLineAttribute::ExcVisuLineAttribute(const ExcVisuLineAttribute&) = default;
ExcVisuLineAttribute& ExcVisuLineAttribute::operator=(const ExcVisuLineAttribute&) = default;
ExcVisuLineAttribute::~ExcVisuLineAttribute() = default;

template <class Io, class Self>
void ExcVisuLineAttribute::members(Io& io, Self& self) {
    io(L"line_weight", self.m_lineWeight, json::anyNumber);
    io(L"line_style", self.m_lineStyle);
}

XCH_JSON_IO(ExcVisuLineAttribute)

// ---- ExcVisuTexture ------------------------------------------------------------------

namespace {

// The element of `values` for `direction`, or std::invalid_argument with
// `message` when there is none.
template <class Array>
auto& directionOf(Array& values, int direction, const char* message) {
    if (direction < 0 || static_cast<std::size_t>(direction) >= values.size())
        throw std::invalid_argument(message);
    return values[static_cast<std::size_t>(direction)];
}

const char* const kWrapDirections = "Texture wrap mode has only 0 (U) and 1 (V) directions.";
const char* const kTranslationDirections = "Texture translation has only 0 (U) and 1 (V) directions.";
const char* const kScaleDirections = "Texture scale has only 0 (U) and 1 (V) directions.";
const char* const kRotationDirections = "Texture rotation has only 0 (U), 1 (V) and 2 (W) directions.";

} // namespace

ExcVisuTexture::ExcVisuTexture() = default;
ExcVisuTexture::ExcVisuTexture(const ExcVisuTexture&) = default;
ExcVisuTexture& ExcVisuTexture::operator=(const ExcVisuTexture&) = default;
ExcVisuTexture::~ExcVisuTexture() = default;

ExcVisuTexture::EWrapMode ExcVisuTexture::wrapMode(int direction) const {
    return directionOf(m_wrapModes, direction, kWrapDirections);
}
void ExcVisuTexture::setWrapMode(int direction, EWrapMode mode) {
    directionOf(m_wrapModes, direction, kWrapDirections) = mode;
}
double ExcVisuTexture::translation(int direction) const {
    return directionOf(m_translation, direction, kTranslationDirections);
}
void ExcVisuTexture::setTranslation(int direction, double value) {
    directionOf(m_translation, direction, kTranslationDirections) = value;
}
double ExcVisuTexture::scale(int direction) const {
    return directionOf(m_scale, direction, kScaleDirections);
}
void ExcVisuTexture::setScale(int direction, double value) {
    directionOf(m_scale, direction, kScaleDirections) = value;
}
double ExcVisuTexture::rotation(int direction) const {
    return directionOf(m_rotation, direction, kRotationDirections);
}
void ExcVisuTexture::setRotation(int direction, double value) {
    directionOf(m_rotation, direction, kRotationDirections) = value;
}

template <class Io, class Self>
void ExcVisuTexture::members(Io& io, Self& self) {
    io(L"method", self.m_method);
    io(L"wrap_mode", self.m_wrapModes, json::fixedArray);
    io(L"mapping_mode", self.m_mappingMode);
    io(L"texture_magnification_filter", self.m_magnificationFilter);
    io(L"texture_minification_filter", self.m_minificationFilter);
    io(L"alpha", self.m_alpha, json::anyNumber);
    io(L"file", self.m_file);
    io(L"name_uv", self.m_nameUV);
    io(L"name", self.m_name);
    io(L"uv_translation", self.m_translation, json::numbers);
    io(L"uv_scale", self.m_scale, json::numbers);
    io(L"uv_rotation", self.m_rotation, json::numbers);
    io(L"swap_uv", self.m_swapUV);
    io(L"use_material", self.m_useMaterial);
}

XCH_JSON_IO(ExcVisuTexture)

// ---- ExcVisuMaterial -----------------------------------------------------------------

namespace {
const char* const kMaterialNullTexture = "ExcVisuMaterial: attempt to add null Texture object.";
} // namespace

// "colors": {"<colour type>": [r, g, b, a], ...}.
struct ExcVisuMaterial::ColorsRule {
    bool write(JsonValue& v, JsonAllocator& a, const std::map<EColorType, Color>& colors) const {
        v.SetObject();
        for (const auto& [type, color] : colors) {
            JsonValue components(rapidjson::kArrayType);
            for (double c : {color.r, color.g, color.b, color.a})
                components.PushBack(JsonValue(c), a);
            json::Writer(v, a).add(enumToString(type).c_str(), components);
        }
        return true;
    }
    void read(const JsonValue& v, std::map<EColorType, Color>& colors) const {
        if (!v.IsObject()) return;
        for (const auto& entry : v.GetObject()) {
            const JsonValue& colorType = entry.name;
            const JsonValue& colorValue = entry.value;
            if (!colorType.IsString() || !colorValue.IsArray() || colorValue.GetArray().Size() < 4) {
                VX_LOG(vx_link::LevelError,
                       "ExcVisuMaterial: !colorType.IsString() || !colorValue.IsArray() || "
                       "colorValue.GetArray().Size() < 4");
                continue;
            }
            double components[4];
            for (rapidjson::SizeType i = 0; i < 4; ++i)
                components[i] = colorValue[i].IsNumber() ? colorValue[i].GetDouble() : 0.0;
            colors[enumFromString<EColorType>(colorType.GetString())] =
                Color{components[0], components[1], components[2], components[3]};
        }
    }
};

// "textures": {"<texture type>": [texture, ...], ...}; types without
// textures are left out.
struct ExcVisuMaterial::TexturesRule {
    bool write(JsonValue& v, JsonAllocator& a, const std::map<ETextureType, Textures>& textures) const {
        v.SetObject();
        for (const auto& [type, list] : textures) {
            if (list.empty()) continue;
            JsonValue array;
            json::objectsOnly.write(array, a, list);
            json::Writer(v, a).add(enumToString(type).c_str(), array);
        }
        return true;
    }
    void read(const JsonValue& v, std::map<ETextureType, Textures>& textures) const {
        if (!v.IsObject()) return;
        for (const auto& entry : v.GetObject()) {
            const JsonValue& textureType = entry.name;
            const JsonValue& textureArray = entry.value;
            if (!textureType.IsString() || !textureArray.IsArray()) {
                VX_LOG(vx_link::LevelError, "ExcVisuMaterial: !textureType.IsString() || !textureArray.IsArray()");
                continue;
            }
            json::objectsOnly.read(textureArray, textures[enumFromString<ETextureType>(textureType.GetString())]);
        }
    }
};

ExcVisuMaterial::ExcVisuMaterial() = default;
ExcVisuMaterial::ExcVisuMaterial(const ExcVisuMaterial&) = default;
ExcVisuMaterial& ExcVisuMaterial::operator=(const ExcVisuMaterial&) = default;
ExcVisuMaterial::~ExcVisuMaterial() = default;

ExcVisuMaterial::Color ExcVisuMaterial::color(EColorType type) const {
    auto it = m_colors.find(type);
    return it == m_colors.end() ? Color() : it->second;
}

const ExcVisuMaterial::Textures& ExcVisuMaterial::textures(ETextureType type) const {
    static const Textures none;
    auto it = m_textures.find(type);
    return it == m_textures.end() ? none : it->second;
}

void ExcVisuMaterial::addTexture(ETextureType type, const std::shared_ptr<ExcVisuTexture>& texture) {
    if (!texture) {
        VX_LOG(vx_link::LevelWarning, kMaterialNullTexture);
        return;
    }
    m_textures[type].push_back(texture);
}

void ExcVisuMaterial::addTextures(ETextureType type, const Textures& textures) {
    for (const auto& texture : textures)
        addTexture(type, texture);
}

void ExcVisuMaterial::setTextures(ETextureType type, const Textures& textures) {
    setAllChecked(m_textures[type], textures, kMaterialNullTexture);
}

template <class Io, class Self>
void ExcVisuMaterial::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"colors", self.m_colors, ColorsRule{});
    io(L"shininess", self.m_shininess, json::anyNumber);
    io(L"bump", self.m_bump, json::numbers);
    io(L"bump_factor", self.m_bumpFactor, json::anyNumber);
    io(L"normal_map", self.m_normalMap, json::optionalWith(json::newObject));
    io(L"textures", self.m_textures, TexturesRule{});
}

XCH_JSON_IO(ExcVisuMaterial)

// ---- ExcVisuAttributes ---------------------------------------------------------------

namespace {
const char* const kAttributesNullMaterial = "ExcVisuAttributes: attempt to add null Material object.";
} // namespace

ExcVisuAttributes::ExcVisuAttributes() = default;
ExcVisuAttributes::ExcVisuAttributes(const ExcVisuAttributes&) = default;
ExcVisuAttributes& ExcVisuAttributes::operator=(const ExcVisuAttributes&) = default;
ExcVisuAttributes::~ExcVisuAttributes() = default;

void ExcVisuAttributes::addMaterial(const std::shared_ptr<ExcVisuMaterial>& material) {
    addChecked(m_materials, material, kAttributesNullMaterial);
}
void ExcVisuAttributes::addMaterials(const std::vector<std::shared_ptr<ExcVisuMaterial>>& materials) {
    addAllChecked(m_materials, materials, kAttributesNullMaterial);
}
void ExcVisuAttributes::setMaterials(const std::vector<std::shared_ptr<ExcVisuMaterial>>& materials) {
    setAllChecked(m_materials, materials, kAttributesNullMaterial);
}

template <class Io, class Self>
void ExcVisuAttributes::members(Io& io, Self& self) {
    io(L"font", self.m_font);
    io(L"color", self.m_color, json::nullAsUnset);
    io(L"hidden", self.m_hidden);
    io(L"materials", self.m_materials, json::objectsOnly);
    io(L"line_attribute", self.m_lineAttribute);
}

XCH_JSON_IO(ExcVisuAttributes)

// ---- ExcVisuText ---------------------------------------------------------------------

ExcVisuText::ExcVisuText() = default;
ExcVisuText::ExcVisuText(const ExcVisuText&) = default;
ExcVisuText& ExcVisuText::operator=(const ExcVisuText&) = default;
ExcVisuText::~ExcVisuText() = default;

template <class Io, class Self>
void ExcVisuText::members(Io& io, Self& self) {
    io(L"text", self.m_text);
    io(L"anchor_point", self.m_anchorPoint);
    io(L"direction", self.m_direction);
    io(L"normal", self.m_normal);
    io(L"color", self.m_color, json::nullAsUnset);
    io(L"font", self.m_font);
}

XCH_JSON_IO(ExcVisuText)

// ---- ExcVisuPMI ----------------------------------------------------------------------

namespace {
const char* const kPmiNullEdge = "ExcVisuPMI: attempt to add null Edge object.";
const char* const kPmiNullText = "ExcVisuPMI: attempt to add null Text object.";
} // namespace

ExcVisuPMI::ExcVisuPMI() = default;
ExcVisuPMI::ExcVisuPMI(const ExcVisuPMI&) = default;
ExcVisuPMI& ExcVisuPMI::operator=(const ExcVisuPMI&) = default;
ExcVisuPMI::~ExcVisuPMI() = default;

void ExcVisuPMI::addEdge(const std::shared_ptr<ExcVisuEdge>& edge) { addChecked(m_edges, edge, kPmiNullEdge); }
void ExcVisuPMI::setEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges) {
    setAllChecked(m_edges, edges, kPmiNullEdge);
}
void ExcVisuPMI::addText(const std::shared_ptr<ExcVisuText>& text) { addChecked(m_texts, text, kPmiNullText); }
void ExcVisuPMI::setTexts(const std::vector<std::shared_ptr<ExcVisuText>>& texts) {
    setAllChecked(m_texts, texts, kPmiNullText);
}

template <class Io, class Self>
void ExcVisuPMI::members(Io& io, Self& self) {
    io(L"display_name", self.m_displayName);
    io(L"mechanical_id", self.m_mechanicalId);
    io(L"edges", self.m_edges, json::objectsOnly);
    io(L"texts", self.m_texts, json::objectsOnly);
    io(L"linked_elements", self.m_linkedElements, json::readOnly(json::objectsOnly));
}

XCH_JSON_IO(ExcVisuPMI)

} // namespace xch
