// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <limits>

#include "support/memory_user_defaults.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

// What the typed reads find under the key, each that finds something.
std::string found(const UserDefaults& defaults) {
    QStringList reads;
    if (const auto text = defaults.string(u"key"_s)) {
        reads += u"text "_s + *text;
    }
    if (const auto truth = defaults.boolean(u"key"_s)) {
        reads += *truth ? u"true"_s : u"false"_s;
    }
    if (const auto number = defaults.integer(u"key"_s)) {
        reads += u"integer %1"_s.arg(*number);
    }
    if (const auto number = defaults.real(u"key"_s)) {
        reads += u"real %1"_s.arg(*number);
    }
    if (const auto texts = defaults.strings(u"key"_s)) {
        reads += u"texts "_s + texts->join(u',');
    }
    return reads.join(u"; "_s).toStdString();
}

TEST(UserDefaults, AWrongTypeIsAbsent) {
    const std::pair<const char*, const char*> rows[] = {
        {R"("768")", "text 768"},
        {R"("")", "text "},
        {"true", "true"},
        {"0", "integer 0; real 0"},
        {"1.0", "integer 1; real 1"},
        {"0.4", "real 0.4"},
        {"9223372036854775807", "integer 9223372036854775807; real 9.22337e+18"},
        {"9223372036854775808", "real 9.22337e+18"},
        {"null", ""},
        {R"(["a","b"])", "texts a,b"},
        {"[]", "texts "},
        {R"(["a",1])", ""},
        {R"({"a":1})", ""},
    };
    for (const auto& [json, reads] : rows) {
        const QByteArray document = QByteArray("{\"key\":") + json + '}';
        const MemoryUserDefaults defaults(QJsonDocument::fromJson(document).object());
        EXPECT_TRUE(defaults.object(u"key"_s)) << json;
        EXPECT_EQ(found(defaults), reads) << json;
    }
    MemoryUserDefaults defaults;
    EXPECT_FALSE(defaults.object(u"key"_s));
    EXPECT_EQ(found(defaults), "");
    defaults.setObject(u"key"_s, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(found(defaults), "") << "a number that is none";
}

}  // namespace
}  // namespace quillo::testing
