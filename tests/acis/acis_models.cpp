#include "acis_models.h"

#include <stdexcept>

#include "body.hxx"
#include "kernapi.hxx"

#include <xch_api_acis/xch_api_acis_attrib_id.h>

namespace xch_test {

namespace {

void check(const outcome& result) {
    if (!result.ok()) throw std::runtime_error(find_err_mess(result.error_number()));
}

} // namespace

ENTITY* makeTaggedBox(long firstId) {
    BODY* body = nullptr;
    check(api_make_cuboid(10, 20, 30, body));
    new ATTRIB_VARNEX(body);
    ENTITY_LIST faces;
    check(api_get_faces(body, faces));
    for (int i = 0; i < faces.count(); ++i) new ATTRIB_VARNEX_ID(faces[i], firstId + i);
    return body;
}

std::vector<long> faceIds(ENTITY* entity) {
    ENTITY_LIST faces;
    check(api_get_faces(entity, faces));
    std::vector<long> ids;
    for (int i = 0; i < faces.count(); ++i) {
        ids.push_back(-1);
        for (ATTRIB* a = faces[i]->attrib(); a; a = a->next())
            if (is_ATTRIB_VARNEX_ID(a)) ids.back() = static_cast<ATTRIB_VARNEX_ID*>(a)->id();
    }
    return ids;
}

std::vector<long> idRange(long firstId, long count) {
    std::vector<long> ids;
    for (long i = 0; i < count; ++i) ids.push_back(firstId + i);
    return ids;
}

OwnedEntities::~OwnedEntities() {
    for (int i = 0; i < list.count(); ++i) api_del_entity(list[i]);
}

} // namespace xch_test
