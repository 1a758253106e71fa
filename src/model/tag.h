// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

#include "model/store/object_context.h"

namespace quillo {

/// A tag of the stored model; its clips are Relationship::ClipTags. Nothing makes tags yet.
class Tag final : public StoredObject {
public:
    static constexpr Entity kEntity = Entity::Tag;
    using StoredObject::StoredObject;

    [[nodiscard]] std::optional<QString> name() const;
    void setName(std::optional<QString> name);
};

}  // namespace quillo
