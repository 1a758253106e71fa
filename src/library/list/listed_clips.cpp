// SPDX-License-Identifier: MIT
#include "library/list/listed_clips.h"

#include "base/logging.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcList, "ClipList")

}  // namespace

ListedClips::ListedClips(PersistenceController& persistence, ClipSearch& sharedSearch,
                         const Clock& clock, qsizetype newestOnly, QObject* parent)
    : QObject(parent),
      m_persistence(persistence),
      m_model(persistence, clock),
      m_search(sharedSearch),
      m_newestOnly(newestOnly) {
    connect(&m_persistence.viewContext(), &ObjectContext::changed, this, [this] {
        // The search tells when it knows of the change.
        if (!isSearched()) {
            showNewest();
        }
    });
    connect(&m_search, &ClipSearch::contentsChanged, this, [this] {
        if (isSearched()) {
            m_isNewQuestion = false;
            searchAgain();
        }
    });
    connect(&m_search, &ClipSearch::firstFound, this, [this](const SearchPage& page) {
        // A list that only follows the store stays until the whole new one is there.
        if (m_isNewQuestion) {
            show(page.ids);
        }
    });
    connect(&m_search, &ClipSearch::finished, this,
            [this](const SearchResult& result) { show(result.ids); });
    refresh();
}

void ListedClips::setSearchText(const QString& text) {
    const QString trimmed = text.trimmed();
    if (m_searchText != trimmed) {
        m_searchText = trimmed;
        refresh();
    }
}

void ListedClips::refresh() {
    m_isNewQuestion = true;
    if (isSearched()) {
        searchAgain();
    } else {
        m_search.cancel();
        showNewest();
    }
}

void ListedClips::searchAgain() {
    ClipCriteria criteria;
    criteria.searchText = m_searchText;
    criteria.rule = SearchRule::FirstText;
    m_search.request(criteria);
}

void ListedClips::showNewest() {
    FetchRequest newest;
    newest.sort = {{int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    newest.limit = m_newestOnly;
    const auto found = m_persistence.viewContext().fetchIds(newest);
    if (!found) {
        qCCritical(lcList, "Error fetching clips: %s", qUtf8Printable(found.error().text));
        return;
    }
    QList<QUuid> ids;
    for (const ObjectId& id : *found) {
        ids.append(id.key);
    }
    show(ids);
}

void ListedClips::show(const QList<QUuid>& ids) {
    if (ids != m_model.ids()) {
        Q_EMIT aboutToRefresh();
        m_model.setIds(ids);
    }
    Q_EMIT refreshed();
}

}  // namespace quillo
