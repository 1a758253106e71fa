// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace quillo {

/// Shows what an owner holds in a control: now, and whenever the owner tells of another value, as
/// long as both live. The functions write nothing.
template <typename Owner, typename Signal, typename Show>
void follow(const Owner& owner, Signal changed, QObject* control, Show show) {
    QObject::connect(&owner, changed, control, show);
    show();
}

}  // namespace quillo
