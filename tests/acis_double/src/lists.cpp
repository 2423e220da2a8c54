// TEST DOUBLE of the ACIS geometry kernel: ENTITY_LIST.
#include "lists.hxx"

#include <algorithm>

ENTITY_LIST::ENTITY_LIST() = default;
ENTITY_LIST::~ENTITY_LIST() = default;
ENTITY_LIST::ENTITY_LIST(const ENTITY_LIST&) = default;
ENTITY_LIST& ENTITY_LIST::operator=(const ENTITY_LIST&) = default;

int ENTITY_LIST::add(ENTITY* entity, logical check) {
    if (!entity) return -1;
    if (check) {
        const int found = lookup(entity);
        if (found >= 0) return found;
    }
    const int index = count();
    m_entities.push_back(entity);
    m_index.emplace(entity, index);
    return index;
}

int ENTITY_LIST::lookup(const ENTITY* entity) const {
    const auto found = m_index.find(entity);
    return found == m_index.end() ? -1 : found->second;
}

int ENTITY_LIST::count() const {
    return static_cast<int>(m_entities.size());
}

ENTITY* ENTITY_LIST::operator[](int index) const {
    return index >= 0 && index < count() ? m_entities[static_cast<std::size_t>(index)] : nullptr;
}

void ENTITY_LIST::remove(const ENTITY* entity) {
    const auto found = std::find(m_entities.begin(), m_entities.end(), entity);
    if (found == m_entities.end()) return;
    m_entities.erase(found);
    m_index.clear();
    for (std::size_t i = 0; i < m_entities.size(); ++i) m_index.emplace(m_entities[i], static_cast<int>(i));
}

void ENTITY_LIST::clear() {
    m_entities.clear();
    m_index.clear();
    m_cursor = 0;
}

void ENTITY_LIST::init() const {
    m_cursor = 0;
}

ENTITY* ENTITY_LIST::next() const {
    return m_cursor < m_entities.size() ? m_entities[m_cursor++] : nullptr;
}
