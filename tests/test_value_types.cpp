#include <gtest/gtest.h>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_exchange_common.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using xch_test::LogCapture;
using xch_test::readFromJsonText;
using xch_test::toJsonText;

namespace {

const char* const kVectorNotArray = "Exchange vector/point (2D/3D) object should have a JSON array type.";

void expectVector(const ExcVector3d& v, double x, double y, double z) {
    EXPECT_EQ(v.x(), x);
    EXPECT_EQ(v.y(), y);
    EXPECT_EQ(v.z(), z);
}

} // namespace

TEST(ValueTypes, VectorsWriteDoublesAndReadOnlyLeadingDoubles) {
    EXPECT_EQ(toJsonText(ExcVector3d()), L"[0.0,0.0,0.0]");
    EXPECT_EQ(toJsonText(ExcVector3d(1, -2.5, 3)), L"[1.0,-2.5,3.0]");
    EXPECT_EQ(toJsonText(ExcVector2d(4, 0.125)), L"[4.0,0.125]");

    LogCapture log;
    ExcVector3d v(7, 8, 9);
    readFromJsonText(v, L"[1, 2, 3]"); // integer literals end the reading at once
    expectVector(v, 7, 8, 9);
    readFromJsonText(v, L"[1.0, 2, 3.0]");
    expectVector(v, 1, 8, 9);
    readFromJsonText(v, L"[4.0, 5.0]");
    expectVector(v, 4, 5, 9);
    readFromJsonText(v, L"[6.0, 7.0, 8.0, 9.0]");
    expectVector(v, 6, 7, 8);
    readFromJsonText(v, L"[\"1.0\", 2.0, 3.0]");
    readFromJsonText(v, L"[null, 2.0, 3.0]");
    expectVector(v, 6, 7, 8);
    EXPECT_TRUE(log.messages(2).empty());

    readFromJsonText(v, L"{\"x\": 1.0}");
    ExcVector2d v2(1, 2);
    readFromJsonText(v2, L"3.0");
    expectVector(v, 6, 7, 8);
    EXPECT_EQ(v2.x(), 1);
    EXPECT_EQ(v2.y(), 2);
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{kVectorNotArray, kVectorNotArray}));

    // Reading and writing leave a trace line naming the function.
    bool traced = false;
    for (const std::string& line : log.messages(6))
        traced = traced || (line.find("ExcVectorBase") != std::string::npos &&
                            line.find("readObject") != std::string::npos);
    EXPECT_TRUE(traced);
}

TEST(ValueTypes, VectorAccessorsAreReferencesOnMutableObjects) {
    ExcVector2d v2;
    v2.x() = 3;
    v2.y() += 4;
    EXPECT_EQ(toJsonText(v2), L"[3.0,4.0]");
    ExcVector3d v3(1, 2, 3);
    ExcVector3d copy(v3);
    v3.set(4, 5, 6);
    v3.z() = 7;
    expectVector(copy, 1, 2, 3);
    expectVector(v3, 4, 5, 7);
}

TEST(ValueTypes, MatrixIsIdentityByDefaultAndStopsAtTheFirstNonArrayRow) {
    ExcMatrix3d m;
    EXPECT_EQ(toJsonText(m), L"[[1.0,0.0,0.0],[0.0,1.0,0.0],[0.0,0.0,1.0]]");

    LogCapture log;
    readFromJsonText(m, L"[[2.0,3.0,4.0], 5, [0.0,0.0,9.0]]");
    expectVector(m[0], 2, 3, 4);
    expectVector(m.row(1), 0, 1, 0);
    expectVector(m[2], 0, 0, 1);
    readFromJsonText(m, L"[[5.0,6.0,7.0], [0.5,0.5,0.5], [1.0,2.0,3.0], [9.0,9.0,9.0]]");
    expectVector(m[0], 5, 6, 7);
    expectVector(m[1], 0.5, 0.5, 0.5);
    expectVector(m[2], 1, 2, 3);
    EXPECT_TRUE(log.messages(3).empty());

    ExcMatrix3d copy;
    copy = m;
    readFromJsonText(m, L"{}");
    expectVector(m[1], 0.5, 0.5, 0.5);
    EXPECT_EQ(log.messages(3),
              std::vector<std::string>{"ExcMatrix3d::readObject: input JsonValue is not an array."});
    m[1].x() = 42;
    EXPECT_EQ(copy[1].x(), 0.5);
}

TEST(ValueTypes, TransformationWritesBothKeysAndReadsOnlyArrays) {
    ExcTransformation t;
    t.translation().set(1, 2, 3);
    t.affine()[0].set(0, 1, 0);
    EXPECT_EQ(toJsonText(t),
              L"{\"affine\":[[0.0,1.0,0.0],[0.0,1.0,0.0],[0.0,0.0,1.0]],\"translation\":[1.0,2.0,3.0]}");

    LogCapture log;
    ExcTransformation r;
    readFromJsonText(r, L"{\"affine\": 5, \"translation\": [4.0, 5.0, 6.0]}");
    expectVector(r.affine()[0], 1, 0, 0);
    expectVector(r.translation(), 4, 5, 6);
    readFromJsonText(r, L"{\"affine\": [[2.0,2.0,2.0]], \"translation\": {\"x\": 1.0}}");
    expectVector(r.affine()[0], 2, 2, 2);
    expectVector(r.translation(), 4, 5, 6);
    // Non-array members are ignored silently, not passed on to be logged.
    EXPECT_TRUE(log.messages(2).empty());
    EXPECT_TRUE(log.messages(3).empty());

    readFromJsonText(r, L"[[1.0,0.0,0.0]]");
    expectVector(r.affine()[0], 2, 2, 2);
    EXPECT_EQ(log.messages(3),
              std::vector<std::string>{"ExcTransformation::readObject: input JsonValue is not an object."});
}

TEST(ValueTypes, ColorWritesOnlyFlaggedPartsAndNullWhenNone) {
    ExcColor unset;
    EXPECT_FALSE(unset.hasRGB());
    EXPECT_FALSE(unset.hasAlpha());
    EXPECT_EQ(unset[ExcColor::Alpha], 255);
    EXPECT_EQ(toJsonText(unset), L"null");

    ExcColor rgb(10, 20, 30);
    EXPECT_TRUE(rgb.hasRGB());
    EXPECT_FALSE(rgb.hasAlpha());
    EXPECT_EQ(rgb.channel(ExcColor::Alpha), 255);
    EXPECT_EQ(toJsonText(rgb), L"{\"rgb\":[10,20,30]}");
    EXPECT_EQ(toJsonText(ExcColor(1, 2, 3, 400)), L"{\"rgb\":[1,2,3],\"alpha\":400}");

    ExcColor alphaOnly;
    alphaOnly.channel(ExcColor::Alpha) = 7;
    alphaOnly[ExcColor::Red] = 99; // channel writes leave the flags alone
    EXPECT_EQ(toJsonText(alphaOnly), L"null");
    alphaOnly.setHasAlpha(true);
    EXPECT_EQ(toJsonText(alphaOnly), L"{\"alpha\":7}");
}

TEST(ValueTypes, ColorReadingTakesOnlyWellFormedParts) {
    LogCapture log;
    ExcColor c;
    readFromJsonText(c, toJsonText(c)); // null: refused, default kept
    EXPECT_FALSE(c.hasRGB());
    EXPECT_EQ(c[ExcColor::Alpha], 255);
    EXPECT_EQ(log.messages(3), std::vector<std::string>{"ExcColor::readObject: input JsonValue is not an object."});

    for (const wchar_t* ignored : {L"{\"rgb\":[255,0]}", L"{\"rgb\":[255,-1,0]}", L"{\"rgb\":[255,0,0,0]}",
                                   L"{\"rgb\":[255.0,0,0]}", L"{\"rgb\":\"red\"}", L"{\"alpha\":-1}",
                                   L"{\"alpha\":1.5}"}) {
        readFromJsonText(c, ignored);
        EXPECT_FALSE(c.hasRGB()) << vx_link::utf8(ignored);
        EXPECT_FALSE(c.hasAlpha()) << vx_link::utf8(ignored);
        EXPECT_EQ(c[ExcColor::Red], 0) << vx_link::utf8(ignored);
        EXPECT_EQ(c[ExcColor::Alpha], 255) << vx_link::utf8(ignored);
    }

    readFromJsonText(c, L"{\"alpha\":128}");
    EXPECT_TRUE(c.hasAlpha());
    EXPECT_FALSE(c.hasRGB());
    EXPECT_EQ(c[ExcColor::Alpha], 128);

    readFromJsonText(c, L"{\"rgb\":[255,0,65541]}"); // above 16 bits: low bits kept
    EXPECT_TRUE(c.hasRGB());
    EXPECT_EQ(c[ExcColor::Red], 255);
    EXPECT_EQ(c[ExcColor::Green], 0);
    EXPECT_EQ(c[ExcColor::Blue], 5);
    EXPECT_EQ(c[ExcColor::Alpha], 128);

    readFromJsonText(c, L"{\"rgb\":[1,2]}"); // a bad rgb keeps the earlier one
    EXPECT_EQ(c[ExcColor::Red], 255);
    EXPECT_EQ(log.messages(3).size(), 1u);
}

TEST(ValueTypes, EnumerationStringsAndFallbacks) {
    EXPECT_EQ(enumToString(LengthModelUnit), L"model_unit");
    EXPECT_EQ(enumToString(LengthMicroinch), L"microinch");
    EXPECT_EQ(enumToString(MassPoundMass), L"poind_mass");
    EXPECT_EQ(enumToString(MassLbfSec2In), L"lbfsec2_in");
    EXPECT_EQ(enumToString(EMassUnitType(2)), L"unknown");
    EXPECT_EQ(enumToString(ELengthUnitType(99)), L"unknown");
    EXPECT_EQ(enumToString(TimeDay), L"day");
    EXPECT_EQ(enumToString(TemperatureKelvin), L"kelvin");
    EXPECT_EQ(enumToString(OrientationUpZ), L"up_z");

    // Unknown strings give the value of the smallest string, not "unknown".
    EXPECT_EQ(enumFromString<ELengthUnitType>(L"Millimeter"), LengthCentimeter);
    EXPECT_EQ(enumFromString<ELengthUnitType>(L""), LengthCentimeter);
    EXPECT_EQ(enumFromString<EMassUnitType>(L"pound_mass"), MassCentigram);
    EXPECT_EQ(enumFromString<EMassUnitType>(L"poind_mass"), MassPoundMass);
    EXPECT_EQ(enumFromString<ETimeUnitType>(L"fortnight"), TimeHour);
    EXPECT_EQ(enumFromString<ETimeUnitType>(L"day"), TimeDay);
    EXPECT_EQ(enumFromString<ETimeUnitType>(L"Day"), TimeHour);
    EXPECT_EQ(enumFromString<ETemperatureUnitType>(L"rankine"), TemperatureCelsius);
    EXPECT_EQ(enumFromString<EWorldOrientation>(L"up_w"), OrientationUnknown);
    EXPECT_EQ(enumFromString<EWorldOrientation>(L"up_y"), OrientationUpY);

    // Every value of a table reads back from its own string.
    for (const auto& entry : enumTable<ELengthUnitType>().entries())
        EXPECT_EQ(enumFromString<ELengthUnitType>(entry.second), entry.first);
    for (const auto& entry : enumTable<EMassUnitType>().entries())
        EXPECT_EQ(enumFromString<EMassUnitType>(entry.second), entry.first);
    EXPECT_EQ(enumTable<ELengthUnitType>().entries().size(), 14u);
    EXPECT_EQ(enumTable<EMassUnitType>().entries().size(), 10u);
    EXPECT_EQ(enumTable<ETimeUnitType>().entries().size(), 9u);
}

TEST(ValueTypes, UnitsScaleConvertsWithinAndAcrossSystems) {
    EXPECT_DOUBLE_EQ(unitsScale(LengthMillimeter, LengthMeter), 0.001);
    EXPECT_DOUBLE_EQ(unitsScale(LengthMeter, LengthInch), 39.37007874015748);
    EXPECT_DOUBLE_EQ(unitsScale(LengthFoot, LengthMillimeter), 304.8);
    EXPECT_DOUBLE_EQ(unitsScale(LengthModelUnit, LengthMillimeter), 25.4);
    EXPECT_DOUBLE_EQ(unitsScale(LengthMile, LengthFoot), 5280.0);
    EXPECT_DOUBLE_EQ(unitsScale(LengthKilometer, LengthMicrometer), 1e9);
    EXPECT_DOUBLE_EQ(unitsScale(LengthMicroinch, LengthMilliinch), 0.001);
    EXPECT_DOUBLE_EQ(unitsScale(LengthInch, LengthCentimeter), 2.54);
    EXPECT_EQ(unitsScale(LengthUnknown, LengthInch), 1.0);
    for (int unit = LengthUnknown; unit <= LengthMicroinch; ++unit)
        EXPECT_EQ(unitsScale(ELengthUnitType(unit), ELengthUnitType(unit)), 1.0) << unit;
}

TEST(ValueTypes, UnitComponentWritesBothKeysAndReadsStrictly) {
    ExcUnitComponent<ELengthUnitType> length;
    EXPECT_EQ(toJsonText(length), L"{\"dimension\":0,\"units\":\"unknown\"}");
    length.setDimension(-1);
    length.setUnits(LengthMeter);
    EXPECT_EQ(toJsonText(length), L"{\"dimension\":-1,\"units\":\"meter\"}");

    // The dimension is a signed JSON integer when negative, unsigned otherwise.
    JsonDocument doc;
    length.writeObject(doc, doc.GetAllocator());
    EXPECT_TRUE(doc[L"dimension"].IsInt());
    EXPECT_FALSE(doc[L"dimension"].IsUint());
    length.setDimension(3);
    length.writeObject(doc, doc.GetAllocator());
    EXPECT_TRUE(doc[L"dimension"].IsUint());

    EXPECT_EQ(toJsonText(ExcUnitComponent<EMassUnitType>(2, EMassUnitType(2))),
              L"{\"dimension\":2,\"units\":\"unknown\"}");

    LogCapture log;
    ExcUnitComponent<ELengthUnitType> r(3, LengthInch);
    readFromJsonText(r, L"{\"dimension\": 2.0, \"units\": \"meter\"}");
    EXPECT_EQ(r.dimension(), 3);
    EXPECT_EQ(r.units(), LengthMeter);
    readFromJsonText(r, L"{\"dimension\": 3000000000, \"units\": 7}");
    EXPECT_EQ(r.dimension(), 3);
    EXPECT_EQ(r.units(), LengthMeter);
    readFromJsonText(r, L"{\"dimension\": -2, \"units\": \"Meter\"}");
    EXPECT_EQ(r.dimension(), -2);
    EXPECT_EQ(r.units(), LengthCentimeter);
    EXPECT_TRUE(log.messages(2).empty());

    ExcUnitComponent<ETimeUnitType> time(1, TimeSecond);
    ExcUnitComponent<ETimeUnitType> copy(time);
    readFromJsonText(time, L"[1, \"day\"]");
    EXPECT_EQ(time.units(), TimeSecond);
    EXPECT_EQ(log.messages(2), std::vector<std::string>{"ExcUnitComponent object should have a JSON object type."});
    readFromJsonText(time, L"{\"units\": \"day\"}");
    EXPECT_EQ(time.units(), TimeDay);
    EXPECT_EQ(copy.units(), TimeSecond);
    copy = time;
    EXPECT_EQ(copy.units(), TimeDay);
    EXPECT_EQ(copy.dimension(), 1);

    readFromJsonText(time, L"{\"units\": \"week\"}"); // the time fallback holds in JSON too
    EXPECT_EQ(time.units(), TimeHour);

    ExcUnitComponent<ETemperatureUnitType> temperature;
    readFromJsonText(temperature, L"{\"units\": \"kelvin\"}");
    EXPECT_EQ(temperature.units(), TemperatureKelvin);
}
