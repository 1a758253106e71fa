// SPDX-License-Identifier: MIT
#include "overlay/overlay_view.h"

#include <QAbstractButton>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "library/groups/chip_row.h"
#include "library/groups/popup.h"
#include "overlay/panel_geometry.h"
#include "overlay/search_field.h"

namespace quillo {

OverlayView::OverlayView(const OverlayClips& clips, CardPictures& pictures, const Clock& clock,
                         QWidget* parent)
    : QWidget(parent),
      m_bar(new OverlayBar),
      m_strip(new ClipStrip(clips, pictures, clock)),
      m_hints(new HintsLine) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_bar);
    column->addWidget(m_strip);
    column->addWidget(m_hints);
    m_bar->chips().setDragSource(m_strip);
    const auto showCounts = [this, &clips] { m_bar->setCounts(clips.total(), clips.typeCounts()); };
    connect(&clips, &OverlayClips::refreshed, this, showCounts);
    connect(&clips, &OverlayClips::counted, this, showCounts);
    showCounts();
}

void OverlayView::reset() {
    m_strip->reset();
}

void OverlayView::setLook(const PanelLook& look, TypeBadges::KindColor kindColor) {
    m_colors = look.palette();
    m_bar->setColors(m_colors, std::move(kindColor));
    m_strip->setLook(look);
    m_hints->setColors(m_colors);
    update();
}

PanelFocus OverlayView::focus() const {
    if (Popup::openIn(this) != nullptr) {
        return PanelFocus::Popup;
    }
    const QWidget* focused = window()->focusWidget();
    if (focused == &m_bar->search()) {
        return PanelFocus::SearchField;
    }
    return qobject_cast<const QAbstractButton*>(focused) != nullptr ? PanelFocus::BarControl
                                                                    : PanelFocus::Cards;
}

void OverlayView::focusBesideControl(int direction) {
    const QList<QWidget*> controls = m_bar->controls();
    const qsizetype at = controls.indexOf(window()->focusWidget());
    if (at < 0) {
        return;
    }
    const qsizetype next = (at + direction + controls.size()) % controls.size();
    controls.at(next)->setFocus(direction > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

// From the cards over the field, the chips and the buttons back to the cards. The chips come and
// go, so the order is not left to the one in which widgets were made.
QList<QWidget*> OverlayView::tabStops() const {
    QList<QWidget*> stops{m_strip, &m_bar->search()};
    stops += m_bar->controls();
    if (m_hints->undoButton()->isVisible()) {
        stops.append(m_hints->undoButton());
    }
    return stops;
}

bool OverlayView::focusNextPrevChild(bool next) {
    const QList<QWidget*> stops = tabStops();
    const qsizetype at = std::max<qsizetype>(0, stops.indexOf(window()->focusWidget()));
    const qsizetype to = (at + (next ? 1 : stops.size() - 1)) % stops.size();
    stops.at(to)->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void OverlayView::pressFocusedControl() {
    if (auto* button = qobject_cast<QAbstractButton*>(window()->focusWidget())) {
        button->click();
    }
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
}

}  // namespace quillo
