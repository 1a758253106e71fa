// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_pictures.h"

#include <algorithm>
#include <array>

#include "library/thumbnails/card_icons.h"
#include "library/thumbnails/card_metrics.h"
#include "library/thumbnails/picture_worker.h"

namespace quillo {
namespace {

// A picture takes 184 KiB at scale 1 and 735 KiB at scale 2. The icons that are kept beside these
// take another 3 MiB at most, at scale 1.
constexpr qsizetype kCacheKib = 18 * 1024;
constexpr qsizetype kDocumentKib = 8;

bool hasPicture(CardPreview preview) {
    return preview != CardPreview::Text && preview != CardPreview::Swatch;
}

bool changesPicture(const ChangeSet::Update& update) {
    using enum ClipAttribute;
    constexpr std::array kPictures = {ImageData, LinkImageData, Attributed, UrlString, Type};
    return std::ranges::any_of(kPictures, [&](ClipAttribute attribute) {
        return update.attributes.contains(std::to_underlying(attribute));
    });
}

}  // namespace

struct CardPictures::Entry {
    QPixmap thumbnail;
    QSize imageSize;
    std::shared_ptr<const StyledText> richText;
    QSize pixels;  ///< Of the place that it was made for.
    bool isOfFile = false;
    bool isStale = false;  ///< Serves until it is made anew.
};

CardPictures::CardPictures(const Services& services, QObject* parent)
    : QObject(parent),
      m_files(services.files),
      m_entries(kCacheKib),
      m_icons(std::make_unique<CardIcons>(services.workspace)),
      m_worker(std::make_unique<PictureWorker>(
          PictureMaker{services.codec, services.documents, services.loader})) {
    connect(m_worker.get(), &PictureWorker::made, this, &CardPictures::receive);
    connect(m_icons.get(), &CardIcons::made, this, &CardPictures::iconMade);
}

CardPictures::~CardPictures() {
    for (const ThumbnailService::Ticket ticket : std::as_const(m_fileRequests)) {
        m_files.cancel(ticket);
    }
}

CardPicture CardPictures::picture(const CardContent& card, QSize cardSize, qreal scale) {
    CardPicture picture;
    if (hasPicture(card.preview)) {
        const QSize area = CardMetrics::pictureArea(QRect(QPoint(), cardSize), card.preview).size();
        const Place place{(QSizeF(area) * scale).toSize(), scale};
        const Entry* entry = m_entries.object(card.clip);
        if (entry == nullptr || entry->isStale || entry->pixels != place.pixels) {
            request(card, place);
        }
        if (entry != nullptr) {
            picture.thumbnail = entry->thumbnail;
            picture.imageSize = entry->imageSize;
            picture.richText = entry->richText;
        }
    }
    addIcons(card, scale, picture);
    return picture;
}

void CardPictures::addIcons(const CardContent& card, qreal scale, CardPicture& picture) {
    const auto waitFor = [&](const QString& key) {
        if (!m_waitingForIcon.contains(key, card.clip)) {
            m_waitingForIcon.insert(key, card.clip);
        }
    };
    picture.sourceIcon = m_icons->source(card, scale);
    if (picture.sourceIcon.isNull() && !card.sourceIdentifier.isEmpty()) {
        waitFor(CardIcons::sourceKey(card));
    }
    if (card.preview == CardPreview::File && picture.thumbnail.isNull()) {
        picture.fileIcon = m_icons->file(card, scale);
        if (picture.fileIcon.isNull()) {
            waitFor(CardIcons::fileKey(card));
        }
    }
}

void CardPictures::iconMade(const QString& key) {
    const QList<QUuid> waiting = m_waitingForIcon.values(key);
    m_waitingForIcon.remove(key);
    for (const QUuid& clip : waiting) {
        Q_EMIT ready(clip);
    }
}

void CardPictures::request(const CardContent& card, const Place& place) {
    if (card.preview == CardPreview::File) {
        requestFile(card, place);
        return;
    }
    m_worker->request({card.clip, card.preview, card.kind, place.pixels, place.scale, {}, 0});
}

void CardPictures::requestFile(const CardContent& card, const Place& place) {
    if (m_fileRequests.contains(card.clip) || m_worker->isWanted(card.clip)) {
        return;
    }
    const QUrl url(card.address);
    if (!url.isLocalFile()) {
        return;
    }
    const int side = std::max(place.pixels.width(), place.pixels.height());
    m_fileRequests.insert(card.clip, m_files.request(url, side, [=, this](const QImage& image) {
        receiveFile(card, place, image);
    }));
}

void CardPictures::receiveFile(const CardContent& card, const Place& place, const QImage& image) {
    m_fileRequests.remove(card.clip);
    PictureRequest request{card.clip, card.preview, card.kind, place.pixels, place.scale, image, 0};
    if (image.isNull()) {
        receive({std::move(request), {}, {}, {}});
    } else {
        m_worker->request(std::move(request));
    }
}

void CardPictures::receive(const PictureResult& result) {
    const bool isOfFile = result.request.preview == CardPreview::File;
    const qsizetype cost = (result.richText ? kDocumentKib : 1) + result.image.sizeInBytes() / 1024;
    m_entries.insert(result.request.clip,
                     new Entry{QPixmap::fromImage(result.image), result.imageSize, result.richText,
                               result.request.pixels, isOfFile, false},
                     cost);
    Q_EMIT ready(result.request.clip);
}

void CardPictures::setVisible(const QList<QUuid>& clips) {
    const QSet<QUuid> now(clips.begin(), clips.end());
    for (const QUuid& clip : clips) {
        Entry* entry = m_visible.contains(clip) ? nullptr : m_entries.object(clip);
        if (entry != nullptr && entry->isOfFile) {
            entry->isStale = true;
        }
    }
    m_fileRequests.removeIf([&](auto request) {
        if (now.contains(request.key())) {
            return false;
        }
        m_files.cancel(request.value());
        return true;
    });
    m_waitingForIcon.removeIf([&](auto waiting) { return !now.contains(waiting.value()); });
    m_worker->setOrder(clips);
    m_visible = now;
}

void CardPictures::takeChanges(const ChangeSet& changes) {
    if (changes.everything) {
        forgetAll();
        return;
    }
    for (const ObjectId& id : changes.deleted) {
        cancel(id.key);
        m_entries.remove(id.key);
        m_visible.remove(id.key);
    }
    for (const ChangeSet::Update& update : changes.updated) {
        if (update.id.entity == Entity::Clip && changesPicture(update)) {
            lookAgain(update.id.key);
        }
    }
}

// What is under way was asked for before the change.
void CardPictures::lookAgain(const QUuid& clip) {
    cancel(clip);
    if (Entry* entry = m_entries.object(clip)) {
        entry->isStale = true;
    }
    Q_EMIT ready(clip);
}

void CardPictures::cancel(const QUuid& clip) {
    m_worker->cancel(clip);
    if (const ThumbnailService::Ticket ticket = m_fileRequests.take(clip)) {
        m_files.cancel(ticket);
    }
}

void CardPictures::forgetAll() {
    m_worker->cancelAll();
    for (const ThumbnailService::Ticket ticket : std::as_const(m_fileRequests)) {
        m_files.cancel(ticket);
    }
    m_fileRequests.clear();
    m_waitingForIcon.clear();
    m_entries.clear();
}

}  // namespace quillo
