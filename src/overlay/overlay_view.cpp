// SPDX-License-Identifier: MIT
#include "overlay/overlay_view.h"

#include <QPainter>
#include <QVBoxLayout>
#include <array>
#include <utility>

#include "overlay/panel_geometry.h"

namespace quillo {
namespace {

constexpr int kHintsHeight = 24;
constexpr int kGapBetweenHints = 18;
constexpr int kGapWithinHint = 4;

using Hint = std::pair<const char*, const char*>;
constexpr std::array<Hint, 3> kHints = {Hint{"arrows", "Navigate"}, Hint{"return", "Paste"},
                                        Hint{"esc", "Close"}};

}  // namespace

OverlayView::OverlayView(const OverlayClips& clips, ImageThumbnails& thumbnails, const Clock& clock,
                         QWidget* parent)
    : QWidget(parent), m_bar(new OverlayBar), m_strip(new ClipStrip(clips, thumbnails, clock)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, kHintsHeight);
    column->setSpacing(0);
    column->addWidget(m_bar);
    column->addWidget(m_strip);
    for (const auto changed : {&OverlayClips::refreshed, &OverlayClips::counted}) {
        connect(&clips, changed, this, [this, &clips] { m_bar->setTotal(clips.total()); });
    }
    m_bar->setTotal(clips.total());
}

void OverlayView::reset() {
    m_strip->reset();
}

void OverlayView::setLook(const PanelLook& look) {
    m_colors = look.palette();
    m_bar->setColors(m_colors);
    m_strip->setLook(look);
    update();
}

void OverlayView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!window()->testAttribute(Qt::WA_TranslucentBackground)) {
        // The window's shape cuts the corners; nothing shines through beside the round line.
        painter.fillRect(rect(), m_colors.panelBackground);
    }
    painter.setPen(QPen(m_colors.panelBorder, 1));
    painter.setBrush(m_colors.panelBackground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kPanelCornerRadius,
                            kPanelCornerRadius);
    paintHints(painter);
}

void OverlayView::paintHints(QPainter& painter) const {
    QFont keyFont = font();
    keyFont.setPixelSize(11);
    keyFont.setWeight(QFont::Medium);
    QFont actionFont = keyFont;
    actionFont.setWeight(QFont::Normal);
    const QFontMetrics keyMetrics(keyFont);
    const QFontMetrics actionMetrics(actionFont);
    int total = kGapBetweenHints * int(kHints.size() - 1);
    for (const auto& [key, action] : kHints) {
        total += keyMetrics.horizontalAdvance(QLatin1StringView(key)) + kGapWithinHint +
                 actionMetrics.horizontalAdvance(QLatin1StringView(action));
    }
    int x = (width() - total) / 2;
    const auto draw = [&](const char* text, const QFont& font, const QColor& color) {
        const QString word = QString::fromLatin1(text);
        painter.setFont(font);
        painter.setPen(color);
        const QRect area(x, height() - kHintsHeight, width(), kHintsHeight);
        painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, word);
        x += QFontMetrics(font).horizontalAdvance(word);
    };
    for (const auto& [key, action] : kHints) {
        draw(key, keyFont, m_colors.primaryText);
        x += kGapWithinHint;
        draw(action, actionFont, m_colors.secondaryText);
        x += kGapBetweenHints;
    }
}

}  // namespace quillo
