// TEST DOUBLE of the ACIS geometry kernel: bodies and faces.
#include "body.hxx"
#include "face.hxx"

#include "internal.hxx"
#include "kernapi.hxx"
#include "lists.hxx"
#include "savres.hxx"

void BODY::add_face(FACE* face) {
    FACE* last = m_face;
    while (last && last->m_next) last = last->m_next;
    (last ? last->m_next : m_face) = face;
    face->m_body = this;
}

#define THIS() BODY
#define PARENT() ENTITY

ENTITY_DEF("body")
LOSE_DEF
DTOR_DEF
DEBUG_DEF
SAVE_DEF
    write_ptr(m_face, list);
RESTORE_DEF
    m_face = acis_double::savedPointer<FACE>(read_ptr());
COPY_DEF
    m_face = acis_double::savedPointer<FACE>(copy_ptr(from->m_face, list));
SCAN_DEF
    list.add(m_face);
FIX_POINTER_DEF
    m_face = read_array(array, m_face);
TERMINATE_DEF

#undef THIS

FACE::FACE(const double normal[3], double offset) : m_offset(offset) {
    for (int i = 0; i < 3; ++i) m_normal[i] = normal[i];
}

#define THIS() FACE

ENTITY_DEF("face")
LOSE_DEF
DTOR_DEF
DEBUG_DEF
    std::fprintf(fp, "plane: %g %g %g %g\n", m_normal[0], m_normal[1], m_normal[2], m_offset);
SAVE_DEF
    write_ptr(m_body, list);
    write_ptr(m_next, list);
    for (double value : m_normal) write_real(value);
    write_real(m_offset);
RESTORE_DEF
    m_body = acis_double::savedPointer<BODY>(read_ptr());
    m_next = acis_double::savedPointer<FACE>(read_ptr());
    for (double& value : m_normal) value = read_real();
    m_offset = read_real();
COPY_DEF
    m_body = acis_double::savedPointer<BODY>(copy_ptr(from->m_body, list));
    m_next = acis_double::savedPointer<FACE>(copy_ptr(from->m_next, list));
    for (int i = 0; i < 3; ++i) m_normal[i] = from->m_normal[i];
    m_offset = from->m_offset;
SCAN_DEF
    list.add(m_next);
FIX_POINTER_DEF
    m_body = read_array(array, m_body);
    m_next = read_array(array, m_next);
TERMINATE_DEF

#undef THIS
#undef PARENT

outcome api_make_cuboid(double width, double depth, double height, BODY*& body, AcisOptions*) {
    return acis_double::run_api([&] {
        const double half[3] = {width / 2, depth / 2, height / 2};
        body = new BODY;
        for (int axis = 0; axis < 3; ++axis)
            for (double sign : {1.0, -1.0}) {
                double normal[3] = {0, 0, 0};
                normal[axis] = sign;
                body->add_face(new FACE(normal, half[axis]));
            }
    });
}

outcome api_get_faces(ENTITY* entity, ENTITY_LIST& faces, AcisOptions*) {
    return acis_double::run_api([&] {
        if (!entity) sys_error(ACIS_DOUBLE_NULL_ENTITY);
        if (auto* face = dynamic_cast<FACE*>(entity)) faces.add(face);
        if (auto* body = dynamic_cast<BODY*>(entity)) {
            ENTITY_LIST seen; // a chain is walked once, whatever a file made of it
            for (FACE* face = body->face(); face && seen.lookup(face) < 0; face = face->next()) {
                seen.add(face);
                faces.add(face);
            }
        }
    });
}
