// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QGuiApplication>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <source_location>

#include "platform/text/document_reader.h"

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
inline void require(bool condition, std::source_location at = std::source_location::current()) {
    if (!condition) {
        std::fprintf(stderr, "%s:%u: does not hold\n", at.file_name(), unsigned(at.line()));
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

/// A document that is offered as HTML and copied back must not change a second time.
inline void requireSurvivesHtml(const StyledText& document) {
    const DocumentReader reader;
    const auto once = reader.readHtml(htmlFromStyledText(document));
    require(once.has_value());
    requireSound(*once);
    const auto twice = reader.readHtml(htmlFromStyledText(*once));
    require(twice.has_value() && twice->text == once->text);
}

}  // namespace quillo::fuzzing
