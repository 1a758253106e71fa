// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUuid>

namespace quillo {

/// Which card is selected. Until the person moves it, the selection stays on the first place,
/// whatever comes to stand there; then it stays with its clip.
class StripSelection final {
public:
    [[nodiscard]] int index() const { return m_index; }

    void reset();
    /// What the person chose among the shown cards.
    void select(int index, const QList<QUuid>& shown);
    /// Takes over that others are shown now. A selected clip that is gone leaves the selection to
    /// the card in its place, the last one where none is.
    void follow(const QList<QUuid>& shown);

private:
    int m_index = 0;
    QUuid m_clip;
};

}  // namespace quillo
