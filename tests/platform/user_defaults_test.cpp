// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <limits>

#include "support/memory_user_defaults.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

struct TypedRead {
    const char* name;
    const char* json;  ///< The stored value.
    std::optional<QString> string;
    std::optional<bool> boolean;
    std::optional<qint64> integer;
    std::optional<double> real;
    std::optional<QStringList> strings;
};

void PrintTo(const TypedRead& row, std::ostream* stream) {
    *stream << row.name;
}

class UserDefaultsTypedRead : public ::testing::TestWithParam<TypedRead> {};

TEST_P(UserDefaultsTypedRead, AWrongTypeIsAbsent) {
    const TypedRead& row = GetParam();
    const QByteArray document = QByteArray("{\"key\":") + row.json + '}';
    const MemoryUserDefaults defaults(QJsonDocument::fromJson(document).object());
    EXPECT_TRUE(defaults.object(u"key"_s));
    EXPECT_EQ(defaults.string(u"key"_s), row.string);
    EXPECT_EQ(defaults.boolean(u"key"_s), row.boolean);
    EXPECT_EQ(defaults.integer(u"key"_s), row.integer);
    EXPECT_EQ(defaults.real(u"key"_s), row.real);
    EXPECT_EQ(defaults.strings(u"key"_s), row.strings);
}

constexpr auto kNone = std::nullopt;
constexpr qint64 kLargest = std::numeric_limits<qint64>::max();

INSTANTIATE_TEST_SUITE_P(
    Values, UserDefaultsTypedRead,
    ::testing::Values(TypedRead{"text", R"("768")", u"768"_s, kNone, kNone, kNone, kNone},
                      TypedRead{"empty_text", R"("")", u""_s, kNone, kNone, kNone, kNone},
                      TypedRead{"truth", "true", kNone, true, kNone, kNone, kNone},
                      TypedRead{"zero_is_no_truth", "0", kNone, kNone, 0, 0.0, kNone},
                      TypedRead{"one_with_a_point", "1.0", kNone, kNone, 1, 1.0, kNone},
                      TypedRead{"fraction", "0.4", kNone, kNone, kNone, 0.4, kNone},
                      TypedRead{"largest", "9223372036854775807", kNone, kNone, kLargest,
                                double(kLargest), kNone},
                      TypedRead{"beyond_64_bits", "9223372036854775808", kNone, kNone, kNone,
                                9223372036854775808.0, kNone},
                      TypedRead{"null", "null", kNone, kNone, kNone, kNone, kNone},
                      TypedRead{"texts", R"(["a","b"])", kNone, kNone, kNone, kNone,
                                QStringList{u"a"_s, u"b"_s}},
                      TypedRead{"no_texts", "[]", kNone, kNone, kNone, kNone, QStringList()},
                      TypedRead{"mixed_array", R"(["a",1])", kNone, kNone, kNone, kNone, kNone},
                      TypedRead{"object", R"({"a":1})", kNone, kNone, kNone, kNone, kNone}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(UserDefaults, AKeyThatWasNeverWrittenIsAbsent) {
    const MemoryUserDefaults defaults;
    EXPECT_FALSE(defaults.object(u"key"_s));
    EXPECT_FALSE(defaults.integer(u"key"_s));
}

TEST(UserDefaults, ANumberThatIsNoneIsNoNumber) {
    MemoryUserDefaults defaults;
    defaults.setObject(u"key"_s, std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(defaults.real(u"key"_s));
    EXPECT_FALSE(defaults.integer(u"key"_s));
}

}  // namespace
}  // namespace quillo::testing
