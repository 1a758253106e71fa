// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <functional>
#include <optional>

#include "base/clock.h"
#include "model/clip.h"
#include "model/persistence_controller.h"
#include "platform/notification_center.h"
#include "platform/rich_text.h"
#include "platform/user_defaults.h"

namespace quillo {

class LinkPreviewFetcher;

/// What a clip saver needs; everything must outlive it.
struct ClipSaverServices {
    PersistenceController& persistence;
    const UserDefaults& defaults;
    NotificationCenter& notifications;
    const RichTextReader& richText;
    const Clock& clock;
    /// Told of every new link unless the person has turned "fetchLinkPreviews" off.
    LinkPreviewFetcher* linkPreviews = nullptr;
};

/// Turns one captured representation into a stored clip: a digest of the content finds a repeated
/// copy, which only moves its clip to the front; new content is stored, then the history limit
/// is enforced and "clipSaved" is posted on the main thread.
/// Called from the capture worker; each call returns at once, the work runs on the store's thread
/// in the order of the calls. A clip bears the moment of its call, and a store that another process
/// holds locked is waited for; any other failure drops the one capture with a line in the log.
/// source is the identifier of the program in front, or none.
class ClipSaver final {
public:
    explicit ClipSaver(ClipSaverServices services);

    void saveImageClip(QByteArray image, std::optional<QString> source,
                       std::optional<QString> fileName);
    /// Only the first file is stored. The list must not be empty.
    void saveFileClip(const QList<QUrl>& urls, std::optional<QString> source);
    void saveRtfClip(QByteArray document, std::optional<QString> source);
    void saveHtmlClip(QByteArray document, std::optional<QString> source);
    void saveUrlClip(QString text, std::optional<QString> source);
    /// False when the text is sensitive and was dropped.
    [[nodiscard]] bool saveTextClip(QString text, std::optional<QString> source);

private:
    struct Kind;
    struct Content {
        QByteArray hashInput;
        std::function<void(Clip&)> fill;
    };
    struct Capture;

    void store(const Kind& kind, std::optional<QString> source, qint64 sizeBytes,
               std::move_only_function<Content()> makeContent);
    [[nodiscard]] Result<void> storeNow(ObjectContext& context, const Capture& capture);
    void followUp(ObjectContext& context, const Kind& kind);
    void refreshViewContext();
    void askForPreview(const QUuid& link);

    ClipSaverServices m_services;
};

}  // namespace quillo
