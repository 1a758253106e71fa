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

QString capitalized(const QString& text) {
    QString result = text.toLower();
    bool startsWord = true;
    for (QChar& c : result) {
        c = startsWord ? c.toUpper() : c;
        startsWord = !c.isLetterOrNumber() && c != u'\'';
    }
    return result;
}

}  // namespace

OverlayClips::OverlayClips(PersistenceController& persistence, Workspace& workspace,
                           QObject* parent)
    : QObject(parent),
      m_persistence(persistence),
      m_workspace(workspace),
      m_search(persistence, {.folding = caseFoldingFor(QLocale()),
                             .sourceName = [this](const QString& id) { return sourceName(id); }}) {
    connect(&m_persistence.viewContext(), &ObjectContext::changed, this,
            &OverlayClips::storeChanged);
    connect(&m_search, &ClipSearch::contentsChanged, this, &OverlayClips::searchAgain);
    connect(&m_search, &ClipSearch::firstFound, this, &OverlayClips::takePage);
    connect(&m_search, &ClipSearch::finished, this, &OverlayClips::takeResult);
}

bool OverlayClips::isNarrowed() const {
    return !m_searchText.trimmed().isEmpty() || m_typeFilter || m_groupFilter;
}

void OverlayClips::setSearchText(const QString& text) {
    const bool asksAnew = text.trimmed() != m_searchText.trimmed();
    m_searchText = text;
    if (asksAnew) {
        refresh();
    }
}

void OverlayClips::setTypeFilter(std::optional<FilterType> filter) {
    m_typeFilter = filter;
    refresh();
}

void OverlayClips::setGroupFilter(std::optional<QUuid> group) {
    m_groupFilter = group;
    refresh();
}

void OverlayClips::clearCriteria() {
    const bool wasNarrowed = isNarrowed();
    m_searchText.clear();
    m_typeFilter.reset();
    m_groupFilter.reset();
    if (wasNarrowed) {
        refresh();
    }
}

void OverlayClips::refresh() {
    searchAgain();
    if (!isNarrowed()) {
        showWholeHistory();
    }
}

void OverlayClips::storeChanged(const ChangeSet& changes) {
    // A narrowed list waits until the search knows of the change.
    if (concernsClips(changes) && !isNarrowed()) {
        showWholeHistory();
    }
}

void OverlayClips::searchAgain() {
    m_isPending = isNarrowed();
    m_search.request(criteria());
}

ClipCriteria OverlayClips::criteria() const {
    ClipCriteria criteria{.searchText = m_searchText, .typeFilter = m_typeFilter, .group = {}};
    if (m_groupFilter) {
        const auto group = m_persistence.viewContext().object<Pinboard>(*m_groupFilter);
        const auto members = group ? group->orderedClipIds() : Result<QList<QUuid>>();
        criteria.group = members.value_or(QList<QUuid>());
    }
    return criteria;
}

void OverlayClips::showWholeHistory() {
    ObjectContext& context = m_persistence.viewContext();
    Result<QList<std::shared_ptr<Clip>>> clips = context.fetch<Clip>(pinnedThenNewest());
    const Result<qsizetype> total = context.count(FetchRequest{});
    if (!clips || !total) {
        const Error& error = clips ? total.error() : clips.error();
        qCCritical(lcOverlay, "Error fetching clips: %s", qUtf8Printable(error.text));
        return;
    }
    m_total = *total;
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
    Q_EMIT counted();
}

void OverlayClips::show(QList<std::shared_ptr<Clip>> clips) {
    m_clips = std::move(clips);
    m_cards.clear();
    for (const std::shared_ptr<Clip>& clip : m_clips) {
        m_cards.append(cardContentFor(*clip, sourceName(clip->sourceBundleId().value_or(u""_s))));
    }
    Q_EMIT refreshed();
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
        const auto group = m_persistence.viewContext().object<Pinboard>(*m_groupFilter);
        groupTitle = group ? group->title().value_or(u""_s) : u""_s;
    }
    return emptyStateFor(m_searchText, m_typeFilter, groupTitle);
}

QString OverlayClips::sourceName(const QString& identifier) {
    if (identifier.isEmpty()) {
        return {};
    }
    const auto known = m_sourceNames.constFind(identifier);
    if (known != m_sourceNames.cend()) {
        return *known;
    }
    const QString name = sourceNameFor(identifier, m_workspace.installedApplication(identifier));
    m_sourceNames.insert(identifier, name);
    return name;
}

QString sourceNameFor(const QString& bundleIdentifier,
                      const std::optional<InstalledApplication>& application) {
    if (application && !application->name.isEmpty()) {
        return application->name;
    }
    const QStringList parts = bundleIdentifier.split(u'.', Qt::SkipEmptyParts);
    return parts.isEmpty() ? QString() : capitalized(parts.constLast());
}

}  // namespace quillo
