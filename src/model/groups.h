// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QSet>

#include "model/pinboard.h"

namespace quillo {

/// What views do with groups. Every change is saved before the call returns; when the save fails,
/// its error is returned for the view to log and the change stays in the context, to be written by
/// the next save that succeeds. On the context's thread.

/// The groups in the order in which they are shown.
[[nodiscard]] Result<QList<std::shared_ptr<Pinboard>>> groupsInOrder(ObjectContext& context);

/// What a typed name becomes: without white space around it; none when nothing is left.
[[nodiscard]] std::optional<QString> groupTitleFromText(const QString& text);

/// None for a group whose colour is missing or unreadable.
[[nodiscard]] std::optional<QColor> groupColor(const Pinboard& group);

/// Where a new group goes among the others.
enum class GroupPlace {
    AfterListed,   ///< Its index is the number of groups there are.
    AfterHighest,  ///< Its index is one above the highest there is, at least 1.
};

struct NewGroup {
    QString title;  ///< As typed.
    QColor color;
    GroupPlace place = GroupPlace::AfterListed;
    QList<QUuid> clips;  ///< Its first members.
};

/// Null, and nothing happens, when no title is left of what was typed.
[[nodiscard]] Result<std::shared_ptr<Pinboard>> createGroup(ObjectContext& context,
                                                            const NewGroup& wanted);

/// The title as given; an empty one is a group without a name.
[[nodiscard]] Result<void> renameGroup(Pinboard& group, const QString& title);
/// Keeps the colour's red, green and blue.
[[nodiscard]] Result<void> recolorGroup(Pinboard& group, const QColor& color);
/// Both at once, with the title as typed. False, and nothing happens, when none is left of it.
[[nodiscard]] Result<bool> editGroup(Pinboard& group, const QString& text, const QColor& color);
/// Its clips stay, in the library and in their other groups.
[[nodiscard]] Result<void> deleteGroup(Pinboard& group);
/// Numbers the groups 0, 1, 2, ... as they are listed.
[[nodiscard]] Result<void> reorderGroups(ObjectContext& context,
                                         const QList<std::shared_ptr<Pinboard>>& groups);

/// How many clips a group has, and which groups a clip is in; without loading records.
[[nodiscard]] Result<qsizetype> memberCount(const Pinboard& group);
[[nodiscard]] Result<QSet<QUuid>> groupIdsOf(ObjectContext& context, const QUuid& clip);

/// Members, and clips that there are none of, are passed over; nothing is saved when none is new.
[[nodiscard]] Result<void> addClips(Pinboard& group, const QList<QUuid>& clips);
[[nodiscard]] Result<void> removeClips(Pinboard& group, const QList<QUuid>& clips);
/// Adds the clip when it is no member and removes it when it is one; whether it is one now.
[[nodiscard]] Result<bool> toggleClip(Pinboard& group, const QUuid& clip);
[[nodiscard]] Result<void> removeFromAllGroups(ObjectContext& context, const QList<QUuid>& clips);

}  // namespace quillo
