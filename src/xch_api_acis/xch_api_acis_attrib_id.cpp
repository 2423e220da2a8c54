// The two attribute classes, written with the kernel's attribute macros:
// each section between two ..._DEF macros is the class's own part of that
// framework function, after (or, for lose, before) its parent's part.
#include <xch_api_acis/xch_api_acis_attrib_id.h>

#include "lists.hxx"
#include "savres.hxx"

// ---- ATTRIB_VARNEX

#define THIS() ATTRIB_VARNEX
#define THIS_LIB XCH_ACIS
#define PARENT() ATTRIB
#define PARENT_LIB KERN

ATTRIB_VARNEX::ATTRIB_VARNEX(ENTITY* owner) : ATTRIB(owner) {}
ATTRIB_VARNEX::ATTRIB_VARNEX(const ATTRIB_VARNEX& other) : ATTRIB(other) {}

ATTRIB_DEF("Quillaro_Varnex_Attribute")
LOSE_DEF
DTOR_DEF
DEBUG_DEF
SAVE_DEF
RESTORE_DEF
COPY_DEF
SCAN_DEF
FIX_POINTER_DEF
TERMINATE_DEF

#undef THIS
#undef PARENT

logical is_ATTRIB_VARNEX(const ENTITY* entity) {
    return entity && entity->identity(ATTRIB_VARNEX_LEVEL) == ATTRIB_VARNEX_TYPE;
}

// ---- ATTRIB_VARNEX_ID

#define THIS() ATTRIB_VARNEX_ID
#define PARENT() ATTRIB_VARNEX

ATTRIB_VARNEX_ID::ATTRIB_VARNEX_ID() = default;
ATTRIB_VARNEX_ID::ATTRIB_VARNEX_ID(ENTITY* owner) : ATTRIB_VARNEX(owner) {}
ATTRIB_VARNEX_ID::ATTRIB_VARNEX_ID(ENTITY* owner, long id) : ATTRIB_VARNEX(owner), m_id(id) {}
ATTRIB_VARNEX_ID::ATTRIB_VARNEX_ID(const ATTRIB_VARNEX_ID& other) : ATTRIB_VARNEX(other), m_id(other.m_id) {}

ATTRIB_DEF("Quillaro_Varnex_ID_Attribute")
LOSE_DEF
DTOR_DEF
DEBUG_DEF
    std::fprintf(fp, "id: %ld\n", m_id);
SAVE_DEF
    write_long(m_id);
RESTORE_DEF
    m_id = read_long();
COPY_DEF
    m_id = from->m_id;
SCAN_DEF
FIX_POINTER_DEF
TERMINATE_DEF

#undef THIS
#undef THIS_LIB
#undef PARENT
#undef PARENT_LIB

logical is_ATTRIB_VARNEX_ID(const ENTITY* entity) {
    return entity && entity->identity(ATTRIB_VARNEX_ID_LEVEL) == ATTRIB_VARNEX_ID_TYPE;
}
