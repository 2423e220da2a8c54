#include "support/json_mutation.h"

namespace xch_test {

void forEachMutation(xch::JsonValue& node, xch::JsonDocument& doc, const std::function<void()>& check) {
    const wchar_t* replacements[] = {L"null", L"-1", L"2.5", L"\"x\"", L"[]", L"{}", L"[[1,2]]", L"true"};
    for (const wchar_t* text : replacements) {
        xch::JsonDocument replacement;
        replacement.Parse(text);
        xch::JsonValue value(replacement, doc.GetAllocator());
        node.Swap(value);
        check();
        node.Swap(value);
    }
    if (node.IsObject())
        for (auto& member : node.GetObject()) forEachMutation(member.value, doc, check);
    else if (node.IsArray())
        for (auto& item : node.GetArray()) forEachMutation(item, doc, check);
}

} // namespace xch_test
