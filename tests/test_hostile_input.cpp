// Inputs that once hung or crashed the library, and the properties that
// keep them harmless.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <regex>
#include <string>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_limits.h>
#include <xch_api/xch_api_varnex_info.h>

#include "support/log_capture.h"

#if !defined(_WIN32)
#  include <boost/interprocess/shared_memory_object.hpp>
#endif

using xch::Format;

namespace {

// Whether `format.is(name)` throws std::regex_error.
bool refuses(const Format& format, const std::wstring& name) {
    try {
        format.is(name);
        return false;
    } catch (const std::regex_error&) {
        return true;
    }
}

} // namespace

// Patterns and names drawn from a small alphabet full of special
// characters: wherever the standard ECMAScript matcher accepts a pattern,
// Format::is gives its answer (the regex list and filters share the
// matcher; a filter only adds the glob rewriting of '.' and '*').
TEST(HostileInput, FormatMatchingAgreesWithTheStandardMatcher) {
    const std::wstring patternChars = L"ab.*+?|()[]^$-{},\\dws0";
    const std::wstring nameChars = L"ab.-_ \n";
    std::mt19937 random(15);
    int compared = 0, refused = 0;
    for (int i = 0; i < 20000; ++i) {
        std::wstring pattern;
        for (unsigned n = random() % 10; n > 0; --n) pattern += patternChars[random() % patternChars.size()];
        std::wregex reference;
        try {
            reference.assign(pattern, std::regex::ECMAScript);
        } catch (const std::regex_error&) {
            continue;
        }
        Format format;
        format.addRegex(pattern);
        if (refuses(format, L"")) {
            ++refused;
            continue;
        }
        for (int k = 0; k < 8; ++k) {
            std::wstring name;
            for (unsigned n = random() % 6; n > 0; --n) name += nameChars[random() % nameChars.size()];
            ASSERT_EQ(format.is(name), std::regex_match(name, reference))
                << "pattern " << vx_link::utf8(pattern) << " name " << vx_link::utf8(name);
            ++compared;
        }
    }
    EXPECT_GT(compared, 50000);
    EXPECT_LT(refused, 100); // bracket corner cases the standard library reads its own way
}

// A filter like "*+iges" is ".*+iges", a repeated repetition on which a
// backtracking matcher takes exponential time; a long name made the
// standard matcher recurse once per character until the stack overflowed.
TEST(HostileInput, FiltersNeverHangAndLongNamesNeverOverflowTheStack) {
    Format iges;
    iges.addFilterExtensions(L"*+iges;*.ig?s");
    EXPECT_TRUE(iges.is(L"part.iges") && iges.is(L"part.igs") && iges.is(L"dir/partiges"));
    EXPECT_FALSE(iges.is(std::wstring(64, L'a') + L"igeX") || iges.is(L"part.IGES"));

    Format igs;
    igs.addFilterExtensions(L"*.igs");
    const std::size_t longest = xch::limits::kMaxMatchedNameLength;
    EXPECT_TRUE(igs.is(std::wstring(longest - 4, L'x') + L".igs"));
    EXPECT_FALSE(igs.is(std::wstring(longest - 3, L'x') + L".igs")); // one character too long
    EXPECT_FALSE(igs.is(std::wstring(50000, L'x') + L".igs"));
    igs.addRegex(L"(x)\\1*\\.igs"); // trusted, needs the standard matcher: short names only
    EXPECT_TRUE(igs.is(L"xxx.igs"));
    EXPECT_FALSE(igs.is(std::wstring(5000, L'x') + L".igs.no"));

    // Patterns whose program would be huge, or nested beyond reason, are
    // refused instead of being expanded.
    for (const std::wstring& filter : {std::wstring(L"*.x{5000}"), std::wstring(L"((a{100}){100}){100}"),
                                       std::wstring(20000, L'(') + std::wstring(20000, L')'), std::wstring(L"*.(?=x)")})
        EXPECT_TRUE(refuses(Format().addFilterExtensions(filter), L"a.x")) << vx_link::utf8(filter.substr(0, 30));
    EXPECT_TRUE(Format().addFilterExtensions(L"*.x{3,5}").is(L"a.xxxx"));
}

#if !defined(_WIN32)
// A shared-memory object holds whatever size its writer gave it; a sparse
// one costs nothing to make. Loading it as block geometry must not copy it.
TEST(HostileInput, BlockGeometryLargerThanTheLimitIsNotLoaded) {
    namespace bip = boost::interprocess;
    const std::wstring name = xch::IExchangeObject::generateUUID();
    const std::string narrow(name.begin(), name.end());
    {
        bip::shared_memory_object object(bip::create_only, narrow.c_str(), bip::read_write);
        object.truncate(static_cast<bip::offset_t>(xch::limits::kMaxBlockGeometrySize + 1));
    }
    xch_test::LogCapture log(2);
    xch::ExcBlockGeometry geometry;
    geometry.setSharedAcisBufferName(name);
    geometry.load();
    EXPECT_FALSE(geometry.isLoaded());
    EXPECT_TRUE(geometry.binaryData().empty());
    EXPECT_TRUE(log.has("Block geometry in shared memory exceeds the limit of " +
                        std::to_string(xch::limits::kMaxBlockGeometrySize) + " bytes."));
    bip::shared_memory_object::remove(narrow.c_str());
}
#endif
