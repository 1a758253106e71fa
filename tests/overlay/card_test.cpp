// SPDX-License-Identifier: MIT
// What a card says, and that it can be read.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "appearance/symbols.h"
#include "library/thumbnails/card_painter.h"
#include "overlay/overlay_clips.h"

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

// Hostile texts must neither hang nor paint outside their card.
TEST(Card, PaintsOnlyItsOwnRectangleWhateverItsText) {
    const PanelLook look({.scheme = ColorScheme::Dark});
    const QString wide = QString(5000, u'W');
    for (const QString& body :
         {QString(), wide, QString(400, u'\n'), u"a\u0000b\u202e\u2029c"_s, QString(300, u'\t'),
          u"مرحبا\n世界 👩‍👩‍👧 e\u0301"_s}) {
        QImage canvas(400, 300, QImage::Format_RGB32);
        canvas.fill(Qt::magenta);
        CardContent card;
        card.kindLabel = wide;
        card.body = body;
        card.source = wide;
        QPainter painter(&canvas);
        CardPainter(look, QFont()).paint(painter, QRect(60, 30, 280, 240), card, {});
        painter.end();
        for (int y = 0; y < 300; ++y) {
            for (int x = 0; x < 400; ++x) {
                if (!QRect(60, 30, 280, 240).contains(x, y)) {
                    ASSERT_EQ(canvas.pixelColor(x, y), QColor(Qt::magenta))
                        << x << "," << y << " with " << body.left(10).toStdString();
                }
            }
        }
    }
}

TEST(EmptyState, SaysWhatIsMissing) {
    const struct {
        QString searchText;
        std::optional<FilterType> filter;
        std::optional<QString> group;
        EmptyState wanted;
    } rows[] = {
        {{},
         {},
         {},
         {u"doc.on.clipboard"_s, u"No clips yet"_s, u"Copy something to get started"_s}},
        {u" "_s,
         FilterType::Image,
         u"Work"_s,
         {u"photo"_s, u"No matching clips"_s, u"Try a different search term"_s}},
        {{},
         FilterType::Image,
         u"Work"_s,
         {u"photo"_s, u"No Image clips in Work"_s, u"Copy something to get started"_s}},
        {{}, {}, u""_s, {u"folder"_s, u"No clips in group"_s, u"Copy something to get started"_s}},
        {{},
         FilterType::Pdf,
         {},
         {u"doc.text.fill"_s, u"No PDF clips"_s, u"Copy something to get started"_s}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(emptyStateFor(row.searchText, row.filter, row.group), row.wanted)
            << row.wanted.title.toStdString();
    }
}

}  // namespace
}  // namespace quillo
