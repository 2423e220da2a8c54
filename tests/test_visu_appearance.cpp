#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include <xch_api/xch_api_exchange_visualization.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

namespace {

// Runs `call` and returns the text of the std::invalid_argument it throws
// (empty when it throws nothing).
template <class Call>
std::string invalidArgument(Call call) {
    try {
        call();
    } catch (const std::invalid_argument& e) {
        return e.what();
    }
    return {};
}

} // namespace

TEST(VisuTexture, DirectionsAreCheckedAndFixedArraysTravelByPosition) {
    ExcVisuTexture texture;
    EXPECT_EQ(toJsonText(texture),
              L"{\"method\":\"undefined\",\"wrap_mode\":[\"undefined\",\"undefined\"],\"mapping_mode\":\"undefined\","
              L"\"texture_magnification_filter\":\"undefined\",\"texture_minification_filter\":\"undefined\","
              L"\"alpha\":1.0,\"file\":\"\",\"name_uv\":\"\",\"name\":\"\",\"uv_translation\":[0.0,0.0],"
              L"\"uv_scale\":[1.0,1.0],\"uv_rotation\":[0.0,0.0,0.0],\"swap_uv\":false,\"use_material\":false}");

    const std::string wrap = "Texture wrap mode has only 0 (U) and 1 (V) directions.";
    const std::string translation = "Texture translation has only 0 (U) and 1 (V) directions.";
    const std::string scale = "Texture scale has only 0 (U) and 1 (V) directions.";
    const std::string rotation = "Texture rotation has only 0 (U), 1 (V) and 2 (W) directions.";
    EXPECT_EQ(invalidArgument([&] { texture.setWrapMode(2, ExcVisuTexture::Clamp); }), wrap);
    EXPECT_EQ(invalidArgument([&] { texture.wrapMode(-1); }), wrap);
    EXPECT_EQ(invalidArgument([&] { texture.translation(2); }), translation);
    EXPECT_EQ(invalidArgument([&] { texture.setTranslation(-1, 1.0); }), translation);
    EXPECT_EQ(invalidArgument([&] { texture.scale(2); }), scale);
    EXPECT_EQ(invalidArgument([&] { texture.setScale(5, 1.0); }), scale);
    EXPECT_EQ(invalidArgument([&] { texture.rotation(3); }), rotation);
    EXPECT_EQ(invalidArgument([&] { texture.setRotation(3, 1.0); }), rotation);
    EXPECT_EQ(invalidArgument([&] { texture.setRotation(2, 0.5); }), "");

    texture.setWrapMode(1, ExcVisuTexture::Mirror);
    texture.setTranslation(1, 0.25);
    texture.setScale(0, 2.0);
    texture.setMagnificationFilter(ExcVisuTexture::LinearMipmapLinear);
    texture.setSwapUV(true);
    ExcVisuTexture back;
    readFromJsonText(back, toJsonText(texture));
    EXPECT_EQ(toJsonText(back), toJsonText(texture));
    EXPECT_EQ(back.rotation(2), 0.5);
    EXPECT_EQ(back.wrapMode(1), ExcVisuTexture::Mirror);

    // By position; integers accepted for numbers; a short array changes only what it reaches; unknown strings
    // take the smallest string of their table.
    readFromJsonText(back, L"{\"wrap_mode\":[\"Repeat\"],\"uv_scale\":[3],\"uv_rotation\":[\"x\",1,2,3],"
                           L"\"method\":\"?\",\"mapping_mode\":\"\",\"texture_minification_filter\":\"linear_\","
                           L"\"alpha\":0}");
    EXPECT_EQ(back.wrapMode(0), ExcVisuTexture::Border);
    EXPECT_EQ(back.wrapMode(1), ExcVisuTexture::Mirror);
    EXPECT_EQ(back.scale(0), 3.0);
    EXPECT_EQ(back.scale(1), 1.0);
    EXPECT_EQ(back.rotation(0), 0.0);
    EXPECT_EQ(back.rotation(1), 1.0);
    EXPECT_EQ(back.method(), ExcVisuTexture::Decal);
    EXPECT_EQ(back.mappingMode(), ExcVisuTexture::Cylindrical);
    EXPECT_EQ(back.minificationFilter(), ExcVisuTexture::Linear);
    EXPECT_EQ(back.alpha(), 0.0);
}

TEST(VisuMaterial, ColorsAndTexturesByTypeWithTheirExactMessages) {
    ExcVisuMaterial material;
    material.setName(L"Steel");
    material.setColor(ExcVisuMaterial::Specular, {1.0, 1.0, 1.0, 1.0});
    material.setColor(ExcVisuMaterial::Diffuse, {0.5, 0.25, 0.0, 0.75});
    material.setShininess(0.5);
    auto texture = std::make_shared<ExcVisuTexture>();
    texture->setFile(L"steel.png");
    material.addTexture(ExcVisuMaterial::DiffuseColor, texture);
    material.setTextures(ExcVisuMaterial::Normal, {});
    const std::wstring textureText = toJsonText(*texture);
    EXPECT_EQ(toJsonText(material),
              L"{\"name\":\"Steel\",\"colors\":{\"diffuse\":[0.5,0.25,0.0,0.75],\"specular\":[1.0,1.0,1.0,1.0]},"
              L"\"shininess\":0.5,\"bump\":[0.0,0.0,0.0],\"bump_factor\":1.0,\"textures\":{\"diffuse_color\":[" +
                  textureText + L"]}}");
    material.setNormalMap(texture);
    EXPECT_NE(toJsonText(material).find(L"\"bump_factor\":1.0,\"normal_map\":" + textureText + L",\"textures\""),
              std::wstring::npos);

    ExcVisuMaterial back;
    readFromJsonText(back, toJsonText(material));
    EXPECT_EQ(toJsonText(back), toJsonText(material));
    ASSERT_TRUE(back.normalMap());
    EXPECT_EQ(back.normalMap()->file(), L"steel.png");
    EXPECT_EQ(back.color(ExcVisuMaterial::Emissive), ExcVisuMaterial::Color()); // unset: opaque black
    EXPECT_FALSE(back.hasColor(ExcVisuMaterial::Emissive));

    LogCapture log;
    readFromJsonText(back, L"{\"colors\":{\"diffuse\":[1.0,0.5,0.25],\"ambient\":7,\"Glow\":[0,1,\"x\",1,9]},"
                           L"\"textures\":{\"normal\":{},\"bogus\":[{\"name\":\"t\"},3]},\"bump\":[1,2]}");
    EXPECT_EQ(back.color(ExcVisuMaterial::Diffuse), (ExcVisuMaterial::Color{0.5, 0.25, 0.0, 0.75}));
    EXPECT_EQ(back.color(ExcVisuMaterial::Ambient), (ExcVisuMaterial::Color{0.0, 1.0, 0.0, 1.0}));
    ASSERT_EQ(back.textures(ExcVisuMaterial::AmbientCoefficient).size(), 1u);
    EXPECT_EQ(back.textures(ExcVisuMaterial::AmbientCoefficient)[0]->name(), L"t");
    EXPECT_EQ(back.bump(), (std::array<double, 3>{1.0, 2.0, 0.0}));

    material.addTexture(ExcVisuMaterial::Normal, nullptr);
    material.addTextures(ExcVisuMaterial::Normal, {nullptr, texture});
    EXPECT_EQ(material.textures(ExcVisuMaterial::Normal).size(), 1u);
    const std::string colorMessage =
        "ExcVisuMaterial: !colorType.IsString() || !colorValue.IsArray() || colorValue.GetArray().Size() < 4";
    EXPECT_EQ(log.messages(2),
              (std::vector<std::string>{colorMessage, colorMessage,
                                        "ExcVisuMaterial: !textureType.IsString() || !textureArray.IsArray()"}));
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{"ExcVisuMaterial: attempt to add null Texture object.",
                                                         "ExcVisuMaterial: attempt to add null Texture object."}));
}

TEST(VisuAppearance, AttributesTextsAndPmiKeysAndMessages) {
    ExcVisuAttributes attributes;
    ExcVisuFont font;
    font.setName(L"Arial");
    font.setFontPitch(ExcVisuFont::PitchVariable);
    attributes.setFont(font);
    attributes.setHidden(true);
    attributes.addMaterial(std::make_shared<ExcVisuMaterial>());
    EXPECT_EQ(toJsonText(attributes),
              L"{\"font\":{\"name\":\"Arial\",\"text_height\":1.0,\"font_pitch\":\"variable\",\"spacing_factor\":1.0,"
              L"\"width_scaling_factor\":1.0},\"color\":null,\"hidden\":true,\"materials\":[{\"name\":\"\","
              L"\"colors\":{},\"shininess\":0.0,\"bump\":[0.0,0.0,0.0],\"bump_factor\":1.0,\"textures\":{}}],"
              L"\"line_attribute\":{\"line_weight\":0.0,\"line_style\":\"undefined\"}}");
    ExcVisuAttributes back;
    readFromJsonText(back, L"{\"font\":{\"text_height\":3,\"font_pitch\":\"mono\"},\"color\":{\"rgb\":[1,2,3]},"
                           L"\"materials\":[{},null],\"line_attribute\":{\"line_weight\":2,\"line_style\":\"x\"}}");
    EXPECT_EQ(back.font().textHeight(), 3.0);
    EXPECT_EQ(back.font().fontPitch(), ExcVisuFont::PitchFixed);
    EXPECT_TRUE(back.color().hasRGB());
    EXPECT_EQ(back.materials().size(), 1u);
    EXPECT_EQ(back.lineAttribute().lineWeight(), 2.0);
    EXPECT_EQ(back.lineAttribute().lineStyle(), ExcVisuLineAttribute::CenterLine);

    ExcVisuText text;
    text.setText(L"\u00d8 12");
    EXPECT_EQ(toJsonText(text), L"{\"text\":\"\u00d8 12\",\"anchor_point\":[0.0,0.0,0.0],\"direction\":[1.0,0.0,0.0],"
                                L"\"normal\":[0.0,0.0,1.0],\"color\":null,\"font\":" + toJsonText(ExcVisuFont()) + L"}");

    // "linked_elements" is read, never written.
    ExcVisuPMI pmi;
    readFromJsonText(pmi, L"{\"display_name\":\"Datum A\",\"mechanical_id\":\"P7\",\"edges\":[{}],"
                          L"\"texts\":[{\"text\":\"A\"},false],\"linked_elements\":[{\"type\":\"mfg\",\"id\":\"H1\"},1]}");
    ASSERT_EQ(pmi.linkedElements().size(), 1u);
    EXPECT_EQ(pmi.linkedElements()[0]->id(), L"H1");
    EXPECT_EQ(pmi.texts()[0]->text(), L"A");
    EXPECT_EQ(toJsonText(pmi), L"{\"display_name\":\"Datum A\",\"mechanical_id\":\"P7\",\"edges\":[" +
                                   toJsonText(ExcVisuEdge()) + L"],\"texts\":[" + toJsonText(*pmi.texts()[0]) + L"]}");

    LogCapture log;
    attributes.addMaterial(nullptr);
    attributes.setMaterials({nullptr});
    pmi.addEdge(nullptr);
    pmi.addText(nullptr);
    EXPECT_TRUE(attributes.materials().empty());
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{"ExcVisuAttributes: attempt to add null Material object.",
                                                         "ExcVisuAttributes: attempt to add null Material object.",
                                                         "ExcVisuPMI: attempt to add null Edge object.",
                                                         "ExcVisuPMI: attempt to add null Text object."}));

    ExcVisuLineAttribute line;
    ExcVisuTexture texture;
    ExcVisuMaterial material;
    for (IJsonObject* object :
         std::initializer_list<IJsonObject*>{&font, &texture, &material, &line, &attributes, &text, &pmi})
        readFromJsonText(*object, L"[]");
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{"ExcVisuFont object should have a JSON object type.",
                                                         "ExcVisuTexture object should have a JSON object type.",
                                                         "ExcVisuMaterial object should have a JSON object type.",
                                                         "ExcVisuLineAttribute object should have a JSON object type.",
                                                         "ExcVisuAttributes object should have a JSON object type.",
                                                         "ExcVisuText object should have a JSON object type.",
                                                         "ExcVisuPMI object should have a JSON object type."}));
}
