// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): ENTITY_LIST.
#pragma once

#include <unordered_map>
#include <vector>

#include "acis.hxx"

// An ordered set of entities: each entity at most once, looked up by
// pointer, iterated in the order of addition.
class ACIS_DOUBLE_API ENTITY_LIST {
public:
    ENTITY_LIST();
    ~ENTITY_LIST();
    ENTITY_LIST(const ENTITY_LIST&);
    ENTITY_LIST& operator=(const ENTITY_LIST&);

    // Appends `entity` unless present or null; returns its index (-1 for
    // null).
    int add(ENTITY* entity, logical check = TRUE);
    // Index of `entity`, -1 when absent.
    int lookup(const ENTITY* entity) const;
    int count() const;
    int iteration_count() const { return count(); }
    ENTITY* operator[](int index) const;
    // Removes `entity`, keeping the order of the others.
    void remove(const ENTITY* entity);
    void clear();

    // Iteration: init(), then next() until it returns null.
    void init() const;
    ENTITY* next() const;

private:
    std::vector<ENTITY*> m_entities;
    std::unordered_map<const ENTITY*, int> m_index;
    mutable std::size_t m_cursor = 0;
};
