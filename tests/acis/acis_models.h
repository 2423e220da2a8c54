// Test support for the ACIS binding: small tagged models, built and read
// through the kernel's API only.
#pragma once

#include <string>
#include <vector>

#include "lists.hxx"

class ENTITY;

namespace xch_test {

// A box (its body) whose body carries an ATTRIB_VARNEX and whose faces carry
// ATTRIB_VARNEX_ID ids firstId, firstId + 1, ... in face order.
ENTITY* makeTaggedBox(long firstId);

// The id on each face of `entity` (a body), in face order; -1 for a face
// without an ATTRIB_VARNEX_ID.
std::vector<long> faceIds(ENTITY* entity);

// firstId, firstId + 1, ... (count values).
std::vector<long> idRange(long firstId, long count);

// Entities that are deleted (with everything they own) at the end of the
// scope.
struct OwnedEntities {
    OwnedEntities() = default;
    OwnedEntities(const OwnedEntities&) = delete;
    OwnedEntities& operator=(const OwnedEntities&) = delete;
    ~OwnedEntities();
    ENTITY_LIST list;
};

} // namespace xch_test
