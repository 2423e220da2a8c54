#include <gtest/gtest.h>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_misc_data.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

TEST(PropertyGroups, ValueTypeTableKeepsTheVocabularyLetterForLetter) {
    const auto& entries = enumTable<ExcMiscProperty::EValueType>().entries();
    ASSERT_EQ(entries.size(), 415u);
    // Spot checks along the whole numbering: a shifted or misspelt name moves every value after it.
    const std::pair<int, const wchar_t*> samples[] = {
        {0, L"unknown_value_type"}, {15, L"rstifnes"}, {23, L"courant"}, {180, L"inverse_temprtre"},
        {292, L"loundness"}, {351, L"fluxiodquantum"}, {365, L"powerbis"}, {414, L"temperature_gradient"}};
    for (const auto& [value, name] : samples) {
        EXPECT_EQ(entries[value].first, value);
        EXPECT_EQ(entries[value].second, name);
        EXPECT_EQ(enumFromString<ExcMiscProperty::EValueType>(name), value) << value;
    }
    EXPECT_EQ(enumFromString<ExcMiscProperty::EValueType>(L"Length"), ExcMiscProperty::Absoluteviscosity);
}

TEST(PropertyGroups, PropertyWritesOptionalKeysOnlyWhenSet) {
    ExcMiscProperty mass(L"Mass", ExcMiscProperty::TypeDouble, L"2.5");
    EXPECT_EQ(toJsonText(mass), L"{\"name\":\"Mass\",\"type\":\"double\",\"value\":\"2.5\"}");
    mass.setUnit(L"kg").setValueType(ExcMiscProperty::Mass);
    EXPECT_EQ(toJsonText(mass),
              L"{\"name\":\"Mass\",\"type\":\"double\",\"unit\":\"kg\",\"value\":\"2.5\",\"value_type\":\"mass\"}");

    LogCapture log;
    ExcMiscProperty read;
    expectReads(read, {{L"{\"name\":\"A\",\"type\":\"Double\",\"unit\":3,\"value\":\"x\",\"value_type\":\"nope\"}",
                        L"{\"name\":\"A\",\"type\":\"boolean\",\"value\":\"x\",\"value_type\":\"absoluteviscosity\"}"},
                       {L"[1]", L"{\"name\":\"A\",\"type\":\"boolean\",\"value\":\"x\",\"value_type\":\"absoluteviscosity\"}"}});
    EXPECT_TRUE(log.has("ExcMiscProperty::readObject: input JsonValue is not an object"));
    EXPECT_EQ(log.messages(3).size(), 1u);
}

TEST(PropertyGroups, GroupsAndPropertiesAreSetsByNameAndReadingAppends) {
    LogCapture log;
    ExcMiscData data;
    readFromJsonText(data, L"[{\"name\":\"B\",\"is_bim\":1,\"properties\":[{\"name\":\"Mass\",\"value\":\"1\"},"
                           L"{\"name\":\"Mass\",\"value\":\"2\"},{\"name\":\"Area\",\"value\":\"3\"}]},"
                           L"{\"name\":\"A\",\"is_bim\":true},{\"name\":\"A\",\"is_bim\":false}]");
    ASSERT_EQ(data.groups().size(), 2u);
    auto b = data.findGroup(L"B");
    ASSERT_TRUE(b);
    EXPECT_FALSE(b->isBim());
    ASSERT_EQ(b->properties().size(), 2u);
    EXPECT_EQ(b->findProperty(L"Mass")->value(), L"1"); // the first one read stays
    EXPECT_TRUE(data.findGroup(L"A")->isBim());         // groups are never merged or replaced
    EXPECT_EQ(log.count("ExcMiscData::addGroup: properties group 'A' already exist, some properties can be lost."), 1);
    // Written in name order, whatever the order of insertion.
    EXPECT_EQ(toJsonText(data),
              L"[{\"name\":\"A\",\"is_bim\":true,\"properties\":[]},{\"name\":\"B\",\"is_bim\":false,\"properties\":"
              L"[{\"name\":\"Area\",\"type\":\"unknown\",\"value\":\"3\"},{\"name\":\"Mass\",\"type\":\"unknown\",\"value\":\"1\"}]}]");

    readFromJsonText(data, L"[{\"name\":\"C\"}]");
    EXPECT_EQ(data.groups().size(), 3u);
    log.clear();
    EXPECT_FALSE(data.addGroup(nullptr));
    readFromJsonText(data, L"{\"name\":\"D\"}");
    readFromJsonText(*b, L"\"B\"");
    EXPECT_EQ(data.groups().size(), 3u);
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcMiscData::addGroup: attempt to add null group",
                                   "ExcMiscData::readObject: input JsonValue is not an array.",
                                   "ExcMiscPropertiesGroup::readObject: input JsonValue is not an object."}));
}

TEST(EntityReferences, KeysFollowTheEntityType) {
    auto path = std::make_shared<ExcFullSubentPath>(7);
    EXPECT_EQ(toJsonText(*path), L"{\"block_references\":[],\"subent_id\":7,\"subent_type\":\"unspecified\","
                                 L"\"visu_id\":\"\",\"instance_path\":false}");
    ExcFullSubentPath back;
    back.setSubentType(ExcFullSubentPath::Face);
    readFromJsonText(back, toJsonText(*path));
    EXPECT_EQ(back.subentType(), ExcFullSubentPath::Unspecified);

    ExcEntity entity(ExcEntity::Original, L"#12", L"hole face");
    EXPECT_EQ(toJsonText(entity), L"{\"type\":\"original\",\"description\":\"hole face\",\"id\":\"#12\"}");
    entity.setType(ExcEntity::Mfg);
    EXPECT_EQ(toJsonText(entity), L"{\"type\":\"mfg\",\"id\":\"#12\"}");
    entity.setType(ExcEntity::Unknown);
    EXPECT_EQ(toJsonText(entity), L"{\"type\":\"unknown\"}");
    entity.setType(ExcEntity::Fsp);
    EXPECT_EQ(toJsonText(entity), L"{\"type\":\"fsp\",\"fsp\":null}");

    // Every key is read whatever the type; "fsp" only from an object, into a new path.
    ExcEntity read(path);
    readFromJsonText(read, L"{\"type\":\"mfg\",\"fsp\":null,\"id\":\"F1\",\"description\":\"d\"}");
    EXPECT_EQ(read.fsp(), path);
    readFromJsonText(read, L"{\"type\":\"FSP\",\"fsp\":{\"subent_id\":18446744073709551615,"
                           L"\"subent_type\":\"Face\",\"block_references\":[\"r1\",2,\"r2\"]}}");
    EXPECT_EQ(read.type(), ExcEntity::Fsp); // "fsp" is the smallest string
    ASSERT_TRUE(read.fsp() && read.fsp() != path);
    EXPECT_EQ(read.fsp()->subentId(), UINT64_MAX);
    EXPECT_EQ(read.fsp()->subentType(), ExcFullSubentPath::Body);
    EXPECT_EQ(read.fsp()->refs(), (std::vector<std::wstring>{L"r1", L"r2"}));
    EXPECT_EQ(read.id(), L"F1");
    EXPECT_EQ(read.description(), L"d");

    LogCapture log;
    readFromJsonText(read, L"[]");
    readFromJsonText(*read.fsp(), L"5");
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{"ExcEntity object should have a JSON object type.",
                                                         "ExcFullSubentPath object should have a JSON object type."}));
    EXPECT_EQ(read.fsp()->subentId(), UINT64_MAX);
}
