// SPDX-License-Identifier: MIT
#include "capture/clip_saver.h"

#include "base/logging.h"
#include "capture/html_plain_text.h"
#include "capture/link_preview_fetcher.h"
#include "capture/sensitive_filter.h"
#include "capture/web_link.h"
#include "model/clip_history.h"
#include "platform/file_bookmark.h"
#include "platform/uniform_types.h"

#include <gcrypt.h>

#include <QFileInfo>
#include <QMetaObject>
#include <utility>

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcWatcher, "PasteboardWatcher")

// SHA-256 (FIPS 180-4), with the processor's own instructions where it has them.
QByteArray digestOf(const QByteArray& bytes) {
    [[maybe_unused]] static const bool isReady = gcry_check_version(nullptr) != nullptr;
    constexpr qsizetype kDigestSize = 32;
    QByteArray digest(kDigestSize, Qt::Uninitialized);
    gcry_md_hash_buffer(GCRY_MD_SHA256, digest.data(), bytes.constData(), size_t(bytes.size()));
    return digest;
}

std::optional<QByteArray> bookmarkOf(const QUrl& url) {
    Result<QByteArray> bookmark = makeFileBookmark(url);
    if (!bookmark) {
        qCCritical(lcWatcher, "Failed to create bookmark for file: %s",
                   qUtf8Printable(bookmark.error().text));
        return std::nullopt;
    }
    return std::move(*bookmark);
}

std::optional<QString> typeIdentifierOf(const QFileInfo& file) {
    if (file.isDir()) {
        return QString(kFolderType);
    }
    const std::optional<UniformType> type = uniformTypeForExtension(file.suffix());
    return type ? std::optional(type->identifier) : std::nullopt;
}

void fillFileClip(Clip& clip, const QUrl& url) {
    const QFileInfo file(url.toLocalFile());
    clip.setType(ClipType::FileUrl);
    clip.setFileName(url.fileName());
    clip.setFileUti(typeIdentifierOf(file));
    clip.setFileSize(file.isDir() ? 0 : file.size());
    clip.setFileBookmark(bookmarkOf(url));
    clip.setUrlString(url.toString(QUrl::FullyEncoded));
}

}  // namespace

struct ClipSaver::Kind {
    const char* word;
    const char* duplicateMessage;
    bool isLink = false;
};

struct ClipSaver::Capture {
    Kind kind;
    std::optional<QString> source;
    Timestamp moment;
    std::optional<Content> content;
    QByteArray digest;
};

ClipSaver::ClipSaver(ClipSaverServices services) : m_services(services) {}

void ClipSaver::saveImageClip(QByteArray image, std::optional<QString> source,
                              std::optional<QString> fileName) {
    static constexpr Kind kKind{"image", "Duplicate IMAGE found (same hash), skipping"};
    const qint64 sizeBytes = image.size();
    store(kKind, std::move(source), sizeBytes,
          [image = std::move(image), fileName = std::move(fileName)]() -> Content {
              return {image, [image, fileName](Clip& clip) {
                          clip.setType(ClipType::Image);
                          clip.setImageData(image);
                          clip.setFileSize(image.size());
                          clip.setFileName(fileName);
                      }};
          });
}

void ClipSaver::saveFileClip(const QList<QUrl>& urls, std::optional<QString> source) {
    static constexpr Kind kKind{"file", "Duplicate file clip found, skipping"};
    const qint64 sizeBytes = urls.constFirst().toEncoded().size();
    store(kKind, std::move(source), sizeBytes, [url = urls.constFirst()]() -> Content {
        return {url.toEncoded(), [url](Clip& clip) { fillFileClip(clip, url); }};
    });
}

void ClipSaver::saveRtfClip(QByteArray document, std::optional<QString> source) {
    static constexpr Kind kKind{"RTF", "Duplicate RTF clip found, skipping"};
    const qint64 sizeBytes = document.size();
    store(kKind, std::move(source), sizeBytes, [this, document = std::move(document)]() -> Content {
        return {document, [this, document](Clip& clip) {
                    clip.setType(ClipType::Rtf);
                    clip.setAttributed(document);
                    if (Result<StyledText> text = m_services.richText.readRtf(document)) {
                        clip.setPlaintext(std::move(text->text));
                    }
                }};
    });
}

void ClipSaver::saveHtmlClip(QByteArray document, std::optional<QString> source) {
    static constexpr Kind kKind{"HTML", "Duplicate HTML clip found, skipping"};
    const qint64 sizeBytes = document.size();
    store(kKind, std::move(source), sizeBytes, [document = std::move(document)]() -> Content {
        return {document, [document](Clip& clip) {
                    clip.setType(ClipType::Html);
                    clip.setAttributed(document);
                    clip.setPlaintext(plainTextOfHtml(document));
                }};
    });
}

void ClipSaver::saveUrlClip(QString text, std::optional<QString> source) {
    static constexpr Kind kKind{"URL", "Duplicate URL clip found, skipping", true};
    const qint64 sizeBytes = text.size() * 2;
    store(kKind, std::move(source), sizeBytes, [text = std::move(text)]() -> Content {
        return {text.toUtf8(), [text](Clip& clip) {
                    const std::optional<QUrl> url = parseWholeUrl(text);
                    clip.setType(ClipType::Text);
                    clip.setUrlString(text);
                    if (url && !url->host().isEmpty()) {
                        clip.setUrlHost(url->host());
                    }
                    clip.setPlaintext(text);
                }};
    });
}

bool ClipSaver::saveTextClip(QString text, std::optional<QString> source) {
    static constexpr Kind kKind{"text", "Duplicate text clip found, skipping"};
    if (isSensitive(text)) {
        qCInfo(lcWatcher, "Skipping sensitive content");
        return false;
    }
    const qint64 sizeBytes = text.size() * 2;
    store(kKind, std::move(source), sizeBytes, [text = std::move(text)]() -> Content {
        return {text.toUtf8(), [text](Clip& clip) {
                    clip.setType(ClipType::Text);
                    clip.setPlaintext(text);
                }};
    });
    return true;
}

void ClipSaver::store(const Kind& kind, std::optional<QString> source, qint64 sizeBytes,
                      std::move_only_function<Content()> makeContent) {
    m_services.persistence.performPatiently(
        [this, capture = Capture{kind, std::move(source), m_services.clock.now(), {}, {}},
         makeContent = std::move(makeContent)](ObjectContext& context) mutable {
            if (!capture.content) {
                capture.content = makeContent();
                capture.digest = digestOf(capture.content->hashInput);
            }
            return storeNow(context, capture);
        },
        sizeBytes);
}

Result<void> ClipSaver::storeNow(ObjectContext& context, const Capture& capture) {
    QUuid id;
    const Result<StoreOutcome> outcome =
        insertOrBump(context, capture.digest, FixedClock(capture.moment), [&](Clip& clip) {
            clip.setSourceBundleId(capture.source);
            capture.content->fill(clip);
            id = clip.id();
        });
    if (!outcome) {
        if (outcome.error().kind != ErrorKind::Busy) {
            qCCritical(lcWatcher, "Error saving clip: %s", qUtf8Printable(outcome.error().text));
        }
        return std::unexpected(outcome.error());
    }
    if (*outcome == StoreOutcome::Bumped) {
        qCInfo(lcWatcher, "%s", capture.kind.duplicateMessage);
    } else {
        followUp(context, capture.kind);
        if (capture.kind.isLink) {
            askForPreview(id);
        }
    }
    return {};
}

void ClipSaver::followUp(ObjectContext& context, const Kind& kind) {
    qCInfo(lcWatcher, "Saved new %s clip to Core Data", kind.word);
    const qint64 limit = m_services.defaults.integer(QStringLiteral("maxHistoryItems")).value_or(0);
    // A failure is logged where it happens; the new clip stays stored.
    (void)enforceHistoryLimit(context, limit);
    QMetaObject::invokeMethod(
        &m_services.notifications, [this] { refreshViewContext(); }, Qt::QueuedConnection);
}

void ClipSaver::askForPreview(const QUuid& link) {
    if (m_services.linkPreviews != nullptr &&
        m_services.defaults.boolean(QStringLiteral("fetchLinkPreviews")).value_or(true)) {
        m_services.linkPreviews->fetchPreview(link);
    }
}

void ClipSaver::refreshViewContext() {
    // The saved change set is merged into the view context before this runs: it was queued first.
    qCDebug(lcWatcher, "Refreshing viewContext");
    m_services.notifications.post(kClipSavedNotification);
}

}  // namespace quillo
