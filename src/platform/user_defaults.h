// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonValue>
#include <QObject>
#include <QString>
#include <QStringList>
#include <optional>

namespace quillo {

/// The person's settings: one flat set of keys. A key that is absent and a key whose value has
/// the wrong type both read as none; a wrong value is left as it is until its key is written.
/// Reads are safe from any thread; writes and changed() belong to the main thread. A write is
/// seen at once by every later read of the process.
class UserDefaults : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The stored value; none when the key was never written or was removed.
    [[nodiscard]] virtual std::optional<QJsonValue> object(const QString& key) const = 0;
    virtual void setObject(const QString& key, const QJsonValue& value) = 0;
    virtual void remove(const QString& key) = 0;

    [[nodiscard]] std::optional<QString> string(const QString& key) const;
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const;
    /// A number without fraction within 64 bits.
    [[nodiscard]] std::optional<qint64> integer(const QString& key) const;
    [[nodiscard]] std::optional<double> real(const QString& key) const;
    /// Only where every element is a string.
    [[nodiscard]] std::optional<QStringList> strings(const QString& key) const;

Q_SIGNALS:
    /// A key was written, removed or edited by hand.
    void changed(const QString& key);
};

}  // namespace quillo
