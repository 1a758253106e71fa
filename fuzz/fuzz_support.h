// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QGuiApplication>
#include <cstdint>
#include <cstdlib>

#include "platform/rich_text.h"

namespace quillo::fuzzing {

/// What Qt's documents and images need; kept for the whole run.
inline void startQt() {
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    [[maybe_unused]] static const bool isHeadless = qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(count, arguments);
}

inline QByteArray inputBytes(const std::uint8_t* data, std::size_t size) {
    return QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

/// Aborts unless the condition holds, so that the fuzzer keeps the input.
inline void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

/// What holds for every document, whatever it was made from.
inline void requireSound(const StyledText& document) {
    qsizetype end = 0;
    for (const StyledRun& run : document.runs) {
        require(run.start == end && run.length > 0);
        end += run.length;
    }
    require(end == document.text.size());
    require(document.text.isValidUtf16());
}

}  // namespace quillo::fuzzing
