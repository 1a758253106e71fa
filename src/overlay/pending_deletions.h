// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QTimer>
#include <QUuid>
#include <functional>

namespace quillo {

/// Clips that the person deleted and may still have back. They are out of sight at once and out
/// of the store when the time for second thoughts is over. Main thread.
class PendingDeletions final : public QObject {
    Q_OBJECT

public:
    /// Deletes clips for good.
    using Delete = std::function<void(const QList<QUuid>&)>;

    PendingDeletions(Delete deleteForGood, std::chrono::milliseconds secondThoughts,
                     QObject* parent = nullptr);
    /// Completes what is pending.
    ~PendingDeletions() override;

    /// Further ones join those that are pending and the time starts again.
    void add(const QUuid& clip);
    /// Everything that is pending comes back.
    void undo();
    /// Everything that is pending is deleted now.
    void complete();
    /// What somebody else has deleted meanwhile cannot come back.
    void forget(const std::function<bool(const QUuid&)>& isGone);

    [[nodiscard]] const QList<QUuid>& clips() const { return m_clips; }

Q_SIGNALS:
    void changed();

private:
    Delete m_delete;
    QList<QUuid> m_clips;
    QTimer m_timer;
};

}  // namespace quillo
