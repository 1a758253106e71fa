// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

#include "library/groups/group_list.h"
#include "library/window/library_section.h"

namespace quillo {

/// What the sidebar says of the sections: their titles and how many clips each has. Follows the
/// store; of many changes in one turn of the event loop the last counts. Main thread.
class LibrarySections final : public QObject {
    Q_OBJECT

public:
    /// The groups' context is the one that is counted in; they must outlive this.
    explicit LibrarySections(const GroupList& groups, QObject* parent = nullptr);

    [[nodiscard]] qsizetype clipCount() const { return m_clipCount - m_hidden.size(); }
    [[nodiscard]] qsizetype favoriteCount() const { return m_favoriteCount - m_hiddenFavorites; }
    [[nodiscard]] qsizetype memberCount(const GroupItem& pinboard) const {
        return pinboard.memberCount - m_hiddenMembers.value(pinboard.id);
    }
    [[nodiscard]] const GroupList& groups() const { return m_groups; }
    /// Leaves clips out that are about to be deleted; of very many only the number of all clips is
    /// told without them.
    void setHidden(const QSet<QUuid>& clips);

    /// What stands above the grid.
    [[nodiscard]] QString title(const LibrarySection& section) const;
    /// Whether there is such a section, or no longer.
    [[nodiscard]] bool contains(const LibrarySection& section) const;

Q_SIGNALS:
    /// A count, a title, a colour or the order of the pinboards is another one.
    void changed();

private:
    void follow(const ChangeSet& changes);
    void count();
    void countHidden();

    const GroupList& m_groups;
    QTimer m_soon;
    qsizetype m_clipCount = 0;
    qsizetype m_favoriteCount = 0;
    QSet<QUuid> m_hidden;
    qsizetype m_hiddenFavorites = 0;
    QHash<QUuid, qsizetype> m_hiddenMembers;  ///< Of each pinboard.
};

/// What a pinboard is called in the library: its title, or a word for one that has none.
[[nodiscard]] QString pinboardTitle(const GroupItem& item);

}  // namespace quillo
