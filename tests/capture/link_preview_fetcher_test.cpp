// SPDX-License-Identifier: MIT
// From a newly stored link to its title and picture, with a web that answers what a test says.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLoggingCategory>

#include "capture/clip_saver.h"
#include "capture/link_preview_fetcher.h"
#include "platform/text/document_reader.h"
#include "support/fake_http_client.h"
#include "support/fake_path_monitor.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/memory_user_defaults.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo::testing {
namespace {

HttpResponse page(const QByteArray& body, const QString& url = u"https://host/a"_s) {
    return {200, QUrl(url), u"8.8.8.8"_s, "text/html", body};
}

HttpResponse image(const QByteArray& body, int status = 200) {
    return {status, QUrl(u"https://host/p.png"_s), u"8.8.8.8"_s, "image/png", body};
}

class LinkPreview : public ::testing::Test {
protected:
    LinkPreview()
        : m_fetcher(std::make_unique<LinkPreviewFetcher>(
              LinkPreviewServices{m_persistence, m_path, m_http, m_clock})),
          m_saver(
              {m_persistence, m_defaults, m_notifications, m_richText, m_clock, m_fetcher.get()}) {}

    void settle() {
        m_persistence.waitUntilIdle();
        QCoreApplication::processEvents();
    }

    std::shared_ptr<Clip> store(const QString& link) {
        m_clock.advance(1s);
        m_saver.saveUrlClip(link, std::nullopt);
        settle();
        return newest();
    }

    [[nodiscard]] std::shared_ptr<Clip> newest() {
        FetchRequest request;
        request.sort = {{int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
        request.limit = 1;
        return m_persistence.viewContext().fetch<Clip>(request).value().value(0);
    }

    /// The link is stored and its page is being waited for.
    std::shared_ptr<Clip> fetchPage(const QString& link = u"https://host/a"_s) {
        auto clip = store(link);
        EXPECT_TRUE(m_path.answer(true));
        settle();
        EXPECT_EQ(m_http.requestCount(), 1U);
        return clip;
    }

    ManualClock m_clock;
    MemoryUserDefaults m_defaults;
    NotificationCenter m_notifications;
    PersistenceController m_persistence{inMemory(m_clock)};
    DocumentReader m_richText;
    FakePathMonitor m_path;
    FakeHttpClient m_http;
    std::unique_ptr<LinkPreviewFetcher> m_fetcher;
    ClipSaver m_saver;
};

TEST_F(LinkPreview, AsksForThePageAndThenForItsPictureUnderTheirRules) {
    const auto clip = fetchPage(u"https://host/a/b"_s);
    EXPECT_EQ(m_path.patience(), 2s);
    const HttpRequest first = m_http.request(0);
    EXPECT_EQ(first.url, QUrl(u"https://host/a/b"_s));
    EXPECT_EQ(first.origin, HttpRequest::Origin::Person);
    EXPECT_EQ(first.timeout, 10s);
    EXPECT_EQ(first.largestBodyBytes, 2'000'000);
    EXPECT_EQ(first.excess, HttpRequest::Excess::Cut);
    EXPECT_EQ(first.userAgent,
              "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like "
              "Gecko) Version/17.0 Safari/605.1.15");
    m_http.answer(page(R"(<meta property="og:image" content="/img/p.png"><title>T</title>)",
                       u"https://host/a/b"_s));
    ASSERT_EQ(m_http.requestCount(), 2U);
    const HttpRequest second = m_http.request(1);
    EXPECT_EQ(second.url, QUrl(u"https://host/img/p.png"_s));
    EXPECT_EQ(second.origin, HttpRequest::Origin::Document);
    EXPECT_EQ(second.ownServer, u"8.8.8.8"_s);
    EXPECT_EQ(second.timeout, 10s);
    EXPECT_EQ(second.largestBodyBytes, 4'999'999);
    EXPECT_EQ(second.excess, HttpRequest::Excess::Refuse);
    EXPECT_TRUE(second.userAgent.isEmpty());
    m_clock.advance(5s);
    m_http.answer(image("bytes"));
    settle();
    EXPECT_EQ(clip->linkTitle(), u"T"_s);
    EXPECT_EQ(clip->linkImageData(), "bytes");
    EXPECT_EQ(clip->modifiedAt(), m_clock.now());
    EXPECT_EQ(clip->createdAt(), m_clock.now() - 5s);
}

TEST_F(LinkPreview, StoresWhatThePageHas) {
    const auto failed = failure(ErrorKind::Failed, u"x"_s);
    const QByteArray both = R"(<meta property="og:title" content="A &amp; B">)"
                            R"(<meta property="og:image" content="p.png"><title>T</title>)";
    const QByteArray dataImage = R"(<title>T</title><meta property="og:image" content="data:,x">)";
    HttpResponse errorPage = page("<title>Not here</title>");
    errorPage.status = 404;
    const struct {
        const char* name;
        Result<HttpResponse> page;
        std::optional<Result<HttpResponse>> image;
        std::optional<QString> title;
        std::optional<QByteArray> imageData;
    } rows[] = {
        {"both", page(both), image("i"), u"A & B"_s, "i"},
        {"image not found", page(both), image("i", 404), u"A & B"_s, {}},
        {"image of another success", page(both), image("i", 203), u"A & B"_s, {}},
        {"image failed", page(both), failed, u"A & B"_s, {}},
        {"empty image", page(both), image(""), u"A & B"_s, {}},
        {"picture alone", page(R"(<meta property="og:image" content="p">)"), image("i"), {}, "i"},
        {"title alone", page("<title> Hello &amp; bye </title>"), {}, u"Hello &amp; bye"_s, {}},
        {"an image that is no web address", page(dataImage), {}, u"T"_s, {}},
        {"the page of an error", errorPage, {}, u"Not here"_s, {}},
        {"nothing", page("<p>x"), {}, {}, {}},
        {"empty", page(""), {}, {}, {}},
        {"no text", page("\xff\xfe\xfd\xff<title>x</title>"), {}, {}, {}},
        {"failed", failed, {}, {}, {}},
    };
    int number = 0;
    for (const auto& row : rows) {
        const auto clip = store(u"https://host/%1"_s.arg(++number));
        const auto stored = clip->modifiedAt();
        ASSERT_TRUE(m_path.answer(true));
        settle();
        const size_t asked = m_http.requestCount();
        m_clock.advance(1s);
        m_http.answer(row.page);
        EXPECT_EQ(m_http.requestCount() - asked, row.image ? 1U : 0U) << row.name;
        if (row.image) {
            m_http.answer(*row.image);
        }
        settle();
        EXPECT_EQ(clip->linkTitle(), row.title) << row.name;
        EXPECT_EQ(clip->linkImageData(), row.imageData) << row.name;
        EXPECT_EQ(clip->modifiedAt() == stored, !row.title && !row.imageData) << row.name;
    }
}

TEST_F(LinkPreview, TurnedOffNothingIsAskedNotEvenForTheNetwork) {
    m_defaults.setObject(u"fetchLinkPreviews"_s, false);
    (void)store(u"https://host/1"_s);
    EXPECT_FALSE(m_path.patience());
    EXPECT_EQ(m_http.requestCount(), 0U);
    m_defaults.setObject(u"fetchLinkPreviews"_s, u"no"_s);
    (void)store(u"https://host/2"_s);
    EXPECT_TRUE(m_path.patience()) << "a value of another type counts as absent";
}

TEST_F(LinkPreview, WithoutANetworkTheWebIsNotAsked) {
    (void)store(u"https://host/1"_s);
    EXPECT_TRUE(m_path.answer(false));
    settle();
    EXPECT_EQ(m_http.requestCount(), 0U);
}

TEST_F(LinkPreview, OnlyANewLinkWithoutPreviewIsFetched) {
    const auto clip = fetchPage(u"https://host/a"_s);
    m_http.answer(page("<title>T</title>"));
    settle();
    // Copied again it moves to the front.
    (void)store(u"https://host/a"_s);
    EXPECT_FALSE(m_path.answer(true));
    // A title is a preview.
    m_fetcher->fetchPreview(clip->id());
    EXPECT_TRUE(m_path.answer(true));
    settle();
    // Neither is a text, nor what is not of the web.
    EXPECT_TRUE(m_saver.saveTextClip(u"https://host/b and more"_s, std::nullopt));
    settle();
    EXPECT_FALSE(m_path.answer(true));
    for (const QString& link : {u"ftp://host/x"_s, u"https:///x"_s, u"http:"_s}) {
        (void)store(link);
        m_path.answer(true);
        settle();
    }
    m_fetcher->fetchPreview(QUuid::createUuid());
    m_path.answer(true);
    settle();
    EXPECT_EQ(m_http.requestCount(), 1U);
}

TEST_F(LinkPreview, AClipDeletedMeanwhileStaysDeleted) {
    ObjectContext& view = m_persistence.viewContext();
    const auto clip = fetchPage();
    view.remove(*clip);
    ASSERT_TRUE(view.save().has_value());
    m_http.answer(page("<title>T</title>"));
    settle();
    EXPECT_EQ(view.count({}).value(), 0);
    // Deleted before the page was asked for.
    const auto second = store(u"https://host/b"_s);
    view.remove(*second);
    ASSERT_TRUE(view.save().has_value());
    EXPECT_TRUE(m_path.answer(true));
    settle();
    EXPECT_EQ(m_http.requestCount(), 1U);
}

TEST_F(LinkPreview, AnAnswerAfterTheFetchersEndChangesNothing) {
    const auto clip = fetchPage();
    m_fetcher.reset();
    m_http.answer(page("<title>T</title>"));
    settle();
    EXPECT_FALSE(clip->linkTitle());
}

QStringList* logged = nullptr;

TEST_F(LinkPreview, TheLogNamesNeitherAddressNorTitle) {
    QStringList lines;
    logged = &lines;
    QLoggingCategory::setFilterRules(u"com.quillohq.Quillo.*=true"_s);
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& line) { logged->append(line); });
    (void)fetchPage(u"https://secret-host/a"_s);
    m_http.answer(page(R"(<title>secret title</title><meta property="og:image" content="s.png">)"));
    m_http.answer(failure(ErrorKind::Failed, u"x"_s));
    settle();
    (void)store(u"https://secret-host/b"_s);
    m_path.answer(true);
    settle();
    m_http.answer(failure(ErrorKind::Failed, u"the time is up"_s));
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules(QString());
    EXPECT_TRUE(lines.contains(u"Fetching link preview for <private>"_s));
    EXPECT_TRUE(lines.contains(u"OG result — title: <private>, hasImage: false"_s));
    EXPECT_TRUE(lines.contains(u"Failed to fetch HTML for <private>"_s));
    EXPECT_TRUE(lines.contains(u"OG result — title: nil, hasImage: false"_s));
    EXPECT_TRUE(lines.filter(u"secret"_s).isEmpty()) << lines.join(u'\n').toStdString();
    EXPECT_TRUE(lines.filter(u"s.png"_s).isEmpty());
}

}  // namespace
}  // namespace quillo::testing
