// SPDX-License-Identifier: MIT
#pragma once

#include "platform/user_defaults.h"

namespace quillo {

/// Shows what an owner holds in a control: now, and whenever the owner tells of another value, as
/// long as both live. The functions write nothing.
template <typename Owner, typename Signal, typename Show>
void follow(const Owner& owner, Signal changed, QObject* control, Show show) {
    QObject::connect(&owner, changed, control, show);
    show();
}

/// The same for one setting, whoever changes it.
template <typename Show>
void follow(const UserDefaults& defaults, const QString& key, QObject* control, const Show& show) {
    QObject::connect(&defaults, &UserDefaults::changed, control,
                     [key, show](const QString& changed) {
                         if (changed == key) {
                             show();
                         }
                     });
    show();
}

}  // namespace quillo
