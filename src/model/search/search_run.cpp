// SPDX-License-Identifier: MIT
#include "model/search/search_run.h"

#include <algorithm>
#include <limits>

namespace quillo {
namespace {

// Few enough that a capture, which waits for the same thread, is not held up.
constexpr size_t kTextsAtOnce = 16;
constexpr SearchIndex::Slot kNoMatch = std::numeric_limits<SearchIndex::Slot>::max();

}  // namespace

SearchRun::SearchRun(const SearchIndex& index, SearchIndex::Criteria criteria, Services services)
    : m_index(index), m_criteria(std::move(criteria)), m_services(std::move(services)) {}

bool SearchRun::overEverything() {
    m_isByMoment = m_criteria.rule != SearchRule::AnyText && !m_criteria.isOnlyPinned;
    const bool isScanned = m_index.scan(
        m_criteria, [this](Slot slot, SearchIndex::Answer answer) { return take(slot, answer); },
        m_services.isInterrupted);
    if (!isScanned || !readRest()) {
        return false;
    }
    if (m_isByMoment) {
        m_index.orderByMoment(m_found);
        m_isByMoment = false;
    }
    return report();
}

bool SearchRun::over(const std::vector<Slot>& base) {
    return m_index.scan(
               base, m_criteria,
               [this](Slot slot, SearchIndex::Answer answer) { return take(slot, answer); },
               m_services.isInterrupted) &&
           readRest() && report();
}

bool SearchRun::take(Slot slot, SearchIndex::Answer answer) {
    if (answer == SearchIndex::Answer::ReadText) {
        m_uncertain.push_back(m_found.size());
    }
    m_found.push_back(slot);
    if (m_isByMoment && m_index.isPinnedAt(slot)) {
        ++m_pinnedFound;
    }
    // By moment the first ones are known once so many were found besides the pinned ones.
    const size_t wanted = size_t(kSearchPageSize) + m_pinnedFound;
    if (!m_isFirstReported && m_found.size() >= wanted) {
        m_wasInterrupted = !readUncertain();
        if (m_found.size() >= wanted) {
            reportFirst();
        }
    }
    return !m_wasInterrupted;
}

bool SearchRun::readRest() {
    return !m_wasInterrupted && readUncertain();
}

bool SearchRun::report() {
    if (!m_isFirstReported) {
        reportFirst();
    }
    return !m_services.isInterrupted();
}

bool SearchRun::readUncertain() {
    for (size_t begin = 0; begin < m_uncertain.size(); begin += kTextsAtOnce) {
        if (!readBatch(begin, std::min(begin + kTextsAtOnce, m_uncertain.size()))) {
            return false;
        }
    }
    if (!m_uncertain.empty()) {
        std::erase(m_found, kNoMatch);
        m_uncertain.clear();
    }
    return true;
}

bool SearchRun::readBatch(size_t begin, size_t end) {
    if (m_services.isInterrupted()) {
        return false;
    }
    QList<QUuid> ids;
    for (size_t i = begin; i < end; ++i) {
        ids.append(m_index.idAt(m_found[m_uncertain[i]]));
    }
    const QHash<QUuid, QByteArray> fields = m_services.readFields(ids);
    for (size_t i = begin; i < end; ++i) {
        const auto text = fields.constFind(ids[qsizetype(i - begin)]);
        if (text == fields.cend() || !isMatch(*text)) {
            m_found[m_uncertain[i]] = kNoMatch;
        }
    }
    return true;
}

bool SearchRun::isMatch(const QByteArray& fields) const {
    const qsizetype hit = fields.indexOf(m_criteria.needle);
    return hit >= 0 && (m_criteria.rule != SearchRule::FirstText ||
                        !QByteArrayView(fields).first(hit).contains(TextArena::kEnd));
}

void SearchRun::reportFirst() {
    m_isFirstReported = true;
    if (m_services.isInterrupted()) {
        return;
    }
    const std::vector<Slot> asFound = m_found;
    if (m_isByMoment) {
        m_index.orderByMoment(m_found);
    }
    m_services.firstFound(idsOfFirst(std::min(m_found.size(), size_t(kSearchPageSize))));
    m_found = asFound;
}

QList<QUuid> SearchRun::idsOfFirst(size_t count) const {
    QList<QUuid> ids;
    ids.reserve(qsizetype(count));
    for (size_t i = 0; i < count; ++i) {
        ids.append(m_index.idAt(m_found[i]));
    }
    return ids;
}

SearchResult SearchRun::result() const {
    SearchResult result;
    result.ids = idsOfFirst(m_found.size());
    result.total = result.ids.size();
    for (const Slot slot : m_found) {
        if (m_index.kindAt(slot) < result.kindCounts.size()) {
            ++result.kindCounts[m_index.kindAt(slot)];
        }
    }
    return result;
}

}  // namespace quillo
