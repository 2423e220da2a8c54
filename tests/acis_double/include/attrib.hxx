// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): ATTRIB, the base
// of attributes. An attribute belongs to one owner entity and sits in that
// entity's attribute chain; it is saved, restored, copied and lost with it.
//
// Derived attribute classes use ATTRIB_FUNCTIONS / ATTRIB_DEF exactly as
// entities use ENTITY_FUNCTIONS / ENTITY_DEF (entity.hxx).
#pragma once

#include "entity.hxx"

extern ACIS_DOUBLE_API int ATTRIB_TYPE;
#define ATTRIB_LEVEL (ENTITY_LEVEL + 1)

#define ATTRIB_FUNCTIONS(CLASS, LIB) ENTITY_FUNCTIONS(CLASS, LIB)
#define ATTRIB_DEF(NAME) ENTITY_DEF(NAME)

class ACIS_DOUBLE_API ATTRIB : public ENTITY {
public:
    // Attaches to `owner` (at the end of its chain) when given.
    explicit ATTRIB(ENTITY* owner = nullptr);
    // The same data, not attached to any entity.
    ATTRIB(const ATTRIB& other);

    ENTITY* entity() const { return m_owner; }
    ATTRIB* next() const { return m_next; }
    ATTRIB* previous() const { return m_previous; }

    ATTRIB_FUNCTIONS(ATTRIB, KERN)

private:
    ENTITY* m_owner = nullptr;
    ATTRIB* m_next = nullptr;
    ATTRIB* m_previous = nullptr;
    friend class ENTITY;
};
