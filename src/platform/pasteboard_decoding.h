// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "platform/pasteboard.h"

namespace quillo {

/// The offered targets that hold plain text, the most faithful first.
[[nodiscard]] QList<QByteArray> textTargetsAmong(const QList<QByteArray>& offered);

/// The names of RTF, in the order in which they are asked for.
[[nodiscard]] const QList<QByteArray>& rtfTargets();

/// True for the names of picture formats, the few outside `image/` included; false for drawings
/// made of shapes and for server-side pixmaps.
[[nodiscard]] bool isImageTarget(const QByteArray& target);

/// How the program that owns the pasteboard writes its plain text.
enum class TextDialect {
    Plain,
    /// `text/plain` and `STRING` are ASCII or Latin-1 with \uXXXX escapes, and lines of
    /// `text/plain` end in CR LF.
    Escaped,
};

/// The dialect by the set of targets that a program offers.
[[nodiscard]] TextDialect textDialectOf(const QList<QByteArray>& offered);

/// A reply's text. The charset is the reply type's own; bytes that are invalid in it become
/// replacement characters, trailing NULs are cut.
[[nodiscard]] QString decodeText(const QByteArray& target, const RawReply& reply,
                                 TextDialect dialect = TextDialect::Plain);

/// An HTML document as UTF-8 without byte-order mark and trailing NULs. UTF-16 is known by its
/// mark, or without one by its NUL bytes.
[[nodiscard]] QByteArray decodeHtml(const QByteArray& bytes);

/// UTF-16 text with or without a byte-order mark, little-endian if nothing says otherwise.
[[nodiscard]] QString decodeUtf16(const QByteArray& bytes);

}  // namespace quillo
