// SPDX-License-Identifier: MIT
// What the detail pane shows of a clip besides its content: pin, rows, source, pinboards.
#include <QGridLayout>
#include <QPainter>

#include "appearance/fonts.h"
#include "library/groups/form_controls.h"
#include "library/groups/popup_menu.h"
#include "library/groups/text_color.h"
#include "library/thumbnails/source_tile.h"
#include "library/window/clip_detail.h"
#include "library/window/flow_layout.h"
#include "model/groups.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kSourceSide = 16;

// What stands for a program without an icon.
QPixmap sourceTile(const Clip& clip, const QString& name, qreal ratio) {
    QPixmap tile((QSizeF(kSourceSide, kSourceSide) * ratio).toSize());
    tile.setDevicePixelRatio(ratio);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tileColor(clip.sourceBundleId().value_or(name)));
    painter.drawRoundedRect(0, 0, kSourceSide, kSourceSide, 4, 4);
    painter.setPen(Qt::white);
    painter.setFont(sizedFont(QFont(), 10, QFont::Bold));
    painter.drawText(QRect(0, 0, kSourceSide, kSourceSide), Qt::AlignCenter, tileLetter(name));
    return tile;
}

void clearLayout(QLayout& layout) {
    while (QLayoutItem* item = layout.takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
}

}  // namespace

void ClipDetail::showPin(bool isPinned) {
    m_isPinned = isPinned;
    m_pin->setText(isPinned ? u"Unpin"_s : u"Pin"_s);
    m_pin->setAccessibleName(m_pin->text());
    m_pin->setSymbol(isPinned ? u"pin.slash"_s : u"pin"_s);
    setTightWidth(*m_pin);
    m_pin->setToolTip(isPinned ? u"Take out of the favorites"_s : u"Keep among the favorites"_s);
}

QString ClipDetail::sourceOf(const Clip& clip) const {
    const QString identifier = clip.sourceBundleId().value_or(QString());
    return identifier.isEmpty() ? identifier : m_services.sourceName(identifier);
}

void ClipDetail::showSource() {
    if (m_clip != nullptr && m_sourceIcon != nullptr) {
        const QPixmap icon = m_services.sourceIcon(*m_clip);
        m_sourceIcon->setPixmap(
            icon.isNull() ? sourceTile(*m_clip, sourceOf(*m_clip), devicePixelRatioF()) : icon);
    }
}

void ClipDetail::showRows(const QList<DetailRow>& rows) {
    if (m_shownRows == rows) {
        return;
    }
    m_shownRows = rows;
    clearLayout(*m_rows);
    m_sourceIcon = nullptr;
    for (int i = 0; i < int(rows.size()); ++i) {
        auto* label = new QLabel(rows[i].label);
        auto* value = new QLabel(rows[i].value);
        label->setFont(sizedFont(font(), 13, QFont::Normal));
        value->setFont(label->font());
        value->setTextFormat(Qt::PlainText);
        value->setWordWrap(true);
        value->setAccessibleName(rows[i].label + u": "_s + rows[i].value);
        setTextColor(*label, m_look.secondaryText);
        setTextColor(*value, m_look.primaryText);
        m_rows->addWidget(label, i, 0, Qt::AlignTop);
        if (rows[i].hasSourceIcon) {
            m_sourceIcon = new QLabel;
            m_sourceIcon->setFixedSize(kSourceSide + 6, kSourceSide);
            m_rows->addWidget(m_sourceIcon, i, 1);
            m_rows->addWidget(value, i, 2);
        } else {
            m_rows->addWidget(value, i, 1, 1, 2);
        }
    }
}

// Those that all of them are in; of very many it is not asked.
QSet<QUuid> ClipDetail::commonGroups() const {
    QSet<QUuid> common;
    for (qsizetype i = 0; i < m_clips.size() && m_clips.size() <= kMostFollowed; ++i) {
        const auto groups = groupIdsOf(m_services.context, m_clips[i]).value_or(QSet<QUuid>());
        common = i == 0 ? groups : common.intersect(groups);
        if (common.isEmpty()) {
            break;
        }
    }
    return common;
}

// Made anew only for other groups: the keyboard focus may be on one of them.
void ClipDetail::showChips() {
    QList<GroupItem> items = m_services.groups.items();
    for (GroupItem& item : items) {
        item.memberCount = 0;
    }
    if (std::exchange(m_shownGroups, items) != items) {
        makeChips();
    }
    const QSet<QUuid> common = commonGroups();
    for (MembershipChip* chip : std::as_const(m_chipButtons)) {
        chip->setChecked(common.contains(chip->group()));
    }
}

void ClipDetail::makeChips() {
    clearLayout(*m_chips);
    m_chipButtons.clear();
    m_headings[2]->setVisible(!m_shownGroups.isEmpty());
    for (const GroupItem& item : std::as_const(m_shownGroups)) {
        auto* chip = new MembershipChip(item, m_chips->parentWidget());
        chip->setLook(m_look);
        m_chips->addWidget(chip);
        m_chipButtons.append(chip);
        connect(chip, &MembershipChip::clicked, this,
                [this, chip] { Q_EMIT membershipRequested(chip->group(), !chip->isChecked()); });
    }
    QWidget* before = m_chips->parentWidget();
    for (MembershipChip* chip : std::as_const(m_chipButtons)) {
        setTabOrder(before, chip);
        before = chip;
    }
    m_chips->parentWidget()->updateGeometry();
}

void ClipDetail::openTransformMenu() {
    std::vector<MenuEntry> entries;
    for (const TextTransformation transformation : allCases<TextTransformation>()) {
        entries.push_back({.title = label(transformation), .action = [this, transformation] {
                               Q_EMIT transformRequested(transformation);
                           }});
    }
    PopupMenu::open(window(), std::move(entries), Popup::anchorOf(*m_transform), m_look.menus);
}

}  // namespace quillo
