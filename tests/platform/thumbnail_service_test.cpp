// SPDX-License-Identifier: MIT
// The desktop's thumbnailer on a bus of the test's own.
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QProcess>

#include "platform/freedesktop/freedesktop_thumbnails.h"
#include "platform/images/qt_image_codec.h"
#include "support/wait_until.h"
#include "thumbnail_files.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo {
namespace {

using testing::ThumbnailFiles;
using testing::waitUntil;

/// What a desktop's thumbnailer does, as the test says.
class FakeThumbnailer final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.thumbnails.Thumbnailer1")

public:
    enum class Answer { Picture, Failure, OnlyTheEnd, Silence };

    FakeThumbnailer(const ThumbnailFiles& files, Answer answer)
        : m_files(files), m_answer(answer) {}

    QStringList asked;
    QString scheduler;
    QList<uint> dequeued;

public Q_SLOTS:
    uint Queue(const QStringList& uris, const QStringList& types, const QString& flavor,
               const QString& theScheduler, uint) {
        asked += uris + types + QStringList{flavor};
        scheduler = theScheduler;
        const uint handle = ++m_handle;
        QMetaObject::invokeMethod(
            this, [this, handle, uris, flavor] { answer(handle, uris, flavor); },
            Qt::QueuedConnection);
        return handle;
    }

    void Dequeue(uint handle) { dequeued.append(handle); }

Q_SIGNALS:
    void Ready(uint handle, const QStringList& uris);
    void Error(uint handle, const QStringList& uris, int code, const QString& message);
    void Finished(uint handle);

private:
    void answer(uint handle, const QStringList& uris, const QString& flavor) {
        if (m_answer == Answer::Picture) {
            m_files.put(flavor, QSize(200, 100));
            Q_EMIT Ready(handle, uris);
        } else if (m_answer == Answer::Failure) {
            Q_EMIT Error(handle, uris, 0, u"no"_s);
        }
        if (m_answer != Answer::Silence) {
            Q_EMIT Finished(handle);
        }
    }

    const ThumbnailFiles& m_files;
    Answer m_answer;
    uint m_handle = 0;
};

class ThumbnailServiceTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_daemon.start(QStringLiteral(QUILLO_DBUS_DAEMON),
                       {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        ASSERT_TRUE(m_daemon.waitForReadyRead());
        m_address = m_daemon.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
    }

    void TearDown() override {
        QDBusConnection::disconnectFromBus(u"thumbnailer"_s);
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    void serve(FakeThumbnailer& thumbnailer) {
        auto bus = QDBusConnection::connectToBus(QString::fromLatin1(m_address), u"thumbnailer"_s);
        const auto everything = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals;
        ASSERT_TRUE(bus.registerObject(u"/org/freedesktop/thumbnails/Thumbnailer1"_s, &thumbnailer,
                                       everything));
        ASSERT_TRUE(bus.registerService(u"org.freedesktop.thumbnails.Thumbnailer1"_s));
    }

    /// The answer for the file; a request that is never answered fails the test.
    QImage ask(FreedesktopThumbnails& thumbnails, const QString& path) {
        std::optional<QImage> image;
        (void)thumbnails.request(QUrl::fromLocalFile(path), 250,
                                 [&](const QImage& made) { image = made; });
        EXPECT_FALSE(image) << "answered before request() returned";
        EXPECT_TRUE(waitUntil([&] { return image.has_value(); }));
        return image.value_or(QImage());
    }

    QtImageCodec m_codec;
    ThumbnailFiles m_files;
    QByteArray m_address;
    QProcess m_daemon;
    FileThumbnailer::Options m_options{m_files.cacheFolder(), 300ms};
};

TEST_F(ThumbnailServiceTest, HasAPictureMadeOnceThenTakesItFromTheCache) {
    FakeThumbnailer thumbnailer(m_files, FakeThumbnailer::Answer::Picture);
    serve(thumbnailer);
    FreedesktopThumbnails thumbnails(m_codec, m_options);
    EXPECT_EQ(ask(thumbnails, m_files.path()).width(), 200);
    EXPECT_EQ(ask(thumbnails, m_files.path()).width(), 200);
    EXPECT_EQ(thumbnailer.asked,
              (QStringList{QString::fromLatin1(ThumbnailCache::uriOf(m_files.path())),
                           u"application/pdf"_s, u"large"_s}));
    EXPECT_EQ(thumbnailer.scheduler, u"foreground"_s);
}

TEST_F(ThumbnailServiceTest, EveryEndWithoutAPictureIsNone) {
    for (const auto answer : {FakeThumbnailer::Answer::Failure, FakeThumbnailer::Answer::OnlyTheEnd,
                              FakeThumbnailer::Answer::Silence}) {
        FakeThumbnailer thumbnailer(m_files, answer);
        serve(thumbnailer);
        FreedesktopThumbnails thumbnails(m_codec, m_options);
        EXPECT_TRUE(ask(thumbnails, m_files.path()).isNull()) << int(answer);
        EXPECT_EQ(thumbnailer.asked.size(), 3);
        QDBusConnection::disconnectFromBus(u"thumbnailer"_s);
    }
}

TEST_F(ThumbnailServiceTest, WithoutAServiceASmallPictureIsBetterThanNone) {
    FreedesktopThumbnails thumbnails(m_codec, m_options);
    EXPECT_TRUE(ask(thumbnails, m_files.path()).isNull());
    m_files.put(u"normal"_s, QSize(128, 90));
    EXPECT_EQ(ask(thumbnails, m_files.path()).width(), 128);
}

TEST_F(ThumbnailServiceTest, NobodyIsAskedAboutAMissingOrAFailingFile) {
    FakeThumbnailer thumbnailer(m_files, FakeThumbnailer::Answer::Picture);
    serve(thumbnailer);
    FreedesktopThumbnails thumbnails(m_codec, m_options);
    EXPECT_TRUE(ask(thumbnails, m_files.path() + u".gone"_s).isNull());
    m_files.put(u"fail/another-program"_s, QSize(1, 1));
    EXPECT_TRUE(ask(thumbnails, m_files.path()).isNull());
    EXPECT_TRUE(thumbnailer.asked.isEmpty());
}

TEST_F(ThumbnailServiceTest, ACancelledRequestIsNeverAnsweredAndTakenBack) {
    FakeThumbnailer thumbnailer(m_files, FakeThumbnailer::Answer::Silence);
    serve(thumbnailer);
    FreedesktopThumbnails thumbnails(m_codec, m_options);
    bool isAnswered = false;
    const auto ticket = thumbnails.request(QUrl::fromLocalFile(m_files.path()), 250,
                                           [&](const QImage&) { isAnswered = true; });
    ASSERT_TRUE(waitUntil([&] { return !thumbnailer.asked.isEmpty(); }));
    thumbnails.cancel(ticket);
    EXPECT_TRUE(waitUntil([&] { return thumbnailer.dequeued == QList<uint>{1}; }));
    // Long enough for the deadline of the request to pass: the next one's passes later.
    EXPECT_TRUE(ask(thumbnails, m_files.path()).isNull());
    EXPECT_FALSE(isAnswered);
}

}  // namespace
}  // namespace quillo

#include "thumbnail_service_test.moc"
