// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>
#include <vector>

#include "library/groups/group_list.h"
#include "library/groups/popup_menu.h"

namespace quillo {

/// The entries of the "Move to Group" submenu for one clip: its groups are checked, choosing one
/// joins or leaves it; below them the way out of all. What fails is logged. The list must outlive
/// the menu.
[[nodiscard]] std::vector<MenuEntry> groupMenuEntries(const GroupList& groups, const QUuid& clip);

/// The entry that holds them.
[[nodiscard]] MenuEntry moveToGroupEntry(const GroupList& groups, const QUuid& clip);

/// What a clip dropped on a group's chip does: it becomes a member. Nothing happens for a member,
/// and for a clip or group that is not there. A save that fails is passed over: the change waits
/// in the context.
void addDroppedClip(const GroupList& groups, const QUuid& group, const QUuid& clip);

}  // namespace quillo
