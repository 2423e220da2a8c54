// Appearance of visualization nodes: fonts, line attributes, textures,
// materials, the attribute bundle a node carries, 3D text, and the display
// form of a PMI annotation. Enumerations travel as their strings; numbers
// are read from any JSON number.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>
#include <xch_api/xch_api_visu_tessellation.h>

namespace xch {

// A text font.
//
// JSON: {"name", "text_height", "font_pitch", "spacing_factor",
// "width_scaling_factor"}, all always written. Defaults: no name, height,
// spacing and width scaling 1, pitch unknown. An unknown "font_pitch"
// string reads as "fixed".
class XCH_API ExcVisuFont : public IJsonObject {
public:
    enum EFontPitch : std::int32_t {
        PitchUnknown = 0,  // "unknown"
        PitchFixed = 1,    // "fixed"
        PitchVariable = 2  // "variable"
    };

    ExcVisuFont();
    ExcVisuFont(const ExcVisuFont&);
    ExcVisuFont& operator=(const ExcVisuFont&);
    ~ExcVisuFont() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    double textHeight() const { return m_textHeight; }
    void setTextHeight(double height) { m_textHeight = height; }
    EFontPitch fontPitch() const { return m_fontPitch; }
    void setFontPitch(EFontPitch pitch) { m_fontPitch = pitch; }
    double spacingFactor() const { return m_spacingFactor; }
    void setSpacingFactor(double factor) { m_spacingFactor = factor; }
    double widthScalingFactor() const { return m_widthScalingFactor; }
    void setWidthScalingFactor(double factor) { m_widthScalingFactor = factor; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    double m_textHeight = 1.0;
    EFontPitch m_fontPitch = PitchUnknown;
    double m_spacingFactor = 1.0;
    double m_widthScalingFactor = 1.0;
};

// How lines are drawn. JSON: {"line_weight", "line_style"}. Defaults:
// weight 0 (the thinnest line), style undefined. An unknown style string
// reads as "center_line".
class XCH_API ExcVisuLineAttribute : public IJsonObject {
public:
    enum ELineStyle : std::int32_t {
        StyleUndefined = 0,       // "undefined"
        SolidLine,                // "solid_line"
        DashDotLine,              // "dash_dot_line"
        DashLine,                 // "dash_line"
        DotLine,                  // "dot_line"
        DashDotDotLine,           // "dash_dot_dot_line"
        DashDotDotDotLine,        // "dash_dot_dot_dot_line"
        CenterLine,               // "center_line"
        PhantomLine               // "phantom_line"
    };

    ExcVisuLineAttribute();
    ExcVisuLineAttribute(const ExcVisuLineAttribute&);
    ExcVisuLineAttribute& operator=(const ExcVisuLineAttribute&);
    ~ExcVisuLineAttribute() override;

    double lineWeight() const { return m_lineWeight; }
    void setLineWeight(double weight) { m_lineWeight = weight; }
    ELineStyle lineStyle() const { return m_lineStyle; }
    void setLineStyle(ELineStyle style) { m_lineStyle = style; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    double m_lineWeight = 0.0;
    ELineStyle m_lineStyle = StyleUndefined;
};

// A texture layer of a material: an image and how it is mapped.
//
// JSON: {"method", "wrap_mode" (two strings: U, then V), "mapping_mode",
// "texture_magnification_filter", "texture_minification_filter", "alpha",
// "file", "name_uv", "name", "uv_translation" ([u, v]), "uv_scale" ([u, v]),
// "uv_rotation" ([u, v, w]), "swap_uv", "use_material"}, all always
// written. The fixed arrays are read by position (missing or mistyped
// elements keep their value). Unknown strings read as the smallest string
// of their table ("decal", "border", "cylindrical", "linear").
//
// Defaults: everything undefined, alpha 1, no translation or rotation,
// scale 1 in both directions, swapUV and useMaterial false.
class XCH_API ExcVisuTexture : public IJsonObject {
public:
    enum EMethod : std::int32_t {
        MethodUndefined = 0,  // "undefined"
        Decal,                // "decal"
        Modulate,             // "modulate"
        Replace               // "replace"
    };
    enum EWrapMode : std::int32_t {
        WrapUndefined = 0,  // "undefined"
        Repeat,             // "repeat"
        Clamp,              // "clamp"
        Border,             // "border"
        Edge,               // "edge"
        Mirror              // "mirror"
    };
    enum EMappingMode : std::int32_t {
        MappingUndefined = 0,   // "undefined"
        Planar,                 // "planar"
        Spherical,              // "spherical"
        Cylindrical,            // "cylindrical"
        EnvironmentSpherical,   // "environment_spherical"
        EnvironmentCubic        // "environment_cubic"
    };
    // Texture sampling filters, named as OpenGL names them.
    enum EFilter : std::int32_t {
        FilterUndefined = 0,    // "undefined"
        Nearest,                // "nearest"
        Linear,                 // "linear"
        NearestMipmapNearest,   // "nearest_mipmap_nearest"
        LinearMipmapNearest,    // "linear_mipmap_nearest"
        NearestMipmapLinear,    // "nearest_mipmap_linear"
        LinearMipmapLinear      // "linear_mipmap_linear"
    };

    ExcVisuTexture();
    ExcVisuTexture(const ExcVisuTexture&);
    ExcVisuTexture& operator=(const ExcVisuTexture&);
    ~ExcVisuTexture() override;

    EMethod method() const { return m_method; }
    void setMethod(EMethod method) { m_method = method; }
    // Direction 0 is U, 1 is V; any other throws std::invalid_argument.
    EWrapMode wrapMode(int direction) const;
    void setWrapMode(int direction, EWrapMode mode);
    EMappingMode mappingMode() const { return m_mappingMode; }
    void setMappingMode(EMappingMode mode) { m_mappingMode = mode; }
    EFilter magnificationFilter() const { return m_magnificationFilter; }
    void setMagnificationFilter(EFilter filter) { m_magnificationFilter = filter; }
    EFilter minificationFilter() const { return m_minificationFilter; }
    void setMinificationFilter(EFilter filter) { m_minificationFilter = filter; }
    double alpha() const { return m_alpha; }
    void setAlpha(double alpha) { m_alpha = alpha; }
    // The image file.
    const std::wstring& file() const { return m_file; }
    void setFile(const std::wstring& file) { m_file = file; }
    // The UV set the texture uses.
    const std::wstring& nameUV() const { return m_nameUV; }
    void setNameUV(const std::wstring& name) { m_nameUV = name; }
    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    // Directions 0 (U) and 1 (V); any other throws std::invalid_argument.
    double translation(int direction) const;
    void setTranslation(int direction, double value);
    double scale(int direction) const;
    void setScale(int direction, double value);
    // Directions 0 (U), 1 (V) and 2 (W); any other throws.
    double rotation(int direction) const;
    void setRotation(int direction, double value);
    bool swapUV() const { return m_swapUV; }
    void setSwapUV(bool swap) { m_swapUV = swap; }
    bool useMaterial() const { return m_useMaterial; }
    void setUseMaterial(bool use) { m_useMaterial = use; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    EMethod m_method = MethodUndefined;
    std::array<EWrapMode, 2> m_wrapModes{WrapUndefined, WrapUndefined};
    EMappingMode m_mappingMode = MappingUndefined;
    EFilter m_magnificationFilter = FilterUndefined;
    EFilter m_minificationFilter = FilterUndefined;
    double m_alpha = 1.0;
    std::wstring m_file;
    std::wstring m_nameUV;
    std::wstring m_name;
    std::array<double, 2> m_translation{0.0, 0.0};
    std::array<double, 2> m_scale{1.0, 1.0};
    std::array<double, 3> m_rotation{0.0, 0.0, 0.0};
    bool m_swapUV = false;
    bool m_useMaterial = false;
};

template <> XCH_API const EnumTable<ExcVisuFont::EFontPitch>& enumTable<ExcVisuFont::EFontPitch>();
template <> XCH_API const EnumTable<ExcVisuLineAttribute::ELineStyle>& enumTable<ExcVisuLineAttribute::ELineStyle>();
template <> XCH_API const EnumTable<ExcVisuTexture::EMethod>& enumTable<ExcVisuTexture::EMethod>();
template <> XCH_API const EnumTable<ExcVisuTexture::EWrapMode>& enumTable<ExcVisuTexture::EWrapMode>();
template <> XCH_API const EnumTable<ExcVisuTexture::EMappingMode>& enumTable<ExcVisuTexture::EMappingMode>();
template <> XCH_API const EnumTable<ExcVisuTexture::EFilter>& enumTable<ExcVisuTexture::EFilter>();

// A material: colour components, shininess, bump mapping and texture
// layers.
//
// JSON: {"name", "colors", "shininess", "bump" ([x, y, z]), "bump_factor",
// "normal_map", "textures"}. "colors" is an object from colour-type string
// to [r, g, b, a], holding the components that are set, in type order.
// "normal_map" is a texture object, written only when set. "textures" is an
// object from texture-type string to an array of texture objects, holding
// the types with at least one texture.
//
// Reading "colors" sets each entry's component (an array of fewer than 4
// numbers is refused with a logged line, an element that is not a number
// reads as 0); reading "textures" appends each texture object to its
// type's list; "normal_map" is read into a new texture when an object.
// Unknown type strings read as "ambient" and "ambient_coefficient".
class XCH_API ExcVisuMaterial : public IJsonObject {
public:
    enum EColorType : std::int32_t {
        ColorUnknown = 0,  // "unknown"
        Ambient,           // "ambient"
        Diffuse,           // "diffuse"
        Specular,          // "specular"
        Emissive,          // "emissive"
        Transparency,      // "transparency"
        Reflection         // "reflection"
    };
    enum ETextureType : std::int32_t {
        TextureUnknown = 0,    // "unknown"
        AmbientColor,          // "ambient_color"
        AmbientCoefficient,    // "ambient_coefficient"
        DiffuseColor,          // "diffuse_color"
        DiffuseCoefficient,    // "diffuse_coefficient"
        SpecularColor,         // "specular_color"
        SpecularCoefficient,   // "specular_coefficient"
        EmissiveColor,         // "emissive_color"
        EmissiveCoefficient,   // "emissive_coefficient"
        Normal                 // "normal"
    };

    // A colour component: red, green, blue and alpha in 0..1 (opaque black
    // by default). JSON: [r, g, b, a].
    struct Color {
        double r = 0.0;
        double g = 0.0;
        double b = 0.0;
        double a = 1.0;
        bool operator==(const Color& o) const { return r == o.r && g == o.g && b == o.b && a == o.a; }
        bool operator!=(const Color& o) const { return !(*this == o); }
    };

    using Textures = std::vector<std::shared_ptr<ExcVisuTexture>>;

    ExcVisuMaterial();
    ExcVisuMaterial(const ExcVisuMaterial&);
    ExcVisuMaterial& operator=(const ExcVisuMaterial&);
    ~ExcVisuMaterial() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    // The component of `type`; opaque black when it is not set.
    Color color(EColorType type) const;
    bool hasColor(EColorType type) const { return m_colors.count(type) != 0; }
    void setColor(EColorType type, const Color& color) { m_colors[type] = color; }
    const std::map<EColorType, Color>& colors() const { return m_colors; }
    double shininess() const { return m_shininess; }
    void setShininess(double shininess) { m_shininess = shininess; }
    const std::array<double, 3>& bump() const { return m_bump; }
    void setBump(const std::array<double, 3>& bump) { m_bump = bump; }
    double bumpFactor() const { return m_bumpFactor; }
    void setBumpFactor(double factor) { m_bumpFactor = factor; }
    // Null when the material has none.
    const std::shared_ptr<ExcVisuTexture>& normalMap() const { return m_normalMap; }
    void setNormalMap(const std::shared_ptr<ExcVisuTexture>& map) { m_normalMap = map; }

    // The textures of `type` (empty when none).
    const Textures& textures(ETextureType type) const;
    const std::map<ETextureType, Textures>& textures() const { return m_textures; }
    // A null texture is not added (logged at level 3).
    void addTexture(ETextureType type, const std::shared_ptr<ExcVisuTexture>& texture);
    void addTextures(ETextureType type, const Textures& textures);
    void setTextures(ETextureType type, const Textures& textures);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    struct ColorsRule;
    struct TexturesRule;

    std::wstring m_name;
    std::map<EColorType, Color> m_colors;
    double m_shininess = 0.0;
    std::array<double, 3> m_bump{0.0, 0.0, 0.0};
    double m_bumpFactor = 1.0;
    std::shared_ptr<ExcVisuTexture> m_normalMap;
    std::map<ETextureType, Textures> m_textures;
};

template <> XCH_API const EnumTable<ExcVisuMaterial::EColorType>& enumTable<ExcVisuMaterial::EColorType>();
template <> XCH_API const EnumTable<ExcVisuMaterial::ETextureType>& enumTable<ExcVisuMaterial::ETextureType>();

// The appearance a scene node carries.
//
// JSON: {"font", "color", "hidden", "materials", "line_attribute"}, all
// always written ("color" is null while unset, and null reads back as "no
// change"). Reading "materials" appends one new material per object.
class XCH_API ExcVisuAttributes : public IJsonObject {
public:
    ExcVisuAttributes();
    ExcVisuAttributes(const ExcVisuAttributes&);
    ExcVisuAttributes& operator=(const ExcVisuAttributes&);
    ~ExcVisuAttributes() override;

    const ExcVisuFont& font() const { return m_font; }
    void setFont(const ExcVisuFont& font) { m_font = font; }
    const ExcColor& color() const { return m_color; }
    void setColor(const ExcColor& color) { m_color = color; }
    bool hidden() const { return m_hidden; }
    void setHidden(bool hidden) { m_hidden = hidden; }
    const std::vector<std::shared_ptr<ExcVisuMaterial>>& materials() const { return m_materials; }
    // A null material is not added (logged at level 3).
    void addMaterial(const std::shared_ptr<ExcVisuMaterial>& material);
    void addMaterials(const std::vector<std::shared_ptr<ExcVisuMaterial>>& materials);
    void setMaterials(const std::vector<std::shared_ptr<ExcVisuMaterial>>& materials);
    const ExcVisuLineAttribute& lineAttribute() const { return m_lineAttribute; }
    void setLineAttribute(const ExcVisuLineAttribute& attribute) { m_lineAttribute = attribute; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcVisuFont m_font;
    ExcColor m_color;
    bool m_hidden = false;
    std::vector<std::shared_ptr<ExcVisuMaterial>> m_materials;
    ExcVisuLineAttribute m_lineAttribute;
};

// A 3D text: the string, where it starts, along which direction it runs and
// which way it faces.
//
// JSON: {"text", "anchor_point", "direction", "normal", "color", "font"},
// all always written. Defaults: anchored at the origin, running along +X,
// facing +Z.
class XCH_API ExcVisuText : public IJsonObject {
public:
    ExcVisuText();
    ExcVisuText(const ExcVisuText&);
    ExcVisuText& operator=(const ExcVisuText&);
    ~ExcVisuText() override;

    const std::wstring& text() const { return m_text; }
    void setText(const std::wstring& text) { m_text = text; }
    const ExcVector3d& anchorPoint() const { return m_anchorPoint; }
    void setAnchorPoint(const ExcVector3d& point) { m_anchorPoint = point; }
    const ExcVector3d& direction() const { return m_direction; }
    void setDirection(const ExcVector3d& direction) { m_direction = direction; }
    const ExcVector3d& normal() const { return m_normal; }
    void setNormal(const ExcVector3d& normal) { m_normal = normal; }
    const ExcColor& color() const { return m_color; }
    void setColor(const ExcColor& color) { m_color = color; }
    const ExcVisuFont& font() const { return m_font; }
    void setFont(const ExcVisuFont& font) { m_font = font; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_text;
    ExcVector3d m_anchorPoint;
    ExcVector3d m_direction{1.0, 0.0, 0.0};
    ExcVector3d m_normal{0.0, 0.0, 1.0};
    ExcColor m_color;
    ExcVisuFont m_font;
};

// The display form of a PMI annotation: its lines and texts.
//
// JSON: {"display_name", "mechanical_id" (the PMI object's id), "edges",
// "texts"}. Reading also takes "linked_elements" (entity objects, appended
// to linkedElements()), a key this class never writes.
class XCH_API ExcVisuPMI : public IJsonObject {
public:
    ExcVisuPMI();
    ExcVisuPMI(const ExcVisuPMI&);
    ExcVisuPMI& operator=(const ExcVisuPMI&);
    ~ExcVisuPMI() override;

    const std::wstring& displayName() const { return m_displayName; }
    void setDisplayName(const std::wstring& name) { m_displayName = name; }
    const std::wstring& mechanicalId() const { return m_mechanicalId; }
    void setMechanicalId(const std::wstring& id) { m_mechanicalId = id; }
    const std::vector<std::shared_ptr<ExcVisuEdge>>& edges() const { return m_edges; }
    // Null edges and texts are not added (logged at level 3).
    void addEdge(const std::shared_ptr<ExcVisuEdge>& edge);
    void setEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges);
    const std::vector<std::shared_ptr<ExcVisuText>>& texts() const { return m_texts; }
    void addText(const std::shared_ptr<ExcVisuText>& text);
    void setTexts(const std::vector<std::shared_ptr<ExcVisuText>>& texts);
    // The entities the annotation points at, as read (never written).
    const std::vector<std::shared_ptr<ExcEntity>>& linkedElements() const { return m_linkedElements; }
    void setLinkedElements(const std::vector<std::shared_ptr<ExcEntity>>& elements) { m_linkedElements = elements; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_displayName;
    std::wstring m_mechanicalId;
    std::vector<std::shared_ptr<ExcVisuEdge>> m_edges;
    std::vector<std::shared_ptr<ExcVisuText>> m_texts;
    std::vector<std::shared_ptr<ExcEntity>> m_linkedElements;
};

} // namespace xch
