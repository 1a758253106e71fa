// SPDX-License-Identifier: MIT
#include "library/window/library_sections.h"

#include <algorithm>
#include <utility>

#include "base/logging.h"
#include "model/clip.h"
#include "model/groups.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcSections, "LibrarySections")

// Each costs a few look-ups.
constexpr qsizetype kMostHiddenCounted = 200;

FetchRequest favorites() {
    FetchRequest request;
    request.conditions = {
        {std::to_underlying(ClipAttribute::IsPinned), Condition::Operator::Equal, qint64{1}}};
    return request;
}

bool isOfClip(const ObjectId& id) {
    return id.entity == Entity::Clip;
}

// Only these change a count.
bool changesCounts(const ChangeSet& changes) {
    const auto pins = [](const ChangeSet::Update& update) {
        return isOfClip(update.id) &&
               update.attributes.contains(std::to_underlying(ClipAttribute::IsPinned));
    };
    return changes.everything || std::ranges::any_of(changes.inserted, &isOfClip) ||
           std::ranges::any_of(changes.deleted, &isOfClip) ||
           std::ranges::any_of(changes.updated, pins);
}

}  // namespace

LibrarySections::LibrarySections(const GroupList& groups, QObject* parent)
    : QObject(parent), m_groups(groups) {
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &LibrarySections::count);
    connect(&m_groups, &GroupList::changed, this, &LibrarySections::changed);
    connect(&m_groups.context(), &ObjectContext::changed, this, &LibrarySections::follow);
    count();
}

void LibrarySections::follow(const ChangeSet& changes) {
    if (changesCounts(changes)) {
        m_soon.start(0);
    }
}

void LibrarySections::setHidden(const QSet<QUuid>& clips) {
    m_hidden = clips;
    countHidden();
    Q_EMIT changed();
}

void LibrarySections::countHidden() {
    ObjectContext& context = m_groups.context();
    m_hiddenFavorites = 0;
    m_hiddenMembers.clear();
    if (m_hidden.size() > kMostHiddenCounted) {
        return;
    }
    for (const QUuid& id : std::as_const(m_hidden)) {
        const auto clip = context.object<Clip>(id);
        m_hiddenFavorites += clip != nullptr && clip->isPinned() ? 1 : 0;
        for (const QUuid& group : groupIdsOf(context, id).value_or(QSet<QUuid>())) {
            ++m_hiddenMembers[group];
        }
    }
}

void LibrarySections::count() {
    ObjectContext& context = m_groups.context();
    const Result<qsizetype> all = context.count(FetchRequest{});
    const Result<qsizetype> pinned = context.count(favorites());
    if (!all || !pinned) {
        qCWarning(lcSections, "The clips cannot be counted: %ls",
                  qUtf16Printable((all ? pinned : all).error().text));
        return;
    }
    const bool isAnother = std::pair(*all, *pinned) != std::pair(m_clipCount, m_favoriteCount);
    m_clipCount = *all;
    m_favoriteCount = *pinned;
    if (isAnother) {
        Q_EMIT changed();
    }
}

QString LibrarySections::title(const LibrarySection& section) const {
    switch (section.kind) {
        case LibrarySection::Kind::AllClips:
            return QStringLiteral("All Clips");
        case LibrarySection::Kind::Favorites:
            return QStringLiteral("Favorites");
        case LibrarySection::Kind::Pinboard:
            break;
    }
    const std::optional<GroupItem> item = m_groups.item(section.pinboard);
    return item && !item->title.isEmpty() ? item->title : QStringLiteral("Pinboard");
}

bool LibrarySections::contains(const LibrarySection& section) const {
    return section.kind != LibrarySection::Kind::Pinboard ||
           m_groups.item(section.pinboard).has_value();
}

QString pinboardTitle(const GroupItem& item) {
    return item.title.isEmpty() ? QStringLiteral("Untitled") : item.title;
}

}  // namespace quillo
