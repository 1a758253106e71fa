// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

namespace quillo {

/// The kind of a file by its uniform type identifier, and where that says nothing, by the last
/// piece of its name; "File" when neither is known.
[[nodiscard]] QString fileKindName(const std::optional<QString>& typeIdentifier,
                                   const std::optional<QString>& fileName);

/// The kind with the name's last piece where that adds something ("Word .docx", but "PDF").
[[nodiscard]] QString fileTypeLabel(const QString& kindName,
                                    const std::optional<QString>& fileName);

/// A size in decimal units: "1 byte", "999 bytes", "842 KB", "1.2 MB", "3.45 GB".
[[nodiscard]] QString formattedByteCount(qint64 bytes);

}  // namespace quillo
