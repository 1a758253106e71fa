// SPDX-License-Identifier: MIT
// From the question to the file in the Downloads folder.
#include <gtest/gtest.h>

#include <nettle/eddsa.h>

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QTemporaryDir>

#include "app/updates/sparkle_update_manager.h"
#include "app/updates/update_file.h"
#include "app/updates/update_session.h"
#include "app/updates/update_window.h"
#include "library/groups/form_controls.h"
#include "platform/network/qt_http_client.h"
#include "support/fake_http_client.h"
#include "support/wait_until.h"
#include "support/web_server.h"

using namespace Qt::StringLiterals;

namespace quillo {

static std::ostream& operator<<(std::ostream& out, UpdateStage stage) {
    return out << "stage " << int(stage);
}

namespace testing {
namespace {

/// What whoever publishes the program has.
struct Publisher {
    QByteArray privateKey = QByteArray(32, 'k');
    QByteArray publicKey = [this] {
        QByteArray key(32, Qt::Uninitialized);
        ed25519_sha512_public_key(reinterpret_cast<uint8_t*>(key.data()), bytes(privateKey));
        return key;
    }();

    [[nodiscard]] QByteArray sign(const QByteArray& message) const {
        QByteArray signature(64, Qt::Uninitialized);
        ed25519_sha512_sign(bytes(publicKey), bytes(privateKey), size_t(message.size()),
                            bytes(message), reinterpret_cast<uint8_t*>(signature.data()));
        return signature;
    }

    [[nodiscard]] QByteArray feed(const QByteArray& file, const QByteArray& url) const {
        return "<rss xmlns:u=\"urn:x\"><channel><item><enclosure u:version=\"2.0\" url=\"" + url +
               "\" length=\"" + QByteArray::number(file.size()) + "\" u:edSignature=\"" +
               sign(file).toBase64() + "\"/></item></channel></rss>";
    }

    static const uint8_t* bytes(const QByteArray& array) {
        return reinterpret_cast<const uint8_t*>(array.constData());
    }
};

HttpResponse answer(const QByteArray& body, int status = 200) {
    return {status, QUrl(u"https://host/feed.xml"_s), u"8.8.8.8"_s, "text/xml", body};
}

class Updates : public ::testing::Test {
protected:
    explicit Updates(HttpClient* http = nullptr)
        : m_client(http != nullptr ? *http : m_http), m_session(newSession()) {}

    [[nodiscard]] std::unique_ptr<UpdateSession> newSession(
        const QUrl& feed = QUrl(u"https://host/feed.xml"_s)) {
        return std::make_unique<UpdateSession>(
            m_client, UpdateFeed{feed, m_publisher.publicKey, u"1.0"_s, u"6.1"_s},
            UpdateSession::Folders{m_folder.filePath(u"work"_s), m_folder.filePath(u"down"_s)});
    }

    UpdateStage check(Result<HttpResponse> response) {
        m_session->check();
        m_http.answer(std::move(response));
        QCoreApplication::processEvents();
        return m_session->state().stage;
    }

    void findFile(const QByteArray& url = "https://host/dl/quillo-2.0.tar.xz") {
        ASSERT_EQ(check(answer(m_publisher.feed(m_file, url))), UpdateStage::Available);
        m_session->download();
        ASSERT_EQ(m_session->state().stage, UpdateStage::Downloading);
    }

    UpdateStage finish(const QByteArray& file, Result<HttpResponse> response) {
        m_http.request(m_http.requestCount() - 1).onPiece(file);
        m_http.answer(std::move(response));
        QCoreApplication::processEvents();
        return m_session->state().stage;
    }

    [[nodiscard]] QStringList filesIn(const QString& folder) const {
        return QDir(m_folder.filePath(folder)).entryList(QDir::Files | QDir::Hidden);
    }

    QTemporaryDir m_folder;
    Publisher m_publisher;
    FakeHttpClient m_http;
    HttpClient& m_client;
    QByteArray m_file = QByteArray("genuine ").repeated(20'000);
    std::unique_ptr<UpdateSession> m_session;
};

TEST_F(Updates, ACheckEndsWithWordsForWhateverTheServerSays) {
    const QByteArray complete = m_publisher.feed(m_file, "https://host/q");
    const struct {
        const char* name;
        Result<HttpResponse> response;
        UpdateStage stage;
    } rows[] = {
        {"newer", answer(complete), UpdateStage::Available},
        {"the same", answer(QByteArray(complete).replace("2.0", "1.0")), UpdateStage::UpToDate},
        {"gone", answer(complete, 404), UpdateStage::Failed},
        {"a log-in page", answer("<html/>"), UpdateStage::Failed},
        {"silence", failure(ErrorKind::TimedOut, u"the time is up"_s), UpdateStage::Failed},
        {"unsigned", answer(QByteArray(complete).replace("edSig", "noSig")), UpdateStage::Failed},
        {"without https", answer(QByteArray(complete).replace("https:", "http:")),
         UpdateStage::Failed},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(check(row.response), row.stage) << row.name;
        EXPECT_EQ(m_session->state().reason.isEmpty(), row.stage != UpdateStage::Failed)
            << row.name;
        const HttpRequest request = m_http.request(m_http.requestCount() - 1);
        EXPECT_EQ(request.transport, HttpRequest::Transport::Tls);
        m_session = newSession();
    }
}

TEST_F(Updates, ADistributionsBuildAsksNobody) {
    m_session = newSession(QUrl());
    m_session->check();
    EXPECT_EQ(m_session->state().stage, UpdateStage::Packaged);
    SparkleUpdateManager manager(m_http, UpdateFeed{{}, {}, u"1.0"_s, u"6.1"_s});
    const qsizetype before = QApplication::topLevelWidgets().size();
    manager.checkForUpdates();
    manager.checkForUpdates();
    EXPECT_EQ(QApplication::topLevelWidgets().size() - before, 1) << "one window, and it says so";
    EXPECT_EQ(m_http.requestCount(), 0U);
}

TEST_F(Updates, OnlyTheGenuineFileReachesThePerson) {
    QByteArray changed = m_file;
    changed[5] = '!';
    const struct {
        const char* name;
        QByteArray file;
        Result<HttpResponse> response;
        UpdateStage stage;
    } rows[] = {
        {"genuine", m_file, answer({}), UpdateStage::Ready},
        {"changed", changed, answer({}), UpdateStage::Failed},
        {"short", m_file.chopped(1), answer({}), UpdateStage::Failed},
        {"long", m_file + "x", answer({}), UpdateStage::Failed},
        {"gone", {}, answer({}, 404), UpdateStage::Failed},
        {"cut off", m_file, failure(ErrorKind::Failed, u"cut"_s), UpdateStage::Failed},
    };
    for (const auto& row : rows) {
        m_session = newSession();
        findFile();
        EXPECT_EQ(filesIn(u"down"_s), QStringList()) << row.name;
        EXPECT_EQ(finish(row.file, row.response), row.stage) << row.name;
        const bool isReady = row.stage == UpdateStage::Ready;
        EXPECT_EQ(filesIn(u"down"_s).size(), isReady ? 1 : 0) << row.name;
        EXPECT_EQ(filesIn(u"work"_s), QStringList()) << row.name;
        if (isReady) {
            QFile file(m_session->state().path);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            EXPECT_EQ(file.readAll(), m_file);
            EXPECT_FALSE(file.permissions() & QFileDevice::ExeOwner);
            EXPECT_TRUE(file.remove());
        }
    }
}

TEST_F(Updates, AFileGetsAHarmlessNameThatReplacesNothing) {
    const struct {
        QByteArray url;
        QString name;
    } rows[] = {
        {"https://host/a/quillo-2.0.tar.xz?x=1#y", u"quillo-2.0.tar.xz"_s},
        {"https://host/again/quillo-2.0.tar.xz", u"quillo-2.0 (1).tar.xz"_s},
        {"https://host/", u"Quillo-update"_s},
        {"https://host/.bashrc", u"bashrc"_s},
        {"https://host/%2e%2e%2fx.deb", u"x.deb"_s},
        {"https://host/a%0Ab%E2%80%AEc.deb", u"a_b_c.deb"_s},
        {"https://host/" + QByteArray(300, 'a') + ".deb", QString(96, u'a') + u".deb"_s},
    };
    for (const auto& row : rows) {
        m_session = newSession();
        findFile(row.url);
        EXPECT_EQ(finish(m_file, answer({})), UpdateStage::Ready);
        EXPECT_EQ(QFileInfo(m_session->state().path).fileName(), row.name);
        EXPECT_EQ(QFileInfo(m_session->state().path).path(), m_folder.filePath(u"down"_s));
    }
}

TEST_F(Updates, WhatIsGivenUpLeavesNothingBehindAndCanBeBegunAgain) {
    findFile();
    m_http.request(1).onPiece(m_file);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_session->state().receivedBytes, m_file.size());
    m_session->cancel();
    EXPECT_TRUE(m_http.request(1).stop.stop_requested());
    EXPECT_EQ(m_session->state().stage, UpdateStage::Available);
    m_session->download();
    m_http.answer(answer({}));
    QCoreApplication::processEvents();
    EXPECT_EQ(m_session->state().stage, UpdateStage::Downloading) << "the answer is an old one";
    EXPECT_EQ(filesIn(u"down"_s), QStringList());
    EXPECT_EQ(finish(m_file, answer({})), UpdateStage::Ready);
    // A session that is gone is not told.
    m_session->check();
    m_session.reset();
    m_http.answer(answer("<rss/>"));
    QCoreApplication::processEvents();
}

TEST_F(Updates, WithoutAPlaceToDownloadToItSaysSo) {
    QFile file(m_folder.filePath(u"work"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(check(answer(m_publisher.feed(m_file, "https://host/q"))), UpdateStage::Available);
    m_session->download();
    EXPECT_EQ(m_session->state().stage, UpdateStage::Failed);
    EXPECT_EQ(m_http.requestCount(), 1U);
}

TEST_F(Updates, TheWindowSaysWhatCanBeDoneAndReturnDoesIt) {
    UpdateWindow window;
    QList<UpdateAction> actions;
    QObject::connect(&window, &UpdateWindow::actionChosen, &window,
                     [&](UpdateAction chosen) { actions.append(chosen); });
    int closings = 0;
    QObject::connect(&window, &QDialog::rejected, &window, [&] { ++closings; });
    const auto press = [&window](Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(window.focusWidget(), &event);
    };
    const auto* action = window.findChildren<PushButton*>().constLast();
    const struct {
        UpdateStage stage;
        QString button;
        UpdateAction action;
    } rows[] = {
        {UpdateStage::Packaged, u"OK"_s, UpdateAction::Close},
        {UpdateStage::Checking, u"Cancel"_s, UpdateAction::Close},
        {UpdateStage::UpToDate, u"OK"_s, UpdateAction::Close},
        {UpdateStage::Available, u"Download"_s, UpdateAction::Download},
        {UpdateStage::Downloading, u"Cancel"_s, UpdateAction::Close},
        {UpdateStage::Ready, u"Show in Folder"_s, UpdateAction::ShowInFolder},
        {UpdateStage::Failed, u"Try Again"_s, UpdateAction::TryAgain},
    };
    for (const auto& row : rows) {
        window.showState({row.stage, u"1.0"_s, u"2.0"_s, 5, 10, u"/d/q.deb"_s, u"It broke"_s});
        window.show();
        EXPECT_EQ(action->text(), row.button);
        actions.clear();
        closings = 0;
        press(Qt::Key_Return);
        const bool isClosed = row.action == UpdateAction::Close;
        EXPECT_EQ(closings, isClosed ? 1 : 0) << row.button.toStdString();
        EXPECT_EQ(actions, isClosed ? QList<UpdateAction>() : QList{row.action});
        window.show();
        press(Qt::Key_Escape);
        EXPECT_EQ(closings, isClosed ? 2 : 1) << row.button.toStdString();
    }
}

/// With the real client and a real server.
class UpdatesOnTheWeb : public Updates {
protected:
    UpdatesOnTheWeb() : Updates(&m_web) {
        QSslConfiguration known = m_before;
        known.addCaCertificates(QStringLiteral(QUILLO_TEST_DATA "/tls/authority.pem"));
        QSslConfiguration::setDefaultConfiguration(known);
    }
    ~UpdatesOnTheWeb() override { QSslConfiguration::setDefaultConfiguration(m_before); }

    [[nodiscard]] UpdateStage settledStage() {
        EXPECT_TRUE(waitUntil([&] {
            const UpdateStage stage = m_session->state().stage;
            return stage != UpdateStage::Checking && stage != UpdateStage::Downloading;
        }));
        return m_session->state().stage;
    }

    QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
    std::unique_ptr<WebServer> m_server = WebServer::withTls();
    QtHttpClient m_web{[](const QString&, QObject* context, auto found) {
        QMetaObject::invokeMethod(
            context, [found] { found({QHostAddress(QHostAddress::LocalHost)}); },
            Qt::QueuedConnection);
    }};
};

TEST_F(UpdatesOnTheWeb, FetchesTheFeedAndTheFileOverTls) {
    const QByteArray host = "https://page.test:" + QByteArray::number(m_server->port());
    m_server->on("/feed.xml", WebServer::response(m_publisher.feed(m_file, host + "/q.deb")));
    m_server->on("/q.deb", WebServer::response(m_file));
    m_session = newSession(QUrl(QString::fromLatin1(host + "/feed.xml")));
    m_session->check();
    ASSERT_EQ(settledStage(), UpdateStage::Available) << m_session->state().reason.toStdString();
    m_session->download();
    ASSERT_EQ(settledStage(), UpdateStage::Ready) << m_session->state().reason.toStdString();
    EXPECT_EQ(filesIn(u"down"_s), QStringList{u"q.deb"_s});
    EXPECT_EQ(m_server->requests().size(), 2);
}

}  // namespace
}  // namespace testing
}  // namespace quillo
