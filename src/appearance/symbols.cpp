// SPDX-License-Identifier: MIT
#include "appearance/symbols.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <cmath>

// A resource in a static library is linked only when somebody asks for it.
static void initializeSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace quillo {
namespace {

QByteArray symbolSource(const QString& name, const QColor& color) {
    initializeSymbols();
    QFile file(QStringLiteral(":/symbols/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return file.readAll().replace("currentColor", color.name().toLatin1());
}

QPixmap drawnSymbol(const QByteArray& source, int size, qreal ratio) {
    const int pixels = int(std::ceil(size * ratio));
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(source);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.end();
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

}  // namespace

QPixmap symbolPixmap(const QString& name, int size, const QColor& color, qreal ratio) {
    const QString key = QStringLiteral("symbol/%1/%2/%3/%4")
                            .arg(name, color.name(QColor::HexArgb))
                            .arg(size)
                            .arg(ratio);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) {
        return pixmap;
    }
    const QByteArray source = symbolSource(name, color);
    if (source.isEmpty()) {
        return {};
    }
    pixmap = drawnSymbol(source, size, ratio);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

}  // namespace quillo
