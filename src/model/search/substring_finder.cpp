// SPDX-License-Identifier: MIT
#include "model/search/substring_finder.h"

#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace quillo {
namespace {

size_t findByte(std::span<const char> bytes, char byte) {
    const void* found = std::memchr(bytes.data(), byte, bytes.size());
    return found == nullptr ? SubstringFinder::npos
                            : size_t(static_cast<const char*>(found) - bytes.data());
}

size_t findPlainly(std::span<const char> bytes, std::span<const char> needle) {
    const void* found = ::memmem(bytes.data(), bytes.size(), needle.data(), needle.size());
    return found == nullptr ? SubstringFinder::npos
                            : size_t(static_cast<const char*>(found) - bytes.data());
}

#ifdef __SSE2__
__m128i load(const char* place) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(place));
}

// One bit for each of the sixteen places from `place` on where the first and the last byte fit.
unsigned fittingPlaces(const char* place, size_t toLast, __m128i first, __m128i last) {
    const __m128i firstFits = _mm_cmpeq_epi8(load(place), first);
    const __m128i lastFits = _mm_cmpeq_epi8(load(place + toLast), last);
    return unsigned(_mm_movemask_epi8(_mm_and_si128(firstFits, lastFits)));
}
#endif

}  // namespace

size_t SubstringFinder::find(std::span<const char> bytes) const {
    const std::span<const char> needle(m_needle.constData(), size_t(m_needle.size()));
    if (bytes.size() < needle.size()) {
        return npos;
    }
    if (needle.size() == 1) {
        return findByte(bytes, needle.front());
    }
    size_t place = 0;
#ifdef __SSE2__
    constexpr size_t kWidth = 16;
    const __m128i first = _mm_set1_epi8(needle.front());
    const __m128i last = _mm_set1_epi8(needle.back());
    const size_t toLast = needle.size() - 1;
    for (; place + toLast + kWidth <= bytes.size(); place += kWidth) {
        unsigned fitting = fittingPlaces(bytes.data() + place, toLast, first, last);
        for (; fitting != 0; fitting &= fitting - 1) {
            const size_t candidate = place + size_t(std::countr_zero(fitting));
            if (std::memcmp(bytes.data() + candidate + 1, needle.data() + 1, toLast - 1) == 0) {
                return candidate;
            }
        }
    }
#endif
    const size_t found = findPlainly(bytes.subspan(place), needle);
    return found == npos ? npos : place + found;
}

}  // namespace quillo
