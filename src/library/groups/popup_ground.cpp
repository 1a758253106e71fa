// SPDX-License-Identifier: MIT
// Where a popup lies, how it scrolls and how it is drawn.
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QScrollBar>
#include <cmath>

#include "appearance/contrast.h"
#include "library/groups/popup.h"

namespace quillo {
namespace {

constexpr int kBoundsInset = 8;
/// Between the ground's upper and lower edge and the content.
constexpr int kPadding = 6;
constexpr int kShadowDrop = 5;
constexpr int kScrollBarWidth = 8;

void paintShadow(QPainter& painter, const QRectF& ground, double strength) {
    QPainterPath outside;
    outside.addRect(ground.adjusted(-100, -100, 100, 100));
    QPainterPath inside;
    inside.addRoundedRect(ground, Popup::kRadius, Popup::kRadius);
    painter.save();
    painter.setClipPath(outside.subtracted(inside));
    painter.setPen(Qt::NoPen);
    constexpr int kReach = Popup::kShadow - kShadowDrop;
    for (int i = kReach; i > 0; --i) {
        // The layers add up: dense at the edge, nothing at the end.
        const double share = double(kReach - i + 1) / kReach;
        painter.setBrush(
            QColor(0, 0, 0, int(std::lround(255 * strength * 3 * share * share / kReach))));
        painter.drawRoundedRect(ground.adjusted(-i, -i + kShadowDrop, i, i + kShadowDrop),
                                Popup::kRadius + i, Popup::kRadius + i);
    }
    painter.restore();
}

}  // namespace

void Popup::styleScrollBar() {
    QColor handle = m_look.secondaryText;
    handle.setAlpha(120);
    m_scroll->verticalScrollBar()->setStyleSheet(
        QStringLiteral("QScrollBar { background: transparent; width: %1px; }"
                       "QScrollBar::handle { background: %2; border-radius: 2px; margin: 0 2px; "
                       "min-height: 24px; }"
                       "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
                       "QScrollBar::add-page, QScrollBar::sub-page { background: none; }")
            .arg(kScrollBarWidth)
            .arg(handle.name(QColor::HexArgb)));
}

QSize Popup::wantedSize() const {
    const QSize content = m_content->sizeHint()
                              .expandedTo(m_content->minimumSize())
                              .boundedTo(m_content->maximumSize());
    return content + QSize(2, 2 * kPadding);
}

void Popup::place() {
    const QRect bounds =
        panel()->rect().adjusted(kBoundsInset, kBoundsInset, -kBoundsInset, -kBoundsInset);
    PopupRequest request{m_anchor, wantedSize(), bounds, m_side, m_alignment, m_gap};
    PopupPlace placed = placePopup(request);
    if (placed.isCut) {
        request.wanted.rwidth() += kScrollBarWidth;
        placed = placePopup(request);
    }
    m_scroll->setVerticalScrollBarPolicy(placed.isCut ? Qt::ScrollBarAlwaysOn
                                                      : Qt::ScrollBarAlwaysOff);
    setGeometry(placed.ground.marginsAdded(QMargins(kShadow, kShadow, kShadow, kShadow)));
    m_scroll->setGeometry(
        QRect(QPoint(kShadow, kShadow), placed.ground.size()).adjusted(1, kPadding, -1, -kPadding));
    update();
}

void Popup::showWidget(QWidget& widget) {
    m_scroll->ensureWidgetVisible(&widget, 0, 4);
}

void Popup::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area(QPoint(kShadow, kShadow), ground().size());
    const bool isDark = luminance(m_look.ground) < luminance(m_look.primaryText);
    paintShadow(painter, area, isDark ? 0.4 : 0.2);
    painter.setPen(QPen(m_look.border, 1));
    painter.setBrush(m_look.ground);
    painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

}  // namespace quillo
