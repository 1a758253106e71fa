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

struct Row {
    const char* name;
    qint64 rawType;
    QString text;
    QString url;
    QString fileName;
    QString label;
    QString symbol;
    CardPreview preview;
};

TEST(CardContent, KindSymbolAndPreviewFollowTheClip) {
    testing::ManualClock clock;
    PersistenceController persistence(testing::inMemory(clock));
    const Row rows[] = {
        {"text", 0, u"hello"_s, {}, {}, u"Text"_s, u"doc.text"_s, CardPreview::Text},
        {"unknown type", 77, u"hello"_s, {}, {}, u"Text"_s, u"doc.text"_s, CardPreview::Text},
        {"link",
         0,
         u"https://a.org"_s,
         u"https://a.org"_s,
         {},
         u"Link"_s,
         u"link"_s,
         CardPreview::Link},
        {"colour", 0, u" #ff8e72\n"_s, {}, {}, u"Color"_s, u"paintpalette"_s, CardPreview::Swatch},
        {"a colour that is a link",
         0,
         u"#abc"_s,
         u"https://a.org"_s,
         {},
         u"Link"_s,
         u"link"_s,
         CardPreview::Swatch},
        {"rich text that names a colour",
         1,
         u"#abc"_s,
         {},
         {},
         u"Rich Text"_s,
         u"doc.richtext"_s,
         CardPreview::RichText},
        {"html", 2, u"x"_s, {}, {}, u"HTML"_s, u"globe"_s, CardPreview::RichText},
        {"image", 3, {}, {}, {}, u"Image"_s, u"photo"_s, CardPreview::Image},
        {"sheet",
         4,
         {},
         u"file:///a/b.xlsx"_s,
         u"b.xlsx"_s,
         u"Excel"_s,
         u"tablecells.fill"_s,
         CardPreview::File},
        {"file of no kind",
         4,
         {},
         u"file:///a/b.zzz"_s,
         u"b.zzz"_s,
         u"File"_s,
         u"doc"_s,
         CardPreview::File},
    };
    for (const Row& row : rows) {
        const auto clip = Clip::create(persistence.viewContext(), clock.now());
        const auto given = [](const QString& text) {
            return text.isNull() ? std::nullopt : std::optional(text);
        };
        clip->setRawType(row.rawType);
        clip->setPlaintext(given(row.text));
        clip->setUrlString(given(row.url));
        clip->setFileName(given(row.fileName));
        const CardContent card = cardContentFor(*clip, u"Editor"_s);
        EXPECT_EQ(card.kindLabel, row.label) << row.name;
        EXPECT_EQ(card.symbol, row.symbol) << row.name;
        EXPECT_EQ(card.preview, row.preview) << row.name;
        EXPECT_EQ(card.swatch.has_value(), row.preview == CardPreview::Swatch) << row.name;
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
