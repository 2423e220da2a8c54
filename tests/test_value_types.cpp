#include <gtest/gtest.h>

#include <xch_api/xch_api_exchange_common.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;
using Msgs = std::vector<std::string>;

TEST(ValueTypes, VectorsWriteDoublesAndReadOnlyLeadingDoubles) {
    LogCapture log;
    ExcVector3d v(7, 8, 9); // an element that is not a double (integer literals too) ends the reading
    expectReads(v, {{L"[1, 2, 3]", L"[7.0,8.0,9.0]"}, {L"[1.0, 2, 3.0]", L"[1.0,8.0,9.0]"},
                    {L"[4.0, -2.5]", L"[4.0,-2.5,9.0]"}, {L"[6.0, 7.0, 8.0, 9.0]", L"[6.0,7.0,8.0]"},
                    {L"[\"1.0\", 2.0]", L"[6.0,7.0,8.0]"}, {L"[null, 2.0]", L"[6.0,7.0,8.0]"},
                    {L"{\"x\": 1.0}", L"[6.0,7.0,8.0]"}, {L"3.0", L"[6.0,7.0,8.0]"}});
    EXPECT_EQ(log.messages(2), Msgs(2, "Exchange vector/point (2D/3D) object should have a JSON array type."));
}

TEST(ValueTypes, MatrixAndTransformationReadOnlyArrays) {
    LogCapture log;
    ExcMatrix3d m; // identity; reading stops at the first row that is not an array
    expectReads(m, {{L"[[2.0,3.0,4.0], 5, [0.0,0.0,9.0]]", L"[[2.0,3.0,4.0],[0.0,1.0,0.0],[0.0,0.0,1.0]]"},
                    {L"[[5.0,6.0,7.0], [0.5,0.5,0.5], [1.0,2.0,3.0], [9.0,9.0,9.0]]",
                     L"[[5.0,6.0,7.0],[0.5,0.5,0.5],[1.0,2.0,3.0]]"},
                    {L"{}", L"[[5.0,6.0,7.0],[0.5,0.5,0.5],[1.0,2.0,3.0]]"}});
    ExcTransformation t; // members that are not arrays are ignored silently, not passed on to be logged
    const std::wstring written =
        L"{\"affine\":[[0.0,1.0,0.0],[0.0,1.0,0.0],[0.0,0.0,1.0]],\"translation\":[4.0,5.0,6.0]}";
    readFromJsonText(t, L"{\"affine\": 5, \"translation\": [4.0, 5.0, 6.0]}");
    expectReads(t, {{L"{\"affine\": [[0.0,1.0,0.0]], \"translation\": {\"x\": 1.0}}", written},
                    {L"[[1.0,0.0,0.0]]", written}});
    EXPECT_TRUE(log.messages(2).empty());
    EXPECT_EQ(log.messages(3), (Msgs{"ExcMatrix3d::readObject: input JsonValue is not an array.",
                                     "ExcTransformation::readObject: input JsonValue is not an object."}));
}

TEST(ValueTypes, ColorWritesOnlyFlaggedPartsAndReadsOnlyWellFormedOnes) {
    ExcColor c;
    c.channel(ExcColor::Alpha) = 7; // channel writes leave the flags alone
    EXPECT_EQ(toJsonText(c), L"null");
    c.setHasAlpha(true);
    EXPECT_EQ(toJsonText(c), L"{\"alpha\":7}");
    EXPECT_EQ(toJsonText(ExcColor(1, 2, 3, 400)), L"{\"rgb\":[1,2,3],\"alpha\":400}");
    using State = std::vector<int>; // hasRGB, hasAlpha, red, green, blue, alpha
    auto state = [](const ExcColor& r) { return State{r.hasRGB(), r.hasAlpha(), r[ExcColor::Red],
                                                      r[ExcColor::Green], r[ExcColor::Blue], r[ExcColor::Alpha]}; };
    LogCapture log;
    ExcColor r; // an ill-formed part changes nothing; null (an unset colour's JSON) is refused
    for (const wchar_t* ignored : {L"null", L"{\"rgb\":[255,-1,0]}", L"{\"rgb\":[255,0,0,0]}", L"{\"rgb\":[255.0,0,0]}",
                                   L"{\"rgb\":\"red\"}", L"{\"alpha\":-1}", L"{\"alpha\":1.5}"}) {
        readFromJsonText(r, ignored);
        EXPECT_EQ(state(r), (State{0, 0, 0, 0, 0, 255})) << ignored;
    }
    readFromJsonText(r, L"{\"alpha\":128}");
    EXPECT_EQ(state(r), (State{0, 1, 0, 0, 0, 128}));
    readFromJsonText(r, L"{\"rgb\":[255,0,65541]}"); // above 16 bits: low bits kept
    readFromJsonText(r, L"{\"rgb\":[1,2]}");
    EXPECT_EQ(state(r), (State{1, 1, 255, 0, 5, 128}));
    EXPECT_EQ(log.messages(3), Msgs{"ExcColor::readObject: input JsonValue is not an object."});
}

TEST(ValueTypes, UnitStringsFallbacksAndLengthScale) {
    EXPECT_EQ(enumToString(MassPoundMass), L"poind_mass");
    EXPECT_EQ(enumToString(EMassUnitType(2)), L"unknown");
    // Unknown strings give the value of the smallest string, not "unknown"; time units give hour.
    EXPECT_EQ(enumFromString<ELengthUnitType>(L"Millimeter"), LengthCentimeter);
    EXPECT_EQ(enumFromString<EMassUnitType>(L"pound_mass"), MassCentigram);
    EXPECT_EQ(enumFromString<ETimeUnitType>(L"Day"), TimeHour);
    EXPECT_EQ(enumFromString<ETimeUnitType>(L"day"), TimeDay);
    auto readsBack = [](auto unit, std::size_t count) { // every string reads back to its value, none is missing
        using E = decltype(unit);
        EXPECT_EQ(enumTable<E>().entries().size(), count);
        for (const auto& e : enumTable<E>().entries()) EXPECT_EQ(enumFromString<E>(e.second), e.first) << e.second;
    };
    readsBack(LengthUnknown, 14), readsBack(MassUnknown, 10);
    const struct { ELengthUnitType from, to; double factor; } cases[] = {
        {LengthMillimeter, LengthMeter, 0.001}, {LengthMeter, LengthInch, 1 / 0.0254}, {LengthMile, LengthFoot, 5280.0},
        {LengthModelUnit, LengthMillimeter, 25.4}, {LengthUnknown, LengthMillimeter, 25.4}, // both taken as inches
        {LengthKilometer, LengthMicrometer, 1e9}, {LengthMicroinch, LengthMilliinch, 0.001}};
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(unitsScale(c.from, c.to), c.factor) << c.from << " -> " << c.to;
    for (int unit = LengthUnknown; unit <= LengthMicroinch; ++unit)
        EXPECT_EQ(unitsScale(ELengthUnitType(unit), ELengthUnitType(unit)), 1.0) << unit;
}

TEST(ValueTypes, UnitComponentWritesBothKeysAndReadsStrictly) {
    ExcUnitComponent<ELengthUnitType> length(3, LengthMeter);
    LogCapture log; // "dimension" only from a 32-bit integer, "units" only from a string
    expectReads(length, {{L"{\"dimension\":2.0,\"units\":\"inch\"}", L"{\"dimension\":3,\"units\":\"inch\"}"},
                         {L"{\"dimension\":3000000000,\"units\":7}", L"{\"dimension\":3,\"units\":\"inch\"}"},
                         {L"{\"dimension\":-2,\"units\":\"Meter\"}", L"{\"dimension\":-2,\"units\":\"centimeter\"}"}});
    ExcUnitComponent<ETimeUnitType> time(1, TimeSecond);
    expectReads(time, {{L"[1, \"day\"]", L"{\"dimension\":1,\"units\":\"second\"}"},
                       {L"{\"units\": \"week\"}", L"{\"dimension\":1,\"units\":\"hour\"}"}}); // the time fallback
    EXPECT_EQ(log.messages(2), Msgs{"ExcUnitComponent object should have a JSON object type."});
}
