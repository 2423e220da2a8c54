// Test support: checking an enumeration's one string table.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <xch_api/xch_api_enum_table.h>

namespace xch_test {

// E's table must pair value i with strings[i] for every i and hold nothing
// else; each string must read back to its value.
template <class E>
void expectEnumTable(const std::vector<std::wstring>& strings) {
    ASSERT_EQ(xch::enumTable<E>().entries().size(), strings.size());
    for (std::size_t i = 0; i < strings.size(); ++i) {
        EXPECT_EQ(xch::enumToString(static_cast<E>(i)), strings[i]);
        EXPECT_EQ(xch::enumFromString<E>(strings[i]), static_cast<E>(i)) << std::string(strings[i].begin(), strings[i].end());
    }
}

} // namespace xch_test
