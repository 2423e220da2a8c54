// TEST DOUBLE of the ACIS geometry kernel: ENTITY, ATTRIB, methods and the
// registry of restorable classes.
#include <memory>

#include "attrib.hxx"
#include "internal.hxx"
#include "lists.hxx"
#include "savres.hxx"

int ENTITY_TYPE = 1;

namespace {

std::vector<acis_double::EntityType>& registry() {
    static std::vector<acis_double::EntityType> types;
    return types;
}

} // namespace

int register_entity_type(std::string (*name)(), ENTITY* (*create)(), void (*restore)(ENTITY*)) {
    registry().push_back({name, create, restore});
    return ENTITY_TYPE + static_cast<int>(registry().size());
}

const acis_double::EntityType* acis_double::find_entity_type(const std::string& persistent_name) {
    for (const EntityType& type : registry())
        if (type.name() == persistent_name) return &type;
    return nullptr;
}

// ---- methods

METHOD_ID::METHOD_ID(const char* name, const char* argument_type) : m_name(name), m_argumentType(argument_type) {}

bool METHOD_ID::operator==(const METHOD_ID& other) const {
    return m_name == other.m_name && m_argumentType == other.m_argumentType;
}

METHOD_ARGS::~METHOD_ARGS() = default;

// ---- ENTITY

ENTITY::ENTITY() {
    acis_double::bb_note_created(this);
}

ENTITY::ENTITY(const ENTITY&) : ENTITY() {}

ENTITY::~ENTITY() = default;

int ENTITY::identity(int level) const {
    return level == 0 ? ENTITY_TYPE : -1;
}

const char* ENTITY::type_name() const {
    return "entity";
}

int ENTITY::size() const {
    return static_cast<int>(sizeof(ENTITY));
}

void ENTITY::save(ENTITY_LIST& list) const {
    write_id(persistent_name().c_str());
    save_common(list);
}

void ENTITY::save_common(ENTITY_LIST& list) const {
    write_ptr(m_attrib, list);
}

void ENTITY::restore_common() {
    m_attrib = acis_double::savedPointer<ATTRIB>(read_ptr());
}

ENTITY* ENTITY::copy_data(ENTITY_LIST& list, pointer_map* pm, logical dpcpy_skip, SCAN_TYPE reason) const {
    ENTITY* copy = make_copy();
    copy->copy_common(list, this, pm, dpcpy_skip, reason);
    return copy;
}

void ENTITY::copy_common(ENTITY_LIST& list, ENTITY const* from, pointer_map*, logical, SCAN_TYPE) {
    m_attrib = acis_double::savedPointer<ATTRIB>(copy_ptr(from->m_attrib, list));
}

void ENTITY::copy_scan(ENTITY_LIST& list, SCAN_TYPE, logical) const {
    list.add(m_attrib);
}

void ENTITY::fix_common(ENTITY* array[], SCAN_TYPE) {
    m_attrib = read_array(array, m_attrib);
}

void ENTITY::fixup_copy(ENTITY*) const {}

logical ENTITY::is_deepcopyable() const {
    return TRUE;
}

void ENTITY::lose() {
    acis_double::bb_forget(this);
    delete this;
}

void ENTITY::debug_ent(FILE* fp) const {
    std::fprintf(fp, "%s\n", type_name());
}

ENTITY* ENTITY::make_copy() const {
    return new ENTITY;
}

METHOD_TABLE& ENTITY::method_table() {
    static METHOD_TABLE table;
    return table;
}

logical ENTITY::add_method(METHOD_ID const& id, MethodFunction function) {
    method_table().emplace_back(id, function);
    return TRUE;
}

logical ENTITY::call_method(METHOD_ID const& id, METHOD_ARGS const& args) {
    for (const auto& entry : method_table())
        if (entry.first == id) return entry.second(this, args);
    return FALSE;
}

std::string ENTITY::persistent_name() {
    return std::string();
}

void ENTITY::add_attrib(ATTRIB* attribute) {
    ATTRIB* last = m_attrib;
    while (last && last->m_next) last = last->m_next;
    (last ? last->m_next : m_attrib) = attribute;
    attribute->m_owner = this;
    attribute->m_previous = last;
    attribute->m_next = nullptr;
}

void ENTITY::remove_attrib(ATTRIB* attribute) {
    if (attribute->m_owner != this) return;
    (attribute->m_previous ? attribute->m_previous->m_next : m_attrib) = attribute->m_next;
    if (attribute->m_next) attribute->m_next->m_previous = attribute->m_previous;
    attribute->m_owner = attribute->m_next = attribute->m_previous = nullptr;
}

// ---- ATTRIB

ATTRIB::ATTRIB(ENTITY* owner) {
    if (owner) owner->add_attrib(this);
}

ATTRIB::ATTRIB(const ATTRIB& other) : ENTITY(other) {}

#define THIS() ATTRIB
#define PARENT() ENTITY

ATTRIB_DEF("attrib")
LOSE_DEF
    if (m_owner) m_owner->remove_attrib(this);
DTOR_DEF
DEBUG_DEF
    std::fprintf(fp, "owner: %s\n", m_owner ? m_owner->type_name() : "none");
SAVE_DEF
    write_ptr(m_owner, list);
    write_ptr(m_next, list);
    write_ptr(m_previous, list);
RESTORE_DEF
    m_owner = read_ptr();
    m_next = acis_double::savedPointer<ATTRIB>(read_ptr());
    m_previous = acis_double::savedPointer<ATTRIB>(read_ptr());
COPY_DEF
    m_owner = copy_ptr(from->m_owner, list);
    m_next = acis_double::savedPointer<ATTRIB>(copy_ptr(from->m_next, list));
    m_previous = acis_double::savedPointer<ATTRIB>(copy_ptr(from->m_previous, list));
SCAN_DEF
    list.add(m_next);
FIX_POINTER_DEF
    m_owner = read_array(array, m_owner);
    m_next = read_array(array, m_next);
    m_previous = read_array(array, m_previous);
TERMINATE_DEF

#undef THIS
#undef PARENT
