// SPDX-License-Identifier: MIT
// The capture loop from a change of the pasteboard to the stored clip.
#include <gtest/gtest.h>

#include <QDir>
#include <future>

#include "capture/pasteboard_watcher.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/fake_pasteboard.h"
#include "support/fake_workspace.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/manual_tick_timer.h"
#include "support/memory_user_defaults.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo::testing {
namespace {

class Watcher : public ::testing::Test {
protected:
    Watcher() {
        m_notifications.observe(kClipSavedNotification, &m_notifications, [this] { ++m_saved; });
    }

    void copy(const QString& text) { m_pasteboard.copyFrom(copiedText(text)); }

    void tick() {
        m_clock.advance(1s);
        m_timer.tick();
        m_persistence.waitUntilIdle();
        QCoreApplication::processEvents();
    }

    [[nodiscard]] QStringList texts() {
        FetchRequest request;
        request.sort = {{int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
        QStringList result;
        const QList<std::shared_ptr<Clip>> clips =
            m_persistence.viewContext().fetch<Clip>(request).value();
        for (const std::shared_ptr<Clip>& clip : clips) {
            result.append(clip->displayText());
        }
        return result;
    }

    [[nodiscard]] std::shared_ptr<Clip> newest() {
        FetchRequest request;
        request.sort = {{int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
        request.limit = 1;
        return m_persistence.viewContext().fetch<Clip>(request).value().value(0);
    }

    ManualClock m_clock;
    MemoryUserDefaults m_defaults;
    NotificationCenter m_notifications;
    PersistenceController m_persistence{inMemory(m_clock)};
    DocumentReader m_richText;
    QtImageCodec m_images;
    FakePasteboard m_pasteboard;
    FakeWorkspace m_workspace;
    ManualTickTimer m_timer;
    ClipSaver m_saver{{m_persistence, m_defaults, m_notifications, m_richText, m_clock}};
    PasteboardWatcher m_watcher{
        {m_pasteboard, m_workspace, m_timer, m_saver, m_images, m_defaults}};
    int m_saved = 0;
};

TEST_F(Watcher, StoresWhatIsCopiedAfterItStartedAndNotWhatWasThere) {
    copy(u"before"_s);
    PasteboardWatcher late({m_pasteboard, m_workspace, m_timer, m_saver, m_images, m_defaults});
    late.start();
    EXPECT_EQ(m_timer.period(), 150ms);
    m_persistence.waitUntilIdle();
    EXPECT_EQ(texts(), QStringList());
    copy(u"after"_s);
    tick();
    EXPECT_EQ(texts(), QStringList{u"after"_s});
    EXPECT_EQ(m_saved, 1);
}

TEST_F(Watcher, TwoCopiesWithinOnePeriodGiveOneClipOfTheLater) {
    m_watcher.start();
    copy(u"first"_s);
    copy(u"second"_s);
    tick();
    EXPECT_FALSE(m_timer.tick());
    EXPECT_EQ(texts(), QStringList{u"second"_s});
}

TEST_F(Watcher, CapturesOnceWhatWasCopiedWhileItWasStopped) {
    m_watcher.start();
    m_watcher.stop();
    copy(u"one"_s);
    copy(u"two"_s);
    tick();
    EXPECT_EQ(texts(), QStringList());
    m_watcher.start();
    m_watcher.start();
    m_persistence.waitUntilIdle();
    EXPECT_EQ(texts(), QStringList{u"two"_s});
    EXPECT_EQ(m_timer.startCount, 2);
    copy(u"three"_s);
    tick();
    EXPECT_EQ(texts(), (QStringList{u"three"_s, u"two"_s}));
}

TEST_F(Watcher, ALinkIsOneClipWhicheverWayItIsOffered) {
    m_watcher.start();
    const QString link = u"https://host.example/a"_s;
    const auto* utf16 = reinterpret_cast<const char*>(link.utf16());
    m_pasteboard.copyFrom({given("text/x-moz-url", QByteArray(utf16, link.size() * 2))});
    tick();
    copy(link);
    tick();
    EXPECT_EQ(texts(), QStringList{link});
    EXPECT_EQ(newest()->urlString(), link);
    EXPECT_EQ(newest()->urlHost(), u"host.example"_s);
}

TEST_F(Watcher, SecretsAreNeitherStoredNorKeptForTheirOwner) {
    m_watcher.start();
    const struct {
        const char* name;
        QList<CopiedTarget> copied;
    } rows[] = {
        {"one-time code", copiedText(u"123456"_s)},
        {"credential", copiedText(u"password=hunter2"_s)},
        {"marked by a password manager",
         {given("UTF8_STRING", "hunter2"), given("x-kde-passwordManagerHint", "secret")}},
    };
    for (const auto& row : rows) {
        m_pasteboard.copyFrom(row.copied);
        tick();
        EXPECT_EQ(texts(), QStringList()) << row.name;
        EXPECT_EQ(m_pasteboard.wasKept(m_pasteboard.changeCount()), false) << row.name;
        m_pasteboard.quitOwner();
        EXPECT_EQ(m_pasteboard.offeredTargets(), QList<QByteArray>()) << row.name;
        tick();
    }
}

TEST_F(Watcher, TheSwitchesCountAtEachCaptureAndOnlyWhenTheyAreBooleans) {
    m_watcher.start();
    QImage image({3, 2}, QImage::Format_RGB32);
    const struct {
        const char* key;
        QByteArray target;
        QByteArray bytes;
    } rows[] = {
        {"captureImages", "image/png", m_images.encodePng(image).value()},
        {"captureFiles", "text/uri-list", "file:///nowhere/a.txt\r\n"},
    };
    for (const auto& row : rows) {
        const QString key = QString::fromLatin1(row.key);
        for (const QJsonValue& value : {QJsonValue(u"no"_s), QJsonValue(false), QJsonValue(0)}) {
            m_defaults.setObject(key, value);
            const int before = m_saved;
            m_pasteboard.copyFrom({{row.target, RawReply{row.target, row.bytes}}});
            tick();
            const bool isStored = !value.isBool();
            EXPECT_EQ(m_pasteboard.wasKept(m_pasteboard.changeCount()), isStored) << row.key;
            m_pasteboard.quitOwner();
            EXPECT_EQ(m_pasteboard.offeredTargets().isEmpty(), !isStored) << row.key;
            EXPECT_EQ(m_saved - before, value.isString() ? 1 : 0) << row.key;
        }
    }
}

TEST_F(Watcher, AnOwnerAboutToQuitIsReadAtOnce) {
    m_watcher.start();
    copy(u"leaving"_s);
    m_timer.armCount = 0;
    m_pasteboard.announceQuit();
    EXPECT_EQ(m_timer.fireCount, 1);
    tick();
    EXPECT_EQ(m_pasteboard.wasKept(m_pasteboard.changeCount()), true);
}

TEST_F(Watcher, TheHotkeyQueuesATickOnlyForACopyThatWasNotReadYet) {
    m_watcher.start();
    m_watcher.checkSoon();
    EXPECT_EQ(m_timer.fireCount, 0);
    copy(u"just now"_s);
    m_watcher.checkSoon();
    EXPECT_EQ(m_timer.fireCount, 1);
}

TEST_F(Watcher, AReadingThatANewerCopyCutShortIsNotStored) {
    m_watcher.start();
    m_pasteboard.stall("text/html");
    m_pasteboard.copyFrom(
        {given("UTF8_STRING", "half read"), given("text/html", "<b>half read</b>")});
    const std::future<bool> worker =
        std::async(std::launch::async, [this] { return m_timer.tick(); });
    ASSERT_TRUE(waitUntil([this] { return m_pasteboard.isReadStalled(); }));
    copy(u"newer"_s);
    worker.wait();
    tick();
    EXPECT_EQ(texts(), QStringList{u"newer"_s});
}

TEST_F(Watcher, TheLimitDeletesTheOldestAndNeverAClipJustCopiedAgain) {
    m_watcher.start();
    m_defaults.setObject(u"maxHistoryItems"_s, 3);
    for (const QString& text : {u"a"_s, u"b"_s, u"c"_s, u"a"_s, u"d"_s}) {
        copy(text);
        tick();
    }
    EXPECT_EQ(texts(), (QStringList{u"d"_s, u"a"_s, u"c"_s}));
    // Everything else is no limit.
    for (const QJsonValue& value :
         {QJsonValue(0), QJsonValue(-5), QJsonValue(1.5), QJsonValue(1e300), QJsonValue(u"2"_s),
          QJsonValue(true), QJsonValue(QJsonValue::Undefined)}) {
        m_defaults.setObject(u"maxHistoryItems"_s, value);
        const qsizetype before = texts().size();
        copy(u"without limit %1"_s.arg(before));
        tick();
        EXPECT_EQ(texts().size(), before + 1) << value.toVariant().toString().toStdString();
    }
}

TEST_F(Watcher, RichTextAndFoldersAreStoredWithTheirAttributes) {
    m_watcher.start();
    const QByteArray rtf = "{\\rtf1\\ansi Some {\\b bold} words}";
    m_pasteboard.copyFrom({given("text/rtf", rtf)});
    tick();
    EXPECT_EQ(newest()->type(), ClipType::Rtf);
    EXPECT_EQ(newest()->attributed(), rtf);
    EXPECT_EQ(newest()->plaintext(), u"Some bold words"_s);

    m_pasteboard.copyFrom({given("text/rtf", "no such document")});
    tick();
    EXPECT_EQ(newest()->type(), ClipType::Rtf);
    EXPECT_EQ(newest()->plaintext(), std::nullopt);

    const QString folder = QDir::tempPath();
    m_pasteboard.copyFrom({given(
        "text/uri-list", QUrl::fromLocalFile(folder).toEncoded() + "\r\nfile:///second\r\n")});
    tick();
    EXPECT_EQ(newest()->type(), ClipType::FileUrl);
    EXPECT_EQ(newest()->fileUti(), u"public.folder"_s);
    EXPECT_EQ(newest()->fileSize(), 0);
    EXPECT_TRUE(newest()->fileBookmark());
    EXPECT_EQ(newest()->plaintext(), std::nullopt);
    EXPECT_EQ(QUrl(newest()->urlString().value_or(QString())).toLocalFile(), folder);
}

TEST_F(Watcher, AProgramThatNeverAnswersDoesNotHoldUpStopping) {
    m_watcher.start();
    m_pasteboard.stall("UTF8_STRING");
    copy(u"slow"_s);
    const std::future<bool> worker =
        std::async(std::launch::async, [this] { return m_timer.tick(); });
    ASSERT_TRUE(waitUntil([this] { return m_pasteboard.isReadStalled(); }));
    m_watcher.stop();
    worker.wait();
    m_persistence.waitUntilIdle();
    EXPECT_EQ(texts(), QStringList());
}

}  // namespace
}  // namespace quillo::testing
