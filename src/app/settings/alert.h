// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "app/settings/sheet.h"

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

    /// Shows it over the widget's window.
    static void show(QWidget* over, const Texts& texts);

private:
    Alert(QWidget* over, const Texts& texts);
};

}  // namespace quillo
