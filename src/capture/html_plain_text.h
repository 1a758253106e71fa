// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace quillo {

/// The searchable text of an HTML document: its tags cut out, the common entities replaced, both
/// ends trimmed. None when the bytes are not UTF-8. Linear in the document's length. What another
/// program is given as plain text is rendered by RichTextReader instead.
[[nodiscard]] std::optional<QString> plainTextOfHtml(const QByteArray& document);

}  // namespace quillo
