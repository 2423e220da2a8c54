// Command reading: any text is refused with std::invalid_argument or read
// into a command whose text reads back to the same text.
#include <sstream>

#include <xch_api/xch_api_command.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    std::wistringstream in(wideText(data, size));
    xch::Command command;
    if (!acceptedBy([&] { command.readObject(in); })) return 0;
    xch::Command fresh;
    requireSameText(command, fresh);
    return 0;
}
