// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

namespace quillo {

/// A uniform type: a reverse-domain identifier and what it conforms to.
struct UniformType {
    QString identifier;
    bool conformsToImage = false;
};

inline constexpr QLatin1StringView kFolderType{"public.folder"};
inline constexpr QLatin1StringView kDataType{"public.data"};

/// The type of files with that file-name extension (without the dot, any case), from our own
/// table, then from the shared MIME database; none when neither knows it. Thread-safe.
[[nodiscard]] std::optional<UniformType> uniformTypeForExtension(const QString& extension);

/// The MIME type that stands for a uniform type, for icons; empty when unknown.
[[nodiscard]] QString mimeTypeForUniformType(const QString& identifier);

}  // namespace quillo
