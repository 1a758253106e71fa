// SPDX-License-Identifier: MIT
#include "app/settings/filter_list.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

#include "app/settings/filter_row.h"
#include "app/settings/following.h"
#include "app/settings/settings_look.h"
#include "app/settings/toggle_switch.h"
#include "appearance/clip_type_color_manager.h"

namespace quillo {
namespace {

constexpr int kPitch = FilterRow::kHeight + 1;  // A row and the line above the next.
constexpr int kRevealMargin = FilterRow::kHeight;
constexpr int kScrollEdge = 36;
constexpr int kScrollShare = 4;
constexpr int kScrollIntervalMs = 16;

}  // namespace

FilterList::FilterList(ClipTypeColorManager& manager, QWidget* parent)
    : QWidget(parent), m_manager(manager) {
    setAccessibleName(QStringLiteral("Type Filters"));
    for (const FilterType filter : allCases<FilterType>()) {
        auto* row = new FilterRow(filter, this);
        connect(&row->toggle(), &ToggleSwitch::toggledByPerson, &manager,
                [&manager, filter](bool isOn) { manager.setFilterVisible(filter, isOn); });
        m_rows.append(row);
    }
    setFixedHeight(int(m_rows.size()) * kPitch - 1);
    connect(&manager, &ClipTypeColorManager::filterOrderChanged, this, &FilterList::showOrder);
    connect(&manager, &ClipTypeColorManager::filterVisibilityChanged, this,
            &FilterList::showVisibility);
    showOrder();
    showVisibility();
}

void FilterList::showOrder() {
    m_pressed = nullptr;
    endDrag();
    const QList<FilterType>& order = m_manager.filterOrder();
    std::ranges::sort(m_rows, {},
                      [&order](const FilterRow* row) { return order.indexOf(row->filter()); });
    QWidget* before = this;
    for (FilterRow* row : std::as_const(m_rows)) {
        setTabOrder(before, &row->toggle());
        before = &row->toggle();
    }
    place();
}

void FilterList::showVisibility() {
    const FilterVisibility& visibility = m_manager.filterVisibility();
    for (FilterRow* row : std::as_const(m_rows)) {
        row->toggle().setChecked(visibility.value(row->filter(), true));
    }
}

void FilterList::place() {
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        FilterRow* row = m_rows.at(i);
        row->setPlace(i, m_rows.size());
        if (!m_isDragging || row != m_pressed) {
            row->setGeometry(0, int(i) * kPitch, width(), FilterRow::kHeight);
        }
    }
    update();
}

void FilterList::moveRow(qsizetype from, qsizetype to) {
    // The place named is that of the row that it comes to stand before.
    m_manager.moveFilter({int(from)}, int(to > from ? to + 1 : to));
}

qsizetype FilterList::focusedIndex() const {
    const auto at =
        std::ranges::find_if(m_rows, [](FilterRow* row) { return row->toggle().hasFocus(); });
    return at != m_rows.end() ? at - m_rows.begin() : -1;
}

bool FilterList::focusRow(qsizetype index) {
    if (index < 0 || index >= m_rows.size()) {
        return false;
    }
    m_rows.at(index)->toggle().setFocus(Qt::TabFocusReason);
    reveal(*m_rows.at(index));
    return true;
}

void FilterList::keyPressEvent(QKeyEvent* event) {
    if (m_isDragging) {
        if (event->key() == Qt::Key_Escape) {
            showOrder();
        }
        return;
    }
    const qsizetype from = focusedIndex();
    const bool isUp = event->key() == Qt::Key_Up;
    if (from < 0 || (!isUp && event->key() != Qt::Key_Down)) {
        QWidget::keyPressEvent(event);
        return;
    }
    const qsizetype to = isUp ? from - 1 : from + 1;
    if ((event->modifiers() & Qt::AltModifier) == 0) {
        event->setAccepted(focusRow(to));
    } else if (to >= 0 && to < m_rows.size()) {
        moveRow(from, to);
        reveal(*m_rows.at(to));
    }
}

QScrollArea* FilterList::enclosingPage() const {
    for (QWidget* above = parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (auto* page = qobject_cast<QScrollArea*>(above)) {
            return page;
        }
    }
    return nullptr;
}

void FilterList::reveal(FilterRow& row) {
    if (QScrollArea* page = enclosingPage()) {
        page->ensureWidgetVisible(&row, 0, kRevealMargin);
    }
}

void FilterList::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_pressed = m_rows.value(event->position().toPoint().y() / kPitch);
    m_grabbed = m_pressed != nullptr ? event->position().toPoint() - m_pressed->pos() : QPoint();
}

void FilterList::mouseMoveEvent(QMouseEvent* event) {
    if (m_pressed == nullptr) {
        return;
    }
    m_pointer = event->globalPosition().toPoint();
    const int way = event->position().toPoint().y() - m_pressed->y() - m_grabbed.y();
    if (!m_isDragging && std::abs(way) >= QApplication::startDragDistance()) {
        m_isDragging = true;
        m_pressed->setLifted(true);
        m_pressed->raise();
        grabKeyboard();
        m_scrolling.start(kScrollIntervalMs, this);
    }
    if (m_isDragging) {
        dragTo(event->position().toPoint());
    }
}

// The others make way at once; the stored order stays until the row is let go.
void FilterList::dragTo(const QPoint& pointer) {
    const int top = std::clamp(pointer.y() - m_grabbed.y(), 0, height() - FilterRow::kHeight);
    const qsizetype to = (top + kPitch / 2) / kPitch;
    const qsizetype from = m_rows.indexOf(m_pressed.data());
    if (to != from) {
        m_rows.move(from, to);
        place();
    }
    m_pressed->move(0, top);
}

void FilterList::timerEvent(QTimerEvent* event) {
    QScrollArea* page = enclosingPage();
    if (event->timerId() != m_scrolling.timerId() || page == nullptr) {
        return;
    }
    const int y = page->viewport()->mapFromGlobal(m_pointer).y();
    const int below = y - (page->viewport()->height() - kScrollEdge);
    const int beyond = y < kScrollEdge ? y - kScrollEdge : std::max(0, below);
    if (beyond != 0) {
        QScrollBar* bar = page->verticalScrollBar();
        bar->setValue(bar->value() + beyond / kScrollShare);
        dragTo(mapFromGlobal(m_pointer));
    }
}

void FilterList::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || m_pressed == nullptr) {
        return;
    }
    const qsizetype from = m_manager.filterOrder().indexOf(m_pressed->filter());
    const qsizetype to = m_rows.indexOf(m_pressed.data());
    const bool wasDragging = m_isDragging;
    endDrag();
    m_pressed = nullptr;
    if (wasDragging && from != to) {
        moveRow(from, to);
    }
}

void FilterList::endDrag() {
    m_scrolling.stop();
    releaseKeyboard();
    m_isDragging = false;
    for (FilterRow* row : std::as_const(m_rows)) {
        row->setLifted(false);
    }
    place();
}

void FilterList::hideEvent(QHideEvent* event) {
    showOrder();
    QWidget::hideEvent(event);
}

void FilterList::resizeEvent(QResizeEvent* /*event*/) {
    place();
}

void FilterList::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(lookOf(*this).sectionBorder);
    for (qsizetype i = 1; i < m_rows.size(); ++i) {
        const int y = int(i) * kPitch - 1;
        painter.drawLine(1, y, width() - 2, y);
    }
}

}  // namespace quillo
