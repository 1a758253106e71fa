// SPDX-License-Identifier: MIT
#include "model/groups.h"

#include <algorithm>
#include <limits>

#include "base/color_text.h"
#include "model/clip.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr auto kMembership = Relationship::ClipPinboards;
constexpr qint64 kHighestIndex = std::numeric_limits<qint32>::max();

FetchRequest groupsBySortIndex(Qt::SortOrder order) {
    FetchRequest request;
    request.entity = Entity::Pinboard;
    request.sort = {{std::to_underlying(PinboardAttribute::SortIndex), order}};
    return request;
}

// The new group itself counts as one at 0.
Result<qint64> highestIndex(ObjectContext& context) {
    FetchRequest request = groupsBySortIndex(Qt::DescendingOrder);
    request.limit = 1;
    const auto groups = context.fetch<Pinboard>(request);
    if (!groups) {
        return std::unexpected(groups.error());
    }
    return groups->isEmpty() ? 0 : std::max<qint64>(groups->first()->sortIndex(), 0);
}

// A store that cannot be read gives the first place; the save tells of it.
qint64 indexAt(ObjectContext& context, GroupPlace place) {
    if (place == GroupPlace::AfterHighest) {
        const auto highest = highestIndex(context);
        return highest ? std::min(*highest, kHighestIndex - 1) + 1 : 0;
    }
    return context.count(groupsBySortIndex(Qt::AscendingOrder)).value_or(0);
}

ObjectId clipId(const QUuid& key) {
    return {Entity::Clip, key};
}

Result<ObjectContext*> contextOf(const Pinboard& group) {
    if (group.context() == nullptr || group.isDeleted()) {
        return failure(ErrorKind::NotFound, u"The group is gone."_s);
    }
    return group.context();
}

// One question for many clips; for one, however many members there are.
Result<QSet<QUuid>> membersAmong(const QList<QUuid>& clips, const Pinboard& group,
                                 ObjectContext& context) {
    if (clips.size() == 1) {
        const Result<QSet<QUuid>> groups = groupIdsOf(context, clips[0]);
        if (!groups) {
            return std::unexpected(groups.error());
        }
        return groups->contains(group.id()) ? QSet<QUuid>{clips[0]} : QSet<QUuid>();
    }
    const Result<QList<QUuid>> members = group.clipIds();
    if (!members) {
        return std::unexpected(members.error());
    }
    return QSet<QUuid>(members->begin(), members->end());
}

enum class Membership { Member, None };

// Only the clips of which it is not yet so, so that nothing is written for the others.
Result<void> setMembership(Pinboard& group, const QList<QUuid>& clips, Membership wanted) {
    const auto context = contextOf(group);
    if (!context) {
        return std::unexpected(context.error());
    }
    const Result<QSet<QUuid>> members = membersAmong(clips, group, **context);
    if (!members) {
        return std::unexpected(members.error());
    }
    bool isChanged = false;
    for (const QUuid& clip : clips) {
        const bool isMember = members->contains(clip);
        if (isMember == (wanted == Membership::Member)) {
            continue;
        }
        isMember ? (*context)->unrelate(clipId(clip), kMembership, group.objectId())
                 : (*context)->relate(clipId(clip), kMembership, group.objectId());
        isChanged = true;
    }
    return isChanged ? (*context)->save() : Result<void>();
}

Result<void> saveGroup(Pinboard& group) {
    const auto context = contextOf(group);
    return context ? (*context)->save() : std::unexpected(context.error());
}

}  // namespace

Result<QList<std::shared_ptr<Pinboard>>> groupsInOrder(ObjectContext& context) {
    return context.fetch<Pinboard>(groupsBySortIndex(Qt::AscendingOrder));
}

std::optional<QString> groupTitleFromText(const QString& text) {
    QString title = text.trimmed();
    return title.isEmpty() ? std::nullopt : std::optional(std::move(title));
}

std::optional<QColor> groupColor(const Pinboard& group) {
    const auto hex = group.colorHex();
    return hex.has_value() ? colorFromHex(*hex) : std::nullopt;
}

Result<std::shared_ptr<Pinboard>> createGroup(ObjectContext& context, const NewGroup& wanted) {
    const auto title = groupTitleFromText(wanted.title);
    if (!title.has_value()) {
        return nullptr;
    }
    const qint64 index = indexAt(context, wanted.place);
    auto group = Pinboard::create(context, *title);
    group->setColorHex(hexString(wanted.color));
    group->setSortIndex(index);
    for (const QUuid& clip : wanted.clips) {
        context.relate(clipId(clip), kMembership, group->objectId());
    }
    if (auto saved = context.save(); !saved) {
        return std::unexpected(saved.error());
    }
    return group;
}

Result<void> renameGroup(Pinboard& group, const QString& title) {
    group.setTitle(title);
    return saveGroup(group);
}

Result<void> recolorGroup(Pinboard& group, const QColor& color) {
    group.setColorHex(hexString(color));
    return saveGroup(group);
}

Result<bool> editGroup(Pinboard& group, const QString& text, const QColor& color) {
    const auto title = groupTitleFromText(text);
    if (!title.has_value()) {
        return false;
    }
    group.setTitle(title);
    group.setColorHex(hexString(color));
    const auto saved = saveGroup(group);
    return saved ? Result<bool>(true) : std::unexpected(saved.error());
}

// The store takes a deleted group out of its clips.
Result<void> deleteGroup(Pinboard& group) {
    const auto context = contextOf(group);
    if (!context) {
        return std::unexpected(context.error());
    }
    (*context)->remove(group);
    return (*context)->save();
}

Result<void> reorderGroups(ObjectContext& context, const QList<std::shared_ptr<Pinboard>>& groups) {
    for (qsizetype i = 0; i < groups.size(); ++i) {
        groups[i]->setSortIndex(i);
    }
    return context.save();
}

Result<qsizetype> memberCount(const Pinboard& group) {
    const auto context = contextOf(group);
    if (!context) {
        return std::unexpected(context.error());
    }
    FetchRequest request;
    request.relatedTo = RelatedTo{group.objectId(), kMembership};
    return (*context)->count(request);
}

Result<QSet<QUuid>> groupIdsOf(ObjectContext& context, const QUuid& clip) {
    const auto groups = context.related(clipId(clip), kMembership);
    if (!groups) {
        return std::unexpected(groups.error());
    }
    QSet<QUuid> ids;
    for (const ObjectId& group : *groups) {
        ids.insert(group.key);
    }
    return ids;
}

Result<void> addClips(Pinboard& group, const QList<QUuid>& clips) {
    return setMembership(group, clips, Membership::Member);
}

Result<void> removeClips(Pinboard& group, const QList<QUuid>& clips) {
    return setMembership(group, clips, Membership::None);
}

Result<bool> toggleClip(Pinboard& group, const QUuid& clip) {
    const auto context = contextOf(group);
    const auto groups = context ? groupIdsOf(**context, clip) : std::unexpected(context.error());
    if (!groups) {
        return std::unexpected(groups.error());
    }
    const bool willBeMember = !groups->contains(group.id());
    const auto done =
        setMembership(group, {clip}, willBeMember ? Membership::Member : Membership::None);
    return done ? Result<bool>(willBeMember) : std::unexpected(done.error());
}

Result<void> removeFromAllGroups(ObjectContext& context, const QList<QUuid>& clips) {
    bool isChanged = false;
    for (const QUuid& clip : clips) {
        const auto groups = context.related(clipId(clip), kMembership);
        if (!groups) {
            return std::unexpected(groups.error());
        }
        for (const ObjectId& group : *groups) {
            context.unrelate(clipId(clip), kMembership, group);
            isChanged = true;
        }
    }
    return isChanged ? context.save() : Result<void>();
}

}  // namespace quillo
