// SPDX-License-Identifier: MIT
#include "library/groups/group_list.h"

#include <algorithm>
#include <utility>

#include "base/logging.h"
#include "model/groups.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcGroups, "GroupList")

bool isOfGroup(const ObjectId& id) {
    return id.entity == Entity::Pinboard;
}

enum class Effect { None, Values, Order };

// The order of a group's clips is not shown.
Effect effectOf(const ChangeSet::Update& update) {
    if (!isOfGroup(update.id)) {
        return Effect::None;
    }
    if (update.attributes.contains(std::to_underlying(PinboardAttribute::SortIndex))) {
        return Effect::Order;
    }
    const bool isShown =
        update.relationships ||
        update.attributes.contains(std::to_underlying(PinboardAttribute::Title)) ||
        update.attributes.contains(std::to_underlying(PinboardAttribute::ColorHex));
    return isShown ? Effect::Values : Effect::None;
}

Effect effectOf(const ChangeSet& changes) {
    if (changes.everything || std::ranges::any_of(changes.inserted, &isOfGroup) ||
        std::ranges::any_of(changes.deleted, &isOfGroup)) {
        return Effect::Order;
    }
    Effect effect = Effect::None;
    for (const ChangeSet::Update& update : changes.updated) {
        effect = std::max(effect, effectOf(update));
    }
    return effect;
}

}  // namespace

GroupList::GroupList(ObjectContext& context, QObject* parent)
    : QObject(parent), m_context(context) {
    readGroups();
    m_items = currentItems();
    connect(&m_context, &ObjectContext::changed, this, &GroupList::follow);
}

void GroupList::readGroups() {
    auto groups = groupsInOrder(m_context);
    if (groups) {
        m_groups = std::move(*groups);
    } else {
        qCWarning(lcGroups, "The groups cannot be read: %ls", qUtf16Printable(groups.error().text));
    }
}

GroupItem GroupList::itemOf(const Pinboard& group) const {
    return {.id = group.id(),
            .title = group.title().value_or(QString()),
            .color = groupColor(group),
            .memberCount = memberCount(group).value_or(0)};
}

QList<GroupItem> GroupList::currentItems() const {
    QList<GroupItem> items;
    for (const auto& group : m_groups) {
        if (!group->isDeleted()) {
            items.append(itemOf(*group));
        }
    }
    return items;
}

void GroupList::publish(QList<GroupItem> items) {
    if (m_items != items) {
        m_items = std::move(items);
        Q_EMIT changed();
    }
}

// The records are the context's own: what it merged is in them already. The store notes a group
// whose members came or went, whichever end was changed.
void GroupList::follow(const ChangeSet& changes) {
    const Effect effect = effectOf(changes);
    if (effect == Effect::Order) {
        readGroups();
        publish(currentItems());
        return;
    }
    if (effect == Effect::None) {
        return;
    }
    QList<GroupItem> items = m_items;
    for (const ChangeSet::Update& update : changes.updated) {
        const auto at = std::ranges::find(items, update.id.key, &GroupItem::id);
        if (const auto record = group(update.id.key);
            effectOf(update) == Effect::Values && at != items.end() && record != nullptr) {
            *at = itemOf(*record);
        }
    }
    publish(std::move(items));
}

std::shared_ptr<Pinboard> GroupList::group(const QUuid& id) const {
    const auto at =
        std::ranges::find_if(m_groups, [&id](const auto& group) { return group->id() == id; });
    return at != m_groups.end() && !(*at)->isDeleted() ? *at : nullptr;
}

std::optional<GroupItem> GroupList::item(const QUuid& id) const {
    const auto at = std::ranges::find(m_items, id, &GroupItem::id);
    return at != m_items.end() ? std::optional(*at) : std::nullopt;
}

}  // namespace quillo
