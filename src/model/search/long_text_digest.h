// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <bitset>
#include <cstdint>
#include <vector>

namespace quillo {

/// What is remembered of a text that is too long to be kept in memory: which bytes occur in it
/// and, in a Bloom filter of about one bit for each byte of it, which pairs and triples of bytes.
/// Says "no" only where the text does not contain what is sought.
class LongTextDigest final {
public:
    enum class Answer { No, Maybe, Yes };

    /// The text's bytes are not kept.
    explicit LongTextDigest(QByteArrayView text);

    /// needle must not be empty. Yes only for one byte.
    [[nodiscard]] Answer contains(QByteArrayView needle) const;

private:
    [[nodiscard]] size_t bit(const char* bytes, size_t count) const;

    std::bitset<256> m_bytes;
    std::vector<bool> m_groups;
};

}  // namespace quillo
