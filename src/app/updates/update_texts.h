// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "app/updates/update_session.h"

namespace quillo {

/// What the first button of the window does; the second one, and Escape, close the window.
enum class UpdateAction { Close, Download, ShowInFolder, TryAgain };

/// What the window says in a state.
struct UpdateTexts {
    QString title;
    QString text;
    UpdateAction action = UpdateAction::Close;
    QString actionTitle;
    QString closeTitle;  ///< Empty: there is one button only.
    bool hasProgress = false;
};

[[nodiscard]] UpdateTexts updateTexts(const UpdateState& state);

}  // namespace quillo
