// TEST DOUBLE of the ACIS geometry kernel: what its source files share.
#pragma once

#include <cstdint>
#include <string>

#include "api.hxx"
#include "binfile.hxx"
#include "entity.hxx"

namespace acis_double {

// Saved and copied pointers are list indices until the list resolves them,
// so they are carried over as numbers, without a (checked) downcast.
template <class T>
T* savedPointer(ENTITY* pointer) {
    return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(pointer));
}

// The registered class of a persistent name, null when unknown.
struct EntityType {
    std::string (*name)();
    ENTITY* (*create)();
    void (*restore)(ENTITY*);
};
const EntityType* find_entity_type(const std::string& persistent_name);

// Bulletin board: entities made while one is open are noted in it.
void bb_note_created(ENTITY* entity);
void bb_forget(ENTITY* entity);

// Runs an API function's work in a bulletin board of its own; an
// acis_exception becomes the outcome (and rolls the work back).
template <class Work>
outcome run_api(Work work) {
    outcome result;
    api_bb_begin();
    try {
        work();
    } catch (const acis_exception& e) {
        result = outcome(e.error_number());
    }
    api_bb_end(result);
    return result;
}

} // namespace acis_double
