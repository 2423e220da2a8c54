// Adders of lists of shared objects: a null pointer is not added, and says
// so in the log ("<Class>: attempt to add null <Kind> object.").
#pragma once

#include <memory>
#include <vector>

#include <logging/vx_link_logger.h>

namespace xch {

// Appends `item` to `list`, or logs `nullMessage` at warning level when
// `item` is null. Returns whether it was appended.
template <class T>
bool addChecked(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<T>& item, const char* nullMessage) {
    if (!item) {
        VX_LOG(vx_link::LevelWarning, nullMessage);
        return false;
    }
    list.push_back(item);
    return true;
}

// Appends every element of `items` through addChecked.
template <class T>
void addAllChecked(std::vector<std::shared_ptr<T>>& list, const std::vector<std::shared_ptr<T>>& items,
                   const char* nullMessage) {
    list.reserve(list.size() + items.size());
    for (const auto& item : items)
        addChecked(list, item, nullMessage);
}

// Replaces `list` by the non-null elements of `items`.
template <class T>
void setAllChecked(std::vector<std::shared_ptr<T>>& list, const std::vector<std::shared_ptr<T>>& items,
                   const char* nullMessage) {
    std::vector<std::shared_ptr<T>> replaced;
    addAllChecked(replaced, items, nullMessage);
    list.swap(replaced);
}

// Copies of the (non-null) elements of `list`, for a deep clone.
template <class T>
std::vector<std::shared_ptr<T>> copiesOf(const std::vector<std::shared_ptr<T>>& list) {
    std::vector<std::shared_ptr<T>> copies;
    copies.reserve(list.size());
    for (const auto& item : list)
        if (item) copies.push_back(std::make_shared<T>(*item));
    return copies;
}

} // namespace xch
