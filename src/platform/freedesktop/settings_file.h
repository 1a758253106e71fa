// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>

#include "base/result.h"

namespace quillo {

/// What tells one state of a file from the next: another file in its place, another length, another
/// moment of change. A file that does not exist has a state too.
struct SettingsFileState {
    quint64 inode = 0;
    qint64 sizeBytes = -1;
    qint64 changedNanoseconds = 0;

    friend bool operator==(const SettingsFileState&, const SettingsFileState&) = default;
};

/// Takes the state before reading, so that a change while it is read counts as one.
[[nodiscard]] SettingsFileState settingsFileState(const QString& path);

/// Reads a JSON object from a regular file. A file that does not exist is an empty object;
/// Malformed, TooLarge or NotPermitted when it exists and cannot be understood.
[[nodiscard]] Result<QJsonObject> readSettingsFile(const QString& path, qint64 largestBytes);

/// Replaces the file in one step, for its owner alone (0600, a new folder 0700). A symbolic link
/// stays, the file it names is replaced. Busy, with nothing replaced, when the file is no longer in
/// the state that the values come from; DiskFull or NotPermitted where the system says so.
[[nodiscard]] Result<void> writeSettingsFile(const QString& path, const QJsonObject& values,
                                             const SettingsFileState& expected);

/// Renames the file to a name with the present moment in it and returns that name.
[[nodiscard]] Result<QString> setFileAside(const QString& path);

/// Creates the folder of the file, for its owner alone, where it does not exist.
[[nodiscard]] bool makeFolderOf(const QString& path);

}  // namespace quillo
