// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>
#include <QUuid>
#include <functional>

#include "library/list/clip_row_cache.h"
#include "library/thumbnails/card_content.h"
#include "library/window/library_section.h"
#include "model/persistence_controller.h"
#include "model/search/clip_search.h"

namespace quillo {

/// The clips of a section that search text and type filter leave, in the section's order: newest
/// first, or the pinboard's own. At any size of history the first of them come from the store
/// before the call returns, the others from the search a moment later; while text is searched for,
/// the list before stays until the answer is there. Of the clips themselves only those are read
/// that are asked for with load(). Follows the store. Main thread.
class LibraryClips final : public QObject {
    Q_OBJECT

public:
    /// What a program is called for people.
    using SourceName = std::function<QString(const QString& identifier)>;

    /// Both must outlive this.
    LibraryClips(PersistenceController& persistence, ClipSearch& sharedSearch,
                 SourceName sourceName, QObject* parent = nullptr);

    [[nodiscard]] const LibrarySection& section() const { return m_section; }
    [[nodiscard]] const QString& searchText() const { return m_searchText; }
    [[nodiscard]] std::optional<FilterType> typeFilter() const { return m_typeFilter; }
    [[nodiscard]] bool isFiltered() const { return !m_searchText.isEmpty() || m_typeFilter; }
    void setSection(const LibrarySection& section);
    void setSearchText(const QString& text);
    void setTypeFilter(std::optional<FilterType> filter);
    void clearFilters();
    /// Leaves clips out that are about to be deleted.
    void setHidden(const QSet<QUuid>& clips);

    /// Those that are known so far; the list may be longer.
    [[nodiscard]] const QList<QUuid>& ids() const { return m_ids; }
    [[nodiscard]] qsizetype count() const { return std::max(m_total, m_ids.size()); }
    /// ids() does not yet answer what is searched for.
    [[nodiscard]] bool isPending() const { return m_isPending; }
    /// ids() is the whole list, not only what is shown first.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }
    /// The list is a pinboard's in its own order, neither searched nor filtered.
    [[nodiscard]] bool hasOwnOrder() const {
        return m_section.kind == LibrarySection::Kind::Pinboard && m_isWhole;
    }

    /// Reads the cards of these places, unless they were read already. A few others are kept.
    void load(qsizetype first, qsizetype last) { m_cards.load(m_ids, first, last); }
    /// Null for a clip that was not loaded.
    [[nodiscard]] const CardContent* card(const QUuid& clip) const { return m_cards.row(clip); }

Q_SIGNALS:
    /// The list answers another question: it starts anew.
    void replaced();
    /// Clips came, went or moved.
    void changed();
    /// This clip's card is another one; it is read again when it is loaded.
    void cardChanged(const QUuid& clip);

private:
    enum class News { Replaced, Changed };

    void ask(News news);
    void searchAgain();
    [[nodiscard]] ClipCriteria criteria() const;
    [[nodiscard]] QList<QUuid> pinboardClips() const;
    [[nodiscard]] bool showFirst();
    void take(QList<QUuid> ids, qsizetype total);
    void takePage(const SearchPage& page);
    void takeResult(const SearchResult& result);
    void follow(const ChangeSet& changes);
    [[nodiscard]] bool isReordered(const ChangeSet& changes) const;
    void followFromStore();
    [[nodiscard]] bool concerns(const ChangeSet& changes) const;
    void publish();

    PersistenceController& m_persistence;
    ClipSearch m_search;
    LibrarySection m_section;
    QString m_searchText;
    std::optional<FilterType> m_typeFilter;
    QSet<QUuid> m_hidden;
    QList<QUuid> m_ids;
    qsizetype m_total = 0;
    ClipRowCache<CardContent> m_cards;
    News m_news = News::Replaced;  ///< What the next list is to those who show it.
    bool m_isPending = false;
    bool m_isWhole = false;  ///< The store itself gave the whole list.
    bool m_isComplete = false;
    QTimer m_rest;  ///< After a long list was read.
    bool m_isBehind = false;
};

}  // namespace quillo
