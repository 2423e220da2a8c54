// Translator description reading: refused with std::invalid_argument, or
// read into a description whose text reads back to the same text; then
// every format's filters are matched against names taken from the
// description itself, a path and a name of the longest accepted length
// (a filter may be refused with std::regex_error, never hang or crash).
#include <regex>
#include <sstream>

#include <xch_api/xch_api_limits.h>
#include <xch_api/xch_api_varnex_info.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    std::wistringstream in(wideText(data, size));
    xch::VarnexInfo info;
    if (!acceptedBy([&] { info.readObject(in); })) return 0;
    xch::VarnexInfo fresh;
    requireSameText(info, fresh);

    const std::wstring longName = std::wstring(xch::limits::kMaxMatchedNameLength - 4, L'x') + L".igs";
    for (const auto* formats : {&info.importFormats(), &info.exportFormats()})
        for (const auto& format : *formats) {
            std::vector<std::wstring> names = {format->description(), L"C:\\models\\part.stp", L"dir/a.igs", longName};
            for (const std::wstring& extension : format->extensions()) names.push_back(L"part." + extension);
            for (const std::wstring& name : names) {
                try {
                    format->is(name);
                } catch (const std::regex_error&) {
                }
            }
        }
    return 0;
}
