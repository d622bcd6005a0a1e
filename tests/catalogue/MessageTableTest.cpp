#include <gtest/gtest.h>

#include <cstdint>

#include "catalogue/MessageTable.h"

namespace vantor {
namespace {

// FNV-1a over "number TAB text LF" of every row, ascending; the expected value was computed from
// the product's text list by a separate script.
TEST(MessageTable, BuiltInTextsMatchTheProductsList) {
    std::uint64_t digest = 0xcbf29ce484222325U;
    const auto add = [&digest](std::string_view bytes) {
        for (const char c : bytes) {
            digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
        }
    };
    int last = 0;
    for (const EnglishText& row : englishMessages()) {
        EXPECT_GT(row.id, last);
        last = row.id;
        add(std::to_string(row.id) + "\t");
        add(row.text);
        add("\n");
    }
    EXPECT_EQ(englishMessages().size(), 593U);
    EXPECT_EQ(digest, 0x5c42c6f3b590367fU);
}

}  // namespace
}  // namespace vantor
