// SPDX-License-Identifier: MIT
#pragma once

#include <QRandomGenerator>
#include <QString>
#include <memory>
#include <optional>

#include "model/clip_order.h"
#include "model/store/object_context.h"

namespace quillo {

class Clip;

/// One group of clips: its name, its colour, its place among the groups and the order of its
/// clips. Belongs to its context's thread. Nothing here saves; the operations of groups.h do.
///
/// Members and their order include what this context has not saved yet. The functions on
/// identifiers load no records unless clips or memberships wait to be saved: a few milliseconds
/// for 10,000 members. They fail when the store cannot be read; nothing is changed then.
class Pinboard final : public StoredObject {
public:
    static constexpr Entity kEntity = Entity::Pinboard;
    using StoredObject::StoredObject;

    /// Inserts a new group: a fresh id, a random colour of the palette, first of all groups.
    [[nodiscard]] static std::shared_ptr<Pinboard> create(
        ObjectContext& context, const QString& title,
        QRandomGenerator& random = *QRandomGenerator::global());

    /// The order document as stored; none means that the group has no order of its own.
    [[nodiscard]] std::optional<QByteArray> clipOrder() const;
    /// "#RRGGBB"; a missing or unreadable one is shown in the accent colour.
    [[nodiscard]] std::optional<QString> colorHex() const;
    [[nodiscard]] qint64 sortIndex() const;
    [[nodiscard]] std::optional<QString> title() const;

    void setClipOrder(std::optional<QByteArray> document);
    void setColorHex(std::optional<QString> color);
    void setSortIndex(qint64 index);
    void setTitle(std::optional<QString> title);

    /// The decoded order; empty when there is none or it cannot be read. Decoded once for the
    /// bytes that are stored.
    [[nodiscard]] const ClipOrderEntries& clipOrderEntries() const;
    /// An empty list is stored as an empty document.
    void setClipOrderEntries(const ClipOrderEntries& order);

    /// The members, newest first.
    [[nodiscard]] Result<QList<QUuid>> clipIds() const;
    /// The members in the group's order.
    [[nodiscard]] Result<QList<QUuid>> orderedClipIds() const;
    /// The same two with their records loaded; for lists that are known to be short.
    [[nodiscard]] Result<QList<std::shared_ptr<Clip>>> clipsArray() const;
    [[nodiscard]] Result<QList<std::shared_ptr<Clip>>> orderedClips() const;

    /// Whether the clip is pinned in this group; its own pin is another one.
    [[nodiscard]] bool isPinned(const QUuid& clip) const;
    void togglePin(const QUuid& clip);

    /// Makes the order name exactly the members.
    [[nodiscard]] Result<void> normalizeOrder();
    /// Normalises, then moves one entry: both are positions in the normalised order, `to` counted
    /// without the moved entry. Positions outside change nothing more.
    [[nodiscard]] Result<void> move(qsizetype from, qsizetype to);
    /// Moves a clip in the list that a person sees, which may be narrowed by a filter or a search:
    /// `move` holds positions in `visible`. The order first takes all members as they are shown,
    /// so that nothing but the moved clip changes its place.
    [[nodiscard]] Result<void> moveVisible(const QList<QUuid>& visible, OrderMove move);

private:
    [[nodiscard]] Result<ObjectContext*> livingContext() const;

    mutable QByteArray m_decodedBytes;
    mutable ClipOrderEntries m_decodedOrder;
};

}  // namespace quillo
