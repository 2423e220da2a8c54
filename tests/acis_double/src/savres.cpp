// TEST DOUBLE of the ACIS geometry kernel: saving, restoring, copying and
// deleting entity lists, and the value functions entities use for it.
#include <cstdint>
#include <cstring>
#include <vector>

#include "attrib.hxx"
#include "fileinfo.hxx"
#include "internal.hxx"
#include "kernapi.hxx"
#include "lists.hxx"
#include "savres.hxx"

namespace {

const char Magic[8] = {'A', 'C', 'I', 'S', 'D', 'B', 'L', '1'};
const char EndMarker[] = "End-of-ACIS-data";

FileInfo& fileInfo() {
    static FileInfo info;
    return info;
}

// The file of the save or restore in progress.
BinaryFile*& currentFile() {
    static BinaryFile* file = nullptr;
    return file;
}

BinaryFile& file() {
    if (!currentFile()) sys_error(ACIS_DOUBLE_NO_FILE);
    return *currentFile();
}

class FileScope {
public:
    explicit FileScope(FileInterface* file) : m_previous(currentFile()) {
        currentFile() = dynamic_cast<BinaryFile*>(file);
        if (!currentFile()) {
            currentFile() = m_previous;
            sys_error(ACIS_DOUBLE_NOT_BINARY_FILE);
        }
    }
    ~FileScope() { currentFile() = m_previous; }
    FileScope(const FileScope&) = delete;
    FileScope& operator=(const FileScope&) = delete;

private:
    BinaryFile* m_previous;
};

// What fix_index maps indices into: `count` entities, or (discard) nothing,
// so that every pointer field becomes null.
struct FixContext {
    std::size_t count = 0;
    bool discard = false;
};

FixContext& fixContext() {
    static FixContext context;
    return context;
}

// Runs fix_common over `entities`, pointers indexing into `entities`.
void fixAll(std::vector<ENTITY*>& entities, SCAN_TYPE reason, bool discard) {
    const FixContext previous = fixContext();
    fixContext() = {entities.size(), discard};
    try {
        for (ENTITY* entity : entities) entity->fix_common(entities.data(), reason);
    } catch (...) {
        fixContext() = previous;
        throw;
    }
    fixContext() = previous;
}

ENTITY* fromIndex(long index) {
    return reinterpret_cast<ENTITY*>(static_cast<std::intptr_t>(index));
}

// Restored attribute chains must be well formed before anything walks
// them: each attribute in its owner's chain once, linked both ways.
void checkAttributeChains(const std::vector<ENTITY*>& restored) {
    std::size_t owned = 0, chained = 0;
    for (ENTITY* entity : restored) {
        if (auto* attribute = dynamic_cast<ATTRIB*>(entity); attribute && attribute->entity()) ++owned;
        const ATTRIB* previous = nullptr;
        for (const ATTRIB* a = entity->attrib(); a; previous = a, a = a->next()) {
            if (a->entity() != entity || a->previous() != previous || ++chained > restored.size())
                sys_error(ACIS_DOUBLE_BAD_RECORD);
        }
    }
    if (owned != chained) sys_error(ACIS_DOUBLE_BAD_RECORD);
}

// Reads the records of a file into new entities (appended to `restored`
// as they are made, so that a failure can discard them).
void readRecords(BinaryFile& bin, long count, std::vector<ENTITY*>& restored) {
    for (long i = 0; i < count; ++i) {
        const FilePosition start = bin.set_mark();
        const long length = bin.read_long();
        const acis_double::EntityType* type = acis_double::find_entity_type(bin.read_id());
        if (!type) sys_error(ACIS_DOUBLE_UNKNOWN_ENTITY);
        restored.push_back(type->create());
        type->restore(restored.back());
        if (bin.set_mark() - start != length) sys_error(ACIS_DOUBLE_BAD_RECORD);
    }
    if (bin.read_string() != EndMarker) sys_error(ACIS_DOUBLE_BAD_RECORD);
}

// The entities reachable from `entity`, `entity` first.
ENTITY_LIST scan(ENTITY* entity, SCAN_TYPE reason) {
    if (!entity) sys_error(ACIS_DOUBLE_NULL_ENTITY);
    ENTITY_LIST list;
    list.add(entity);
    for (int i = 0; i < list.count(); ++i) list[i]->copy_scan(list, reason, FALSE);
    return list;
}

} // namespace

// ---- value functions

void write_long(long value) { file().write_long(value); }
long read_long() { return file().read_long(); }
void write_real(double value) { file().write_real(value); }
double read_real() { return file().read_real(); }
void write_string(const char* text) { file().write_string(text); }
std::string read_string() { return file().read_string(); }
void write_id(const char* id) { file().write_id(id); }

void write_ptr(const ENTITY* entity, ENTITY_LIST& list) {
    file().write_pointer(entity ? list.add(const_cast<ENTITY*>(entity)) : -1);
}

ENTITY* read_ptr() {
    return fromIndex(file().read_pointer());
}

ENTITY* copy_ptr(const ENTITY* entity, ENTITY_LIST const& list) {
    return fromIndex(entity ? list.lookup(entity) : -1);
}

ENTITY* fix_index(ENTITY* array[], ENTITY* ptr) {
    const std::intptr_t index = reinterpret_cast<std::intptr_t>(ptr);
    if (fixContext().discard || index == -1) return nullptr;
    if (index < 0 || static_cast<std::size_t>(index) >= fixContext().count) sys_error(ACIS_DOUBLE_BAD_REFERENCE);
    return array[index];
}

// ---- API

outcome api_set_file_info(unsigned long mask, FileInfo const& info, AcisOptions*) {
    if (mask & FileId) fileInfo().set_product_id(info.product_id());
    if (mask & FileUnits) fileInfo().set_units(info.units());
    return outcome();
}

outcome api_get_file_info(FileInfo& info, AcisOptions*) {
    info = fileInfo();
    return outcome();
}

outcome api_save_entity_list_file(FileInterface* file, ENTITY_LIST const& list, AcisOptions*) {
    return acis_double::run_api([&] {
        FileScope scope(file);
        BinaryFile& bin = *currentFile();
        if (!*fileInfo().product_id()) sys_error(ACIS_DOUBLE_NO_PRODUCT_ID);
        bin.write_bytes(Magic, sizeof Magic);
        bin.write_string(fileInfo().product_id());
        bin.write_real(fileInfo().units());
        ENTITY_LIST all = list; // grows with every entity a saved one points to
        bin.write_long(all.count());
        const FilePosition countMark = bin.set_mark();
        bin.write_long(0);
        for (int i = 0; i < all.count(); ++i) {
            const FilePosition start = bin.set_mark();
            bin.write_long(0);
            all[i]->save(all);
            const FilePosition end = bin.set_mark();
            bin.goto_mark(start);
            bin.write_long(end - start);
            bin.goto_mark(end);
        }
        bin.write_string(EndMarker);
        const FilePosition end = bin.set_mark();
        bin.goto_mark(countMark);
        bin.write_long(all.count());
        bin.goto_mark(end);
    });
}

outcome api_restore_entity_list_file(FileInterface* file, ENTITY_LIST& list, AcisOptions*) {
    return acis_double::run_api([&] {
        FileScope scope(file);
        BinaryFile& bin = *currentFile();
        char magic[sizeof Magic];
        bin.read_bytes(magic, sizeof magic);
        if (std::memcmp(magic, Magic, sizeof Magic) != 0) sys_error(ACIS_DOUBLE_NOT_DOUBLE_FILE);
        FileInfo info;
        info.set_product_id(bin.read_string().c_str());
        info.set_units(bin.read_real());
        const long top = bin.read_long(), count = bin.read_long();
        if (top < 0 || count < top) sys_error(ACIS_DOUBLE_BAD_RECORD);
        std::vector<ENTITY*> restored;
        try {
            readRecords(bin, count, restored);
            fixAll(restored, SCAN_RESTORE, false);
            checkAttributeChains(restored);
        } catch (const acis_exception&) {
            // Pointers may still hold indices: clear them all, so that
            // the rollback loses each entity on its own.
            fixAll(restored, SCAN_DISCARD, true);
            throw;
        }
        for (long i = 0; i < top; ++i) list.add(restored[static_cast<std::size_t>(i)]);
        fileInfo() = info;
    });
}

outcome api_copy_entity(ENTITY* entity, ENTITY*& copy, AcisOptions*) {
    return acis_double::run_api([&] {
        ENTITY_LIST list = scan(entity, SCAN_COPY);
        std::vector<ENTITY*> copies;
        for (int i = 0; i < list.count(); ++i) copies.push_back(list[i]->copy_data(list));
        fixAll(copies, SCAN_COPY, false);
        for (int i = 0; i < list.count(); ++i) list[i]->fixup_copy(copies[static_cast<std::size_t>(i)]);
        copy = copies.front();
    });
}

outcome api_del_entity(ENTITY* entity, AcisOptions*) {
    return acis_double::run_api([&] {
        const ENTITY_LIST list = scan(entity, SCAN_DELETE);
        // Newest first: attributes go before their owners.
        for (int i = list.count() - 1; i >= 0; --i) list[i]->lose();
    });
}
