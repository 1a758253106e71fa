// SPDX-License-Identifier: MIT
#include "model/search/search_index.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace quillo {
namespace {

constexpr size_t kFewRemoved = 64;
constexpr size_t kCompactBytes = size_t{4} * 1024 * 1024;

// As the store compares keys: by their bytes.
bool isKeyLess(const QUuid& left, const QUuid& right) {
    const auto head = [](const QUuid& id) { return std::tuple(id.data1, id.data2, id.data3); };
    return head(left) != head(right) ? head(left) < head(right)
                                     : std::memcmp(left.data4, right.data4, sizeof(left.data4)) < 0;
}

}  // namespace

void SearchIndex::clear() {
    *this = SearchIndex();
}

void SearchIndex::beginLoading() {
    m_isLoading = true;
}

void SearchIndex::finishLoading() {
    m_isLoading = false;
    for (std::vector<Slot>& order : m_order) {
        std::sort(order.begin(), order.end(),
                  [this](Slot left, Slot right) { return isShownAfter(left, right); });
        order.shrink_to_fit();
    }
    m_rows.shrink_to_fit();
    compact();
}

bool SearchIndex::isShownAfter(Slot left, Slot right) const {
    const Row& a = m_rows[left];
    const Row& b = m_rows[right];
    return a.createdAt != b.createdAt ? a.createdAt < b.createdAt : isKeyLess(b.id, a.id);
}

void SearchIndex::orderByMoment(std::vector<Slot>& found) const {
    const auto others =
        std::ranges::find_if(found, [this](Slot slot) { return !m_rows[slot].isPinned; });
    std::vector<Slot> ordered;
    ordered.reserve(found.size());
    std::merge(found.begin(), others, others, found.end(), std::back_inserter(ordered),
               [this](Slot left, Slot right) { return isShownAfter(right, left); });
    found = std::move(ordered);
}

void SearchIndex::put(const IndexedClip& clip) {
    remove({clip.id});
    Slot slot = Slot(m_rows.size());
    if (m_free.empty()) {
        m_rows.emplace_back();
    } else {
        slot = m_free.back();
        m_free.pop_back();
    }
    m_rows[slot] = Row{.id = clip.id,
                       .createdAt = clip.createdAt,
                       .place = {},
                       .source = sourceIndex(clip.source),
                       .filterMask = clip.filterMask,
                       .kind = clip.kind,
                       .isPinned = clip.isPinned,
                       .hasOneText = !clip.text.contains(TextArena::kEnd)};
    m_slots.insert(clip.id, slot);
    ++m_kindCounts[clip.kind];
    setText(slot, clip.text);
    insertIntoOrder(slot);
}

void SearchIndex::remove(const QList<QUuid>& ids) {
    const std::vector<Slot> removed = slotsOf(ids);
    removeFromOrder(removed);
    for (const Slot slot : removed) {
        m_slots.remove(m_rows[slot].id);
        --m_kindCounts[m_rows[slot].kind];
        eraseText(slot);
        m_rows[slot] = {};
        m_free.push_back(slot);
    }
    compactWhenWorthwhile();
}

void SearchIndex::insertIntoOrder(Slot slot) {
    std::vector<Slot>& order = orderFor(m_rows[slot]);
    if (m_isLoading || order.empty() || isShownAfter(order.back(), slot)) {
        order.push_back(slot);
        return;
    }
    const auto place =
        std::lower_bound(order.begin(), order.end(), slot,
                         [this](Slot left, Slot right) { return isShownAfter(left, right); });
    order.insert(place, slot);
}

void SearchIndex::removeFromOrder(const std::vector<Slot>& removed) {
    if (removed.size() < kFewRemoved && !m_isLoading) {
        for (const Slot slot : removed) {
            removeFromOrder(slot);
        }
        return;
    }
    if (removed.empty()) {
        return;
    }
    std::vector<bool> isRemoved(m_rows.size());
    for (const Slot slot : removed) {
        isRemoved[slot] = true;
    }
    for (std::vector<Slot>& order : m_order) {
        std::erase_if(order, [&](Slot slot) { return isRemoved[slot]; });
    }
}

void SearchIndex::removeFromOrder(Slot slot) {
    std::vector<Slot>& order = orderFor(m_rows[slot]);
    const auto place =
        std::lower_bound(order.begin(), order.end(), slot,
                         [this](Slot left, Slot right) { return isShownAfter(left, right); });
    if (place != order.end() && *place == slot) {
        order.erase(place);
    }
}

void SearchIndex::setText(Slot slot, const QByteArray& text) {
    if (text.size() > kLongText) {
        m_longTexts.emplace(slot, LongTextDigest(text));
    } else if (!text.isEmpty()) {
        m_rows[slot].place = m_arena.append(text);
    }
}

void SearchIndex::eraseText(Slot slot) {
    m_arena.erase(m_rows[slot].place);
    m_longTexts.erase(slot);
}

void SearchIndex::compactWhenWorthwhile() {
    const bool isWorthwhile = m_arena.deadBytes() > kCompactBytes + m_arena.liveBytes() / 4;
    if (isWorthwhile && !m_isLoading) {
        compact();
    }
}

// Lays the texts out in the order in which they are shown, so that neighbours are scanned as one.
void SearchIndex::compact() {
    TextArena fresh;
    for (const std::vector<Slot>& order : m_order) {
        for (const Slot slot : order) {
            TextArena::Place& place = m_rows[slot].place;
            if (place.length > 0) {
                const auto text = m_arena.bytes(place.chunk, place.begin, place.end() - 1);
                place = fresh.append(QByteArrayView(text.data(), qsizetype(text.size())));
            }
        }
    }
    m_arena = std::move(fresh);
}

uint32_t SearchIndex::sourceIndex(const QString& identifier) {
    const auto known = m_sourceIndexes.constFind(identifier);
    if (known != m_sourceIndexes.cend()) {
        return *known;
    }
    m_sources.push_back({identifier, QByteArray(), false});
    return *m_sourceIndexes.insert(identifier, uint32_t(m_sources.size() - 1));
}

QStringList SearchIndex::sourcesWithoutName() const {
    QStringList identifiers;
    for (const Source& source : m_sources) {
        if (!source.isNamed) {
            identifiers.append(source.identifier);
        }
    }
    return identifiers;
}

void SearchIndex::setSourceName(const QString& identifier, const QByteArray& foldedName) {
    Source& source = m_sources[sourceIndex(identifier)];
    source.foldedName = foldedName;
    source.isNamed = true;
}

std::vector<SearchIndex::Slot> SearchIndex::slotsOf(const QList<QUuid>& ids) const {
    std::vector<Slot> found;
    found.reserve(size_t(ids.size()));
    for (const QUuid& id : ids) {
        const auto slot = m_slots.constFind(id);
        if (slot != m_slots.cend()) {
            found.push_back(*slot);
        }
    }
    return found;
}

}  // namespace quillo
