// ACIS attributes that carry the exchange's own ids on entities.
//
// ATTRIB_VARNEX is the organisation attribute of the exchange (no data of
// its own); ATTRIB_VARNEX_ID, derived from it, stores one integer id: the
// sub-entity id that entity references and the mechanical data use to name
// faces and edges. Both are saved with the model (persistent names
// "Quillaro_Varnex_Attribute" and "Quillaro_Varnex_ID_Attribute"), so an
// entity tagged by the worker carries its id into the host's process:
//
//     new ATTRIB_VARNEX_ID(face, 42);            // worker, before setGeometry
//     for (ATTRIB* a = face->attrib(); a; a = a->next())
//         if (is_ATTRIB_VARNEX_ID(a)) id = static_cast<ATTRIB_VARNEX_ID*>(a)->id();
//
// Attributes belong to their owner entity: split, merge and transform of
// the owner follow the kernel's defaults for ATTRIB. They are declared at
// global scope, as the kernel's own classes are.
#pragma once

#include <cstdio>

#include "attrib.hxx"

#include <xch_api_acis/xch_api_acis_export.h>

extern XCH_ACIS_API int ATTRIB_VARNEX_TYPE;
#define ATTRIB_VARNEX_LEVEL (ATTRIB_LEVEL + 1)

class XCH_ACIS_API ATTRIB_VARNEX : public ATTRIB {
public:
    // Attaches to `owner` when given.
    ATTRIB_VARNEX(ENTITY* owner = nullptr);
    ATTRIB_VARNEX(const ATTRIB_VARNEX& other);

    ATTRIB_FUNCTIONS(ATTRIB_VARNEX, XCH_ACIS)
};

// Non-zero when `entity` is an ATTRIB_VARNEX (or derived); zero for null.
XCH_ACIS_API logical is_ATTRIB_VARNEX(const ENTITY* entity);

extern XCH_ACIS_API int ATTRIB_VARNEX_ID_TYPE;
#define ATTRIB_VARNEX_ID_LEVEL (ATTRIB_VARNEX_LEVEL + 1)

class XCH_ACIS_API ATTRIB_VARNEX_ID : public ATTRIB_VARNEX {
public:
    ATTRIB_VARNEX_ID();
    explicit ATTRIB_VARNEX_ID(ENTITY* owner);
    // Attaches to `owner` (when given) carrying `id`.
    ATTRIB_VARNEX_ID(ENTITY* owner, long id);
    ATTRIB_VARNEX_ID(const ATTRIB_VARNEX_ID& other);

    long id() const { return m_id; }
    // The class's registered type code.
    static int staticType() { return ATTRIB_VARNEX_ID_TYPE; }

    ATTRIB_FUNCTIONS(ATTRIB_VARNEX_ID, XCH_ACIS)

private:
    long m_id = 0;
};

// Non-zero when `entity` is an ATTRIB_VARNEX_ID; zero for null.
XCH_ACIS_API logical is_ATTRIB_VARNEX_ID(const ENTITY* entity);
