// SPDX-License-Identifier: MIT
#include "model/search/substring_finder.h"

#include <cstring>

namespace quillo {

size_t SubstringFinder::find(std::span<const char> bytes) const {
    const void* found =
        ::memmem(bytes.data(), bytes.size(), m_needle.constData(), size_t(m_needle.size()));
    return found == nullptr ? npos : size_t(static_cast<const char*>(found) - bytes.data());
}

}  // namespace quillo
