// SPDX-License-Identifier: MIT
// The one rule for colours stored as text.
#include <gtest/gtest.h>

#include "base/color_text.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

TEST(ColorText, ReadsSixOrEightDigitsAndNothingElse) {
    const struct {
        QString text;
        std::optional<QColor> color;
    } rows[] = {
        {u"#FF8E72"_s, QColor(255, 142, 114)},
        {u" ff8e72\n"_s, QColor(255, 142, 114)},
        {u"##FF#8E72"_s, QColor(255, 142, 114)},
        {u"#FF8800AA"_s, QColor(255, 136, 0, 170)},
        {u"#F80"_s, std::nullopt},
        {u"#FF880"_s, std::nullopt},
        {u"#GG8800"_s, std::nullopt},
        {u"+FF880"_s, std::nullopt},
        {u"FF 8800"_s, std::nullopt},
        {QString(), std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(colorFromHex(row.text), row.color) << row.text.toStdString();
    }
}

TEST(ColorText, EveryByteSurvivesWritingAndReading) {
    for (int byte = 0; byte < 256; ++byte) {
        const QColor color(byte, 255 - byte, byte, 255 - byte);
        EXPECT_EQ(colorFromHex(hexString(color, AlphaChannel::Written)), color) << byte;
    }
    EXPECT_EQ(hexString(QColor()), u"#000000"_s);
}

}  // namespace
}  // namespace quillo
