// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

#include "model/store/object_context.h"

namespace quillo {

/// One group of clips: its name, its colour, its place among the groups and the document that
/// holds the order of its clips. Its members are Relationship::ClipPinboards. Belongs to its
/// context's thread.
class Pinboard final : public StoredObject {
public:
    static constexpr Entity kEntity = Entity::Pinboard;
    using StoredObject::StoredObject;

    /// The order document as stored; none means that the group has no order of its own.
    [[nodiscard]] std::optional<QByteArray> clipOrder() const;
    [[nodiscard]] std::optional<QString> colorHex() const;
    [[nodiscard]] qint64 sortIndex() const;
    [[nodiscard]] std::optional<QString> title() const;

    void setClipOrder(std::optional<QByteArray> document);
    void setColorHex(std::optional<QString> color);
    void setSortIndex(qint64 index);
    void setTitle(std::optional<QString> title);
};

}  // namespace quillo
