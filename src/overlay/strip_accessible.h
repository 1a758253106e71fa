// SPDX-License-Identifier: MIT
#pragma once

namespace quillo {

/// Makes the strip a list of cards for screen readers, that can be pressed, deleted and asked for
/// their menu. May be called again. Main thread.
void installStripAccessibility();

}  // namespace quillo
