// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

namespace quillo {

/// What of a style attribute matters to text.
struct HtmlStyle {
    QString css;  ///< Declarations of colours and fonts that are safe to hand on.
    bool hidden = false;
    std::optional<bool> preservesSpace;
    std::optional<bool> hasListMarks;
};

/// Reads a style attribute whose character references are resolved. Declarations that could name
/// a resource or that are not about characters are dropped.
[[nodiscard]] HtmlStyle readStyleAttribute(const QString& attribute);

/// One declaration, or nothing where its value is not harmless.
[[nodiscard]] QString safeDeclaration(QStringView property, QStringView value);

}  // namespace quillo
