// SPDX-License-Identifier: MIT
#include "library/groups/panel_button.h"

#include <QAccessibleWidget>
#include <QButtonGroup>
#include <QKeyEvent>

namespace quillo {
namespace {

class AccessiblePanelButton final : public QAccessibleWidget {
public:
    explicit AccessiblePanelButton(PanelButton* button)
        : QAccessibleWidget(button, button->role()) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const QString told = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && told.isEmpty() ? button()->text() : told;
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button()->isCheckable();
        state.checked = button()->isChecked();
        state.pressed = button()->isDown();
        state.hasPopup = button()->hasPopup();
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override {
        return button()->isEnabled() ? QStringList{pressAction(), setFocusAction()} : QStringList();
    }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            button()->click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    [[nodiscard]] PanelButton* button() const { return static_cast<PanelButton*>(widget()); }
};

QAccessibleInterface* accessibleButton(const QString& /*className*/, QObject* object) {
    auto* button = qobject_cast<PanelButton*>(object);
    return button != nullptr ? new AccessiblePanelButton(button) : nullptr;
}

void installFactoryOnce() {
    static const bool kIsInstalled = [] {
        QAccessible::installFactory(&accessibleButton);
        return true;
    }();
    Q_UNUSED(kIsInstalled)
}

bool isArrow(int key) {
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

}  // namespace

PanelButton::PanelButton(QAccessible::Role role, QWidget* parent)
    : QAbstractButton(parent), m_role(role) {
    installFactoryOnce();
}

void PanelButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else if (isArrow(event->key()) && group() == nullptr) {
        event->ignore();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void PanelButton::nextCheckState() {
    if (group() != nullptr) {
        QAbstractButton::nextCheckState();
    }
}

}  // namespace quillo
