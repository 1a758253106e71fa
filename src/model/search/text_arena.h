// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <cstdint>
#include <span>
#include <vector>

namespace quillo {

/// Many short texts one after another in large pieces of memory, so that they can be searched in
/// one go. Each text ends with a byte that UTF-8 never has. What is erased is overwritten at once.
class TextArena final {
public:
    static constexpr size_t kChunkBytes = size_t{256} * 1024;
    static constexpr char kEnd = '\xff';

    struct Place {
        uint32_t chunk = 0;
        uint32_t begin = 0;
        uint32_t length = 0;  ///< With the end byte; 0 for no text.

        [[nodiscard]] uint32_t end() const { return begin + length; }
    };

    /// At most kChunkBytes - 1 bytes.
    [[nodiscard]] Place append(QByteArrayView text);
    void erase(const Place& place);

    [[nodiscard]] std::span<const char> bytes(uint32_t chunk, uint32_t begin, uint32_t end) const {
        return std::span<const char>(m_chunks[chunk]).subspan(begin, end - begin);
    }
    [[nodiscard]] size_t deadBytes() const { return m_deadBytes; }
    [[nodiscard]] size_t liveBytes() const { return m_liveBytes; }

private:
    std::vector<std::vector<char>> m_chunks;
    size_t m_deadBytes = 0;
    size_t m_liveBytes = 0;
};

}  // namespace quillo
