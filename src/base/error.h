// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillo {

/// What went wrong, to branch on.
enum class ErrorKind {
    NotFound,      ///< The thing asked for does not exist.
    NotPermitted,  ///< The rights to do it are missing.
    Busy,          ///< Somebody else holds it at present; trying again later may help.
    DiskFull,      ///< There is no room left on the device.
    Malformed,     ///< Input from outside that cannot be understood.
    TooLarge,      ///< Input from outside that exceeds a stated bound.
    NewerVersion,  ///< Data written by a newer version of the program.
    TimedOut,      ///< A deadline passed.
    Unsupported,   ///< Not possible on this system.
    Failed,        ///< Anything else; the text says what.
};

/// A failure as a value: a kind to branch on and a text for the log. The text never holds
/// anything that came from a clip.
struct Error {
    ErrorKind kind = ErrorKind::Failed;
    QString text;
};

}  // namespace quillo
