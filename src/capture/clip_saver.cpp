// SPDX-License-Identifier: MIT
#include "capture/clip_saver.h"

#include "base/logging.h"
#include "capture/html_plain_text.h"
#include "capture/sensitive_filter.h"
#include "capture/web_link.h"
#include "model/clip_history.h"
#include "platform/file_bookmark.h"
#include "platform/uniform_types.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QMetaObject>
#include <utility>

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcWatcher, "PasteboardWatcher")

QByteArray digestOf(const QByteArray& bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
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
};

ClipSaver::ClipSaver(ClipSaverServices services) : m_services(services) {}

void ClipSaver::saveImageClip(QByteArray image, std::optional<QString> source,
                              std::optional<QString> fileName) {
    static constexpr Kind kKind{"image", "Duplicate IMAGE found (same hash), skipping"};
    store(kKind, std::move(source),
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
    store(kKind, std::move(source), [url = urls.constFirst()]() -> Content {
        return {url.toEncoded(), [url](Clip& clip) { fillFileClip(clip, url); }};
    });
}

void ClipSaver::saveRtfClip(QByteArray document, std::optional<QString> source) {
    static constexpr Kind kKind{"RTF", "Duplicate RTF clip found, skipping"};
    store(kKind, std::move(source), [this, document = std::move(document)]() -> Content {
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
    store(kKind, std::move(source), [document = std::move(document)]() -> Content {
        return {document, [document](Clip& clip) {
                    clip.setType(ClipType::Html);
                    clip.setAttributed(document);
                    clip.setPlaintext(plainTextOfHtml(document));
                }};
    });
}

void ClipSaver::saveUrlClip(QString text, std::optional<QString> source) {
    static constexpr Kind kKind{"URL", "Duplicate URL clip found, skipping"};
    store(kKind, std::move(source), [text = std::move(text)]() -> Content {
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
    store(kKind, std::move(source), [text = std::move(text)]() -> Content {
        return {text.toUtf8(), [text](Clip& clip) {
                    clip.setType(ClipType::Text);
                    clip.setPlaintext(text);
                }};
    });
    return true;
}

void ClipSaver::store(const Kind& kind, std::optional<QString> source,
                      std::move_only_function<Content()> makeContent) {
    m_services.persistence.perform(
        [this, kind, source = std::move(source), makeContent = std::move(makeContent)](
            ObjectContext& context) mutable { storeNow(context, kind, source, makeContent()); });
}

void ClipSaver::storeNow(ObjectContext& context, const Kind& kind,
                         const std::optional<QString>& source, const Content& content) {
    const QByteArray digest = digestOf(content.hashInput);
    const Result<StoreOutcome> outcome =
        insertOrBump(context, digest, m_services.clock, [&](Clip& clip) {
            clip.setSourceBundleId(source);
            content.fill(clip);
        });
    if (!outcome) {
        qCCritical(lcWatcher, "Error saving clip: %s", qUtf8Printable(outcome.error().text));
        context.rollback();
    } else if (*outcome == StoreOutcome::Bumped) {
        qCInfo(lcWatcher, "%s", kind.duplicateMessage);
    } else {
        followUp(context, kind);
    }
}

void ClipSaver::followUp(ObjectContext& context, const Kind& kind) {
    qCInfo(lcWatcher, "Saved new %s clip to Core Data", kind.word);
    const qint64 limit = m_services.defaults.integer(QStringLiteral("maxHistoryItems")).value_or(0);
    // A failure is logged where it happens; the new clip stays stored.
    (void)enforceHistoryLimit(context, limit);
    QMetaObject::invokeMethod(
        &m_services.notifications, [this] { refreshViewContext(); }, Qt::QueuedConnection);
}

void ClipSaver::refreshViewContext() {
    // The saved change set is merged into the view context before this runs: it was queued first.
    qCDebug(lcWatcher, "Refreshing viewContext");
    m_services.notifications.post(kClipSavedNotification);
}

}  // namespace quillo
