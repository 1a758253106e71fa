// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QAccessible>

namespace quillo {

/// A button that is drawn by its class. Space and Return press it; the arrow keys are left to what
/// it lies in, unless it is one of an exclusive group. Says its role to screen readers, and its
/// text where it has no other name.
class PanelButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit PanelButton(QAccessible::Role role, QWidget* parent = nullptr);

    [[nodiscard]] QAccessible::Role role() const { return m_role; }
    [[nodiscard]] bool hasPopup() const { return m_hasPopup; }
    /// Pressing it opens something.
    void setHasPopup(bool hasPopup) { m_hasPopup = hasPopup; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// A check says what is so, not what was pressed: who owns the button sets it.
    void nextCheckState() override;

private:
    QAccessible::Role m_role;
    bool m_hasPopup = false;
};

}  // namespace quillo
