// PMI base classes, notes, datums and datum targets: key order, reading
// rules, enumeration tables and fall-backs, logged messages.
#include <gtest/gtest.h>

#include <xch_api/xch_api_exchange_pmi.h>

#include "support/enum_table_check.h"
#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

namespace {

const std::wstring kDefaultAnnotationKeys = L"\"orientation\":\"horizontal\",\"angle\":0.0,\"z_depth\":0.0,"
                                            L"\"position\":[0.0,0.0],\"linked_elements\":[],\"leaders\":[]";

std::wstring defaultAnnotation(const std::wstring& type) {
    return L"\"name\":\"\",\"id\":\"\",\"hidden\":false,\"type\":\"" + type + L"\"," + kDefaultAnnotationKeys;
}

const std::wstring kDefaultText = L"{\"label\":\"\",\"font_name\":\"\",\"font_type\":\"simplex\",\"fixed_pitch\":false,"
                                  L"\"height\":0.0,\"bold\":false,\"italic\":false,\"underline\":false,"
                                  L"\"strike_through\":false,\"overline\":false,\"ratio\":0.0,\"slant\":0.0,"
                                  L"\"color\":[1.0,1.0,1.0,1.0]}";

} // namespace

TEST(PMIAnnotations, NoteWritesBaseKeysFirstAndEveryKeyAlways) {
    ExcPMINote note;
    EXPECT_EQ(toJsonText(note),
              L"{" + defaultAnnotation(L"note") + L",\"texts\":[],\"is_flag_note\":false,\"is_noa\":false}");
    EXPECT_EQ(toJsonText(ExcPMINote::Text()), kDefaultText);

    note.setName(L"Note 1");
    note.setId(L"N1");
    note.setHidden(true);
    note.setOrientation(ExcPMIAnnotation::Perpendicular);
    note.setAngle(90.0);
    note.setZDepth(-0.5);
    note.setPosition(ExcVector2d(12.5, -3.25));
    note.addLinkedElement(std::make_shared<ExcEntity>(ExcEntity::Mfg, L"F7"));
    auto leader = std::make_shared<ExcPMILeader>();
    leader->addPoint(ExcVector2d(0.0, 1.0));
    leader->addPoint(ExcVector2d(2.5, 1.0));
    note.addLeader(leader);
    auto text = std::make_shared<ExcPMINote::Text>(L"BREAK ALL EDGES \u00b10.2");
    text->setFontName(L"Arial");
    text->setFontType(ExcPMINote::Text::IGES1002);
    text->setFixedPitch(true);
    text->setHeight(3.5);
    text->setBold(true);
    text->setItalic(true);
    text->setUnderline(true);
    text->setStrikeThrough(true);
    text->setOverline(true);
    text->setRatio(0.8);
    text->setSlant(15.0);
    text->setRGBA(0.25, 0.5, 0.75, 0.5);
    note.addText(text);
    note.setFlagNote(true);
    note.setNOA(true);
    const std::wstring expected =
        L"{\"name\":\"Note 1\",\"id\":\"N1\",\"hidden\":true,\"type\":\"note\",\"orientation\":\"perpendicular\","
        L"\"angle\":90.0,\"z_depth\":-0.5,\"position\":[12.5,-3.25],\"linked_elements\":[{\"type\":\"mfg\","
        L"\"id\":\"F7\"}],\"leaders\":[{\"points\":[[0.0,1.0],[2.5,1.0]]}],\"texts\":[{\"label\":\"BREAK ALL "
        L"EDGES \u00b10.2\",\"font_name\":\"Arial\",\"font_type\":\"IGES_1002\",\"fixed_pitch\":true,\"height\":3.5,"
        L"\"bold\":true,\"italic\":true,\"underline\":true,\"strike_through\":true,\"overline\":true,\"ratio\":0.8,"
        L"\"slant\":15.0,\"color\":[0.25,0.5,0.75,0.5]}],\"is_flag_note\":true,\"is_noa\":true}";
    EXPECT_EQ(toJsonText(note), expected);
    EXPECT_EQ(note.type(), PMINote); // a flag note is still a note

    ExcPMINote read;
    readFromJsonText(read, expected);
    EXPECT_EQ(toJsonText(read), expected);
    double r = 0, g = 0, b = 0, a = 0;
    read.texts().at(0)->getRGBA(r, g, b, a);
    EXPECT_EQ((std::vector<double>{r, g, b, a}), (std::vector<double>{0.25, 0.5, 0.75, 0.5}));

    // Copies share the elements of their lists.
    ExcPMINote copy(note);
    EXPECT_EQ(copy.texts().at(0), text);
    EXPECT_EQ(copy.leaders().at(0), leader);
    EXPECT_EQ(toJsonText(copy), expected);
    ExcPMINote assigned;
    assigned = note;
    EXPECT_EQ(toJsonText(assigned), expected);
}

TEST(PMIAnnotations, DatumAndDatumTargetKeys) {
    ExcPMIDatum datum(L"A");
    datum.setId(L"D-A");
    datum.addTargetId(L"T1");
    datum.addTargetId(L"T2");
    EXPECT_EQ(toJsonText(datum), L"{\"name\":\"\",\"id\":\"D-A\",\"hidden\":false,\"type\":\"datum\"," +
                                     kDefaultAnnotationKeys + L",\"label\":\"A\",\"target_ids\":[\"T1\",\"T2\"]}");
    datum.setTargetIds({L"T3"});
    EXPECT_EQ(datum.targetIds(), std::vector<std::wstring>{L"T3"});

    ExcPMIDatumTarget target;
    EXPECT_EQ(toJsonText(target), L"{" + defaultAnnotation(L"datum_target") +
                                      L",\"label\":\"\",\"target_type\":\"unknown\",\"has_diameter\":false,"
                                      L"\"upper_text\":\"\",\"lower_text\":\"\",\"target_zone\":[[0.0,0.0,0.0],"
                                      L"[0.0,0.0,0.0]]}");
    target.setLabel(L"A1");
    target.setTargetType(ExcPMIDatumTarget::AreaCircular);
    target.setHasDiameter(true);
    target.setUpperText(L"\u23008");
    target.setLowerText(L"A1");
    target.setZonePoint1(ExcVector3d(1.0, 2.0, 3.0));
    target.setZonePoint2(ExcVector3d(5.0, 2.0, 3.0));
    const std::wstring expected = L"{" + defaultAnnotation(L"datum_target") +
                                  L",\"label\":\"A1\",\"target_type\":\"area_circular\",\"has_diameter\":true,"
                                  L"\"upper_text\":\"\u23008\",\"lower_text\":\"A1\",\"target_zone\":[[1.0,2.0,3.0],"
                                  L"[5.0,2.0,3.0]]}";
    EXPECT_EQ(toJsonText(target), expected);
    ExcPMIDatumTarget read;
    readFromJsonText(read, expected);
    EXPECT_EQ(toJsonText(read), expected);
    EXPECT_EQ(read.type(), PMIDatumTarget);

    // A zone point that is not an array keeps its value; extra points are ignored.
    readFromJsonText(read, L"{\"target_zone\":[{}, [9.0, 9.0, 9.0], [7.0, 7.0, 7.0]]}");
    EXPECT_EQ(read.zonePoint1().x(), 1.0);
    EXPECT_EQ(read.zonePoint2().x(), 9.0);
}

TEST(PMIAnnotations, EnumerationTablesAndFallBacks) {
    expectEnumTable<EPMIAnnotationType>({L"unknown", L"datum", L"datum_target", L"note", L"flag_note", L"NOA",
                                     L"roughness", L"GDT", L"dimension"});
    expectEnumTable<ExcPMIAnnotation::EOrientation>(
        {L"horizontal", L"vertical", L"parallel", L"perpendicular", L"dim_angle"});
    expectEnumTable<ExcPMINote::Text::EFontType>({L"simplex", L"din", L"military", L"ISO", L"light_line", L"century",
                                              L"IGES_1001", L"IGES_1002", L"IGES_1003"});
    expectEnumTable<ExcPMIDatumTarget::ETargetType>({L"unknown", L"point", L"line", L"area_circular", L"area_rectangular",
                                                 L"area_face", L"feature", L"user_defined"});

    // Unknown strings read as the value of the smallest string (upper case
    // sorts first), not as "unknown"; values outside a table write as its
    // first string.
    EXPECT_EQ(enumFromString<EPMIAnnotationType>(L"gdt"), PMIGDT);
    EXPECT_EQ(enumFromString<EPMIAnnotationType>(L""), PMIGDT);
    EXPECT_EQ(enumFromString<EPMIAnnotationType>(L"noa"), PMIGDT);
    EXPECT_EQ(enumToString(static_cast<EPMIAnnotationType>(9)), L"unknown");
    EXPECT_EQ(enumToString(static_cast<EPMIAnnotationType>(-1)), L"unknown");

    ExcPMINote note;
    auto text = std::make_shared<ExcPMINote::Text>();
    note.addText(text);
    readFromJsonText(note, L"{\"orientation\":\"Horizontal\",\"texts\":[{\"font_type\":\"iso\"}]}");
    EXPECT_EQ(note.orientation(), ExcPMIAnnotation::DimAngle);
    EXPECT_EQ(note.texts().back()->fontType(), ExcPMINote::Text::IGES1001);
    readFromJsonText(note, L"{\"orientation\":\"vertical\"}");
    EXPECT_EQ(note.orientation(), ExcPMIAnnotation::Vertical);
    readFromJsonText(note, L"{\"orientation\":3}"); // not a string: unchanged
    EXPECT_EQ(note.orientation(), ExcPMIAnnotation::Vertical);

    ExcPMIDatumTarget target;
    readFromJsonText(target, L"{\"target_type\":\"Point\"}");
    EXPECT_EQ(target.targetType(), ExcPMIDatumTarget::AreaCircular);

    note.setOrientation(static_cast<ExcPMIAnnotation::EOrientation>(5));
    text->setFontType(static_cast<ExcPMINote::Text::EFontType>(-3));
    target.setTargetType(static_cast<ExcPMIDatumTarget::ETargetType>(8));
    EXPECT_NE(toJsonText(note).find(L"\"orientation\":\"horizontal\""), std::wstring::npos);
    EXPECT_NE(toJsonText(*text).find(L"\"font_type\":\"simplex\""), std::wstring::npos);
    EXPECT_NE(toJsonText(target).find(L"\"target_type\":\"unknown\""), std::wstring::npos);
}

TEST(PMIAnnotations, ReadingIsLenientAppendsToListsAndIgnoresType) {
    const std::wstring once =
        L"{\"type\":\"datum\",\"texts\":[{\"label\":\"a\"},7,\"b\",[],null,{\"label\":\"c\"}],"
        L"\"leaders\":[{\"points\":[[1.0,2.0],5,{},[3.0,4.0]]},true],"
        L"\"linked_elements\":[{\"type\":\"mfg\",\"id\":\"E\"},[{}],\"E2\"]}";
    ExcPMINote note;
    readFromJsonText(note, once);
    EXPECT_EQ(note.type(), PMINote);
    ASSERT_EQ(note.texts().size(), 2u);
    EXPECT_EQ(note.texts()[1]->label(), L"c");
    ASSERT_EQ(note.leaders().size(), 1u);
    EXPECT_EQ(note.leaders()[0]->points().size(), 2u);
    EXPECT_EQ(note.leaders()[0]->points()[1].y(), 4.0);
    ASSERT_EQ(note.linkedElements().size(), 1u);
    readFromJsonText(note, once);
    EXPECT_EQ(note.texts().size(), 4u);
    EXPECT_EQ(note.leaders().size(), 2u);
    EXPECT_EQ(note.linkedElements().size(), 2u);

    // A member of the wrong JSON kind leaves its field as it was; numbers
    // are taken from integers too.
    ExcPMINote::Text text;
    text.setRGBA(0.1, 0.2, 0.3, 0.4);
    expectReads(text, {
        {L"{\"color\":[0.5,1,0.2]}", L"{\"label\":\"\",\"font_name\":\"\",\"font_type\":\"simplex\","
                                     L"\"fixed_pitch\":false,\"height\":0.0,\"bold\":false,\"italic\":false,"
                                     L"\"underline\":false,\"strike_through\":false,\"overline\":false,"
                                     L"\"ratio\":0.0,\"slant\":0.0,\"color\":[0.5,0.2,0.3,0.4]}"},
        {L"{\"color\":[0.0,0.0,0.0,0.0,0.9],\"label\":3,\"font_name\":\"F\",\"fixed_pitch\":1,\"height\":4,"
         L"\"bold\":\"true\",\"italic\":true,\"ratio\":\"1\",\"slant\":-2}",
         L"{\"label\":\"\",\"font_name\":\"F\",\"font_type\":\"simplex\",\"fixed_pitch\":false,\"height\":4.0,"
         L"\"bold\":false,\"italic\":true,\"underline\":false,\"strike_through\":false,\"overline\":false,"
         L"\"ratio\":0.0,\"slant\":-2.0,\"color\":[0.0,0.0,0.0,0.0]}"},
        {L"{\"color\":{\"r\":1.0}}", L"{\"label\":\"\",\"font_name\":\"F\",\"font_type\":\"simplex\","
                                    L"\"fixed_pitch\":false,\"height\":4.0,\"bold\":false,\"italic\":true,"
                                    L"\"underline\":false,\"strike_through\":false,\"overline\":false,"
                                    L"\"ratio\":0.0,\"slant\":-2.0,\"color\":[0.0,0.0,0.0,0.0]}"},
    });

    ExcPMIDatum datum;
    datum.setHidden(true);
    datum.setPosition(ExcVector2d(1.0, 2.0));
    readFromJsonText(datum, L"{\"hidden\":1,\"position\":{\"x\":5.0},\"angle\":\"90\",\"z_depth\":7,"
                            L"\"target_ids\":[\"T1\",1,\"T2\"],\"label\":[\"A\"],\"name\":null,\"id\":\"D\"}");
    readFromJsonText(datum, L"{\"target_ids\":[\"T3\"],\"position\":[3.0,4]}");
    EXPECT_TRUE(datum.isHidden());
    EXPECT_EQ(datum.position().x(), 3.0);
    EXPECT_EQ(datum.position().y(), 2.0); // vectors stop at an integer element
    EXPECT_EQ(datum.angle(), 0.0);
    EXPECT_EQ(datum.zDepth(), 7.0);
    EXPECT_EQ(datum.targetIds(), (std::vector<std::wstring>{L"T1", L"T2", L"T3"}));
    EXPECT_EQ(datum.label(), L"");
    EXPECT_EQ(datum.id(), L"D");
}

TEST(PMIAnnotations, MessagesAtTheirLevels) {
    LogCapture log(3);
    ExcPMINote note;
    ExcPMIDatum datum;
    ExcPMIDatumTarget target;
    ExcPMILeader leader;
    ExcPMIText text;
    ExcPMINote::Text noteText;
    for (IJsonObject* object : std::vector<IJsonObject*>{&note, &datum, &target, &leader, &text, &noteText})
        readFromJsonText(*object, L"[{\"name\":\"x\"}]");
    // The bases check the shape for themselves when called directly.
    JsonDocument number;
    number.Parse(L"1");
    note.ExcPMIAnnotation::readObject(number);
    note.ExcPMIObject::readObject(number);
    // A nested text that is not an object is skipped before it is read.
    readFromJsonText(note, L"{\"pmi\":1,\"texts\":[1]}");
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{
                                   "ExcPMINote object should have a JSON object type.",
                                   "ExcPMIDatum object should have a JSON object type.",
                                   "ExcPMIDatumTarget object should have a JSON object type.",
                                   "ExcPMILeader object should have a JSON object type.",
                                   "ExcPMIText object should have a JSON object type.",
                                   "ExcPMINote::Text object should have a JSON object type.",
                                   "ExcPMIAnnotation object should have a JSON object type.",
                                   "ExcPMIObject object should have a JSON object type.",
                               }));
    EXPECT_EQ(toJsonText(note), toJsonText(ExcPMINote()));

    auto a = std::make_shared<ExcPMILeader>();
    auto b = std::make_shared<ExcPMILeader>();
    note.addLeaders({a, nullptr, b});
    note.addLeader(nullptr);
    note.addLinkedElements({nullptr, std::make_shared<ExcEntity>()});
    note.addLinkedElement(nullptr);
    note.addTexts({nullptr});
    note.addText(nullptr);
    EXPECT_EQ(note.leaders(), (std::vector<std::shared_ptr<ExcPMILeader>>{a, b}));
    EXPECT_EQ(note.linkedElements().size(), 1u);
    EXPECT_TRUE(note.texts().empty());
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcPMIAnnotation: attempt to add null PMI leader.",
                                   "ExcPMIAnnotation: attempt to add null PMI leader.",
                                   "ExcPMIAnnotation: attempt to add null linked element",
                                   "ExcPMIAnnotation: attempt to add null linked element",
                                   "ExcPMINote: attempt to add null text.",
                                   "ExcPMINote: attempt to add null text.",
                               }));

    // The setters take the list as given; a null element is not written.
    log.clear();
    note.setLeaders({nullptr, a});
    note.setTexts({nullptr});
    note.setLinkedElements({nullptr});
    EXPECT_EQ(note.leaders().size(), 2u);
    EXPECT_EQ(note.texts().size(), 1u);
    EXPECT_NE(toJsonText(note).find(L"\"linked_elements\":[],\"leaders\":[{\"points\":[]}],\"texts\":[]"),
              std::wstring::npos);
    EXPECT_TRUE(log.messages().empty());
}
