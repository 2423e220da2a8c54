// TEST DOUBLE of the ACIS geometry kernel: outcomes, errors, bulletin board.
#include <algorithm>
#include <vector>

#include "internal.hxx"

namespace {

// Entities made in each open bulletin board, innermost last.
std::vector<std::vector<ENTITY*>>& frames() {
    static std::vector<std::vector<ENTITY*>> open;
    return open;
}

} // namespace

const char* find_err_mess(err_mess_type error) {
    switch (error) {
    case 0: return "no error";
    case ACIS_DOUBLE_NO_PRODUCT_ID: return "product id must be set with api_set_file_info before saving";
    case ACIS_DOUBLE_NOT_BINARY_FILE: return "file interface is not a BinaryFile";
    case ACIS_DOUBLE_NOT_DOUBLE_FILE: return "not a file of the ACIS test double";
    case ACIS_DOUBLE_END_OF_FILE: return "unexpected end of file";
    case ACIS_DOUBLE_BAD_TOKEN: return "unexpected token in file";
    case ACIS_DOUBLE_UNKNOWN_ENTITY: return "unknown entity type in file";
    case ACIS_DOUBLE_BAD_REFERENCE: return "bad entity reference";
    case ACIS_DOUBLE_BAD_RECORD: return "inconsistent entity record";
    case ACIS_DOUBLE_NULL_ENTITY: return "null entity given";
    case ACIS_DOUBLE_NO_FILE: return "no file is being saved or restored";
    default: return "unknown error";
    }
}

const char* acis_exception::what() const noexcept {
    return find_err_mess(m_error);
}

void check_outcome(outcome const& result) {
    if (!result.ok()) throw acis_exception(result.error_number());
}

void sys_error(err_mess_type error) {
    throw acis_exception(error);
}

void api_bb_begin(logical) {
    frames().emplace_back();
}

void api_bb_end(outcome& result, logical, logical) {
    if (frames().empty()) return;
    std::vector<ENTITY*> made = std::move(frames().back());
    frames().pop_back();
    if (result.ok()) {
        if (!frames().empty()) frames().back().insert(frames().back().end(), made.begin(), made.end());
        return;
    }
    // Roll back: lose what was made, newest first.
    for (auto it = made.rbegin(); it != made.rend(); ++it) (*it)->lose();
}

namespace acis_double {

void bb_note_created(ENTITY* entity) {
    if (!frames().empty()) frames().back().push_back(entity);
}

void bb_forget(ENTITY* entity) {
    for (auto frame = frames().rbegin(); frame != frames().rend(); ++frame) {
        auto found = std::find(frame->rbegin(), frame->rend(), entity);
        if (found != frame->rend()) {
            frame->erase(std::next(found).base());
            return;
        }
    }
}

} // namespace acis_double
