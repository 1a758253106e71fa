// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QObject>
#include <QUuid>
#include <memory>
#include <optional>

#include "model/pinboard.h"

namespace quillo {

/// What a view shows of a group.
struct GroupItem {
    QUuid id;
    QString title;                ///< Empty for a group without a name.
    std::optional<QColor> color;  ///< None is shown in the accent colour.
    qsizetype memberCount = 0;

    friend bool operator==(const GroupItem&, const GroupItem&) = default;
};

/// The groups of a context in their order, kept up to date: one read when it is made, afterwards
/// only what a change set names. Counting members decodes no order and loads no clips. A group
/// that cannot be counted shows 0. On the context's thread.
class GroupList final : public QObject {
    Q_OBJECT

public:
    /// The context must outlive the list.
    explicit GroupList(ObjectContext& context, QObject* parent = nullptr);

    [[nodiscard]] ObjectContext& context() const { return m_context; }
    [[nodiscard]] const QList<GroupItem>& items() const { return m_items; }
    /// Null for a group that is not, or no longer, there.
    [[nodiscard]] std::shared_ptr<Pinboard> group(const QUuid& id) const;
    [[nodiscard]] std::optional<GroupItem> item(const QUuid& id) const;

Q_SIGNALS:
    /// items() are others than before.
    void changed();

private:
    void follow(const ChangeSet& changes);
    void readGroups();
    void publish(QList<GroupItem> items);
    [[nodiscard]] GroupItem itemOf(const Pinboard& group) const;
    [[nodiscard]] QList<GroupItem> currentItems() const;

    ObjectContext& m_context;
    QList<std::shared_ptr<Pinboard>> m_groups;
    QList<GroupItem> m_items;
};

}  // namespace quillo
