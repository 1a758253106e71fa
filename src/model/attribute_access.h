// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>

#include "model/store/object_context.h"

namespace quillo {

/// The typed reading and writing of one attribute, for the accessors of the record classes.
template <typename T, typename Attribute>
[[nodiscard]] std::optional<T> optionalValue(const StoredObject& object, Attribute attribute) {
    const Value& value = object.value(std::to_underlying(attribute));
    const T* present = std::get_if<T>(&value);
    return present != nullptr ? std::optional<T>(*present) : std::nullopt;
}

template <typename Attribute>
[[nodiscard]] qint64 integerValue(const StoredObject& object, Attribute attribute) {
    return optionalValue<qint64>(object, attribute).value_or(0);
}

template <typename T, typename Attribute>
void setOptionalValue(StoredObject& object, Attribute attribute, std::optional<T> value) {
    object.setValue(std::to_underlying(attribute),
                    value.has_value() ? Value(*std::move(value)) : Value());
}

}  // namespace quillo
