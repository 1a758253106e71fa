// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillo {

/// Shows a file in its folder in the desktop's file manager (org.freedesktop.FileManager1); where
/// there is none, opens the folder. Never opens the file. Returns at once. Main thread.
void showInFolder(const QString& path);

}  // namespace quillo
