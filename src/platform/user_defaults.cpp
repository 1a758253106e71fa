// SPDX-License-Identifier: MIT
#include "platform/user_defaults.h"

#include <QJsonArray>
#include <cmath>

namespace quillo {

std::optional<QString> UserDefaults::string(const QString& key) const {
    const std::optional<QJsonValue> value = object(key);
    return value && value->isString() ? std::optional(value->toString()) : std::nullopt;
}

std::optional<bool> UserDefaults::boolean(const QString& key) const {
    const std::optional<QJsonValue> value = object(key);
    return value && value->isBool() ? std::optional(value->toBool()) : std::nullopt;
}

std::optional<qint64> UserDefaults::integer(const QString& key) const {
    const std::optional<QJsonValue> value = object(key);
    // A finite number that is no integer of 64 bits gives back whatever default it is asked with.
    if (!value || !std::isfinite(value->toDouble()) || value->toInteger(0) != value->toInteger(1)) {
        return std::nullopt;
    }
    return value->toInteger();
}

std::optional<double> UserDefaults::real(const QString& key) const {
    const std::optional<QJsonValue> value = object(key);
    if (!value || !value->isDouble() || !std::isfinite(value->toDouble())) {
        return std::nullopt;
    }
    return value->toDouble();
}

std::optional<QStringList> UserDefaults::strings(const QString& key) const {
    const std::optional<QJsonValue> value = object(key);
    if (!value || !value->isArray()) {
        return std::nullopt;
    }
    QStringList result;
    for (const QJsonValue element : value->toArray()) {
        if (!element.isString()) {
            return std::nullopt;
        }
        result.append(element.toString());
    }
    return result;
}

}  // namespace quillo
