// SPDX-License-Identifier: MIT
#include "model/clip_order.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

const QUuid kFirst = QUuid::fromString(u"01234567-89ab-cdef-0123-456789abcdef"_s);

TEST(ClipOrder, IsWrittenInOneForm) {
    EXPECT_EQ(clipOrderToJson({}), "[]");
    EXPECT_EQ(clipOrderToJson({{kFirst, true}, {QUuid(), false}}),
              R"([{"clipID":"01234567-89AB-CDEF-0123-456789ABCDEF","isPinned":true},)"
              R"({"clipID":"00000000-0000-0000-0000-000000000000","isPinned":false}])");
}

TEST(ClipOrder, IsReadAsAWholeOrNotAtAll) {
    struct Row {
        const char* name;
        const char* document;
        QList<ClipOrderEntry> entries;
    };
    const Row table[] = {
        {"lower case, keys in any order, another key",
         R"([ {"isPinned":true, "x":[], "clipID":"01234567-89ab-cdef-0123-456789abcdef"} ])",
         {{kFirst, true}}},
        {"absent", "", {}},
        {"no JSON", R"([{"clipID":)", {}},
        {"no list", R"({"clipID":"01234567-89AB-CDEF-0123-456789ABCDEF","isPinned":true})", {}},
        {"braces", R"([{"clipID":"{01234567-89AB-CDEF-0123-456789ABCDEF}","isPinned":true}])", {}},
        {"no UUID", R"([{"clipID":"x","isPinned":true}])", {}},
        {"a number as flag",
         R"([{"clipID":"01234567-89AB-CDEF-0123-456789ABCDEF","isPinned":1}])",
         {}},
        {"a second element that is none",
         R"([{"clipID":"01234567-89AB-CDEF-0123-456789ABCDEF","isPinned":true},7])",
         {}},
    };
    for (const Row& row : table) {
        EXPECT_EQ(clipOrderFromJson(row.document), row.entries) << row.name;
    }
}

}  // namespace
}  // namespace quillo::testing
