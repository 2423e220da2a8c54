#include <gtest/gtest.h>

#include <stdexcept>

#include <xch_api/xch_api_exchange_visualization.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

TEST(VisuCamera, ProjectionKeysFollowTheTypeAndAreReadWhateverTheType) {
    ExcCamera camera;
    EXPECT_EQ(toJsonText(camera), L"{\"type\":\"undefined\",\"name\":\"\",\"eye\":[0.0,0.0,1.0],"
                                  L"\"target\":[0.0,0.0,0.0],\"up\":[0.0,1.0,0.0]}");
    camera.setName(L"Front");
    camera.setPerspectiveViewAngle(0.5);
    camera.setOrthographicZoomFactor(2.5);
    camera.setType(ExcCamera::Perspective);
    EXPECT_EQ(toJsonText(camera), L"{\"type\":\"perspective\",\"name\":\"Front\",\"perspective_view_angle\":0.5,"
                                  L"\"eye\":[0.0,0.0,1.0],\"target\":[0.0,0.0,0.0],\"up\":[0.0,1.0,0.0]}");
    camera.setType(ExcCamera::Orthographic);
    camera.setEye(ExcVector3d(1, 2, 3));
    EXPECT_EQ(toJsonText(camera), L"{\"type\":\"orthographic\",\"name\":\"Front\",\"orthographic_zoom_factor\":2.5,"
                                  L"\"eye\":[1.0,2.0,3.0],\"target\":[0.0,0.0,0.0],\"up\":[0.0,1.0,0.0]}");

    // Both numbers are read for any type; the type read does not decide which.
    ExcCamera read;
    readFromJsonText(read, L"{\"type\":\"undefined\",\"perspective_view_angle\":0.25,"
                           L"\"orthographic_zoom_factor\":4.0,\"target\":[5.0,6.0,7.0],\"up\":[0.0,0.0,1.0]}");
    EXPECT_EQ(read.perspectiveViewAngle(), 0.25);
    EXPECT_EQ(read.orthographicZoomFactor(), 4.0);
    EXPECT_EQ(read.target().y(), 6.0);
    EXPECT_EQ(read.up().z(), 1.0);
    EXPECT_EQ(read.eye().z(), 1.0); // absent: unchanged

    // Unknown type strings read as the smallest string; numbers of the wrong kind are ignored.
    readFromJsonText(read, L"{\"type\":\"Perspective\",\"perspective_view_angle\":\"1\",\"name\":7}");
    EXPECT_EQ(read.type(), ExcCamera::Orthographic);
    EXPECT_EQ(read.perspectiveViewAngle(), 0.25);
    EXPECT_EQ(read.name(), L"");

    LogCapture log;
    readFromJsonText(read, L"[1]");
    readFromJsonText(read, L"{\"eye\":\"up\"}");
    EXPECT_EQ(log.messages(2),
              (std::vector<std::string>{"ExcCamera object should have a JSON object type.",
                                        "Exchange vector/point (2D/3D) object should have a JSON array type."}));
    EXPECT_EQ(read.eye().z(), 1.0);
}

TEST(VisuClippingPlane, FormsAreWrittenByTheirFlagsAndReadingSetsThem) {
    ExcClippingPlane plane;
    EXPECT_TRUE(plane.isEmpty());
    EXPECT_EQ(toJsonText(plane), L"null");

    plane.setOrigin(ExcVector3d(0, 0, 5));
    EXPECT_EQ(toJsonText(plane), L"{\"origin\":[0.0,0.0,5.0],\"u\":[1.0,0.0,0.0],\"v\":[0.0,1.0,0.0]}");
    plane.setHasPlane(false);
    plane.setCoefficient(ExcClippingPlane::C, 1.0);
    plane.setCoefficient(ExcClippingPlane::D, -5.0);
    EXPECT_EQ(toJsonText(plane), L"{\"plane_coefficients\":[0.0,0.0,1.0,-5.0]}");
    EXPECT_EQ(plane.coefficient(ExcClippingPlane::D), -5.0);
    EXPECT_THROW(plane.coefficient(static_cast<ExcClippingPlane::ECoefficient>(4)), std::out_of_range);
    EXPECT_THROW(plane.setCoefficient(static_cast<ExcClippingPlane::ECoefficient>(-1), 1.0), std::out_of_range);

    // Each written form reads back with its flag, so a plane survives a round trip.
    plane.setHasPlane(true);
    ExcClippingPlane back;
    readFromJsonText(back, toJsonText(plane));
    EXPECT_TRUE(back.hasPlane());
    EXPECT_TRUE(back.hasCoefficients());
    EXPECT_EQ(toJsonText(back), toJsonText(plane));

    ExcClippingPlane onlyAxis;
    readFromJsonText(onlyAxis, L"{\"v\":[0.0,0.0,1.0]}");
    EXPECT_TRUE(onlyAxis.hasPlane());
    EXPECT_FALSE(onlyAxis.hasCoefficients());
    EXPECT_EQ(onlyAxis.vectorV().z(), 1.0);

    // Coefficients are taken only as four numbers (integers accepted); anything else leaves them unset.
    ExcClippingPlane coefficients;
    for (const wchar_t* refused : {L"{\"plane_coefficients\":[1.0,2.0,3.0]}", L"{\"plane_coefficients\":[1,2,3,4,5]}",
                                   L"{\"plane_coefficients\":[1,2,\"3\",4]}", L"{\"plane_coefficients\":{}}"}) {
        readFromJsonText(coefficients, refused);
        EXPECT_TRUE(coefficients.isEmpty()) << refused;
    }
    readFromJsonText(coefficients, L"{\"plane_coefficients\":[0,1,0,-2.5]}");
    EXPECT_TRUE(coefficients.hasCoefficients());
    EXPECT_EQ(coefficients.coefficients(), (std::array<double, 4>{0.0, 1.0, 0.0, -2.5}));

    LogCapture log;
    ExcClippingPlane refused;
    readFromJsonText(refused, L"null");
    readFromJsonText(refused, L"{\"origin\":5}");
    EXPECT_TRUE(refused.isEmpty());
    EXPECT_EQ(log.messages(2),
              (std::vector<std::string>{"ExcClippingPlane object should have a JSON object type.",
                                        "Exchange vector/point (2D/3D) object should have a JSON array type."}));
}
