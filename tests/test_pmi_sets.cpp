// Annotation views (lists per kind, the id index), captures, annotation
// sets and PMI data: keys, reading rules, messages, hostile input, a
// million annotations, and a full PMI set through a second process.
#include <gtest/gtest.h>

#include <string>

#include <xch_api/xch_api_exchange_mechanical.h>

#include "support/json_mutation.h"
#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/peer_echo.h"
#include "support/pmi_sample.h"

using namespace xch;
using namespace xch_test;

namespace {

template <class T>
std::shared_ptr<T> withId(const std::wstring& id) {
    auto annotation = std::make_shared<T>();
    annotation->setId(id);
    return annotation;
}

// Every mutation of `object`'s JSON reads into a fresh T without throwing,
// and what was read writes and reads back to the same text.
template <class T>
int expectMutationsRead(const T& object) {
    JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    int reads = 0;
    forEachMutation(doc, doc, [&] {
        T read;
        EXPECT_NO_THROW(read.readObject(doc));
        T again;
        readFromJsonText(again, toJsonText(read));
        EXPECT_EQ(toJsonText(again), toJsonText(read));
        ++reads;
    });
    return reads;
}

} // namespace

TEST(PMISets, ViewListsEveryKindAndIndexesIdsAcrossKinds) {
    ExcPMIAnnotationView empty;
    EXPECT_EQ(toJsonText(empty), L"{\"name\":\"\",\"id\":\"\",\"hidden\":false,\"origin\":[0.0,0.0,0.0],\"u\":[0.0,0.0,0.0],"
                                 L"\"v\":[0.0,0.0,0.0],\"notes\":[],\"datum\":[],\"datum_targets\":[],\"GDTs\":[],"
                                 L"\"dimensions\":[],\"roughness\":[]}");

    LogCapture log(3);
    ExcPMIAnnotationView view;
    auto first = withId<ExcPMINote>(L"N1");
    auto second = withId<ExcPMINote>(L"N1");
    auto dimension = withId<ExcPMIDimension>(L"N1");
    auto unnamed = withId<ExcPMIRoughness>(L"");
    view.addNote(first);
    view.addNote(second);
    view.addDimension(dimension);
    view.addRoughness(unnamed);
    view.addDatum(withId<ExcPMIDatum>(L"A"));
    view.addDatumTarget(withId<ExcPMIDatumTarget>(L"A1"));
    view.addGdt(withId<ExcPMIGDT>(L"G\u00e9"));
    EXPECT_EQ(view.notes(), (std::vector<std::shared_ptr<ExcPMINote>>{first, second}));
    EXPECT_EQ(view.dimensions().size(), 1u);
    EXPECT_EQ(view.getAnnotationById(L"N1"), first);
    EXPECT_EQ(view.getAnnotationById(L""), unnamed);
    EXPECT_EQ(view.getAnnotationById(L"A1"), view.datumTargets()[0]);
    EXPECT_EQ(view.getAnnotationById(L"G\u00e9")->type(), PMIGDT);
    EXPECT_EQ(view.getAnnotationById(L"n1"), nullptr);

    view.addNote(nullptr);
    view.addDatum(nullptr);
    view.addDatumTarget(nullptr);
    view.addGdt(nullptr);
    view.addDimension(nullptr);
    view.addRoughness(nullptr);
    EXPECT_EQ(view.notes().size(), 2u);
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "Duplicated PMI annotation id: N1",
                                   "Duplicated PMI annotation id: N1",
                                   "ExcPMIAnnotationView: attempt to add null PMI Note object.",
                                   "ExcPMIAnnotationView: attempt to add null PMI Datum object.",
                                   "ExcPMIAnnotationView: attempt to add null PMI Datum Target object.",
                                   "ExcPMIAnnotationView: attempt ot add null PMI GDT object.",
                                   "ExcPMIAnnotationView: attempt to add null PMI Dimension object.",
                                   "ExcPMIAnnotationView: attempt to add null PMI Roughness object.",
                               }));

    // Reading goes through the adders: the index is rebuilt and duplicates
    // are reported; elements that are not objects are skipped; reading
    // appends.
    log.clear();
    ExcPMIAnnotationView read;
    const std::wstring text = toJsonText(view);
    readFromJsonText(read, text);
    EXPECT_EQ(toJsonText(read), text);
    EXPECT_EQ(read.getAnnotationById(L"N1")->type(), PMINote);
    EXPECT_EQ(read.getAnnotationById(L"N1"), read.notes()[0]);
    EXPECT_EQ(log.messages(3), std::vector<std::string>(2, "Duplicated PMI annotation id: N1"));
    log.clear();
    readFromJsonText(read, L"{\"notes\":[1,{\"id\":\"N2\"},[]],\"GDTs\":{\"id\":\"G2\"},\"datum\":[\"A\",{\"id\":\"B\"}],"
                           L"\"origin\":[1.0,2.0,3.0],\"u\":{},\"gdts\":[{\"id\":\"G3\"}]}");
    EXPECT_EQ(read.notes().size(), 3u);
    EXPECT_EQ(read.gdts().size(), 1u);
    EXPECT_EQ(read.datums().size(), 2u);
    EXPECT_EQ(read.getAnnotationById(L"B"), read.datums()[1]);
    EXPECT_EQ(read.origin().z(), 3.0);
    EXPECT_EQ(read.getAnnotationById(L"G3"), nullptr);
    EXPECT_TRUE(log.messages().empty());

    // Copies share the annotations and the index.
    ExcPMIAnnotationView copy(read);
    EXPECT_EQ(copy.getAnnotationById(L"N2"), read.notes()[2]);
}

TEST(PMISets, CaptureKeysAndReadingRules) {
    ExcPMICapture capture;
    EXPECT_EQ(toJsonText(capture),
              L"{\"name\":\"\",\"id\":\"\",\"hidden\":false,\"capture_hidden\":false,\"current\":false,\"hidden_text\":\"\","
              L"\"manage_hide_show\":false,\"camera\":null,\"clipping_plane\":null,\"annotation_ids\":[],"
              L"\"constructed_geometry\":[],\"bodies\":[]}");

    auto camera = std::make_shared<ExcCamera>();
    camera->setType(ExcCamera::Perspective);
    camera->setPerspectiveViewAngle(0.75);
    auto plane = std::make_shared<ExcClippingPlane>();
    plane->setCoefficients({0.0, 0.0, 1.0, -5.0});
    capture.setName(L"Section");
    capture.setId(L"C1");
    capture.setHidden(true);
    capture.setCaptureHidden(true);
    capture.setCurrent(true);
    capture.setHiddenText(L"hidden");
    capture.setManageHideShow(true);
    capture.setCamera(camera);
    capture.setClippingPlane(plane);
    capture.addAnnotationId(L"G1");
    capture.addAnnotationId(L"D1");
    capture.addConstructedGeometry(std::make_shared<ExcEntity>(ExcEntity::Mfg, L"axis"));
    capture.addBody(std::make_shared<ExcEntity>(ExcEntity::Original, L"#12", L"body"));
    const std::wstring expected =
        L"{\"name\":\"Section\",\"id\":\"C1\",\"hidden\":true,\"capture_hidden\":true,\"current\":true,\"hidden_text\":"
        L"\"hidden\",\"manage_hide_show\":true,\"camera\":" + toJsonText(*camera) + L",\"clipping_plane\":{"
        L"\"plane_coefficients\":[0.0,0.0,1.0,-5.0]},\"annotation_ids\":[\"G1\",\"D1\"],\"constructed_geometry\":"
        L"[{\"type\":\"mfg\",\"id\":\"axis\"}],\"bodies\":[{\"type\":\"original\",\"description\":\"body\",\"id\":\"#12\"}]}";
    EXPECT_EQ(toJsonText(capture), expected);
    ExcPMICapture read;
    readFromJsonText(read, expected);
    EXPECT_EQ(toJsonText(read), expected);
    EXPECT_EQ(read.camera()->perspectiveViewAngle(), 0.75);

    LogCapture log(3);
    auto readCamera = read.camera();
    readFromJsonText(read, L"{\"capture_hidden\":0,\"current\":\"false\",\"manage_hide_show\":null,\"camera\":[],"
                           L"\"clipping_plane\":null,\"annotation_ids\":[\"G2\",3,null],\"bodies\":[{},\"#13\"],"
                           L"\"constructed_geometry\":{}}");
    EXPECT_TRUE(read.captureHidden() && read.isCurrent() && read.manageHideShow());
    EXPECT_EQ(read.camera(), readCamera);
    EXPECT_TRUE(read.clippingPlane()->hasCoefficients());
    EXPECT_EQ(read.annotationIds(), (std::vector<std::wstring>{L"G1", L"D1", L"G2"}));
    EXPECT_EQ(read.bodies().size(), 2u);
    EXPECT_EQ(read.constructedGeometry().size(), 1u);
    readFromJsonText(read, L"{\"camera\":{\"name\":\"new\"}}");
    EXPECT_NE(read.camera(), readCamera);
    EXPECT_EQ(read.camera()->name(), L"new");
    EXPECT_EQ(read.camera()->type(), ExcCamera::Undefined);

    read.addBody(nullptr);
    read.addConstructedGeometry(nullptr);
    EXPECT_EQ(read.bodies().size(), 2u);
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcPMICapture: attempt to add null Body object.",
                                   "ExcPMICapture: attempt to add null Constructed Geometry Entity object.",
                               }));
}

TEST(PMISets, AnnotationSetsAndPMIData) {
    ExcPMIAnnotationSet empty;
    EXPECT_EQ(toJsonText(empty), L"{\"block_id\":0,\"name\":\"\",\"hidden\":false,\"standart\":\"\","
                                 L"\"annotation_views\":[],\"captures\":[],\"constructed_geometry\":[]}");
    EXPECT_EQ(toJsonText(ExcPMIData()), L"[]");

    auto set = sampleAnnotationSet(18446744073709551615ull, 2);
    set->setHidden(true);
    const std::wstring text = toJsonText(*set);
    EXPECT_EQ(text.find(L"{\"block_id\":18446744073709551615,\"name\":\"PMI of block 18446744073709551615\","
                        L"\"hidden\":true,\"standart\":\"ASME Y14.5-2009\",\"annotation_views\":[{\"name\":\"v0-Front\""),
              0u);
    ExcPMIData data;
    data.addAnnotationSet(set);
    data.addAnnotationSet(std::make_shared<ExcPMIAnnotationSet>(7));
    ExcPMIData read;
    readFromJsonText(read, toJsonText(data));
    EXPECT_EQ(toJsonText(read), toJsonText(data));
    ASSERT_EQ(read.annotationSets().size(), 2u);
    const auto& views = read.annotationSets()[0]->views();
    ASSERT_EQ(views.size(), 2u);
    EXPECT_EQ(views[1]->getAnnotationById(L"v1-position"), views[1]->gdts()[0]);
    EXPECT_EQ(views[1]->getAnnotationById(L"v0-position"), nullptr);
    auto position = std::dynamic_pointer_cast<ExcPMIGDT>(views[0]->getAnnotationById(L"v0-position"));
    ASSERT_TRUE(position);
    EXPECT_EQ(position->gdtRows()[0]->referenceFrame()->datumRefs()[2].modifiedDatums()[0].datumId(), L"datum-C");

    // Reading appends; elements that are not objects are skipped.
    LogCapture log(3);
    readFromJsonText(read, L"[{\"block_id\":3,\"annotation_views\":[{},4],\"captures\":[\"c\",{}]},5,[],null]");
    ASSERT_EQ(read.annotationSets().size(), 3u);
    EXPECT_EQ(read.annotationSets()[2]->blockId(), 3u);
    EXPECT_EQ(read.annotationSets()[2]->views().size(), 1u);
    EXPECT_EQ(read.annotationSets()[2]->captures().size(), 1u);
    ExcPMIAnnotationSet partial;
    readFromJsonText(partial, L"{\"block_id\":-3,\"name\":\"n\",\"standart\":4,\"hidden\":true}");
    readFromJsonText(partial, L"{\"block_id\":2.0}");
    EXPECT_EQ(partial.blockId(), 0u);
    EXPECT_EQ(partial.name(), L"n");
    EXPECT_EQ(partial.standart(), L"");
    EXPECT_TRUE(partial.isHidden());
    EXPECT_TRUE(log.messages().empty());

    // Shapes and null adders.
    readFromJsonText(read, L"{}");
    readFromJsonText(partial, L"[]");
    ExcPMIAnnotationView view;
    readFromJsonText(view, L"\"front\"");
    ExcPMICapture capture;
    readFromJsonText(capture, L"3");
    read.addAnnotationSet(nullptr);
    partial.addView(nullptr);
    partial.addCapture(nullptr);
    partial.addConstructedGeometry(nullptr);
    EXPECT_EQ(read.annotationSets().size(), 3u);
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{
                                   "ExcPMIData object should have a JSON array type.",
                                   "ExcPMIAnnotationSet object should have a JSON object type.",
                                   "ExcPMIAnnotationView object should have a JSON object type.",
                                   "ExcPMICapture object should have a JSON object type.",
                               }));
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcPMIData: attempt to add null PMI Annotation Set object.",
                                   "ExcPMIAnnotationSet: attempt to add null View object.",
                                   "ExcPMIAnnotationSet: attempt to add null Capture object.",
                                   "ExcPMIAnnotationSet: attempt to add null Constructed Geometry Entity object.",
                               }));
}

TEST(PMISets, EveryMutationOfEveryClassReadsWithoutThrowing) {
    LogCapture quiet(1);
    auto set = sampleAnnotationSet(5);
    const auto& view = set->views().at(0);
    int reads = 0;
    reads += expectMutationsRead(*view->notes().at(0));
    reads += expectMutationsRead(*view->datums().at(0));
    reads += expectMutationsRead(*view->datumTargets().at(0));
    reads += expectMutationsRead(*view->gdts().at(0));
    reads += expectMutationsRead(*view->dimensions().at(0));
    reads += expectMutationsRead(*view->roughnesses().at(0));
    reads += expectMutationsRead(*set->captures().at(0));

    // The containers, with one small annotation of each kind.
    ExcPMIAnnotationSet small(9);
    auto smallView = std::make_shared<ExcPMIAnnotationView>();
    smallView->addNote(withId<ExcPMINote>(L"n"));
    smallView->addDatum(withId<ExcPMIDatum>(L"d"));
    smallView->addDatumTarget(withId<ExcPMIDatumTarget>(L"t"));
    smallView->addGdt(withId<ExcPMIGDT>(L"g"));
    smallView->addDimension(withId<ExcPMIDimension>(L"m"));
    smallView->addRoughness(withId<ExcPMIRoughness>(L"r"));
    small.addView(smallView);
    small.addCapture(std::make_shared<ExcPMICapture>());
    reads += expectMutationsRead(small);
    ExcPMIData data;
    data.addAnnotationSet(std::make_shared<ExcPMIAnnotationSet>(1));
    reads += expectMutationsRead(data);
    EXPECT_GT(reads, 4000);
}

TEST(PMISets, DeepAndWideInputIsReadAsFarAsItMakesSense) {
    // Nesting far below the parser's depth limit, where the frame expects
    // flat values: nothing is taken from the nested arrays, the rest is.
    std::wstring deep;
    for (int i = 0; i < 200; ++i) deep += L"[";
    deep += L"{\"tolerance_value\":1.0}";
    for (int i = 0; i < 200; ++i) deep += L"]";
    ExcPMIGDT gdt;
    readFromJsonText(gdt, L"{\"tolerance_type\":\"form_flatness\",\"pmi_gdt_rows\":" + deep +
                              L",\"pmi_gdt_note\":" + deep + L",\"all_around\":" + deep + L",\"id\":\"G\"}");
    EXPECT_EQ(gdt.toleranceType(), ExcPMIGDT::FormFlatness);
    EXPECT_TRUE(gdt.gdtRows().empty());
    EXPECT_EQ(gdt.note(), nullptr);
    EXPECT_EQ(gdt.id(), L"G");

    // Rows nested as deep as the classes go: row > frame > datum reference >
    // modified datum > zone modifier, many of each.
    std::wstring rows = L"[";
    for (int r = 0; r < 200; ++r) {
        rows += (r ? L"," : L"") + std::wstring(L"{\"tolerance_value\":0.01,\"ref_frame\":{\"datum_refs\":[");
        for (int d = 0; d < 20; ++d)
            rows += (d ? L"," : L"") + std::wstring(L"{\"label\":\"A\",\"modified_datums\":[{\"datum_id\":\"A\","
                                                   L"\"zone_modifiers\":[{\"zone_modifier_zone\":\"free_state_free\"}]}]}");
        rows += L"]}}";
    }
    rows += L"]";
    readFromJsonText(gdt, L"{\"pmi_gdt_rows\":" + rows + L"}");
    ASSERT_EQ(gdt.gdtRows().size(), 200u);
    const auto& refs = gdt.gdtRows()[199]->referenceFrame()->datumRefs();
    ASSERT_EQ(refs.size(), 20u);
    EXPECT_EQ(refs[19].modifiedDatums()[0].zoneModifiers()[0].modifier, ExcPMIGDT::FreeStateFree);
}

TEST(PMISets, AMillionAnnotationsInOneView) {
    constexpr int kCount = 1000000;
    JsonDocument doc;
    doc.SetObject();
    auto& allocator = doc.GetAllocator();
    JsonValue notes(rapidjson::kArrayType);
    notes.Reserve(kCount, allocator);
    for (int i = 0; i < kCount; ++i) {
        JsonValue note(rapidjson::kObjectType);
        const std::wstring id = std::to_wstring(i % (kCount / 2)); // each id twice
        note.AddMember(L"id", JsonValue(id.c_str(), static_cast<rapidjson::SizeType>(id.size()), allocator),
                       allocator);
        notes.PushBack(note, allocator);
    }
    doc.AddMember(L"notes", notes, allocator);

    LogCapture quiet(1); // half a million duplicate-id warnings, not written
    ExcPMIAnnotationView view;
    view.readObject(doc);
    ASSERT_EQ(view.notes().size(), static_cast<std::size_t>(kCount));
    EXPECT_EQ(view.getAnnotationById(L"499999"), view.notes()[kCount / 2 - 1]);
    EXPECT_EQ(view.getAnnotationById(L"0"), view.notes()[0]);
    EXPECT_EQ(view.getAnnotationById(L"500000"), nullptr);
}

TEST(PMISets, FullPMICrossesProcessesIntact) {
    auto root = std::make_shared<ExcRootMechanicalData>();
    root->setPMIData(samplePMIData(3, 2));
    root->setLogFile(L"pmi.log");
    auto block = std::make_shared<ExcBlockMechanicalData>(2);
    block->setPMIData(samplePMIData(1, 4));

    ChildProcess peer(helperPath("xch_test_peer"));
    auto rootBack = echo(peer, root);
    auto blockBack = echo(peer, block);
    peer.writeLine("bye");
    EXPECT_EQ(peer.wait(), 0);

    ASSERT_TRUE(rootBack->isLoaded());
    EXPECT_EQ(toJsonText(*rootBack), toJsonText(*root));
    EXPECT_EQ(toJsonText(*blockBack), toJsonText(*block));
    ASSERT_TRUE(rootBack->pmiData());
    const auto& sets = rootBack->pmiData()->annotationSets();
    ASSERT_EQ(sets.size(), 3u);
    const auto& view = sets[2]->views().at(1);
    auto note = std::dynamic_pointer_cast<ExcPMINote>(view->getAnnotationById(L"v1-note"));
    ASSERT_TRUE(note);
    EXPECT_TRUE(note->isFlagNote());
    EXPECT_EQ(note->texts().at(0)->label(), L"ALL DIMENSIONS IN MM \u2300");
    EXPECT_EQ(sets[2]->captures().at(0)->camera()->type(), ExcCamera::Orthographic);
    EXPECT_EQ(blockBack->pmiData()->annotationSets().at(0)->views().size(), 4u);
}
