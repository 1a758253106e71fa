// SPDX-License-Identifier: MIT
#include "app/status/status_bar_icon.h"

#include <QPainter>
#include <algorithm>

#include "appearance/symbols.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kSizes[] = {16, 22, 24, 32, 44, 48, 64};
constexpr int kMenuSize = 32;
constexpr double kPanelPoints = 22;
// The symbols leave two of their 24 units free on each side.
constexpr double kFreeShare = 2.0 / 24;
constexpr double kLargestScale = 1 / (1 - 2 * kFreeShare);
constexpr QColor kWarning(0xff, 0x9f, 0x0a);

struct Entry {
    StatusBarIcon icon;
    QString raw;
    QString label;
};

const QList<Entry>& entries() {
    static const QList<Entry> kEntries = {
        {StatusBarIcon::Quillo, u"MenuBarIcon"_s, u"Quillo"_s},
        {StatusBarIcon::Clipboard, u"doc.on.clipboard"_s, u"Clipboard"_s},
        {StatusBarIcon::ListClipboard, u"list.clipboard"_s, u"Clipboard List"_s},
        {StatusBarIcon::Paperclip, u"paperclip"_s, u"Paperclip"_s},
        {StatusBarIcon::Squares, u"square.on.square"_s, u"Squares"_s},
        {StatusBarIcon::Docs, u"doc.on.doc"_s, u"Documents"_s},
        {StatusBarIcon::Stack, u"rectangle.stack"_s, u"Stack"_s},
        {StatusBarIcon::Scissors, u"scissors"_s, u"Scissors"_s},
        {StatusBarIcon::Tray, u"tray.full"_s, u"Tray"_s},
    };
    return kEntries;
}

QPixmap drawn(const StatusPicture& picture, int size) {
    const QPixmap symbol = symbolPixmap(picture.symbol, size, picture.ink, 1);
    if (symbol.isNull()) {
        return {};
    }
    const BounceFrame& frame = picture.frame;
    const double scaleX = std::min(frame.scaleX, kLargestScale);
    const double scaleY = std::min(frame.scaleY, kLargestScale);
    // As far as it can go without being cut off.
    const double room = size * (0.5 - scaleY * (0.5 - kFreeShare));
    const double drop = std::clamp(frame.dropPoints * size / kPanelPoints, -room, room);
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.save();
    painter.translate(size / 2.0, size / 2.0 + drop);
    painter.scale(scaleX, scaleY);
    painter.drawPixmap(QPointF(-size / 2.0, -size / 2.0), symbol);
    painter.restore();
    if (picture.hasWarning) {
        const double radius = size * 0.23;
        painter.setPen(QPen(Qt::white, size / 22.0));
        painter.setBrush(kWarning);
        painter.drawEllipse(QPointF(size - radius - 0.5, size - radius - 0.5), radius, radius);
    }
    return pixmap;
}

}  // namespace

template <>
std::span<const StatusBarIcon> allCases<StatusBarIcon>() {
    using enum StatusBarIcon;
    static constexpr StatusBarIcon kAll[] = {Quillo, Clipboard, ListClipboard, Paperclip, Squares,
                                             Docs,   Stack,     Scissors,      Tray};
    return kAll;
}

QString rawValue(StatusBarIcon icon) {
    return entries().at(int(icon)).raw;
}

std::optional<StatusBarIcon> statusBarIconFromRaw(QStringView raw) {
    const auto found = std::ranges::find(entries(), raw, &Entry::raw);
    return found == entries().cend() ? std::nullopt : std::optional(found->icon);
}

QString label(StatusBarIcon icon) {
    return entries().at(int(icon)).label;
}

QIcon image(StatusBarIcon icon, const QColor& ink) {
    StatusPicture picture{.symbol = rawValue(icon), .ink = ink, .frame = {}};
    QIcon drawing = image(picture);
    // On the ground of a menu's selected line.
    picture.ink = Qt::white;
    drawing.addPixmap(drawn(picture, kMenuSize), QIcon::Active);
    return drawing;
}

QIcon image(const StatusPicture& picture) {
    QIcon icon;
    for (const int size : kSizes) {
        icon.addPixmap(drawn(picture, size));
    }
    return icon;
}

QColor statusInk(std::optional<ColorScheme> desktop) {
    return desktop == ColorScheme::Dark ? QColor(0xf5, 0xf5, 0xf7) : QColor(0x7f, 0x7f, 0x85);
}

}  // namespace quillo
