// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>

#include "model/search/search_index.h"

namespace quillo {
namespace {

using Slot = SearchIndex::Slot;

constexpr size_t kRowsBetweenLooks = 2048;

}  // namespace

/// One search over the index.
class SearchIndex::Matcher final {
public:
    Matcher(const SearchIndex& index, const Criteria& criteria, const Visitor& visitor)
        : m_index(index), m_criteria(criteria), m_visitor(visitor) {
        if (criteria.needle.isEmpty()) {
            return;
        }
        m_finder.emplace(criteria.needle);
        for (const Source& source : index.m_sources) {
            m_isSourceHit.push_back(contains(source.foldedName));
        }
    }

    /// Shows the visitor the rows from first to before last, the last first; false ends the scan.
    bool visitRun(std::span<const Slot> run) {
        m_isTextHit.assign(run.size(), false);
        markTextHits(run);
        for (size_t i = run.size(); i-- > 0;) {
            if (!visit(run[i], m_isTextHit[i])) {
                return false;
            }
        }
        return true;
    }

    bool visitAlone(Slot slot) {
        const TextArena::Place& place = m_index.m_rows[slot].place;
        if (!m_finder || place.length == 0) {
            return visit(slot, false);
        }
        const size_t hit =
            m_finder->find(m_index.m_arena.bytes(place.chunk, place.begin, place.end()));
        return visit(slot, hit != SubstringFinder::npos && counts(place, hit));
    }

private:
    [[nodiscard]] bool contains(const QByteArray& text) const {
        return m_finder->find({text.constData(), size_t(text.size())}) != SubstringFinder::npos;
    }

    // Whether a text's first hit, so many bytes into it, is one by the rule.
    [[nodiscard]] bool counts(const TextArena::Place& place, size_t hit) const {
        if (m_criteria.rule != SearchRule::FirstText) {
            return true;
        }
        const auto before =
            m_index.m_arena.bytes(place.chunk, place.begin, place.begin + uint32_t(hit));
        return std::ranges::find(before, TextArena::kEnd) == before.end();
    }

    // The texts of a run lie in one chunk in the order of the run, others' perhaps between them.
    void markTextHits(std::span<const Slot> run) {
        const auto hasText = [this](Slot slot) { return m_index.m_rows[slot].place.length > 0; };
        const auto first = std::find_if(run.begin(), run.end(), hasText);
        if (!m_finder || first == run.end()) {
            return;
        }
        const auto last = std::find_if(run.rbegin(), run.rend(), hasText);
        const TextArena::Place& lowest = m_index.m_rows[*first].place;
        const uint32_t end = m_index.m_rows[*last].place.end();
        size_t row = 0;
        uint32_t from = lowest.begin;
        while (from < end) {
            const size_t hit = m_finder->find(m_index.m_arena.bytes(lowest.chunk, from, end));
            if (hit == SubstringFinder::npos) {
                return;
            }
            const uint32_t position = from + uint32_t(hit);
            while (m_index.m_rows[run[row]].place.end() <= position || !hasText(run[row])) {
                ++row;
            }
            const TextArena::Place& place = m_index.m_rows[run[row]].place;
            const bool isOfRun = place.begin <= position;
            m_isTextHit[row] =
                m_isTextHit[row] || (isOfRun && counts(place, position - place.begin));
            from = isOfRun ? place.end() : place.begin;
        }
    }

    bool visit(Slot slot, bool isTextHit) {
        const Row& row = m_index.m_rows[slot];
        if (m_criteria.filterMask != 0 && (row.filterMask & m_criteria.filterMask) == 0) {
            return true;
        }
        const bool searchesSources = m_criteria.rule == SearchRule::AnyText;
        if (!m_finder || isTextHit || (searchesSources && m_isSourceHit[row.source])) {
            return m_visitor(slot, Answer::Match);
        }
        const auto longText =
            row.place.length == 0 ? m_index.m_longTexts.find(slot) : m_index.m_longTexts.end();
        if (longText == m_index.m_longTexts.end()) {
            return true;
        }
        switch (longText->second.contains(m_criteria.needle)) {
            case LongTextDigest::Answer::No:
                return true;
            case LongTextDigest::Answer::Maybe:
                return m_visitor(slot, Answer::ReadText);
            case LongTextDigest::Answer::Yes:
                return m_visitor(slot, m_criteria.rule != SearchRule::FirstText || row.hasOneText
                                           ? Answer::Match
                                           : Answer::ReadText);
        }
        return true;
    }

    const SearchIndex& m_index;
    const Criteria& m_criteria;
    const Visitor& m_visitor;
    std::optional<SubstringFinder> m_finder;
    std::vector<bool> m_isSourceHit;
    std::vector<bool> m_isTextHit;
};

// Where the run that ends before `end` begins: rows whose texts follow each other in one chunk.
size_t SearchIndex::runBefore(const std::vector<Slot>& order, size_t end) const {
    const TextArena::Place* above = nullptr;
    size_t begin = end;
    while (begin > 0 && end - begin < kRowsBetweenLooks) {
        const TextArena::Place& place = m_rows[order[begin - 1]].place;
        const bool hasText = place.length > 0;
        if (hasText && above != nullptr &&
            (place.chunk != above->chunk || place.end() > above->begin)) {
            break;
        }
        above = hasText ? &place : above;
        --begin;
    }
    return begin;
}

bool SearchIndex::scan(const Criteria& criteria, const Visitor& visitor,
                       const Interrupted& isInterrupted) const {
    Matcher matcher(*this, criteria, visitor);
    for (const std::vector<Slot>* order : {&m_order[1], &m_order[0]}) {
        const bool isWalked = order == &m_order[1] || !criteria.isOnlyPinned;
        for (size_t end = isWalked ? order->size() : 0; end > 0;) {
            if (isInterrupted()) {
                return false;
            }
            const size_t begin = runBefore(*order, end);
            if (!matcher.visitRun(std::span(*order).subspan(begin, end - begin))) {
                return true;
            }
            end = begin;
        }
    }
    return true;
}

bool SearchIndex::scan(const std::vector<Slot>& base, const Criteria& criteria,
                       const Visitor& visitor, const Interrupted& isInterrupted) const {
    Matcher matcher(*this, criteria, visitor);
    for (size_t i = 0; i < base.size(); ++i) {
        if (i % kRowsBetweenLooks == 0 && isInterrupted()) {
            return false;
        }
        if (!matcher.visitAlone(base[i])) {
            return true;
        }
    }
    return true;
}

}  // namespace quillo
