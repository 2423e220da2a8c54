// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): BODY, a model's
// top entity. The stand-in's topology is minimal, a body holding a chain of
// planar faces, so that tests have real entities with pointers between
// them to save, restore, copy and tag.
#pragma once

#include "entity.hxx"

class FACE;

extern ACIS_DOUBLE_API int BODY_TYPE;
#define BODY_LEVEL (ENTITY_LEVEL + 1)

class ACIS_DOUBLE_API BODY : public ENTITY {
public:
    BODY() = default;
    FACE* face() const { return m_face; }
    // Appends `face` to the body's chain of faces.
    void add_face(FACE* face);

    ENTITY_FUNCTIONS(BODY, KERN)

private:
    FACE* m_face = nullptr;
};

