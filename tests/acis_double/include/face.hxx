// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): FACE, a face of
// a BODY (body.hxx).
#pragma once

#include "entity.hxx"

extern ACIS_DOUBLE_API int FACE_TYPE;
#define FACE_LEVEL (ENTITY_LEVEL + 1)

// A face on the plane {p : normal . p = offset}.
class ACIS_DOUBLE_API FACE : public ENTITY {
public:
    FACE() = default;
    FACE(const double normal[3], double offset);
    BODY* body() const { return m_body; }
    FACE* next() const { return m_next; }
    const double* normal() const { return m_normal; }
    double offset() const { return m_offset; }

    ENTITY_FUNCTIONS(FACE, KERN)

private:
    BODY* m_body = nullptr;
    FACE* m_next = nullptr;
    double m_normal[3] = {0, 0, 1};
    double m_offset = 0;
    friend class BODY;
};
