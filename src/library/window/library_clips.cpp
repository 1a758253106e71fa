// SPDX-License-Identifier: MIT
#include "library/window/library_clips.h"

#include <algorithm>
#include <utility>

#include "base/logging.h"
#include "model/pinboard.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcClips, "LibraryClips")

// More than a large screen shows, and read within a frame.
constexpr qsizetype kFirstClips = 200;
constexpr qsizetype kMostCards = 600;
// What is longer takes more than a frame to list.
constexpr qsizetype kMostListedAtOnce = 2'000;
constexpr int kRestMs = 100;

FetchRequest newestFirst(const LibrarySection& section, std::optional<FilterType> filter) {
    FetchRequest request;
    if (section.kind == LibrarySection::Kind::Favorites) {
        request.conditions.append(
            {std::to_underlying(ClipAttribute::IsPinned), Condition::Operator::Equal, qint64{1}});
    }
    if (filter) {
        request.conditions.append(filterCondition(*filter));
    }
    request.sort = {{std::to_underlying(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    return request;
}

QList<QUuid> keysOf(const QList<ObjectId>& ids) {
    QList<QUuid> keys;
    keys.reserve(ids.size());
    for (const ObjectId& id : ids) {
        keys.append(id.key);
    }
    return keys;
}

bool isOfClip(const ObjectId& id) {
    return id.entity == Entity::Clip;
}

}  // namespace

LibraryClips::LibraryClips(PersistenceController& persistence, ClipSearch& sharedSearch,
                           SourceName sourceName, QObject* parent)
    : QObject(parent),
      m_persistence(persistence),
      m_search(sharedSearch),
      m_cards(persistence.viewContext(), kMostCards,
              [name = std::move(sourceName)](const Clip& clip) {
                  const QString source = clip.sourceBundleId().value_or(QString());
                  return cardContentFor(clip, source.isEmpty() ? source : name(source));
              }) {
    connect(&m_persistence.viewContext(), &ObjectContext::changed, this, &LibraryClips::follow);
    connect(&m_search, &ClipSearch::firstFound, this, &LibraryClips::takePage);
    connect(&m_search, &ClipSearch::finished, this, &LibraryClips::takeResult);
    connect(&m_search, &ClipSearch::contentsChanged, this, [this] {
        if (!m_isWhole) {
            searchAgain();
        }
    });
    m_rest.setSingleShot(true);
    m_rest.setInterval(kRestMs);
    connect(&m_rest, &QTimer::timeout, this, [this] {
        if (m_isBehind) {
            followFromStore();
        }
    });
    ask(News::Replaced);
}

void LibraryClips::setSection(const LibrarySection& section) {
    if (std::exchange(m_section, section) != section) {
        ask(News::Replaced);
    }
}

void LibraryClips::setSearchText(const QString& text) {
    const QString before = std::exchange(m_searchText, text);
    if (before.trimmed() != text.trimmed()) {
        ask(News::Replaced);
    }
}

void LibraryClips::setTypeFilter(std::optional<FilterType> filter) {
    if (std::exchange(m_typeFilter, filter) != filter) {
        ask(News::Replaced);
    }
}

void LibraryClips::clearFilters() {
    const bool wasFiltered = !m_searchText.trimmed().isEmpty() || m_typeFilter;
    m_searchText.clear();
    m_typeFilter.reset();
    if (wasFiltered) {
        ask(News::Replaced);
    }
}

void LibraryClips::setHidden(const QSet<QUuid>& clips) {
    if (std::exchange(m_hidden, clips) != clips) {
        m_ids.removeIf([this](const QUuid& id) { return m_hidden.contains(id); });
        ask(News::Changed);
    }
}

// A list that follows the one before is taken at once, so that nothing flickers.
void LibraryClips::ask(News news) {
    m_news = m_isPending ? News::Replaced : news;
    m_isWhole = false;
    const bool wasShown = m_searchText.trimmed().isEmpty() && showFirst();
    m_isPending = !wasShown && m_news == News::Replaced;
    if (m_isWhole) {
        m_search.cancel();
    } else {
        searchAgain();
    }
    if (wasShown) {
        publish();
    }
}

void LibraryClips::searchAgain() {
    m_search.request(criteria());
}

ClipCriteria LibraryClips::criteria() const {
    ClipCriteria criteria{.searchText = m_searchText, .typeFilter = m_typeFilter};
    criteria.rule = SearchRule::AnyField;
    criteria.isOnlyPinned = m_section.kind == LibrarySection::Kind::Favorites;
    if (m_section.kind == LibrarySection::Kind::Pinboard) {
        criteria.group = pinboardClips();
    }
    return criteria;
}

QList<QUuid> LibraryClips::pinboardClips() const {
    const auto group = m_persistence.viewContext().object<Pinboard>(m_section.pinboard);
    const auto ids = group ? group->orderedClipIds() : Result<QList<QUuid>>();
    if (!ids) {
        qCWarning(lcClips, "A pinboard cannot be read: %ls", qUtf16Printable(ids.error().text));
    }
    return ids.value_or(QList<QUuid>());
}

// False where the store alone cannot tell.
bool LibraryClips::showFirst() {
    if (m_section.kind == LibrarySection::Kind::Pinboard) {
        if (m_typeFilter) {
            return false;
        }
        const QList<QUuid> ids = pinboardClips();
        m_isWhole = true;
        m_isComplete = true;
        take(ids, ids.size());
        return true;
    }
    ObjectContext& context = m_persistence.viewContext();
    FetchRequest request = newestFirst(m_section, m_typeFilter);
    const Result<qsizetype> total = context.count(request);
    // What is listed already and goes on being listed is not cut short for a moment.
    const bool isFollowing = m_news == News::Changed;
    request.limit = kFirstClips + (isFollowing ? m_hidden.size() : 0);
    const Result<QList<ObjectId>> first = context.fetchIds(request);
    if (!total || !first) {
        qCWarning(lcClips, "The clips cannot be listed: %ls",
                  qUtf16Printable((total ? first.error() : total.error()).text));
        return false;
    }
    m_isWhole = first->size() == *total;
    m_isComplete = m_isWhole;
    if (isFollowing && !m_isWhole && m_ids.size() > first->size()) {
        return false;
    }
    take(keysOf(*first), *total);
    return true;
}

void LibraryClips::take(QList<QUuid> ids, qsizetype total) {
    if (!m_hidden.isEmpty()) {
        total -= ids.removeIf([this](const QUuid& id) { return m_hidden.contains(id); });
    }
    m_ids = std::move(ids);
    m_total = total;
}

void LibraryClips::publish() {
    const News news = std::exchange(m_news, News::Changed);
    Q_EMIT(news == News::Replaced ? replaced() : changed());
}

// Only where nothing is shown yet: a list that is followed must not become shorter in between.
void LibraryClips::takePage(const SearchPage& page) {
    if (m_isPending) {
        m_isPending = false;
        m_isComplete = false;
        take(page.ids, page.ids.size());
        publish();
    }
}

void LibraryClips::takeResult(const SearchResult& result) {
    m_isPending = false;
    const QList<QUuid> before = m_ids;
    const bool wasComplete = std::exchange(m_isComplete, true);
    take(result.ids, result.ids.size());
    if (m_news == News::Replaced || !wasComplete || before != m_ids) {
        publish();
    }
}

void LibraryClips::follow(const ChangeSet& changes) {
    for (const QUuid& clip : m_cards.forget(changes)) {
        Q_EMIT cardChanged(clip);
    }
    if (!concerns(changes)) {
        return;
    }
    const bool isFromStore = m_isWhole || m_ids.size() < m_total;
    if (isFromStore || changes.everything) {
        if (isReordered(changes)) {
            m_rest.stop();
        }
        followFromStore();
        return;
    }
    if (m_section.kind == LibrarySection::Kind::Pinboard) {
        searchAgain();
    }
    // The rest comes when the search knows of it.
    const QList<QUuid> deleted = keysOf(changes.deleted);
    const QSet<QUuid> gone(deleted.begin(), deleted.end());
    if (!gone.isEmpty() && m_ids.removeIf([&](const QUuid& id) { return gone.contains(id); }) > 0) {
        m_total = m_ids.size();
        Q_EMIT changed();
    }
}

// A clip that comes or goes changes nothing in the pinboard's own record.
bool LibraryClips::isReordered(const ChangeSet& changes) const {
    return std::ranges::any_of(changes.updated, [this](const ChangeSet::Update& update) {
        return update.id.key == m_section.pinboard && !update.attributes.isEmpty();
    });
}

// A long list is not read anew for each of many changes that come together.
void LibraryClips::followFromStore() {
    if (m_rest.isActive()) {
        m_isBehind = true;
        return;
    }
    m_isBehind = false;
    ask(News::Changed);
    if (m_isWhole && m_ids.size() > kMostListedAtOnce) {
        m_rest.start();
    }
}

bool LibraryClips::concerns(const ChangeSet& changes) const {
    const ObjectId board{Entity::Pinboard, m_section.pinboard};
    return changes.everything || std::ranges::any_of(changes.inserted, &isOfClip) ||
           !changes.deleted.isEmpty() ||
           std::ranges::any_of(changes.updated, [&](const ChangeSet::Update& update) {
               return update.id == board || (isOfClip(update.id) && !update.attributes.isEmpty());
           });
}

}  // namespace quillo
