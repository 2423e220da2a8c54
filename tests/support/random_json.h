// Test support: random JSON trees with every kind of value, for codecs
// checked against a reference.
#pragma once

#include <random>

#include <xch_api/xch_api_json.h>

namespace xch_test {

struct RandomJsonOptions {
    int maxDepth = 5;
    // Strings may hold characters no writer accepts: surrogates outside
    // pairs (and, where wchar_t is 32 bits, values beyond U+10FFFF).
    bool invalidCharacters = true;
    // Doubles may be any finite bit pattern; otherwise numbers with few
    // digits or typical coordinates.
    bool anyDouble = true;
};

// Fills `v` with a random tree: numbers at the edges of each of rapidjson's
// number forms, strings with characters from every range (control
// characters, quotes and backslashes included), arrays and objects (with
// repeated names) up to the depth limit.
void randomJson(std::mt19937_64& rng, xch::JsonValue& v, xch::JsonAllocator& a, const RandomJsonOptions& options = {},
                int depth = 0);

// An array of `count` random trees as the root of `doc`.
void randomJsonDocument(std::mt19937_64& rng, xch::JsonDocument& doc, int count = 8,
                        const RandomJsonOptions& options = {});

} // namespace xch_test
