// SPDX-License-Identifier: MIT
#include "model/search/text_arena.h"

#include <algorithm>

namespace quillo {

TextArena::Place TextArena::append(QByteArrayView text) {
    const size_t length = size_t(text.size()) + 1;
    if (m_chunks.empty() || m_chunks.back().size() + length > kChunkBytes) {
        m_chunks.emplace_back().reserve(kChunkBytes);
    }
    std::vector<char>& chunk = m_chunks.back();
    const Place place{uint32_t(m_chunks.size() - 1), uint32_t(chunk.size()), uint32_t(length)};
    chunk.insert(chunk.end(), text.begin(), text.end());
    chunk.push_back(kEnd);
    m_liveBytes += length;
    return place;
}

void TextArena::erase(const Place& place) {
    if (place.length == 0) {
        return;
    }
    std::vector<char>& chunk = m_chunks[place.chunk];
    std::fill_n(chunk.begin() + place.begin, place.length, kEnd);
    m_liveBytes -= place.length;
    m_deadBytes += place.length;
}

}  // namespace quillo
