// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QUuid>
#include <array>
#include <functional>
#include <unordered_map>
#include <vector>

#include "model/search/long_text_digest.h"
#include "model/search/search_request.h"
#include "model/search/substring_finder.h"
#include "model/search/text_arena.h"

namespace quillo {

/// What the index keeps of one clip.
struct IndexedClip {
    QUuid id;
    qint64 createdAt = 0;    ///< Microseconds; the smallest number for a clip without a moment.
    quint16 filterMask = 0;  ///< One bit for each FilterType.
    quint8 kind = 0;         ///< The stored kind, kOtherKind for a value outside 0 to 4.
    bool isPinned = false;
    QString source;   ///< The source program's identifier; empty for none.
    QByteArray text;  ///< Folded fields, joined with TextArena::kEnd.

    static constexpr quint8 kOtherKind = 5;
};

/// The whole history in memory, as far as a search or a filter asks for it: the order in which
/// clips are shown, what they are, and their folded texts. About 50 bytes for each clip and the
/// text up to kLongText bytes; of longer ones a digest. Belongs to one thread.
class SearchIndex final {
public:
    using Slot = uint32_t;

    /// Joined texts of more bytes than this are not kept.
    static constexpr qsizetype kLongText = 4096;

    enum class Answer { Match, ReadText };  ///< ReadText: only the stored text can tell.

    struct Criteria {
        QByteArray needle;       ///< Folded; empty finds everything.
        quint16 filterMask = 0;  ///< 0 takes every clip.
        SearchRule rule = SearchRule::AnyText;
        bool isOnlyPinned = false;
    };

    /// Called in display order; false ends the scan.
    using Visitor = std::function<bool(Slot slot, Answer answer)>;
    /// Asked about every 256 KiB of text; true ends the scan.
    using Interrupted = std::function<bool()>;

    void clear();
    /// Between beginLoading() and finishLoading() clips come in any order at no further cost.
    void beginLoading();
    void finishLoading();

    /// Adds a clip or replaces the one of the same id.
    void put(const IndexedClip& clip);
    /// Unknown ids are left out. Many at once cost one pass over everything.
    void remove(const QList<QUuid>& ids);

    /// Identifiers that have no name yet.
    [[nodiscard]] QStringList sourcesWithoutName() const;
    /// An empty name matches nothing.
    void setSourceName(const QString& identifier, const QByteArray& foldedName);

    /// Walks the clips that may fulfil the criteria: pinned ones first, then, where these are not
    /// all that is wanted, the others, each newest first. False when it was interrupted.
    bool scan(const Criteria& criteria, const Visitor& visitor,
              const Interrupted& isInterrupted) const;
    /// The same for these clips in this order.
    bool scan(const std::vector<Slot>& base, const Criteria& criteria, const Visitor& visitor,
              const Interrupted& isInterrupted) const;

    /// Brings what a scan of everything found, pinned clips first, into the order of the clips'
    /// moments alone.
    void orderByMoment(std::vector<Slot>& found) const;

    /// The slots of these clips in their order; unknown ones are left out.
    [[nodiscard]] std::vector<Slot> slotsOf(const QList<QUuid>& ids) const;
    [[nodiscard]] const QUuid& idAt(Slot slot) const { return m_rows[slot].id; }
    [[nodiscard]] bool isPinnedAt(Slot slot) const { return m_rows[slot].isPinned; }
    [[nodiscard]] quint8 kindAt(Slot slot) const { return m_rows[slot].kind; }
    [[nodiscard]] qsizetype size() const { return m_slots.size(); }
    /// How many clips there are of each stored kind; kept, not counted.
    using KindCounts = std::array<qsizetype, IndexedClip::kOtherKind + 1>;
    [[nodiscard]] const KindCounts& kindCounts() const { return m_kindCounts; }

private:
    struct Row {
        QUuid id;
        qint64 createdAt = 0;
        TextArena::Place place;
        uint32_t source = 0;
        quint16 filterMask = 0;
        quint8 kind = 0;
        bool isPinned = false;
        bool hasOneText = false;  ///< Whatever it contains is in its first text.
    };
    struct Source {
        QString identifier;
        QByteArray foldedName;
        bool isNamed = false;
    };
    class Matcher;

    [[nodiscard]] std::vector<Slot>& orderFor(const Row& row) { return m_order[row.isPinned]; }
    [[nodiscard]] bool isShownAfter(Slot left, Slot right) const;
    [[nodiscard]] size_t runBefore(const std::vector<Slot>& order, size_t end) const;
    [[nodiscard]] uint32_t sourceIndex(const QString& identifier);
    void insertIntoOrder(Slot slot);
    void removeFromOrder(const std::vector<Slot>& removed);
    void removeFromOrder(Slot slot);
    void setText(Slot slot, const QByteArray& text);
    void eraseText(Slot slot);
    void compactWhenWorthwhile();
    void compact();

    std::vector<Row> m_rows;
    std::vector<Slot> m_free;
    QHash<QUuid, Slot> m_slots;
    /// Others and pinned ones; the last is shown first.
    std::array<std::vector<Slot>, 2> m_order;
    TextArena m_arena;
    std::unordered_map<Slot, LongTextDigest> m_longTexts;
    std::vector<Source> m_sources{{QString(), QByteArray(), true}};
    QHash<QString, uint32_t> m_sourceIndexes{{QString(), 0}};
    KindCounts m_kindCounts{};
    bool m_isLoading = false;
};

}  // namespace quillo
