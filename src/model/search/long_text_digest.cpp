// SPDX-License-Identifier: MIT
#include "model/search/long_text_digest.h"

#include <algorithm>
#include <bit>

namespace quillo {
namespace {

constexpr size_t kMostBits = size_t{1} << 18;

}  // namespace

LongTextDigest::LongTextDigest(QByteArrayView text)
    : m_groups(std::clamp(std::bit_ceil(size_t(text.size())), size_t{64}, kMostBits)) {
    const size_t size = size_t(text.size());
    for (size_t i = 0; i < size; ++i) {
        m_bytes.set(uint8_t(text[qsizetype(i)]));
        for (const size_t count : {size_t{2}, size_t{3}}) {
            if (i + count <= size) {
                m_groups[bit(text.data() + i, count)] = true;
            }
        }
    }
}

size_t LongTextDigest::bit(const char* bytes, size_t count) const {
    uint32_t key = uint32_t(count);
    for (size_t i = 0; i < count; ++i) {
        key = (key << 8) | uint8_t(bytes[i]);
    }
    // Fibonacci hashing; the size is a power of two.
    return size_t((key * uint64_t{0x9E3779B97F4A7C15}) >> 32) & (m_groups.size() - 1);
}

LongTextDigest::Answer LongTextDigest::contains(QByteArrayView needle) const {
    const bool hasAllBytes = std::all_of(needle.begin(), needle.end(),
                                         [this](char c) { return m_bytes.test(uint8_t(c)); });
    if (!hasAllBytes || needle.size() == 1) {
        return hasAllBytes ? Answer::Yes : Answer::No;
    }
    const size_t count = std::min<size_t>(size_t(needle.size()), 3);
    for (size_t i = 0; i + count <= size_t(needle.size()); ++i) {
        if (!m_groups[bit(needle.data() + i, count)]) {
            return Answer::No;
        }
    }
    return Answer::Maybe;
}

}  // namespace quillo
