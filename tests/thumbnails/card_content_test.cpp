// SPDX-License-Identifier: MIT
// What a card says, decided from the clip alone.
#include <gtest/gtest.h>

#include <mutex>
#include <utility>

#include "library/thumbnails/card_content.h"
#include "library/thumbnails/clip_bytes.h"
#include "model/persistence_controller.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

TEST(CardContent, KindSymbolAndPreviewFollowTheClip) {
    testing::ManualClock clock;
    PersistenceController persistence(testing::inMemory(clock));
    using enum CardPreview;
    const QString link = u"https://a.org"_s;
    const struct {
        const char* name;
        qint64 rawType;
        std::optional<QString> text;
        std::optional<QString> url;  ///< A file's name is its last part.
        QString label;
        QString symbol;
        CardPreview preview;
    } rows[] = {
        {"text", 0, u"hello"_s, {}, u"Text"_s, u"doc.text"_s, Text},
        {"unknown type", 77, u"hello"_s, {}, u"Text"_s, u"doc.text"_s, Text},
        {"link", 0, link, link, u"Link"_s, u"link"_s, Link},
        {"colour", 0, u" #ff8e72\n"_s, {}, u"Color"_s, u"paintpalette"_s, Swatch},
        {"a colour that is a link", 0, u"#abc"_s, link, u"Link"_s, u"link"_s, Swatch},
        {"colour in rich text", 1, u"#abc"_s, {}, u"Rich Text"_s, u"doc.richtext"_s, RichText},
        {"html", 2, u"x"_s, {}, u"HTML"_s, u"globe"_s, RichText},
        {"image", 3, {}, {}, u"Image"_s, u"photo"_s, Image},
        {"sheet", 4, {}, u"file:///a/b.xlsx"_s, u"Excel"_s, u"tablecells.fill"_s, File},
        {"file of no kind", 4, {}, u"file:///a/b.zzz"_s, u"File"_s, u"doc"_s, File},
    };
    for (const auto& row : rows) {
        const auto clip = Clip::create(persistence.viewContext(), clock.now());
        clip->setRawType(row.rawType);
        clip->setPlaintext(row.text);
        clip->setUrlString(row.url);
        if (row.rawType == 4) {
            clip->setFileName(row.url->section(u'/', -1));
        }
        const CardContent card = cardContentFor(*clip, u"Editor"_s);
        EXPECT_EQ(card.kindLabel, row.label) << row.name;
        EXPECT_EQ(card.symbol, row.symbol) << row.name;
        EXPECT_EQ(card.preview, row.preview) << row.name;
        EXPECT_EQ(card.swatch.has_value(), row.preview == Swatch) << row.name;
    }
}

TEST(CardContent, KeepsLittleOfALongTextAndNoHalfCharacter) {
    testing::ManualClock clock;
    PersistenceController persistence(testing::inMemory(clock));
    const auto clip = Clip::create(persistence.viewContext(), clock.now());
    for (const int before : {0, 1}) {
        clip->setPlaintext(QString(before, u'a') + QString::fromUcs4(U"\U0001F600").repeated(9000));
        const CardContent card = cardContentFor(*clip, {});
        EXPECT_LT(card.body.size(), 1000);
        EXPECT_TRUE(card.body.back().isLowSurrogate());
    }
    clip->setUrlString(u"https://a.org/"_s + QString(1'000'000, u'x'));
    clip->setLinkTitle(QString(1'000'000, u'x'));
    const CardContent link = cardContentFor(*clip, {});
    EXPECT_LT(link.address.size() + link.title.size(), 2000);
}

// The bytes come while a capture holds the store's own thread.
TEST(StoredBytes, DoNotWaitForWhatTheStoreIsDoing) {
    testing::ManualClock clock;
    PersistenceController persistence(testing::inMemory(clock));
    const auto clip = Clip::create(persistence.viewContext(), clock.now());
    clip->setLinkImageData("picture");
    ASSERT_TRUE(persistence.viewContext().save());
    std::mutex held;
    std::unique_lock lock(held);
    persistence.perform([&](ObjectContext&) { const std::lock_guard wait(held); });
    const ClipBytesLoader load = storedBytesLoader(persistence);
    EXPECT_EQ(load(clip->id(), ClipAttribute::LinkImageData), "picture");
    EXPECT_EQ(load(clip->id(), ClipAttribute::ImageData), QByteArray());
    EXPECT_EQ(load(QUuid::createUuid(), ClipAttribute::ImageData), QByteArray());
    lock.unlock();
    persistence.waitUntilIdle();
}

}  // namespace
}  // namespace quillo
