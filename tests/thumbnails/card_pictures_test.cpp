// SPDX-License-Identifier: MIT
// Asking for the pictures of cards: what is at hand, what is awaited, what is dropped.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QPixmap>
#include <QTemporaryDir>
#include <condition_variable>
#include <mutex>

#include "library/thumbnails/card_pictures.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/fake_thumbnail_service.h"
#include "support/fake_workspace.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using testing::waitUntil;

constexpr QSize kCard(280, 240);

QImage plain(QSize size, const QColor& color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

CardContent imageCard() {
    CardContent card;
    card.clip = QUuid::createUuid();
    card.preview = CardPreview::Image;
    card.kind = ClipType::Image;
    return card;
}

class CardPicturesTest : public ::testing::Test {
protected:
    CardPicturesTest() {
        QObject::connect(&m_pictures, &CardPictures::ready,
                         [this](const QUuid& clip) { m_ready.append(clip); });
    }

    ~CardPicturesTest() override { open(); }

    // Runs on the worker; the gate holds it up.
    QByteArray load(const QUuid& clip) {
        std::unique_lock lock(m_mutex);
        m_loaded.append(clip);
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_isOpen; });
        return m_bytes;
    }

    void shut() {
        const std::lock_guard lock(m_mutex);
        m_isOpen = false;
    }

    void open() {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
        m_changed.notify_all();
    }

    QList<QUuid> loaded() {
        const std::lock_guard lock(m_mutex);
        return m_loaded;
    }

    /// Asks for the card and waits until the worker is held up in its load.
    void holdUpIn(const CardContent& card) {
        shut();
        (void)m_pictures.picture(card, kCard, 1);
        ASSERT_TRUE(waitUntil([&] { return loaded().endsWith(card.clip); }));
    }

    QColor colorOf(const CardContent& card, qreal scale = 1) {
        const QPixmap picture = m_pictures.picture(card, kCard, scale).thumbnail;
        return picture.isNull() ? QColor() : picture.toImage().pixelColor(9, 9);
    }

    void setImage(const QColor& color) {
        const std::lock_guard lock(m_mutex);
        m_bytes = *m_codec.encodePng(plain({600, 400}, color));
    }

    QtImageCodec m_codec;
    DocumentReader m_documents;
    testing::FakeThumbnailService m_files;
    testing::FakeWorkspace m_workspace;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOpen = true;
    QByteArray m_bytes = *m_codec.encodePng(plain({600, 400}, Qt::red));
    QList<QUuid> m_loaded;
    QList<QUuid> m_ready;
    CardPictures m_pictures{{m_codec, m_documents, m_files, m_workspace,
                             [this](const QUuid& clip, ClipAttribute) { return load(clip); }}};
};

TEST_F(CardPicturesTest, AnotherScaleKeepsTheOldPictureUntilTheNewOneIsThere) {
    const CardContent card = imageCard();
    EXPECT_FALSE(colorOf(card).isValid());
    ASSERT_TRUE(waitUntil([&] { return m_ready.size() == 1; }));
    EXPECT_EQ(m_pictures.picture(card, kCard, 1).imageSize, QSize(600, 400));
    const CardPicture meanwhile = m_pictures.picture(card, kCard, 2);
    EXPECT_EQ(meanwhile.thumbnail.size(), QSize(280, 168));
    ASSERT_TRUE(waitUntil([&] { return m_ready.size() == 2; }));
    EXPECT_EQ(m_pictures.picture(card, kCard, 2).thumbnail.size(), QSize(560, 336));
    EXPECT_EQ(loaded().size(), 2);
}

TEST_F(CardPicturesTest, WhatCannotBeDecodedIsNotTriedAgain) {
    m_bytes = "no image";
    const CardContent card = imageCard();
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(m_pictures.picture(card, kCard, 1).thumbnail.isNull());
        ASSERT_TRUE(waitUntil([&] { return m_ready.size() == 1; }));
    }
    EXPECT_EQ(loaded().size(), 1);
}

TEST_F(CardPicturesTest, WhatIsVisibleComesFirstAndWhatIsNotIsDropped) {
    const CardContent first = imageCard();
    holdUpIn(first);
    const CardContent gone = imageCard();
    const CardContent second = imageCard();
    const CardContent third = imageCard();
    for (const CardContent& card : {second, gone, third}) {
        (void)m_pictures.picture(card, kCard, 1);
    }
    m_pictures.setVisible({second.clip, third.clip});
    open();
    ASSERT_TRUE(waitUntil([&] { return m_ready.contains(third.clip); }));
    EXPECT_EQ(loaded(), (QList<QUuid>{first.clip, second.clip, third.clip}));
    // It is asked for again when it comes back.
    (void)m_pictures.picture(gone, kCard, 1);
    EXPECT_TRUE(waitUntil([&] { return m_ready.contains(gone.clip); }));
}

TEST_F(CardPicturesTest, AResultFromBeforeAChangeIsDropped) {
    const CardContent card = imageCard();
    holdUpIn(card);
    const ChangeSet::Update update{
        {Entity::Clip, card.clip}, {std::to_underlying(ClipAttribute::ImageData)}, false};
    m_pictures.takeChanges({.inserted = {}, .updated = {update}, .deleted = {}});
    open();
    // One worker makes one after another, so the dropped result was there before this one.
    const CardContent next = imageCard();
    (void)colorOf(next);
    ASSERT_TRUE(waitUntil([&] { return m_ready.contains(next.clip); }));
    EXPECT_EQ(m_ready, (QList<QUuid>{card.clip, next.clip})) << "more than the change told of it";
    setImage(Qt::blue);
    EXPECT_FALSE(colorOf(card).isValid());
    EXPECT_TRUE(waitUntil([&] { return colorOf(card) == QColor(Qt::blue); }));
}

TEST_F(CardPicturesTest, AChangedImageServesUntilTheNewOneIsThere) {
    const CardContent card = imageCard();
    (void)colorOf(card);
    ASSERT_TRUE(waitUntil([&] { return m_ready.size() == 1; }));
    setImage(Qt::blue);
    const ChangeSet::Update text{
        {Entity::Clip, card.clip}, {std::to_underlying(ClipAttribute::IsPinned)}, false};
    m_pictures.takeChanges({.inserted = {}, .updated = {text}, .deleted = {}});
    EXPECT_EQ(colorOf(card), QColor(Qt::red));
    EXPECT_EQ(loaded().size(), 1);
    const ChangeSet::Update image{
        {Entity::Clip, card.clip}, {std::to_underlying(ClipAttribute::ImageData)}, false};
    m_pictures.takeChanges({.inserted = {}, .updated = {image}, .deleted = {}});
    EXPECT_EQ(colorOf(card), QColor(Qt::red));
    EXPECT_TRUE(waitUntil([&] { return colorOf(card) == QColor(Qt::blue); }));
}

TEST_F(CardPicturesTest, ADeletedClipLeavesNothingBehind) {
    const CardContent card = imageCard();
    (void)colorOf(card);
    ASSERT_TRUE(waitUntil([&] { return m_ready.size() == 1; }));
    m_pictures.takeChanges({.inserted = {}, .updated = {}, .deleted = {{Entity::Clip, card.clip}}});
    shut();
    EXPECT_FALSE(colorOf(card).isValid());
}

class FilePicturesTest : public CardPicturesTest {
protected:
    FilePicturesTest() {
        m_card.clip = QUuid::createUuid();
        m_card.preview = CardPreview::File;
        m_card.kind = ClipType::FileUrl;
        m_card.address = u"file:///home/person/a%20b.pdf"_s;
        m_pictures.setVisible({m_card.clip});
    }

    void ask() { (void)m_pictures.picture(m_card, kCard, 1); }

    CardContent m_card;
};

TEST_F(FilePicturesTest, AFileIsAskedForOnceAndAgainAtTheNextShow) {
    ask();
    ask();
    EXPECT_EQ(m_files.requestCount, 1);
    EXPECT_EQ(m_files.pending.constBegin()->file.toLocalFile(), u"/home/person/a b.pdf"_s);
    m_files.answerAll({});
    EXPECT_EQ(m_ready, QList<QUuid>{m_card.clip});
    ask();
    EXPECT_EQ(m_files.requestCount, 1);
    m_pictures.setVisible({});
    m_pictures.setVisible({m_card.clip});
    ask();
    EXPECT_EQ(m_files.requestCount, 2);
    m_files.answerAll(plain({256, 200}, Qt::green));
    EXPECT_TRUE(
        waitUntil([&] { return !m_pictures.picture(m_card, kCard, 1).thumbnail.isNull(); }));
    EXPECT_EQ(m_files.requestCount, 2);
}

TEST_F(FilePicturesTest, ARequestEndsWithItsCardOutOfSight) {
    ask();
    m_pictures.setVisible({});
    EXPECT_TRUE(m_files.pending.isEmpty());
    ask();
    m_pictures.takeChanges(
        {.inserted = {}, .updated = {}, .deleted = {{Entity::Clip, m_card.clip}}});
    EXPECT_TRUE(m_files.pending.isEmpty());
}

TEST_F(CardPicturesTest, ASourceIconComesLaterAndIsLookedUpOnce) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"icon.png"_s);
    ASSERT_TRUE(plain({64, 64}, Qt::cyan).save(path));
    m_workspace.install({u"org.example.Editor"_s, u"Editor"_s, path, {}});
    CardContent card = imageCard();
    card.preview = CardPreview::Text;
    card.sourceIdentifier = u"org.example.Editor"_s;
    EXPECT_TRUE(m_pictures.picture(card, kCard, 2).sourceIcon.isNull());
    ASSERT_TRUE(waitUntil([&] { return m_ready == QList<QUuid>{card.clip}; }));
    const QImage icon = m_pictures.picture(card, kCard, 2).sourceIcon.toImage();
    EXPECT_EQ(icon.size(), QSize(36, 36));
    EXPECT_EQ(icon.pixelColor(18, 18), QColor(Qt::cyan));
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
    card.sourceIdentifier = u"org.example.Unknown"_s;
    EXPECT_TRUE(m_pictures.picture(card, kCard, 2).sourceIcon.isNull());
}

}  // namespace
}  // namespace quillo
