// SPDX-License-Identifier: MIT
#include "overlay/overlay_popups.h"

#include <QWidget>

#include "library/groups/create_group_popover.h"
#include "library/groups/group_menu.h"
#include "library/groups/group_picker.h"
#include "library/groups/panel_tips.h"
#include "library/groups/popup_menu.h"

namespace quillo {

OverlayPopups::OverlayPopups(QWidget* panel, const GroupList& groups)
    : QObject(panel),
      m_panel(panel),
      m_groups(groups),
      m_tips(new PanelTips(panel)),
      m_picker(new GroupPicker(panel, groups)),
      m_createGroup(new CreateGroupPopover(panel, groups.context())) {}

void OverlayPopups::setColors(const Palette& colors) {
    m_colors = colors;
    m_tips->setColors(colors);
    m_picker->setColors(colors);
    m_createGroup->setColors(colors);
}

void OverlayPopups::openCardMenu(const CardContent& card, const QRect& anchor) {
    std::vector<MenuEntry> entries;
    entries.push_back(moveToGroupEntry(m_groups, card.clip));
    entries.push_back(MenuEntry::separator());
    entries.push_back({.title = card.isPinned ? QStringLiteral("Unpin") : QStringLiteral("Pin"),
                       .shortcut = QStringLiteral("Ctrl+P"),
                       .action = [this, clip = card.clip] { Q_EMIT pinToggled(clip); }});
    entries.push_back({.title = QStringLiteral("Delete"),
                       .shortcut = QStringLiteral("Del"),
                       .isDestructive = true,
                       .action = [this, clip = card.clip] { Q_EMIT deleteRequested(clip); }});
    PopupMenu::open(m_panel, std::move(entries), anchor, m_colors);
}

void OverlayPopups::openGroups(const QUuid& clip, const QRect& anchor) {
    m_picker->openFor(clip, anchor);
}

void OverlayPopups::openCreateGroup(const QRect& anchor) {
    m_createGroup->openAt(anchor);
}

}  // namespace quillo
