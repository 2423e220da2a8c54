// ATTRIB_VARNEX / ATTRIB_VARNEX_ID in the kernel's attribute framework:
// type levels, copies, loss, debug output and registered methods.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "kernapi.hxx"

#include <xch_api_acis/xch_api_acis_attrib_id.h>

#include "acis/acis_models.h"

using xch_test::faceIds;
using xch_test::idRange;

namespace {

ENTITY* firstFace(ENTITY* body) {
    ENTITY_LIST faces;
    api_get_faces(body, faces);
    return faces[0];
}

} // namespace

TEST(AcisAttributes, TypeTestsFollowTheClassLevels) {
    EXPECT_FALSE(is_ATTRIB_VARNEX(nullptr));
    EXPECT_FALSE(is_ATTRIB_VARNEX_ID(nullptr));
    xch_test::OwnedEntities model;
    model.list.add(xch_test::makeTaggedBox(7));
    ENTITY* body = model.list[0];
    ATTRIB* organisation = body->attrib();
    ATTRIB* id = firstFace(body)->attrib();
    EXPECT_TRUE(is_ATTRIB_VARNEX(organisation));
    EXPECT_FALSE(is_ATTRIB_VARNEX_ID(organisation));
    EXPECT_TRUE(is_ATTRIB_VARNEX(id)); // the id attribute is also a Varnex attribute
    EXPECT_TRUE(is_ATTRIB_VARNEX_ID(id));
    EXPECT_FALSE(is_ATTRIB_VARNEX(body));
    EXPECT_FALSE(is_ATTRIB_VARNEX_ID(firstFace(body)));
    EXPECT_EQ(id->identity(), ATTRIB_VARNEX_ID::staticType());
    EXPECT_EQ(id->identity(ATTRIB_VARNEX_ID_LEVEL), ATTRIB_VARNEX_ID_TYPE);
    EXPECT_EQ(id->identity(ATTRIB_VARNEX_LEVEL), ATTRIB_VARNEX_TYPE);
    EXPECT_EQ(id->identity(ATTRIB_LEVEL), ATTRIB_TYPE);
    EXPECT_EQ(organisation->identity(), ATTRIB_VARNEX_TYPE);
    EXPECT_NE(ATTRIB_VARNEX_TYPE, ATTRIB_VARNEX_ID_TYPE);
    EXPECT_STREQ(organisation->type_name(), "Quillaro_Varnex_Attribute");
    EXPECT_STREQ(id->type_name(), "Quillaro_Varnex_ID_Attribute");
    auto* blank = new ATTRIB_VARNEX_ID;
    EXPECT_EQ(blank->id(), 0);
    blank->lose();
}

TEST(AcisAttributes, CopiesCarryTheIdAndLosingAnAttributeUnhooksIt) {
    xch_test::OwnedEntities model;
    model.list.add(xch_test::makeTaggedBox(40));
    ENTITY* copy = nullptr;
    ASSERT_TRUE(api_copy_entity(model.list[0], copy).ok());
    model.list.add(copy);
    EXPECT_EQ(faceIds(copy), idRange(40, 6));
    ENTITY* copiedFace = firstFace(copy);
    auto* copied = static_cast<ATTRIB_VARNEX_ID*>(copiedFace->attrib());
    EXPECT_NE(copied, firstFace(model.list[0])->attrib()); // attributes of its own, on its own faces
    EXPECT_EQ(copied->entity(), copiedFace);
    EXPECT_TRUE(is_ATTRIB_VARNEX(copy->attrib()));

    auto* detached = new ATTRIB_VARNEX_ID(*copied); // the same id, on no entity
    EXPECT_EQ(detached->id(), 40);
    EXPECT_EQ(detached->entity(), nullptr);
    detached->lose();
    copied->lose();
    EXPECT_EQ(copiedFace->attrib(), nullptr);
    EXPECT_EQ(faceIds(copy)[0], -1);
    EXPECT_EQ(faceIds(model.list[0]), idRange(40, 6)); // the original keeps its ids
}

namespace {

struct NoArgs : METHOD_ARGS {
    const char* id() const override { return "no_args"; }
};

ENTITY* g_called = nullptr;

logical remember(ENTITY* entity, METHOD_ARGS const&) {
    g_called = entity;
    return TRUE;
}

} // namespace

TEST(AcisAttributes, DebugOutputShowsTheIdAndMethodsAreInherited) {
    xch_test::OwnedEntities model;
    model.list.add(xch_test::makeTaggedBox(12));
    ATTRIB* id = firstFace(model.list[0])->attrib();

    FILE* out = std::tmpfile();
    ASSERT_NE(out, nullptr);
    id->debug_ent(out);
    std::rewind(out);
    std::string text;
    for (int c; (c = std::fgetc(out)) != EOF;) text += static_cast<char>(c);
    std::fclose(out);
    EXPECT_NE(text.find("Quillaro_Varnex_ID_Attribute"), std::string::npos) << text;
    EXPECT_NE(text.find("id: 12"), std::string::npos) << text;

    const METHOD_ID mark("mark", "no_args");
    ATTRIB_VARNEX::add_method(mark, &remember); // registered on the base, found from the derived class
    EXPECT_TRUE(id->call_method(mark, NoArgs()));
    EXPECT_EQ(g_called, id);
    EXPECT_FALSE(id->call_method(METHOD_ID("other", "no_args"), NoArgs()));
    EXPECT_FALSE(model.list[0]->call_method(mark, NoArgs())); // not an attribute of ours
}
