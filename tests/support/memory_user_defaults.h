// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <mutex>
#include <shared_mutex>

#include "platform/user_defaults.h"

namespace quillo::testing {

/// Settings that live in memory.
class MemoryUserDefaults final : public UserDefaults {
public:
    explicit MemoryUserDefaults(const QJsonObject& values = {}, QObject* parent = nullptr)
        : UserDefaults(parent), m_values(values) {}

    [[nodiscard]] std::optional<QJsonValue> object(const QString& key) const override {
        const std::shared_lock lock(m_mutex);
        return m_values.contains(key) ? std::optional(m_values.value(key)) : std::nullopt;
    }

    void setObject(const QString& key, const QJsonValue& value) override {
        {
            const std::unique_lock lock(m_mutex);
            if (m_values.value(key) == value) {
                return;
            }
            if (value.isUndefined()) {
                m_values.remove(key);
            } else {
                m_values.insert(key, value);
            }
        }
        Q_EMIT changed(key);
    }

    void remove(const QString& key) override { setObject(key, QJsonValue(QJsonValue::Undefined)); }

    /// Everything that is stored, to compare with.
    [[nodiscard]] QJsonObject values() const {
        const std::shared_lock lock(m_mutex);
        return m_values;
    }

private:
    mutable std::shared_mutex m_mutex;
    QJsonObject m_values;
};

}  // namespace quillo::testing
