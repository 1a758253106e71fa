// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <cstddef>
#include <span>

namespace quillo {

/// Finds one short byte string in many megabytes. Any thread.
class SubstringFinder final {
public:
    static constexpr size_t npos = size_t(-1);

    /// needle must not be empty.
    explicit SubstringFinder(QByteArray needle) : m_needle(std::move(needle)) {}

    [[nodiscard]] const QByteArray& needle() const { return m_needle; }

    /// Where the needle first lies in the bytes; npos when nowhere. Sixteen places are tried at a
    /// time where the processor can.
    [[nodiscard]] size_t find(std::span<const char> bytes) const;

private:
    QByteArray m_needle;
};

}  // namespace quillo
