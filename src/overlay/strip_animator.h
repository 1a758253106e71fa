// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QTimeLine>
#include <QUuid>

namespace quillo {

/// How many places each card still stands beside its new one, so that it starts where it was:
/// negative to the left. A card that is new comes in together with the one it pushes aside. Empty
/// for lists that have so little in common that a movement would say nothing.
[[nodiscard]] QHash<QUuid, int> cardShifts(const QList<QUuid>& before, const QList<QUuid>& after);

/// Moves cards to their new places when the list changes under the person's eyes. Main thread.
class StripAnimator final : public QObject {
    Q_OBJECT

public:
    explicit StripAnimator(QObject* parent = nullptr);

    /// Starts the movement from one list to the next; one under way ends.
    void rearrange(const QList<QUuid>& before, const QList<QUuid>& after);
    /// Every card is in its place at once.
    void finish();

    [[nodiscard]] bool isMoving() const;
    /// What a card's place is off at the moment, in logical pixels.
    [[nodiscard]] int offsetOf(const QUuid& clip) const;

Q_SIGNALS:
    void advanced();

private:
    QHash<QUuid, int> m_shifts;
    QTimeLine m_progress;
};

}  // namespace quillo
