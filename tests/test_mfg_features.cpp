#include <gtest/gtest.h>

#include <xch_api/xch_api_exchange_mechanical.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

namespace {

std::shared_ptr<ExcEntity> face(const std::wstring& id) { return std::make_shared<ExcEntity>(ExcEntity::Mfg, id); }

std::shared_ptr<ExcMfgPattern> readPatternText(const std::wstring& text) {
    JsonDocument doc;
    doc.Parse(text.c_str());
    return ExcMfgPattern::readPattern(doc);
}

} // namespace

TEST(MfgFeatures, HoleFeatureWritesBaseKeysFirstWithNestedData) {
    auto hole = std::make_shared<ExcMfgCounterBoreHole>();
    hole->setName(L"CB M6");
    hole->setPrimaryDiameter(6.6);
    hole->setPrimaryDepth(20.0);
    hole->setTipAngleDegrees(118.0);
    hole->setBottomLimitExtentType(ExcMfgHole::UpToNext);
    hole->setDirection(ExcVector3d(0.0, 0.0, -1.0));
    hole->setDiameter(11.0);
    hole->setMaximumTolerance(0.2);
    hole->setDepth(6.5);
    auto thread = std::make_shared<ExcMfgHoleThread>();
    thread->setDesignation(L"M6x1");
    thread->setDesignationSystemType(ExcMfgThreading::Metric);
    thread->setOrientation(ExcMfgThreading::RightHanded);
    thread->setStandard(L"ISO 262");
    thread->setMaxTol(0.1);
    hole->setHoleThread(thread);

    auto pattern = std::make_shared<ExcMfgPatternCircular>();
    pattern->setAxisOfRotation(ExcVector3d(0.0, 0.0, 1.0));
    pattern->setAxialInstCount(6);
    pattern->setRadialInstCount(1);
    pattern->setAxialDistDegrees(60.0);
    pattern->addVisibleInstance({0, 0});
    pattern->addDeactivatedInstance({5, 0});
    auto base = std::make_shared<ExcMfgPattern::Instance>();
    base->setBase(true);
    base->addDefining(face(L"F1"));
    pattern->setBaseInstance(base);

    ExcMfgFeatureCounterBoreHole feature;
    feature.addLinkedElement(face(L"F1"));
    feature.setName(L"Hole1");
    feature.setPattern(pattern);
    feature.addLimitingGeometry(face(L"F2"));
    feature.setHoleData(hole);
    EXPECT_EQ(toJsonText(feature),
              L"{\"linked_elements\":[{\"type\":\"mfg\",\"id\":\"F1\"}],\"name\":\"Hole1\",\"pattern\":{\"type\":"
              L"\"circular\",\"anchor_point\":[0.0,0.0,0.0],\"center_of_rotation\":[0.0,0.0,0.0],\"axis_of_rotation\":"
              L"[0.0,0.0,1.0],\"axial_inst_count\":6,\"radial_inst_count\":1,\"axial_dist_degrees\":60.0,\"radial_dist\":"
              L"0.0,\"fixed_rot_orient\":false,\"base_instance\":{\"is_base\":true,\"limiting\":[],\"defining\":[{\"type\":"
              L"\"mfg\",\"id\":\"F1\"}]},\"simplified\":false,\"visible_instances\":[[0,0]],\"deactivated_instances\":"
              L"[[5,0]]},\"limiting\":[{\"type\":\"mfg\",\"id\":\"F2\"}],\"defining\":[],\"hole_data\":{\"name\":\"CB M6\","
              L"\"primary_diameter\":6.6,\"primary_diameter_max_tol\":0.0,\"primary_diameter_min_tol\":0.0,"
              L"\"primary_depth\":20.0,\"tip_angle_degrees\":118.0,\"bottom_limit_extent_type\":\"up_to_next\",\"center\":"
              L"[0.0,0.0,0.0],\"direction\":[0.0,0.0,-1.0],\"hole_thread\":{\"diameter\":0.0,\"depth\":0.0,\"pitch\":0.0,"
              L"\"orientation\":\"right_handed\",\"designation\":\"M6x1\",\"designation_system_type\":\"metric\","
              L"\"standart\":\"ISO 262\",\"min_tol\":0.0,\"max_tol\":0.1},\"diameter\":11.0,\"max_tol\":0.2,\"min_tol\":0.0,"
              L"\"depth\":6.5}}");

    // Read back into fresh objects: the same text, the pattern of the right kind.
    LogCapture log(3);
    ExcMfgFeatureCounterBoreHole back;
    readFromJsonText(back, toJsonText(feature));
    EXPECT_EQ(toJsonText(back), toJsonText(feature));
    EXPECT_TRUE(std::dynamic_pointer_cast<ExcMfgPatternCircular>(back.pattern()));
    EXPECT_TRUE(log.messages().empty());

    // The other hole kinds add their own keys after those of ExcMfgHole.
    const std::wstring holeKeys =
        L"{\"name\":\"\",\"primary_diameter\":0.0,\"primary_diameter_max_tol\":0.0,\"primary_diameter_min_tol\":0.0,"
        L"\"primary_depth\":0.0,\"tip_angle_degrees\":0.0,\"bottom_limit_extent_type\":\"unknown\",\"center\":"
        L"[0.0,0.0,0.0],\"direction\":[0.0,0.0,0.0],\"hole_thread\":null";
    EXPECT_EQ(toJsonText(ExcMfgSimpleHole()), holeKeys + L"}");
    EXPECT_EQ(toJsonText(ExcMfgTaperHole()), holeKeys + L",\"angle\":0.0}");
    EXPECT_EQ(toJsonText(ExcMfgCounterSinkHole()), holeKeys + L",\"diameter\":0.0,\"max_tol\":0.0,\"min_tol\":0.0,\"angle\":0.0}");
    EXPECT_EQ(toJsonText(ExcMfgCounterDrillHole()),
              holeKeys + L",\"diameter\":0.0,\"max_tol\":0.0,\"min_tol\":0.0,\"depth\":0.0,\"sink_diameter\":0.0,\"angle\":0.0}");

    ExcMfgFeatureExternalThread threadFeature;
    threadFeature.setThread(std::make_shared<ExcMfgThread>());
    threadFeature.addBottomFace(face(L"F9"));
    EXPECT_EQ(toJsonText(threadFeature),
              L"{\"linked_elements\":[],\"name\":\"\",\"pattern\":null,\"thread_data\":{\"diameter\":0.0,\"depth\":0.0,"
              L"\"pitch\":0.0,\"orientation\":\"unknown\",\"designation\":\"\",\"designation_system_type\":\"unknown\","
              L"\"support_diameter\":0.0,\"support_depth\":0.0,\"bottom_type\":\"unknown\"},\"side_faces\":[],"
              L"\"top_faces\":[],\"bottom_faces\":[{\"type\":\"mfg\",\"id\":\"F9\"}]}");
}

TEST(MfgFeatures, NumbersEnumerationsAndNestedObjectsFollowTheReadingRules) {
    // Numbers from any JSON number; counts only from 32-bit integers.
    ExcMfgPatternRectangular rectangular;
    readFromJsonText(rectangular, L"{\"type\":\"circular\",\"primary_spacing\":12,\"secondary_spacing\":-3000000000,"
                                  L"\"primary_inst_count\":4.0,\"secondary_inst_count\":3,\"simplified\":1,"
                                  L"\"align_primary_dir\":[1.0,0.0,0.0],\"anchor_point\":\"origin\"}");
    EXPECT_EQ(rectangular.primarySpacing(), 12.0);
    EXPECT_EQ(rectangular.secondarySpacing(), -3e9);
    EXPECT_EQ(rectangular.primaryInstCount(), 0);
    EXPECT_EQ(rectangular.secondaryInstCount(), 3);
    EXPECT_FALSE(rectangular.isSimplified());
    EXPECT_EQ(rectangular.alignPrimaryDir().x(), 1.0);
    EXPECT_EQ(rectangular.type(), ExcMfgPattern::Rectangular); // "type" is never read

    // Unknown strings read as the value of the table's smallest string.
    ExcMfgThread thread;
    readFromJsonText(thread, L"{\"orientation\":\"clockwise\",\"designation_system_type\":\"Metric\","
                             L"\"bottom_type\":\"flat\",\"pitch\":1}");
    EXPECT_EQ(thread.orientation(), ExcMfgThreading::LeftHanded);
    EXPECT_EQ(thread.designationSystemType(), ExcMfgThreading::American);
    EXPECT_EQ(thread.bottomType(), ExcMfgThread::Dimension);
    EXPECT_EQ(thread.pitch(), 1.0);
    ExcMfgHole hole;
    readFromJsonText(hole, L"{\"bottom_limit_extent_type\":\"through\",\"hole_thread\":[]}");
    EXPECT_EQ(hole.bottomLimitExtentType(), ExcMfgHole::Blind);
    EXPECT_EQ(hole.holeThread(), nullptr);

    // The hole thread's standard lives under "standart" only.
    ExcMfgHoleThread holeThread;
    readFromJsonText(holeThread, L"{\"standard\":\"ISO\",\"standart\":\"UNC\"}");
    EXPECT_EQ(holeThread.standard(), L"UNC");

    // A nested object is made anew when present as an object, and kept when absent.
    ExcMfgFeatureSimpleHole feature;
    readFromJsonText(feature, L"{\"hole_data\":{\"name\":\"first\"}}");
    auto first = feature.holeData();
    ASSERT_TRUE(first);
    readFromJsonText(feature, L"{\"hole_data\":7}");
    EXPECT_EQ(feature.holeData(), first);
    readFromJsonText(feature, L"{\"hole_data\":{\"primary_depth\":3}}");
    EXPECT_NE(feature.holeData(), first);
    EXPECT_EQ(feature.holeData()->name(), L"");
    EXPECT_EQ(feature.holeData()->primaryDepth(), 3.0);
}

TEST(MfgFeatures, PatternsAreMadeByTheirTypeAndPairsAreChecked) {
    LogCapture log(3);
    EXPECT_TRUE(std::dynamic_pointer_cast<ExcMfgPatternRectangular>(readPatternText(L"{\"type\":\"rectangular\"}")));
    EXPECT_TRUE(std::dynamic_pointer_cast<ExcMfgPatternCircular>(readPatternText(L"{\"type\":\"circular\"}")));
    auto user = std::dynamic_pointer_cast<ExcMfgPatternUserDefined>(
        readPatternText(L"{\"type\":\"user_defined\",\"instance_positions\":[[1.0,2.0,3.0],5,[4.0,5.0,6.0]],"
                        L"\"deactivated_positions\":[[7.0,8.0,9.0]],\"base_instance\":{\"is_base\":true}}"));
    ASSERT_TRUE(user);
    ASSERT_EQ(user->instancePositions().size(), 2u);
    EXPECT_EQ(user->instancePositions()[1].z(), 6.0);
    EXPECT_EQ(user->deactivatedPositions().size(), 1u);
    EXPECT_TRUE(user->baseInstance() && user->baseInstance()->isBase());
    EXPECT_TRUE(log.messages().empty());

    for (const wchar_t* refused : {L"[]", L"{}", L"{\"type\":3}", L"{\"type\":\"none\"}", L"{\"type\":\"unknown\"}",
                                   L"{\"type\":\"Circular\"}"})
        EXPECT_EQ(readPatternText(refused), nullptr) << refused;
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{"ExcMfgPattern object should have a JSON object type.",
                                                         "ExcMfgPattern should have a type.",
                                                         "ExcMfgPattern should have a type.",
                                                         "ExcMfgPattern: unknown type.", "ExcMfgPattern: unknown type.",
                                                         "ExcMfgPattern: unknown type."}));

    // A feature stores what readPattern gives, null included; a null
    // pattern (what a feature without one writes) is no error.
    log.clear();
    ExcMfgFeatureUnclassified feature;
    readFromJsonText(feature, L"{\"pattern\":{\"type\":\"rectangular\"}}");
    EXPECT_TRUE(feature.pattern());
    readFromJsonText(feature, L"{\"pattern\":{\"type\":\"none\"}}");
    EXPECT_EQ(feature.pattern(), nullptr);
    readFromJsonText(feature, L"{\"pattern\":{\"type\":\"circular\"}}");
    readFromJsonText(feature, L"{\"pattern\":null}");
    EXPECT_EQ(feature.pattern(), nullptr);
    EXPECT_EQ(log.messages(), (std::vector<std::string>{"ExcMfgPattern: unknown type."}));

    // Index pairs: items other than two integers are skipped, one message each.
    log.clear();
    ExcMfgPatternRectangular rectangular;
    readFromJsonText(rectangular, L"{\"visible_instances\":[[1,2],[3],[4,5]],\"deactivated_instances\":"
                                  L"[[6,7,8],\"x\",[9,10],[1.5,2]]}");
    using Pairs = std::vector<ExcMfgPatternIndexedInstances::Index>;
    EXPECT_EQ(rectangular.visibleInstances(), (Pairs{{1, 2}, {4, 5}}));
    EXPECT_EQ(rectangular.deactivatedInstances(), (Pairs{{9, 10}}));
    ExcMfgPatternCircular circular;
    readFromJsonText(circular, L"{\"visible_instances\":[[]],\"deactivated_instances\":[[-1,2147483647],[0]]}");
    EXPECT_EQ(circular.deactivatedInstances(), (Pairs{{-1, 2147483647}}));
    EXPECT_EQ(log.messages(3),
              (std::vector<std::string>{
                  "ExcMfgPatternRectangular: invalid size of visible_instances array item (pair).",
                  "ExcMfgPatternRectangular: invalid size of deactivated instances array item (pair).",
                  "ExcMfgPatternRectangular: invalid size of deactivated instances array item (pair).",
                  "ExcMfgPatternRectangular: invalid size of deactivated instances array item (pair).",
                  "ExcMfgPatternCircular: invalid size of visible_instances array item (pair).",
                  "ExcMfgPatternCircular: invalid size of deactivated_instances array item (pair)."}));
}

TEST(MfgFeatures, DataListsAppendObjectsAndNullsAreRefused) {
    ExcMfgData data;
    EXPECT_EQ(toJsonText(data),
              L"{\"has_data\":false,\"simple_holes\":[],\"taper_holes\":[],\"counter_bore_holes\":[],"
              L"\"counter_sink_holes\":[],\"counter_drill_holes\":[],\"internal_threads\":[],\"external_threads\":[],"
              L"\"unclassified_features\":[]}");
    const std::wstring input =
        L"{\"has_data\":true,\"simple_holes\":[{\"name\":\"S\"},1],\"taper_holes\":[{}],\"counter_bore_holes\":"
        L"[{\"hole_data\":{\"depth\":2}}],\"counter_sink_holes\":[null,{}],\"counter_drill_holes\":[{}],"
        L"\"internal_threads\":[{}],\"external_threads\":[[],{}],\"unclassified_features\":[{\"name\":\"U\"}]}";
    readFromJsonText(data, input);
    readFromJsonText(data, input);
    EXPECT_TRUE(data.hasData());
    EXPECT_EQ(data.simpleHoles().size(), 2u);
    EXPECT_EQ(data.simpleHoles()[1]->name(), L"S");
    EXPECT_EQ(data.taperHoles().size(), 2u);
    ASSERT_EQ(data.counterBoreHoles().size(), 2u);
    EXPECT_EQ(data.counterBoreHoles()[0]->holeData()->depth(), 2.0);
    EXPECT_EQ(data.counterSinkHoles().size(), 2u);
    EXPECT_EQ(data.counterDrillHoles().size(), 2u);
    EXPECT_EQ(data.internalThreads().size(), 2u);
    EXPECT_EQ(data.externalThreads().size(), 2u);
    EXPECT_EQ(data.unclassifiedFeatures().size(), 2u);
    readFromJsonText(data, L"{\"has_data\":0}");
    EXPECT_TRUE(data.hasData());

    LogCapture log;
    ExcMfgData empty;
    empty.addSimpleHole(nullptr);
    empty.addTaperHole(nullptr);
    empty.addCounterBoreHole(nullptr);
    empty.addCounterSinkHole(nullptr);
    empty.addCounterDrillHole(nullptr);
    empty.addInternalThread(nullptr);
    empty.addExternalThread(nullptr);
    empty.addUnclassifiedFeature(nullptr);
    ExcMfgFeatureInternalThread thread;
    thread.addLinkedElement(nullptr);
    thread.addSideFace(nullptr);
    thread.addTopFace(nullptr);
    thread.addBottomFace(nullptr);
    ExcMfgFeatureSimpleHole hole;
    hole.addLimitingGeometry(nullptr);
    hole.addDefiningGeometry(nullptr);
    ExcMfgPattern::Instance instance;
    instance.addLimiting(nullptr);
    instance.addDefining(nullptr);
    EXPECT_EQ(toJsonText(empty), toJsonText(ExcMfgData()));
    EXPECT_EQ(toJsonText(thread), toJsonText(ExcMfgFeatureInternalThread()));
    EXPECT_EQ(toJsonText(hole), toJsonText(ExcMfgFeatureSimpleHole()));
    EXPECT_EQ(toJsonText(instance), toJsonText(ExcMfgPattern::Instance()));
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcMfgData: attempt to add null Simple Hole object.",
                                   "ExcMfgData: attempt to add null Taper Hole object.",
                                   "ExcMfgData: attempt to add null Counter Bore Hole object.",
                                   "ExcMfgData: attempt to add null Counter Sink Hole object.",
                                   "ExcMfgData: attempt to add null Counter Drill Hole object.",
                                   "ExcMfgData: attempt to add null Internal Thread object.",
                                   "ExcMfgData: attempt to add null External thread object.",
                                   "ExcMfgData: attempt to add null Unclassified Feature object.",
                                   "ExcMfgObject: attempt to add null Linked Element object.",
                                   "ExcMfgFeatureThread: attempt to add null Side Face Entity object.",
                                   "ExcMfgFeatureThread: attempt to add null Top Face Entity object.",
                                   "ExcMfgFeatureThread: attempt to add null Bottom Face Entity object.",
                                   "ExcMfgFeatureHole: attempt to add null Limiting Geometry Entity object.",
                                   "ExcMfgFeatureHole: attempt to add null Defining Geometry Entity object.",
                                   "ExcMfgPattern::Instance: attempt to add null Limiting Entity object.",
                                   "ExcMfgPattern::Instance: attempt to add null Defining Entity object."}));
}

TEST(MfgFeatures, ValuesThatAreNotObjectsAreLoggedWithTheClassName) {
    LogCapture log(2);
    ExcMfgObject object;
    ExcMfgFeature feature;
    ExcMfgFeatureHole featureHole;
    ExcMfgFeatureThread featureThread;
    ExcMfgFeatureTaperHole taperFeature;
    ExcMfgFeatureCounterDrillHole drillFeature;
    ExcMfgHole hole;
    ExcMfgTaperHole taper;
    ExcMfgCounterBoreHole bore;
    ExcMfgCounterSinkHole sink;
    ExcMfgCounterDrillHole drill;
    ExcMfgThreading threading;
    ExcMfgThread thread;
    ExcMfgHoleThread holeThread;
    ExcMfgPattern::Instance instance;
    ExcMfgPatternRectangular rectangular;
    ExcMfgPatternCircular circular;
    ExcMfgPatternUserDefined user;
    ExcMfgData data;
    IJsonObject* objects[] = {&object, &feature, &featureHole, &featureThread, &taperFeature, &drillFeature, &hole,
                              &taper,  &bore,    &sink,        &drill,         &threading,   &thread,       &holeThread,
                              &instance, &rectangular, &circular, &user, &data};
    for (IJsonObject* o : objects) {
        const std::wstring before = toJsonText(*o);
        readFromJsonText(*o, L"[{\"name\":\"x\"}]");
        EXPECT_EQ(toJsonText(*o), before);
    }
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "ExcMfgObject object should have a JSON object type.",
                                  "ExcMfgFeature object should have a JSON object type.",
                                  "ExcMfgFeatureHole object should have a JSON object type.",
                                  "ExcMfgFeatureThread object should have a JSON object type.",
                                  "ExcMfgFeatureHoleType object should have a JSON object type.",
                                  "ExcMfgFeatureHoleType object should have a JSON object type.",
                                  "ExcMfgHole object should have a JSON object type.",
                                  "ExcMfgTaperHole object should have a JSON object type.",
                                  "ExcMfgCounterBoreHole object should have a JSON object type.",
                                  "ExcMfgCounterSinkHole object should have a JSON object type.",
                                  "ExcMfgCounterDrillHole object should have a JSON object type.",
                                  "ExcMfgThreading object should have a JSON object type.",
                                  "ExcMfgThread object should have a JSON object type.",
                                  "ExcMfgHoleThread object should have a JSON object type.",
                                  "ExcMfgPattern::Instance object should have a JSON object type.",
                                  "ExcMfgPatternRectangular object should have a JSON object type.",
                                  "ExcMfgPatternCircular object should have a JSON object type.",
                                  "ExcMfgPatternUserDefined object should have a JSON object type.",
                                  "ExcMfgData object should have a JSON object type."}));
}
