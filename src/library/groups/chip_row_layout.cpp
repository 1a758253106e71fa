// SPDX-License-Identifier: MIT
// Which chips the row has and where they lie.
#include <algorithm>
#include <utility>

#include "library/groups/chip_row.h"

namespace quillo {
namespace {

constexpr int kGap = 6;
/// Room for the focus ring of the first and the last chip.
constexpr int kEnd = 1;

}  // namespace

// A chip that stays keeps its focus and what the pointer does with it.
Chip* ChipRow::takeChip(QList<Chip*>& old, const ChipKey& key) {
    const auto at = std::ranges::find_if(old, [&key](const Chip* chip) {
        return chip->kind() == key.kind && chip->filter == key.filter && chip->group == key.group;
    });
    Chip* const chip = at != old.end() ? *at : newChip(key);
    if (at != old.end()) {
        old.erase(at);
    }
    m_chips.append(chip);
    return chip;
}

Chip* ChipRow::newChip(const ChipKey& key) {
    auto* chip = new Chip(key.kind, this);
    chip->filter = key.filter;
    chip->group = key.group;
    chip->setColors(m_colors);
    connect(chip, &Chip::clicked, this, [this, chip] { clicked(*chip); });
    connect(chip, &Chip::focused, this, [this, chip] { reveal(*chip); });
    if (key.group.has_value()) {
        connect(chip, &Chip::menuRequested, this,
                [this, chip] { Q_EMIT groupMenuRequested(*chip->group, rectInWindow(*chip)); });
    }
    chip->show();
    return chip;
}

void ChipRow::rebuild() {
    QList<Chip*> old = std::exchange(m_chips, {});
    takeChip(old, {Chip::Kind::All})->setContent({.text = QStringLiteral("All")});
    for (const FilterItem& item : std::as_const(m_filters)) {
        takeChip(old, {Chip::Kind::Filter, item.filter})
            ->setContent(
                {.text = label(item.filter), .symbol = icon(item.filter), .badge = item.badge});
    }
    if (m_areGroupsShown) {
        addGroupChips(old);
    }
    for (Chip* chip : std::as_const(old)) {
        chip->hide();
        chip->deleteLater();
    }
    for (qsizetype i = 1; i < m_chips.size(); ++i) {
        setTabOrder(m_chips.at(i - 1), m_chips.at(i));
    }
    showSelection();
    layOut();
}

void ChipRow::addGroupChips(QList<Chip*>& old) {
    for (const GroupItem& item : std::as_const(m_groups)) {
        takeChip(old, {Chip::Kind::Group, std::nullopt, item.id})
            ->setContent({.text = item.title,
                          .dot = item.color.value_or(m_colors.accent),
                          .count = item.memberCount});
    }
    takeChip(old, {Chip::Kind::Plus})
        ->setContent(
            {.text = QStringLiteral("Create new group"), .symbol = QStringLiteral("plus")});
}

void ChipRow::layOut() {
    int x = kEnd;
    m_dividerX = -1;
    for (const Chip* chip : std::as_const(m_chips)) {
        const bool isGroupPart =
            chip->kind() == Chip::Kind::Group || chip->kind() == Chip::Kind::Plus;
        if (isGroupPart && m_dividerX < 0) {
            m_dividerX = x;
            x += 1 + kGap;
        }
        x += chip->sizeHint().width() + kGap;
    }
    m_contentWidth = x - kGap + kEnd;
    m_offset = std::clamp(m_offset, 0, scrollRange());
    placeChips();
    updateGeometry();
}

void ChipRow::placeChips() {
    int x = kEnd - m_offset;
    const bool isMoreLeft = m_offset > 0;
    const bool isMoreRight = m_offset < scrollRange();
    for (Chip* chip : std::as_const(m_chips)) {
        const int chipWidth = chip->sizeHint().width();
        if (m_dividerX >= 0 && x == m_dividerX - m_offset) {
            x += 1 + kGap;
        }
        chip->setGeometry(x, (height() - Chip::kHeight) / 2, chipWidth, Chip::kHeight);
        Chip::Fade fade;
        if (isMoreLeft && x < Chip::kFadeWidth) {
            fade.left = -x;
        }
        if (isMoreRight && x + chipWidth > width() - Chip::kFadeWidth) {
            fade.right = width() - x;
        }
        chip->setFade(fade);
        x += chipWidth + kGap;
    }
    update();
}

}  // namespace quillo
