// SPDX-License-Identifier: MIT
#include "overlay/overlay_clips.h"

#include <algorithm>

#include "base/logging.h"
#include "model/pinboard.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcOverlay, "SimpleOverlayView")

FetchRequest pinnedThenNewest() {
    FetchRequest request;
    request.sort = {{int(ClipAttribute::IsPinned), Qt::DescendingOrder},
                    {int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    request.limit = OverlayClips::kMaxVisibleClips;
    return request;
}

bool concernsClips(const ChangeSet& changes) {
    const auto isClip = [](const ObjectId& id) { return id.entity == Entity::Clip; };
    return changes.everything ||
           std::any_of(changes.inserted.begin(), changes.inserted.end(), isClip) ||
           std::any_of(changes.deleted.begin(), changes.deleted.end(), isClip) ||
           std::any_of(changes.updated.begin(), changes.updated.end(),
                       [&](const ChangeSet::Update& update) { return isClip(update.id); });
}

bool touches(const ChangeSet& changes, const ObjectId& id) {
    return changes.everything || changes.deleted.contains(id) ||
           std::ranges::any_of(changes.updated,
                               [&](const ChangeSet::Update& update) { return update.id == id; });
}

}  // namespace

OverlayClips::OverlayClips(PersistenceController& persistence, Workspace& workspace,
                           QObject* parent)
    : QObject(parent),
      m_persistence(persistence),
      m_sourceNames(workspace),
      m_search(persistence,
               {.folding = caseFoldingFor(QLocale()),
                .sourceName = [this](const QString& id) { return m_sourceNames.of(id); }}) {
    connect(&m_persistence.viewContext(), &ObjectContext::changed, this,
            &OverlayClips::storeChanged);
    connect(&m_search, &ClipSearch::contentsChanged, this, &OverlayClips::searchAgain);
    connect(&m_search, &ClipSearch::firstFound, this, &OverlayClips::takePage);
    connect(&m_search, &ClipSearch::finished, this, &OverlayClips::takeResult);
}

std::shared_ptr<Pinboard> OverlayClips::group() const {
    return m_groupFilter ? m_persistence.viewContext().object<Pinboard>(*m_groupFilter) : nullptr;
}

void OverlayClips::setSearchText(const QString& text) {
    const bool asksAnew = text.trimmed() != m_criteria.searchText.trimmed();
    m_criteria.searchText = text;
    if (asksAnew) {
        refresh();
    }
}

void OverlayClips::setTypeFilter(std::optional<FilterType> filter) {
    if (m_criteria.typeFilter != filter) {
        m_criteria.typeFilter = filter;
        refresh();
    }
}

void OverlayClips::setGroupFilter(std::optional<QUuid> group) {
    if (m_groupFilter != group) {
        m_groupFilter = group;
        loadGroup();
        refresh();
    }
}

void OverlayClips::clearCriteria() {
    const bool wasNarrowed = m_criteria.isNarrow();
    m_criteria = {};
    m_groupFilter.reset();
    if (wasNarrowed) {
        refresh();
    }
}

void OverlayClips::setHidden(const QList<QUuid>& clips) {
    QHash<QUuid, ClipType> hidden;
    for (const QUuid& clip : clips) {
        const auto shown = std::ranges::find(m_cards, clip, &CardContent::clip);
        const ClipType kind = shown != m_cards.end() ? shown->kind : ClipType::Text;
        hidden.insert(clip, m_hidden.value(clip, kind));
    }
    m_hidden = hidden;
    refresh();
}

void OverlayClips::loadGroup() {
    m_criteria.group.reset();
    if (m_groupFilter) {
        const std::shared_ptr<Pinboard> chosen = group();
        const auto members = chosen ? chosen->orderedClipIds() : Result<QList<QUuid>>();
        m_criteria.group = members.value_or(QList<QUuid>());
    }
}

void OverlayClips::refresh() {
    searchAgain();
    if (!m_criteria.isNarrow()) {
        showWholeHistory();
    }
}

void OverlayClips::storeChanged(const ChangeSet& changes) {
    if (m_groupFilter && touches(changes, {Entity::Pinboard, *m_groupFilter})) {
        groupChanged(changes);
    }
    // A narrowed list waits until the search knows of the change.
    if (concernsClips(changes) && !m_criteria.isNarrow()) {
        showWholeHistory();
    }
}

void OverlayClips::groupChanged(const ChangeSet& changes) {
    const bool isGone =
        changes.deleted.contains(ObjectId{Entity::Pinboard, *m_groupFilter}) || group() == nullptr;
    if (isGone) {
        setGroupFilter(std::nullopt);
        Q_EMIT groupLost();
    } else {
        loadGroup();
        refresh();
    }
}

void OverlayClips::searchAgain() {
    m_isPending = m_criteria.isNarrow();
    m_search.request(m_criteria);
}

void OverlayClips::showWholeHistory() {
    ObjectContext& context = m_persistence.viewContext();
    FetchRequest request = pinnedThenNewest();
    request.limit += m_hidden.size();
    Result<QList<std::shared_ptr<Clip>>> clips = context.fetch<Clip>(request);
    const Result<qsizetype> total = context.count(FetchRequest{});
    if (!clips || !total) {
        const Error& error = clips ? total.error() : clips.error();
        qCCritical(lcOverlay, "Error fetching clips: %s", qUtf8Printable(error.text));
        return;
    }
    m_total = *total - m_hidden.size();
    show(std::move(*clips));
}

void OverlayClips::takePage(const SearchPage& page) {
    FetchRequest request;
    for (const QUuid& id : page.ids) {
        request.ids.append({Entity::Clip, id});
    }
    const auto found = page.ids.isEmpty() ? Result<QList<std::shared_ptr<Clip>>>()
                                          : m_persistence.viewContext().fetch<Clip>(request);
    if (!found) {
        qCCritical(lcOverlay, "Error fetching clips: %s", qUtf8Printable(found.error().text));
        return;
    }
    QHash<QUuid, std::shared_ptr<Clip>> byId;
    for (const std::shared_ptr<Clip>& clip : *found) {
        byId.insert(clip->id(), clip);
    }
    QList<std::shared_ptr<Clip>> clips;
    for (const QUuid& id : page.ids) {
        // One that was deleted a moment ago is missing.
        if (const auto clip = byId.value(id)) {
            clips.append(clip);
        }
    }
    m_isPending = false;
    show(std::move(clips));
}

void OverlayClips::takeResult(const SearchResult& result) {
    m_visibleIds = result.ids;
    m_kindCounts = result.kindCounts;
    m_total = result.total;
    for (const auto& [clip, kind] : m_hidden.asKeyValueRange()) {
        // The whole history comes without its identifiers.
        if (!m_criteria.isNarrow() || m_visibleIds.removeOne(clip)) {
            --m_kindCounts[size_t(kind)];
            --m_total;
        }
    }
    Q_EMIT counted();
}

void OverlayClips::show(QList<std::shared_ptr<Clip>> clips) {
    clips.removeIf([this](const auto& clip) { return m_hidden.contains(clip->id()); });
    m_clips = clips.first(std::min<qsizetype>(clips.size(), kMaxVisibleClips));
    m_cards.clear();
    const std::shared_ptr<Pinboard> chosen = group();
    for (const std::shared_ptr<Clip>& clip : std::as_const(m_clips)) {
        CardContent card =
            cardContentFor(*clip, m_sourceNames.of(clip->sourceBundleId().value_or(u""_s)));
        // Within a group its own pins count.
        card.isPinned = chosen ? chosen->isPinned(clip->id()) : card.isPinned;
        m_cards.append(std::move(card));
    }
    Q_EMIT refreshed();
}

QList<QUuid> OverlayClips::cardIds() const {
    QList<QUuid> ids;
    for (const CardContent& card : m_cards) {
        ids.append(card.clip);
    }
    return ids;
}

QList<ClipTypeCount> OverlayClips::typeCounts() const {
    QList<ClipTypeCount> counts;
    for (const ClipType type : kClipTypes) {
        if (const qsizetype count = m_kindCounts[size_t(type)]; count > 0) {
            counts.append({type, count});
        }
    }
    return counts;
}

EmptyState OverlayClips::emptyState() const {
    std::optional<QString> groupTitle;
    if (m_groupFilter) {
        const std::shared_ptr<Pinboard> chosen = group();
        groupTitle = chosen ? chosen->title().value_or(u""_s) : u""_s;
    }
    return emptyStateFor(m_criteria.searchText, m_criteria.typeFilter, groupTitle);
}

}  // namespace quillo
