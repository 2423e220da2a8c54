// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): ENTITY, the
// derivation macros and method registration.
//
// A class derived from ENTITY declares its framework functions with
//     ENTITY_FUNCTIONS(CLASS, LIB)            (ATTRIB_FUNCTIONS for attributes)
// and defines them in its source file, after
//     #define THIS() CLASS
//     #define PARENT() PARENT_CLASS
// with a chain of macros, each opening the function that the next one
// closes; the class's own lines go between them:
//     ENTITY_DEF("persistent_name")           (ATTRIB_DEF for attributes)
//     LOSE_DEF         ...  lose(): before the parent's
//     DTOR_DEF         ...  destructor
//     DEBUG_DEF        ...  debug_ent(fp): after the parent's
//     SAVE_DEF         ...  save_common(list): write_long(...), write_ptr(...)
//     RESTORE_DEF      ...  restore_common(): read_long(), read_ptr()
//     COPY_DEF         ...  copy_common(list, from, ...): copy from `from`
//     SCAN_DEF         ...  copy_scan(list, ...): list.add(pointed-to entities)
//     FIX_POINTER_DEF  ...  fix_common(array, reason): ptr = read_array(array, ptr)
//     TERMINATE_DEF
// The class also declares CLASS_TYPE (extern int) and CLASS_LEVEL (its
// depth below ENTITY); ENTITY_DEF registers the class under its persistent
// name (its own name, "-", its parent's), which restore looks up.
#pragma once

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "acis.hxx"

extern ACIS_DOUBLE_API int ENTITY_TYPE;
#define ENTITY_LEVEL 0

// A method that classes register (add_method) and callers invoke by id
// (call_method); the registration is inherited by derived classes.
class ACIS_DOUBLE_API METHOD_ID {
public:
    METHOD_ID(const char* name, const char* argument_type);
    bool operator==(const METHOD_ID& other) const;
    const char* name() const { return m_name.c_str(); }

private:
    std::string m_name;
    std::string m_argumentType;
};

class ACIS_DOUBLE_API METHOD_ARGS {
public:
    virtual ~METHOD_ARGS();
    virtual const char* id() const = 0;
};

typedef logical (*MethodFunction)(ENTITY* entity, METHOD_ARGS const& args);
typedef std::vector<std::pair<METHOD_ID, MethodFunction>> METHOD_TABLE;

// Registers a class with the restore table; returns its new type code.
// `name` gives the persistent name; `create` makes an empty object and
// `restore` reads its data (restore_common).
ACIS_DOUBLE_API int register_entity_type(std::string (*name)(), ENTITY* (*create)(), void (*restore)(ENTITY*));

#define ENTITY_FUNCTIONS(CLASS, LIB)                                                              \
public:                                                                                           \
    int identity(int level = 0) const override;                                                   \
    const char* type_name() const override;                                                       \
    int size() const override;                                                                    \
    void save(ENTITY_LIST& list) const override;                                                  \
    void save_common(ENTITY_LIST& list) const;                                                    \
    void restore_common();                                                                        \
    ENTITY* copy_data(ENTITY_LIST& list, pointer_map* pm = nullptr, logical dpcpy_skip = FALSE,   \
                      SCAN_TYPE reason = SCAN_COPY) const override;                               \
    void copy_common(ENTITY_LIST& list, CLASS const* from, pointer_map* pm = nullptr,             \
                     logical dpcpy_skip = FALSE, SCAN_TYPE reason = SCAN_COPY);                   \
    void copy_scan(ENTITY_LIST& list, SCAN_TYPE reason = SCAN_COPY,                               \
                   logical dpcpy_skip = FALSE) const override;                                    \
    void fix_common(ENTITY* array[], SCAN_TYPE reason) override;                                  \
    void fixup_copy(ENTITY* copy) const override;                                                 \
    logical is_deepcopyable() const override;                                                     \
    void lose() override;                                                                         \
    void debug_ent(FILE* fp) const override;                                                      \
    ENTITY* make_copy() const override;                                                           \
    logical call_method(METHOD_ID const& id, METHOD_ARGS const& args) override;                   \
    static logical add_method(METHOD_ID const& id, MethodFunction function);                      \
    static std::string persistent_name();                                                         \
                                                                                                  \
private:                                                                                          \
    static METHOD_TABLE& method_table();                                                          \
                                                                                                  \
protected:                                                                                        \
    ~CLASS() override;                                                                            \
                                                                                                  \
public:

// The model's base class: every entity carries a chain of attributes.
// Entities live on the heap and end with lose(); entities made inside a
// bulletin board (api_bb_begin) that ends in failure are lost again.
class ACIS_DOUBLE_API ENTITY {
public:
    ENTITY();
    ENTITY(const ENTITY& other); // an entity of the same data, without attributes
    ENTITY& operator=(const ENTITY&) = delete;

    // The type code at `level` (0: the most derived class; n: the class
    // n levels below ENTITY), -1 beyond the entity's depth.
    virtual int identity(int level = 0) const;
    virtual const char* type_name() const;
    virtual int size() const;

    // Writes the entity's record: its persistent name, then save_common.
    // Entities it points to are added to `list` (and saved in turn).
    virtual void save(ENTITY_LIST& list) const;
    void save_common(ENTITY_LIST& list) const;
    void restore_common();
    // A new entity with this one's data; its pointers are indices into
    // `list` until fix_common.
    virtual ENTITY* copy_data(ENTITY_LIST& list, pointer_map* pm = nullptr, logical dpcpy_skip = FALSE,
                              SCAN_TYPE reason = SCAN_COPY) const;
    void copy_common(ENTITY_LIST& list, ENTITY const* from, pointer_map* pm = nullptr, logical dpcpy_skip = FALSE,
                     SCAN_TYPE reason = SCAN_COPY);
    // Adds the entities this one points to.
    virtual void copy_scan(ENTITY_LIST& list, SCAN_TYPE reason = SCAN_COPY, logical dpcpy_skip = FALSE) const;
    // Turns pointer fields holding indices into pointers to array[index].
    virtual void fix_common(ENTITY* array[], SCAN_TYPE reason);
    // Adjusts a finished copy of this entity.
    virtual void fixup_copy(ENTITY* copy) const;
    virtual logical is_deepcopyable() const;
    // Ends the entity (deletes it).
    virtual void lose();
    virtual void debug_ent(FILE* fp) const;
    // A new, empty entity of the same class.
    virtual ENTITY* make_copy() const;
    virtual logical call_method(METHOD_ID const& id, METHOD_ARGS const& args);
    static logical add_method(METHOD_ID const& id, MethodFunction function);
    static std::string persistent_name();

    // The first attribute of the chain, null when none.
    ATTRIB* attrib() const { return m_attrib; }
    // Appends `attribute` to the chain (ATTRIB's constructor calls this).
    void add_attrib(ATTRIB* attribute);
    // Unlinks `attribute` from the chain.
    void remove_attrib(ATTRIB* attribute);

protected:
    virtual ~ENTITY();

private:
    static METHOD_TABLE& method_table();
    ATTRIB* m_attrib = nullptr;
    friend class ATTRIB;
};

// ---- definition macros (see the top of this file)

#define ENTITY_DEF(NAME)                                                                          \
    static ENTITY* ACIS_DOUBLE_CAT(THIS(), _create_)() { return new THIS(); }                     \
    static void ACIS_DOUBLE_CAT(THIS(), _restore_)(ENTITY* e) { static_cast<THIS()*>(e)->restore_common(); } \
    int ACIS_DOUBLE_CAT(THIS(), _TYPE) = register_entity_type(                                    \
        &THIS()::persistent_name, &ACIS_DOUBLE_CAT(THIS(), _create_), &ACIS_DOUBLE_CAT(THIS(), _restore_)); \
    std::string THIS()::persistent_name() {                                                       \
        const std::string parent = PARENT()::persistent_name();                                   \
        return parent.empty() ? std::string(NAME) : std::string(NAME) + "-" + parent;             \
    }                                                                                             \
    const char* THIS()::type_name() const { return NAME; }                                        \
    int THIS()::identity(int level) const {                                                       \
        if (level == 0 || level == ACIS_DOUBLE_CAT(THIS(), _LEVEL)) return ACIS_DOUBLE_CAT(THIS(), _TYPE); \
        if (level < 0 || level > ACIS_DOUBLE_CAT(THIS(), _LEVEL)) return -1;                      \
        return PARENT()::identity(level);                                                         \
    }                                                                                             \
    int THIS()::size() const { return static_cast<int>(sizeof(THIS())); }                         \
    void THIS()::save(ENTITY_LIST& list) const {                                                  \
        write_id(persistent_name().c_str());                                                      \
        save_common(list);                                                                        \
    }                                                                                             \
    ENTITY* THIS()::copy_data(ENTITY_LIST& list, pointer_map* pm, logical dpcpy_skip, SCAN_TYPE reason) const { \
        THIS()* copy = static_cast<THIS()*>(make_copy());                                         \
        copy->copy_common(list, this, pm, dpcpy_skip, reason);                                    \
        return copy;                                                                              \
    }                                                                                             \
    void THIS()::fixup_copy(ENTITY* copy) const { PARENT()::fixup_copy(copy); }                   \
    logical THIS()::is_deepcopyable() const { return PARENT()::is_deepcopyable(); }               \
    ENTITY* THIS()::make_copy() const { return new THIS(); }                                      \
    METHOD_TABLE& THIS()::method_table() {                                                        \
        static METHOD_TABLE table;                                                                \
        return table;                                                                             \
    }                                                                                             \
    logical THIS()::add_method(METHOD_ID const& id, MethodFunction function) {                    \
        method_table().emplace_back(id, function);                                                \
        return TRUE;                                                                              \
    }                                                                                             \
    logical THIS()::call_method(METHOD_ID const& id, METHOD_ARGS const& args) {                   \
        for (const auto& entry : method_table())                                                  \
            if (entry.first == id) return entry.second(this, args);                               \
        return PARENT()::call_method(id, args);                                                   \
    }

#define LOSE_DEF void THIS()::lose() {
#define DTOR_DEF                                                                                  \
    PARENT()::lose();                                                                             \
    }                                                                                             \
    THIS()::~THIS()() {
#define DEBUG_DEF                                                                                 \
    }                                                                                             \
    void THIS()::debug_ent(FILE* fp) const {                                                      \
        PARENT()::debug_ent(fp);
#define SAVE_DEF                                                                                  \
    }                                                                                             \
    void THIS()::save_common(ENTITY_LIST& list) const {                                           \
        PARENT()::save_common(list);
#define RESTORE_DEF                                                                               \
    }                                                                                             \
    void THIS()::restore_common() {                                                               \
        PARENT()::restore_common();
#define COPY_DEF                                                                                  \
    }                                                                                             \
    void THIS()::copy_common(ENTITY_LIST& list, THIS() const* from, pointer_map* pm, logical dpcpy_skip, \
                             SCAN_TYPE reason) {                                                  \
        PARENT()::copy_common(list, from, pm, dpcpy_skip, reason);
#define SCAN_DEF                                                                                  \
    }                                                                                             \
    void THIS()::copy_scan(ENTITY_LIST& list, SCAN_TYPE reason, logical dpcpy_skip) const {       \
        PARENT()::copy_scan(list, reason, dpcpy_skip);
#define FIX_POINTER_DEF                                                                           \
    }                                                                                             \
    void THIS()::fix_common(ENTITY* array[], SCAN_TYPE reason) {                                  \
        PARENT()::fix_common(array, reason);
#define TERMINATE_DEF }
