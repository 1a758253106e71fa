// SPDX-License-Identifier: MIT
#include "library/groups/chip_row.h"

#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>

#include "appearance/clip_type_color_manager.h"

namespace quillo {
namespace {

constexpr int kDividerHeight = 16;
/// Kept free beside a chip that is scrolled into view, so that it does not stand in the fade.
constexpr int kRevealMargin = Chip::kFadeWidth + 4;
/// A detent of a wheel is 120 and moves by half as many pixels.
constexpr int kWheelShare = 2;

}  // namespace

ChipRow::ChipRow(QWidget* parent) : QWidget(parent) {
    setFixedHeight(kHeight);
    setAcceptDrops(true);
    setAccessibleName(QStringLiteral("Filters and groups"));
    m_dragScroll.setInterval(16);
    connect(&m_dragScroll, &QTimer::timeout, this,
            [this] { scrollTo(m_offset + m_dragScrollStep); });
    rebuild();
}

void ChipRow::setFilters(const QList<FilterItem>& filters) {
    m_filters = filters;
    rebuild();
}

void ChipRow::setGroups(const QList<GroupItem>& groups) {
    if (m_groups == groups) {
        return;
    }
    m_groups = groups;
    rebuild();
    if (m_group.has_value() && groupChip(*m_group) == nullptr) {
        setSelectedGroup(std::nullopt);
        Q_EMIT groupChosen(std::nullopt);
    }
}

void ChipRow::setGroupsShown(bool areShown) {
    m_areGroupsShown = areShown;
    rebuild();
}

void ChipRow::setColors(const Palette& colors) {
    m_colors = colors;
    for (Chip* chip : std::as_const(m_chips)) {
        chip->setColors(colors);
    }
    // A group without a colour shows the accent.
    rebuild();
}

void ChipRow::followFilters(const ClipTypeColorManager& manager) {
    const auto take = [this, &manager] {
        QList<FilterItem> items;
        const auto filters = manager.visibleFilters();
        for (const FilterType filter : filters) {
            const bool isChosen = manager.filterBadgeColors().contains(filter);
            items.append(
                {filter, isChosen ? std::optional(manager.badgeColor(filter)) : std::nullopt});
        }
        setFilters(items);
    };
    for (const auto changed :
         {&ClipTypeColorManager::filterOrderChanged, &ClipTypeColorManager::filterVisibilityChanged,
          &ClipTypeColorManager::filterBadgeColorsChanged}) {
        connect(&manager, changed, this, take);
    }
    take();
}

void ChipRow::followGroups(const GroupList& groups) {
    const auto take = [this, &groups] { setGroups(groups.items()); };
    connect(&groups, &GroupList::changed, this, take);
    take();
}

int ChipRow::scrollRange() const {
    return std::max(0, m_contentWidth - width());
}

void ChipRow::scrollTo(int offset) {
    const int bounded = std::clamp(offset, 0, scrollRange());
    if (bounded != m_offset) {
        m_offset = bounded;
        placeChips();
    }
}

void ChipRow::reveal(const Chip& chip) {
    const int left = chip.x() + m_offset;
    const int right = left + chip.width();
    if (left - kRevealMargin < m_offset) {
        scrollTo(left - kRevealMargin);
    } else if (right + kRevealMargin > m_offset + width()) {
        scrollTo(right + kRevealMargin - width());
    }
}

void ChipRow::setSelectedFilter(std::optional<FilterType> filter) {
    m_filter = filter;
    showSelection();
}

void ChipRow::setSelectedGroup(std::optional<QUuid> group) {
    m_group = group;
    showSelection();
}

void ChipRow::showSelection() {
    for (Chip* chip : std::as_const(m_chips)) {
        switch (chip->kind()) {
            case Chip::Kind::All:
                chip->setChecked(!m_filter.has_value());
                break;
            case Chip::Kind::Filter:
                chip->setChecked(chip->filter == m_filter);
                break;
            case Chip::Kind::Group:
                chip->setChecked(chip->group == m_group);
                break;
            case Chip::Kind::Plus:
                break;
        }
    }
}

void ChipRow::clicked(Chip& chip) {
    reveal(chip);
    switch (chip.kind()) {
        case Chip::Kind::All:
        case Chip::Kind::Filter:
            setSelectedFilter(chip.filter);
            Q_EMIT filterChosen(chip.filter);
            break;
        case Chip::Kind::Group:
            setSelectedGroup(chip.group == m_group ? std::nullopt : chip.group);
            Q_EMIT groupChosen(m_group);
            break;
        case Chip::Kind::Plus:
            Q_EMIT createGroupRequested(rectInWindow(chip));
            break;
    }
}

// Clipped to what is seen of it.
QRect ChipRow::rectInWindow(const Chip& chip) const {
    const QRect seen = chip.geometry().intersected(rect());
    return seen.translated(mapTo(window(), QPoint()));
}

Chip* ChipRow::groupChip(const QUuid& group) const {
    const auto at =
        std::ranges::find_if(m_chips, [&group](const Chip* chip) { return chip->group == group; });
    return at != m_chips.end() ? *at : nullptr;
}

Chip* ChipRow::selectedChip() const {
    Chip* const group = m_group.has_value() ? groupChip(*m_group) : nullptr;
    const auto filter = std::ranges::find_if(m_chips, &Chip::isChecked);
    return group != nullptr ? group : filter != m_chips.end() ? *filter : m_chips.first();
}

int ChipRow::focusedIndex() const {
    const auto at = std::ranges::find_if(m_chips, &Chip::hasFocus);
    return at != m_chips.end() ? int(at - m_chips.begin()) : -1;
}

bool ChipRow::hasFocusInside() const {
    return focusedIndex() >= 0;
}

void ChipRow::focusSelected(Qt::FocusReason reason) {
    selectedChip()->setFocus(reason);
}

bool ChipRow::focusAt(int index, Qt::FocusReason reason) {
    if (index < 0 || index >= m_chips.size()) {
        return false;
    }
    m_chips.at(index)->setFocus(reason);
    return true;
}

bool ChipRow::focusNext() {
    if (!hasFocusInside()) {
        focusSelected();
        return true;
    }
    return focusAt(focusedIndex() + 1, Qt::TabFocusReason);
}

bool ChipRow::focusPrevious() {
    if (!hasFocusInside()) {
        focusSelected(Qt::BacktabFocusReason);
        return true;
    }
    return focusAt(focusedIndex() - 1, Qt::BacktabFocusReason);
}

QSize ChipRow::sizeHint() const {
    return {m_contentWidth, kHeight};
}

QSize ChipRow::minimumSizeHint() const {
    return {kLeastWidth, kHeight};
}

void ChipRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void ChipRow::wheelEvent(QWheelEvent* event) {
    const QPoint pixels = event->pixelDelta();
    const QPoint delta = pixels.isNull() ? event->angleDelta() / kWheelShare : pixels;
    const int wanted = m_offset - (delta.x() != 0 ? delta.x() : delta.y());
    scrollTo(wanted);
    event->setAccepted(scrollRange() > 0);
}

void ChipRow::keyPressEvent(QKeyEvent* event) {
    const bool isForward = event->key() == Qt::Key_Right || event->key() == Qt::Key_Down;
    const bool isBack = event->key() == Qt::Key_Left || event->key() == Qt::Key_Up;
    const bool isDone = (isForward && focusNext()) || (isBack && focusPrevious());
    event->setAccepted(isDone);
}

void ChipRow::paintEvent(QPaintEvent* /*event*/) {
    if (m_dividerX < 0) {
        return;
    }
    QPainter painter(this);
    painter.fillRect(m_dividerX - m_offset, (height() - kDividerHeight) / 2, 1, kDividerHeight,
                     m_colors.panelBorder);
}

}  // namespace quillo
