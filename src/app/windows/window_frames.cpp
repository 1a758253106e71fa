// SPDX-License-Identifier: MIT
#include "app/windows/window_frames.h"

#include <QStringList>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QString keyOf(const QString& autosaveName) {
    return u"windowFrame_"_s + autosaveName;
}

// How much of the frame the area shows, and, for one that shows nothing, how near it is.
qint64 nearness(const QRect& frame, const QRect& area) {
    const QRect shared = frame.intersected(area);
    if (!shared.isEmpty()) {
        return qint64(shared.width()) * shared.height();
    }
    return -qint64((frame.center() - area.center()).manhattanLength());
}

}  // namespace

std::optional<QRect> WindowFrames::stored(const QString& autosaveName) const {
    const QStringList parts =
        m_defaults.string(keyOf(autosaveName)).value_or(QString()).split(u' ');
    std::array<int, 4> numbers{};
    bool areNumbers = parts.size() == qsizetype(numbers.size());
    for (size_t i = 0; areNumbers && i < numbers.size(); ++i) {
        numbers[i] = parts.at(qsizetype(i)).toInt(&areNumbers);
        areNumbers = areNumbers && std::abs(qint64(numbers[i])) <= kLargestFrameSide;
    }
    const QRect frame(numbers[0], numbers[1], numbers[2], numbers[3]);
    return areNumbers && !frame.isEmpty() ? std::optional(frame) : std::nullopt;
}

void WindowFrames::store(const QString& autosaveName, const QRect& frame) {
    m_defaults.setObject(
        keyOf(autosaveName),
        u"%1 %2 %3 %4"_s.arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height()));
}

QRect visibleFrame(const QRect& frame, const QSize& least, const QList<QRect>& screens) {
    const QRect area = *std::ranges::max_element(
        screens, {}, [&](const QRect& screen) { return nearness(frame, screen); });
    const QSize size = frame.size().boundedTo(area.size()).expandedTo(least);
    const auto within = [](int value, int first, int last) {
        return std::max(first, std::min(value, last));
    };
    return {QPoint(within(frame.left(), area.left(), area.right() + 1 - size.width()),
                   within(frame.top(), area.top(), area.bottom() + 1 - size.height())),
            size};
}

QRect centredFrame(const QSize& size, const QRect& area) {
    return {area.center() - QPoint(size.width() - 1, size.height() - 1) / 2, size};
}

}  // namespace quillo
