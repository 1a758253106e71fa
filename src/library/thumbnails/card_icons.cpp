// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_icons.h"

#include <QFileInfo>
#include <QIcon>
#include <QMimeDatabase>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kMostIcons = 120;
constexpr qreal kSourceRadius = 4;

QIcon iconNamed(const QString& name) {
    return name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
}

QPixmap rounded(const QPixmap& picture, int side, qreal scale) {
    QPixmap result((QSizeF(side, side) * scale).toSize());
    result.setDevicePixelRatio(scale);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath outline;
    outline.addRoundedRect(0, 0, side, side, kSourceRadius, kSourceRadius);
    painter.setClipPath(outline);
    const QSizeF size = QSizeF(picture.size()).scaled(side, side, Qt::KeepAspectRatio);
    painter.drawPixmap(
        QRectF((side - size.width()) / 2, (side - size.height()) / 2, size.width(), size.height()),
        picture, QRectF());
    return result;
}

QPixmap sourceIcon(Workspace& workspace, const QString& identifier, qreal scale) {
    const auto application = workspace.installedApplication(identifier);
    const QIcon icon = application && !application->iconName.isEmpty()
                           ? iconNamed(application->iconName)
                           : QIcon();
    const QSize size(CardIcons::kSourceSide, CardIcons::kSourceSide);
    const QPixmap picture = icon.isNull() ? QPixmap() : icon.pixmap(size, scale);
    return picture.isNull() ? QPixmap() : rounded(picture, CardIcons::kSourceSide, scale);
}

// By the name alone: the file itself may lie behind a slow network.
QPixmap fileIcon(const QString& fileName, FilterType filter, qreal scale) {
    QIcon icon;
    if (filter == FilterType::Folder) {
        icon = QIcon::fromTheme(u"folder"_s);
    } else {
        const QMimeType type =
            QMimeDatabase().mimeTypeForFile(fileName, QMimeDatabase::MatchExtension);
        icon = QIcon::fromTheme(type.iconName(), QIcon::fromTheme(type.genericIconName()));
    }
    const QSize size(CardIcons::kFileSide, CardIcons::kFileSide);
    return icon.isNull() ? QPixmap() : icon.pixmap(size, scale);
}

}  // namespace

CardIcons::CardIcons(Workspace& workspace, QObject* parent)
    : QObject(parent), m_workspace(workspace), m_icons(kMostIcons) {
    m_turn.setSingleShot(true);
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &CardIcons::makeNext);
}

QString CardIcons::sourceKey(const CardContent& card) {
    return card.sourceIdentifier.isEmpty() ? QString() : u"program "_s + card.sourceIdentifier;
}

QString CardIcons::fileKey(const CardContent& card) {
    if (card.filter == FilterType::Folder) {
        return u"folder"_s;
    }
    return u"file "_s + QFileInfo(card.title).suffix().toLower();
}

QPixmap CardIcons::source(const CardContent& card, qreal scale) {
    if (card.sourceIdentifier.isEmpty()) {
        return {};
    }
    return icon({sourceKey(card), scale, [this, identifier = card.sourceIdentifier, scale] {
                     return sourceIcon(m_workspace, identifier, scale);
                 }});
}

QPixmap CardIcons::file(const CardContent& card, qreal scale) {
    return icon({fileKey(card), scale, [name = card.title, filter = card.filter, scale] {
                     return fileIcon(name, filter, scale);
                 }});
}

QPixmap CardIcons::icon(const Wish& wish) {
    const Kept* kept = m_icons.object(wish.key);
    const QPixmap atHand = kept != nullptr ? kept->pixmap : QPixmap();
    if (kept == nullptr || kept->scale != wish.scale) {
        const bool isWished =
            std::ranges::any_of(m_wishes, [&](const Wish& other) { return other.key == wish.key; });
        if (!isWished) {
            m_wishes.enqueue(wish);
            m_turn.start();
        }
    }
    return atHand;
}

void CardIcons::makeNext() {
    if (m_wishes.isEmpty()) {
        return;
    }
    const Wish wish = m_wishes.dequeue();
    m_icons.insert(wish.key, new Kept{wish.find(), wish.scale});
    if (!m_wishes.isEmpty()) {
        m_turn.start();
    }
    Q_EMIT made(wish.key);
}

}  // namespace quillo
