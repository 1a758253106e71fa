// SPDX-License-Identifier: MIT
#include "capture/link_preview_fetcher.h"

#include <mutex>
#include <shared_mutex>
#include <utility>

#include "base/logging.h"
#include "capture/link_preview_page.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcPreview, "LinkPreviewFetcher")

constexpr std::chrono::milliseconds kPatienceForPath = 2s;
constexpr std::chrono::milliseconds kPageTimeout = 10s;
constexpr std::chrono::milliseconds kImageTimeout = 10s;
constexpr qint64 kLargestPageBytes = 2'000'000;
constexpr qint64 kLargestImageBytes = 4'999'999;
constexpr int kOk = 200;

// Pages give their preview to what they take for a browser.
const QByteArray kUserAgent =
    "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) "
    "Version/17.0 Safari/605.1.15";

bool wantsPreview(const Clip& clip) {
    return !clip.linkTitle() && !clip.linkImageData();
}

}  // namespace

/// Steps hold it shared while they run; the fetcher's end waits for them and stops the others.
struct LinkPreviewFetcher::Life {
    std::shared_mutex mutex;
    bool hasEnded = false;
};

template <typename... Arguments, typename Step>
std::move_only_function<void(Arguments...)> LinkPreviewFetcher::whileAlive(Step step) {
    return [life = m_life, step = std::move(step)](Arguments... arguments) mutable {
        const std::shared_lock lock(life->mutex);
        if (!life->hasEnded) {
            step(std::forward<Arguments>(arguments)...);
        }
    };
}

LinkPreviewFetcher::LinkPreviewFetcher(LinkPreviewServices services)
    : m_services(services), m_life(std::make_shared<Life>()) {}

LinkPreviewFetcher::~LinkPreviewFetcher() {
    const std::unique_lock lock(m_life->mutex);
    m_life->hasEnded = true;
}

void LinkPreviewFetcher::fetchPreview(const QUuid& clip) {
    m_services.path.check(
        kPatienceForPath, whileAlive<bool>([this, clip](bool isSatisfied) {
            if (!isSatisfied) {
                qCInfo(lcPreview, "No network connection, skipping link preview fetch");
                return;
            }
            m_services.persistence.perform(whileAlive<ObjectContext&>(
                [this, clip](ObjectContext& context) { readClip(context, clip); }));
        }));
}

void LinkPreviewFetcher::readClip(ObjectContext& context, const QUuid& clip) {
    const std::shared_ptr<Clip> link = context.object<Clip>(clip);
    if (link == nullptr || !wantsPreview(*link)) {
        return;
    }
    const QUrl url(link->urlString().value_or(QString()));
    if (isWebAddress(url)) {
        fetchPage(clip, url);
    }
}

void LinkPreviewFetcher::fetchPage(const QUuid& clip, const QUrl& url) {
    qCInfo(lcPreview, "Fetching link preview for %s", kPrivate);
    HttpRequest request;
    request.url = url;
    request.origin = HttpRequest::Origin::Person;
    request.userAgent = kUserAgent;
    request.timeout = kPageTimeout;
    request.largestBodyBytes = kLargestPageBytes;
    request.excess = HttpRequest::Excess::Cut;
    m_services.http.get(std::move(request), whileAlive<Result<HttpResponse>>(
                                                [this, clip](const Result<HttpResponse>& page) {
                                                    readPage(clip, page);
                                                }));
}

void LinkPreviewFetcher::readPage(const QUuid& clip, const Result<HttpResponse>& page) {
    const bool hasBody = page && !page->body.isEmpty();
    const auto html = hasBody ? decodePage(page->body, page->contentType) : std::nullopt;
    Preview preview{clip, std::nullopt, std::nullopt};
    if (!html) {
        qCDebug(lcPreview, "Failed to fetch HTML for %s", kPrivate);
        qCDebug(lcPreview, "The reason: %s", page ? "no text" : qUtf8Printable(page.error().text));
        storePreview(std::move(preview));
        return;
    }
    preview.title = extractMeta(*html, "og:title"_L1);
    if (!preview.title) {
        preview.title = extractTitle(*html);
    }
    const auto imageText = extractMeta(*html, "og:image"_L1);
    const auto image = imageText ? resolveImageUrl(*imageText, page->url) : std::nullopt;
    if (image && isWebAddress(*image)) {
        fetchImage(std::move(preview), *image, *page);
    } else {
        storePreview(std::move(preview));
    }
}

void LinkPreviewFetcher::fetchImage(Preview preview, const QUrl& image, const HttpResponse& page) {
    HttpRequest request;
    request.url = image;
    request.origin = HttpRequest::Origin::Document;
    request.ownServer = page.server;
    request.timeout = kImageTimeout;
    request.largestBodyBytes = kLargestImageBytes;
    request.excess = HttpRequest::Excess::Refuse;
    m_services.http.get(
        std::move(request),
        whileAlive<Result<HttpResponse>>(
            [this, preview = std::move(preview)](Result<HttpResponse> response) mutable {
                if (response && response->status == kOk && !response->body.isEmpty()) {
                    preview.imageData = std::move(response->body);
                }
                storePreview(std::move(preview));
            }));
}

void LinkPreviewFetcher::storePreview(Preview preview) {
    qCInfo(lcPreview, "OG result — title: %s, hasImage: %s", preview.title ? kPrivate : "nil",
           preview.imageData ? "true" : "false");
    if (!preview.title && !preview.imageData) {
        return;
    }
    const qint64 sizeBytes = preview.title.value_or(QString()).size() * 2 +
                             preview.imageData.value_or(QByteArray()).size();
    // The store's work outlives the fetcher; it answers whether a lock made it wait.
    m_services.persistence.performPatiently(
        [this, life = m_life, preview = std::move(preview)](ObjectContext& context) {
            const std::shared_lock lock(life->mutex);
            return life->hasEnded ? Result<void>() : storeNow(context, preview);
        },
        sizeBytes);
}

Result<void> LinkPreviewFetcher::storeNow(ObjectContext& context, const Preview& preview) {
    const std::shared_ptr<Clip> clip = context.object<Clip>(preview.clip);
    if (clip == nullptr) {
        return {};
    }
    if (preview.title) {
        clip->setLinkTitle(preview.title);
    }
    if (preview.imageData) {
        clip->setLinkImageData(preview.imageData);
    }
    clip->setModifiedAt(m_services.clock.now());
    const Result<void> saved = context.save();
    if (!saved) {
        context.rollback();
        if (saved.error().kind != ErrorKind::Busy) {
            qCCritical(lcPreview, "Failed to save link preview: %s",
                       qUtf8Printable(saved.error().text));
        }
    }
    return saved;
}

}  // namespace quillo
