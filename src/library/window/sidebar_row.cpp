// SPDX-License-Identifier: MIT
#include "library/window/sidebar_row.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLocale>
#include <QPainter>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr qreal kRadius = 6;
constexpr int kSymbol = 15;
constexpr int kLeft = 8;
constexpr int kTitleLeft = 30;
constexpr int kRight = 8;

QFont countFont(const QFont& font) {
    return sizedFont(font, 12, QFont::Normal);
}

}  // namespace

SidebarRow::SidebarRow(const SidebarRowContent& content, QWidget* parent)
    : PanelButton(QAccessible::ListItem, parent), m_look(libraryLook(ColorScheme::Light)) {
    setCheckable(true);
    setFont(sizedFont(font(), 13, QFont::Medium));
    setFixedHeight(kHeight);
    setAttribute(Qt::WA_Hover);
    setContent(content);
}

void SidebarRow::setContent(const SidebarRowContent& content) {
    m_content = content;
    setText(content.title);
    setAccessibleName(content.title);
    setAccessibleDescription(content.count == 1 ? QStringLiteral("1 clip")
                                                : QStringLiteral("%1 clips").arg(content.count));
    update();
}

void SidebarRow::setLook(const LibraryLook& look) {
    m_look = look;
    update();
}

void SidebarRow::setDropTarget(bool isDropTarget) {
    m_isDropTarget = isDropTarget;
    update();
}

QSize SidebarRow::sizeHint() const {
    return {120, kHeight};
}

QRect SidebarRow::titleArea() const {
    const int count =
        QFontMetrics(countFont(font())).horizontalAdvance(QLocale().toString(m_content.count));
    return rect().adjusted(kTitleLeft, 0, -kRight - count - 8, 0);
}

QString SidebarRow::shownTitle(int width) const {
    return fontMetrics().elidedText(m_content.title.simplified(), Qt::ElideRight, width);
}

// The whole title where it is cut.
bool SidebarRow::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const QString title = m_content.title.simplified();
        setToolTip(shownTitle(titleArea().width()) == title ? QString() : title);
    }
    return PanelButton::event(event);
}

void SidebarRow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = isChecked()    ? m_look.accent
                    : underMouse() ? mixed(m_look.sidebar, m_look.primaryText, 0.07)
                                   : m_look.sidebar;
    if (m_isDropTarget) {
        ground = mixed(m_look.sidebar, m_look.accent, 0.45);
    }
    fillRounded(painter, rect(), kRadius, ground);
    const QColor ink = isChecked() ? m_look.onAccent : readableText(m_look.primaryText, {ground});
    const QColor symbol = isChecked() ? ink : m_content.symbolColor.value_or(ink);
    painter.drawPixmap(kLeft, (height() - kSymbol) / 2,
                       symbolPixmap(m_content.symbol, kSymbol, symbol, devicePixelRatioF()));
    painter.setPen(ink);
    painter.drawText(titleArea(), Qt::AlignVCenter, shownTitle(titleArea().width()));
    painter.setFont(countFont(font()));
    painter.setPen(isChecked() ? ink : readableText(m_look.secondaryText, {ground}));
    painter.drawText(rect().adjusted(0, 0, -kRight, 0), Qt::AlignVCenter | Qt::AlignRight,
                     QLocale().toString(m_content.count));
    if (hasFocus()) {
        paintFocusRing(painter, isChecked() ? rect().adjusted(2, 2, -2, -2) : rect(),
                       kRadius - (isChecked() ? 2 : 0),
                       isChecked() ? m_look.onAccent : m_look.accent);
    }
}

void SidebarRow::mousePressEvent(QMouseEvent* event) {
    m_pressPosition = event->position().toPoint();
    m_isDragged = false;
    PanelButton::mousePressEvent(event);
}

void SidebarRow::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    const bool isFar =
        (position - m_pressPosition).manhattanLength() >= QApplication::startDragDistance();
    m_isDragged = m_isDragged || (event->buttons().testFlag(Qt::LeftButton) && isFar);
    if (m_isDragged) {
        setDown(false);
        Q_EMIT dragged(position);
    } else {
        PanelButton::mouseMoveEvent(event);
    }
}

void SidebarRow::mouseReleaseEvent(QMouseEvent* event) {
    if (m_isDragged) {
        m_isDragged = false;
        Q_EMIT dropped(event->position().toPoint());
    } else {
        PanelButton::mouseReleaseEvent(event);
    }
}

void SidebarRow::contextMenuEvent(QContextMenuEvent* event) {
    Q_EMIT menuRequested(
        event->reason() == QContextMenuEvent::Keyboard ? rect() : QRect(event->pos(), QSize(0, 0)));
}

}  // namespace quillo
