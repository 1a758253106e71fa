// SPDX-License-Identifier: MIT
#pragma once

namespace quillo {

/// Makes the grid a list of cards for screen readers, that can be selected, copied, deleted and
/// asked for their menu. May be called again. Main thread.
void installClipGridAccessibility();

}  // namespace quillo
