// SPDX-License-Identifier: MIT
#pragma once

#include <QMultiHash>
#include <QObject>
#include <QPointer>
#include <QString>

namespace quillo {

/// The names of the program's own notifications.
inline constexpr QLatin1StringView kClipSavedNotification{"clipSaved"};
inline constexpr QLatin1StringView kOverlayDidShowNotification{"overlayDidShow"};
inline constexpr QLatin1StringView kOpenPreferencesNotification{"openPreferences"};
inline constexpr QLatin1StringView kOpenLibraryNotification{"openLibrary"};

/// Carries notifications without payload between owners that do not know each other. Posting
/// and observing happen on the main thread; observers run before post returns.
class NotificationCenter final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    void post(QLatin1StringView name);

    /// Calls handler for each posting of that name, as long as context lives.
    template <typename Handler>
    QMetaObject::Connection observe(QLatin1StringView name, QObject* context, Handler handler) {
        m_observers.insert(name, context);
        return connect(this, &NotificationCenter::posted, context,
                       [name, handler](const QString& postedName) {
                           if (postedName == name) {
                               handler();
                           }
                       });
    }

    /// Whether anybody would hear of a posting of that name.
    [[nodiscard]] bool isObserved(QLatin1StringView name) const;

Q_SIGNALS:
    void posted(const QString& name);

private:
    QMultiHash<QLatin1StringView, QPointer<QObject>> m_observers;
};

}  // namespace quillo
