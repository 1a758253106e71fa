// SPDX-License-Identifier: MIT
#pragma once

#include <QCache>
#include <QHash>
#include <QList>
#include <QMultiHash>
#include <QObject>
#include <QSet>
#include <QSize>
#include <QUuid>
#include <memory>

#include "library/thumbnails/card_content.h"
#include "library/thumbnails/card_picture.h"
#include "library/thumbnails/clip_bytes.h"
#include "model/store/object_context.h"
#include "platform/image_codec.h"
#include "platform/rich_text.h"
#include "platform/thumbnail_service.h"
#include "platform/workspace.h"

namespace quillo {

class CardIcons;
class PictureWorker;
struct PictureResult;

/// Everything on cards that takes time to get: images, images of links, thumbnails of files, rich
/// documents, icons. Gives what is at hand, gets the rest without blocking, and keeps it within a
/// bound of about 24 MB. Main thread.
class CardPictures final : public QObject {
    Q_OBJECT

public:
    /// All of them must outlive the pictures; destruction waits for a load that is running.
    struct Services {
        const ImageCodec& codec;
        const RichTextReader& documents;
        ThumbnailService& files;
        Workspace& workspace;
        ClipBytesLoader loader;
    };

    explicit CardPictures(const Services& services, QObject* parent = nullptr);
    ~CardPictures() override;

    /// What is at hand for a card of that logical size on a screen of that scale; what is missing
    /// is asked for, and ready() tells of it. A picture that was made for another scale serves
    /// until the right one is there. Cheap enough for every painting.
    [[nodiscard]] CardPicture picture(const CardContent& card, QSize cardSize, qreal scale);

    /// The clips whose cards can be seen, the most important first; none when the window is hidden.
    /// Their pictures are got in this order, those of all others are no longer waited for. A file
    /// that comes into view is looked at anew.
    void setVisible(const QList<QUuid>& clips);

    /// Takes over what a save changed: what is gone is forgotten, a new picture replaces the old
    /// one once it is there. Connect it to the view context's changed().
    void takeChanges(const ChangeSet& changes);

    /// Drops everything, as when the history was deleted.
    void forgetAll();

Q_SIGNALS:
    /// There is something new for the clip's card.
    void ready(const QUuid& clip);

private:
    struct Entry;
    /// Where a card's picture goes, and at how many device pixels to a logical one.
    struct Place {
        QSize pixels;
        qreal scale = 1;
    };

    void request(const CardContent& card, const Place& place);
    void requestFile(const CardContent& card, const Place& place);
    void receiveFile(const CardContent& card, const Place& place, const QImage& image);
    void receive(const PictureResult& result);
    void iconMade(const QString& key);
    void addIcons(const CardContent& card, qreal scale, CardPicture& picture);
    void cancel(const QUuid& clip);
    void lookAgain(const QUuid& clip);

    ThumbnailService& m_files;
    QCache<QUuid, Entry> m_entries;  ///< Cost in KiB.
    QSet<QUuid> m_visible;
    QHash<QUuid, ThumbnailService::Ticket> m_fileRequests;
    QMultiHash<QString, QUuid> m_waitingForIcon;
    std::unique_ptr<CardIcons> m_icons;
    std::unique_ptr<PictureWorker> m_worker;
};

}  // namespace quillo
