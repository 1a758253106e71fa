// SPDX-License-Identifier: MIT
#include "library/groups/group_menu.h"

#include "base/logging.h"
#include "model/groups.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcMenu, "MoveToGroupMenu")

template <typename T>
void logFailure(const Result<T>& done) {
    if (!done) {
        qCCritical(lcMenu, "Error saving group assignment: %ls",
                   qUtf16Printable(done.error().text));
    }
}

QString withoutMnemonic(QString title) {
    return title.replace(QStringLiteral("&"), QStringLiteral("&&"));
}

}  // namespace

std::vector<MenuEntry> groupMenuEntries(const GroupList& groups, const QUuid& clip) {
    const QSet<QUuid> memberOf = groupIdsOf(groups.context(), clip).value_or(QSet<QUuid>());
    std::vector<MenuEntry> entries;
    for (const GroupItem& item : groups.items()) {
        MenuEntry entry;
        entry.title = withoutMnemonic(item.title);
        entry.dot = item.color.value_or(paletteFor(ColorScheme::Dark).accent);
        entry.check = memberOf.contains(item.id);
        entry.action = [&groups, group = item.id, clip] {
            if (const auto record = groups.group(group)) {
                logFailure(toggleClip(*record, clip));
            }
        };
        entries.push_back(std::move(entry));
    }
    if (!entries.empty()) {
        entries.push_back(MenuEntry::separator());
    }
    entries.push_back(
        {.title = QStringLiteral("Remove from all groups"),
         .symbol = QStringLiteral("xmark.circle"),
         .action = [&groups, clip] { logFailure(removeFromAllGroups(groups.context(), {clip})); }});
    return entries;
}

MenuEntry moveToGroupEntry(const GroupList& groups, const QUuid& clip) {
    return {.title = QStringLiteral("Move to Group"), .submenu = groupMenuEntries(groups, clip)};
}

void addDroppedClip(const GroupList& groups, const QUuid& group, const QUuid& clip) {
    if (const auto record = groups.group(group)) {
        (void)addClips(*record, {clip});
    }
}

}  // namespace quillo
