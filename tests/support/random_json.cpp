#include "support/random_json.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

namespace xch_test {

namespace {

wchar_t randomCharacter(std::mt19937_64& rng, bool invalid) {
    switch (rng() % 10) {
    case 0: return static_cast<wchar_t>(rng() % 0x20); // control characters
    case 1: return L"\"\\/"[rng() % 3];
    case 2: return static_cast<wchar_t>(0x80 + rng() % 0x780);
    case 3: return static_cast<wchar_t>(0xE000 + rng() % 0x2000);
    case 4:
        if (invalid) return static_cast<wchar_t>(0xD800 + rng() % 0x800); // a surrogate alone
        return L'x';
    case 5:
        if (sizeof(wchar_t) == 4) {
            if (invalid && rng() % 20 == 0) return static_cast<wchar_t>(0x110000 + rng() % 0x1000);
            return static_cast<wchar_t>(0x10000 + rng() % 0x100000);
        }
        return static_cast<wchar_t>(0x800 + rng() % 0xD000);
    default: return static_cast<wchar_t>(0x20 + rng() % 0x5F);
    }
}

double randomDouble(std::mt19937_64& rng, bool any) {
    if (any && rng() % 2) {
        const std::uint64_t bits = rng();
        double d;
        std::memcpy(&d, &bits, sizeof d);
        if (std::isfinite(d)) return d;
    }
    switch (rng() % 4) {
    case 0: return static_cast<double>(static_cast<std::int64_t>(rng() % 2000001) - 1000000) / 1000.0;
    case 1: return std::sin(static_cast<double>(rng() % 100000)) * 1000.0;
    case 2: return std::ldexp(static_cast<double>(rng() % 1000000), static_cast<int>(rng() % 200) - 100);
    default: return rng() % 2 ? 0.5 : -0.0;
    }
}

} // namespace

void randomJson(std::mt19937_64& rng, xch::JsonValue& v, xch::JsonAllocator& a, const RandomJsonOptions& options,
                int depth) {
    switch (rng() % (depth < options.maxDepth ? 13 : 10)) {
    case 0: v.SetNull(); break;
    case 1: v.SetBool(rng() % 2 != 0); break;
    case 2: v.SetInt(static_cast<int>(rng() >> (rng() % 64))); break;
    case 3: v.SetUint(static_cast<unsigned>(rng()) | 0x80000000u); break;
    case 4: v.SetInt64(-static_cast<std::int64_t>(rng() >> (1 + rng() % 63))); break;
    case 5: v.SetUint64(rng() | (std::uint64_t(1) << (32 + rng() % 32))); break;
    case 6:
    case 7: v.SetDouble(randomDouble(rng, options.anyDouble)); break;
    case 8:
    case 9: {
        std::wstring s(rng() % 3 == 0 ? 0 : rng() % 40, L' ');
        for (wchar_t& c : s) c = randomCharacter(rng, options.invalidCharacters);
        v.SetString(s.c_str(), static_cast<rapidjson::SizeType>(s.size()), a);
        break;
    }
    case 10:
    case 11: {
        v.SetArray();
        for (std::uint64_t n = rng() % 8; n; --n) {
            xch::JsonValue e;
            randomJson(rng, e, a, options, depth + 1);
            v.PushBack(e, a);
        }
        break;
    }
    default: {
        v.SetObject();
        for (std::uint64_t n = rng() % 8; n; --n) {
            xch::JsonValue name, e;
            randomJson(rng, name, a, options, options.maxDepth);
            if (!name.IsString() || rng() % 4 == 0) name.SetString(L"k", a); // names repeat
            randomJson(rng, e, a, options, depth + 1);
            v.AddMember(name, e, a);
        }
    }
    }
}

void randomJsonDocument(std::mt19937_64& rng, xch::JsonDocument& doc, int count, const RandomJsonOptions& options) {
    doc.SetArray();
    for (int i = 0; i < count; ++i) {
        xch::JsonValue v;
        randomJson(rng, v, doc.GetAllocator(), options, 1);
        doc.PushBack(v, doc.GetAllocator());
    }
}

} // namespace xch_test
