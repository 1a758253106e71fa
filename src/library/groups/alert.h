// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "library/groups/form_controls.h"
#include "library/groups/sheet.h"

class QVBoxLayout;

namespace quillo {

/// A message or a question as a sheet. Escape is the answer that does nothing; what destroys is
/// never the button that Return presses first.
class Alert final : public Sheet {
    Q_OBJECT

public:
    struct Action {
        QString title;
        std::function<void()> run;
    };
    struct Texts {
        QString title;
        QString message;
        QString dismiss = QStringLiteral("OK");  ///< The button that closes and does nothing.
        std::optional<Action> destructive = {};  ///< Runs after the alert is closed.
    };
    /// Asks for a line of text.
    struct Question {
        QString title;
        QString field;  ///< What is asked for ("Name").
        QString text;   ///< What is there to begin with.
        QString confirm;
        std::function<void(const QString&)> answered;  ///< Runs after the alert is closed.
    };

    /// Shows it over the widget's window.
    static void show(QWidget* over, Look look, const Texts& texts);
    static void ask(QWidget* over, Look look, const Question& question);

private:
    Alert(QWidget* over, Look look, const QString& title);

    /// Closes the alert, then runs.
    [[nodiscard]] PushButton* button(PushButton::Style style, const Action& action);
    void finish(const QList<PushButton*>& buttons, QWidget* firstFocus);

    QVBoxLayout* m_column;
};

}  // namespace quillo
