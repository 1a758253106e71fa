// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include "app/updates/update_texts.h"

class QLabel;
class QProgressBar;

namespace quillo {

class PushButton;

/// The small window that says how far an update has come. Return presses its first button, Escape
/// closes it (rejected()). Light or dark with the application. Never modal.
class UpdateWindow final : public QDialog {
    Q_OBJECT

public:
    explicit UpdateWindow(QWidget* parent = nullptr);

    void showState(const UpdateState& state);

Q_SIGNALS:
    void actionChosen(UpdateAction action);

protected:
    void changeEvent(QEvent* event) override;

private:
    void layOut();
    void takeColors();
    void showProgress(const UpdateState& state, bool isShown);

    QLabel* m_icon;
    QLabel* m_title;
    QLabel* m_text;
    QProgressBar* m_progress;
    PushButton* m_close;
    PushButton* m_action;
    UpdateAction m_currentAction = UpdateAction::Close;
};

}  // namespace quillo
