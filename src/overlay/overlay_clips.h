// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <memory>

#include "library/thumbnails/card_content.h"
#include "library/thumbnails/source_names.h"
#include "model/clip.h"
#include "model/persistence_controller.h"
#include "model/search/clip_search.h"
#include "overlay/empty_state.h"

namespace quillo {

class Pinboard;

/// How many clips of one stored kind the visible list has.
struct ClipTypeCount {
    ClipType type = ClipType::Text;
    qsizetype count = 0;

    friend bool operator==(const ClipTypeCount&, const ClipTypeCount&) = default;
};

/// The clips that the panel shows: those that search text, type filter and group leave, the first
/// fifty of them as cards. The whole history is read from the store at once; a narrowed one comes
/// from the search a moment later, and until then the cards stay as they were. Follows the store's
/// changes while the panel is shown and while it is hidden. Main thread.
class OverlayClips final : public QObject {
    Q_OBJECT

public:
    static constexpr int kMaxVisibleClips = int(kSearchPageSize);

    /// Both must outlive this.
    OverlayClips(PersistenceController& persistence, Workspace& workspace,
                 QObject* parent = nullptr);

    [[nodiscard]] const QList<std::shared_ptr<Clip>>& clips() const { return m_clips; }
    /// One for each clip, in the same order.
    [[nodiscard]] const QList<CardContent>& cards() const { return m_cards; }
    /// The clips of the cards, in the same order.
    [[nodiscard]] QList<QUuid> cardIds() const;
    /// The length of the visible list.
    [[nodiscard]] qsizetype total() const { return m_total; }
    /// In the kinds' order, without those that the visible list has none of.
    [[nodiscard]] QList<ClipTypeCount> typeCounts() const;
    /// The visible list of a narrowed history, which may be much longer than the cards; empty while
    /// nothing narrows it.
    [[nodiscard]] const QList<QUuid>& visibleIds() const { return m_visibleIds; }

    [[nodiscard]] const QString& searchText() const { return m_criteria.searchText; }
    [[nodiscard]] std::optional<FilterType> typeFilter() const { return m_criteria.typeFilter; }
    [[nodiscard]] std::optional<QUuid> groupFilter() const { return m_groupFilter; }
    /// Null when no group is chosen.
    [[nodiscard]] std::shared_ptr<Pinboard> group() const;
    void setSearchText(const QString& text);
    void setTypeFilter(std::optional<FilterType> filter);
    void setGroupFilter(std::optional<QUuid> group);
    /// Leaves clips out that are about to be deleted.
    void setHidden(const QList<QUuid>& clips);
    /// Back to the whole history.
    void clearCriteria();

    /// The cards do not yet answer the criteria.
    [[nodiscard]] bool isPending() const { return m_isPending; }

    /// What it searches with, for others to share.
    [[nodiscard]] ClipSearch& search() { return m_search; }

    /// What to say where there are no cards.
    [[nodiscard]] EmptyState emptyState() const;

    void refresh();

Q_SIGNALS:
    /// The cards are new.
    void refreshed();
    /// total(), typeCounts() and visibleIds() are new.
    void counted();
    /// The chosen group is gone, and with it the choice.
    void groupLost();

private:
    void loadGroup();
    void groupChanged(const ChangeSet& changes);
    void storeChanged(const ChangeSet& changes);
    void searchAgain();
    void showWholeHistory();
    void takePage(const SearchPage& page);
    void takeResult(const SearchResult& result);
    void show(QList<std::shared_ptr<Clip>> clips);

    PersistenceController& m_persistence;
    SourceNames m_sourceNames;
    ClipSearch m_search;
    ClipCriteria m_criteria;
    std::optional<QUuid> m_groupFilter;
    QHash<QUuid, ClipType> m_hidden;
    QList<std::shared_ptr<Clip>> m_clips;
    QList<CardContent> m_cards;
    QList<QUuid> m_visibleIds;
    std::array<qsizetype, std::size(kClipTypes)> m_kindCounts{};
    qsizetype m_total = 0;
    bool m_isPending = false;
};

}  // namespace quillo
