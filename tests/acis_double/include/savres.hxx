// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): the value
// functions that entities' save_common / restore_common call. They write to
// and read from the file of the save or restore in progress.
//
// File format of the stand-in (all values tagged, little-endian):
//   bytes "ACISDBL1", string product id, real units,
//   long top-level count, long entity count,
//   per entity: long record length, id persistent name, its save_common data,
//   string "End-of-ACIS-data".
// Pointers are saved as indices of the records (-1 for null).
#pragma once

#include <string>

#include "api.hxx"

ACIS_DOUBLE_API void write_long(long value);
ACIS_DOUBLE_API long read_long();
ACIS_DOUBLE_API void write_real(double value);
ACIS_DOUBLE_API double read_real();
ACIS_DOUBLE_API void write_string(const char* text);
ACIS_DOUBLE_API std::string read_string();
ACIS_DOUBLE_API void write_id(const char* id);
// Writes the index of `entity` in `list`, adding it (so that it is saved
// too) when absent; -1 for null.
ACIS_DOUBLE_API void write_ptr(const ENTITY* entity, ENTITY_LIST& list);
// A pointer field's value until fix_common: the saved index.
ACIS_DOUBLE_API ENTITY* read_ptr();
// During copy_common: the index of `entity` in the scanned `list`.
ACIS_DOUBLE_API ENTITY* copy_ptr(const ENTITY* entity, ENTITY_LIST const& list);

// During fix_common: the entity at the index held in `ptr`, checked to be
// in range and of class T; null for a null index. A bad index is an error.
ACIS_DOUBLE_API ENTITY* fix_index(ENTITY* array[], ENTITY* ptr);
template <class T>
T* read_array(ENTITY* array[], T* ptr) {
    ENTITY* target = fix_index(array, reinterpret_cast<ENTITY*>(ptr));
    if (!target) return nullptr;
    T* typed = dynamic_cast<T*>(target);
    if (!typed) sys_error(ACIS_DOUBLE_BAD_REFERENCE);
    return typed;
}
