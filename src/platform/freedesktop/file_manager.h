// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace quillo {

/// Opens an address in the program that the desktop has for it. False when there is no way to ask
/// for one. The log never holds the address. Main thread.
[[nodiscard]] bool openAddress(const QUrl& address);

/// Shows a file in its folder in the desktop's file manager (org.freedesktop.FileManager1); where
/// there is none, opens the folder. Never opens the file. Returns at once. Main thread.
void showInFolder(const QString& path);

}  // namespace quillo
