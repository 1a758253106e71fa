// SPDX-License-Identifier: MIT
// What a card says, and that it can be read.
#include <gtest/gtest.h>

#include <QImage>

#include "appearance/symbols.h"
#include "library/thumbnails/card_painter.h"
#include "library/thumbnails/source_names.h"
#include "overlay/empty_state.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo {
namespace {

TEST(Card, AgeGrowsFromNowToADate) {
    const Timestamp now{std::chrono::seconds(1'700'000'000)};
    const struct {
        std::chrono::seconds age;
        QString text;
    } rows[] = {
        {0s, u"now"_s},      {59s, u"now"_s},      {-1h, u"now"_s},
        {60s, u"1 min"_s},   {3599s, u"59 min"_s}, {3600s, u"1 h"_s},
        {86399s, u"23 h"_s}, {86400s, u"1 d"_s},   {6 * 86400s, u"6 d"_s},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ageText(now - row.age, now), row.text) << row.age.count();
    }
    EXPECT_TRUE(ageText(now - 400 * 24h, now).contains(u"22"_s));
}

TEST(Card, TheSourceIsNamedByItsEntryOrItsIdentifier) {
    InstalledApplication editor;
    editor.name = u"Text Editor"_s;
    EXPECT_EQ(sourceNameFor(u"org.gnome.gedit"_s, editor), u"Text Editor"_s);
    EXPECT_EQ(sourceNameFor(u"com.example.myeditor"_s, std::nullopt), u"Myeditor"_s);
    EXPECT_EQ(sourceNameFor(u"com.example.MY-editor"_s, std::nullopt), u"My-Editor"_s);
    EXPECT_EQ(sourceNameFor(u"..."_s, std::nullopt), QString());
}

TEST(Card, EverySymbolThatACardNamesIsThere) {
    QStringList names{u"doc.on.clipboard"_s, u"pin.fill"_s, u"pin.slash"_s, u"xmark.circle.fill"_s};
    for (const FilterType filter : allCases<FilterType>()) {
        names.append(icon(filter));
    }
    for (const QString& name : std::as_const(names)) {
        const QImage image = symbolPixmap(name, 24, Qt::red, 2).toImage();
        ASSERT_EQ(image.size(), QSize(48, 48)) << name.toStdString();
        bool hasInk = false;
        for (int y = 0; y < 48; ++y) {
            for (int x = 0; x < 48; ++x) {
                hasInk = hasInk || image.pixelColor(x, y).red() > 200;
            }
        }
        EXPECT_TRUE(hasInk) << name.toStdString();
    }
    EXPECT_TRUE(symbolPixmap(u"no such symbol"_s, 24, Qt::red, 1).isNull());
}

TEST(EmptyState, SaysWhatIsMissing) {
    const struct {
        QString searchText;
        std::optional<FilterType> filter;
        std::optional<QString> group;
        QString title;
    } rows[] = {
        {{}, {}, {}, u"No clips yet"_s},
        {u" "_s, FilterType::Image, u"Work"_s, u"No matching clips"_s},
        {{}, FilterType::Image, u"Work"_s, u"No Image clips in Work"_s},
        {{}, {}, u""_s, u"No clips in group"_s},
        {{}, FilterType::Pdf, {}, u"No PDF clips"_s},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(emptyStateFor(row.searchText, row.filter, row.group).title, row.title);
    }
}

}  // namespace
}  // namespace quillo
