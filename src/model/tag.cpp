// SPDX-License-Identifier: MIT
#include "model/tag.h"

#include "model/attribute_access.h"

namespace quillo {

std::optional<QString> Tag::name() const {
    return optionalValue<QString>(*this, TagAttribute::Name);
}

void Tag::setName(std::optional<QString> name) {
    setOptionalValue(*this, TagAttribute::Name, std::move(name));
}

}  // namespace quillo
