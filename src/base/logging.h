// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

/// Declares, in a source file, the logging category of one owning type, for example
/// QUILLO_LOG_CATEGORY(lcWatcher, "PasteboardWatcher"). Use it with qCDebug, qCInfo, qCCritical.
#define QUILLO_LOG_CATEGORY(variable, owner) \
    Q_LOGGING_CATEGORY(variable, "com.quillohq.Quillo." owner, QtInfoMsg)

namespace quillo {

/// Stands in a log line for anything that came from a clip: text, address, title, file name.
inline constexpr const char* kPrivate = "<private>";

/// Sends the program's log to the journal where there is one, else to the standard error.
/// Call once, first thing in main. Any thread may log afterwards.
void installLogHandler();

}  // namespace quillo
