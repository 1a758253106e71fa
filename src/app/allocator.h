// SPDX-License-Identifier: MIT
#pragma once

namespace quillo {

/// Has glibc give blocks of a quarter of a megabyte and more back as soon as they are freed. A
/// copied picture passes through several buffers of megabytes, and glibc keeps such blocks for
/// itself once it has seen one freed, unless the threshold is set. Call it before threads begin.
void returnLargeBlocksToTheSystem();

}  // namespace quillo
