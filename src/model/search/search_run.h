// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <functional>
#include <vector>

#include "model/search/search_index.h"
#include "model/search/search_request.h"

namespace quillo {

/// One search from its criteria to its answer: collects what the index finds and has the texts
/// read that the index does not keep. Belongs to the index's thread.
class SearchRun final {
public:
    struct Services {
        SearchIndex::Interrupted isInterrupted;
        /// The folded fields of these clips; blocks. Clips that are gone are missing.
        std::function<QHash<QUuid, QByteArray>(const QList<QUuid>& ids)> readFields;
        /// The first clips in display order, before the rest is known.
        std::function<void(const QList<QUuid>& ids)> firstFound;
    };

    SearchRun(const SearchIndex& index, SearchIndex::Criteria criteria, Services services);

    [[nodiscard]] const SearchIndex::Criteria& criteria() const { return m_criteria; }

    /// False when it was interrupted.
    [[nodiscard]] bool overEverything();
    [[nodiscard]] bool over(const std::vector<SearchIndex::Slot>& base);

    [[nodiscard]] SearchResult result() const;
    [[nodiscard]] const std::vector<SearchIndex::Slot>& slotsFound() const { return m_found; }

private:
    using Slot = SearchIndex::Slot;

    /// False once it was interrupted.
    bool take(Slot slot, SearchIndex::Answer answer);
    [[nodiscard]] bool readRest();
    [[nodiscard]] bool report();
    [[nodiscard]] bool isMatch(const QByteArray& fields) const;
    [[nodiscard]] bool readUncertain();
    [[nodiscard]] bool readBatch(size_t begin, size_t end);
    void reportFirst();
    [[nodiscard]] QList<QUuid> idsOfFirst(size_t count) const;

    const SearchIndex& m_index;
    const SearchIndex::Criteria m_criteria;
    const Services m_services;
    std::vector<Slot> m_found;
    std::vector<size_t> m_uncertain;  ///< Positions in m_found that must be read.
    bool m_isFirstReported = false;
    bool m_isByMoment = false;  ///< What is found is yet to be ordered by moment.
    size_t m_pinnedFound = 0;   ///< While it is.
    bool m_wasInterrupted = false;
};

}  // namespace quillo
