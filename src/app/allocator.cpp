// SPDX-License-Identifier: MIT
#include "app/allocator.h"

#include <malloc.h>

namespace quillo {

void returnLargeBlocksToTheSystem() {
    constexpr int kLargeBlockBytes = 256 * 1024;
    mallopt(M_MMAP_THRESHOLD, kLargeBlockBytes);
}

}  // namespace quillo
