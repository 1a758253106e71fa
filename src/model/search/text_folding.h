// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QLocale>
#include <QStringView>

namespace quillo {

/// Which letters are one when case is ignored: in Turkish and Azeri a dotless i and a dotted one
/// are two letters.
enum class CaseFolding { Default, Turkic };

[[nodiscard]] CaseFolding caseFoldingFor(const QLocale& locale);

/// The form in which texts are compared: normalised to NFC (UAX #15), full case folding (Unicode
/// 3.13: ß becomes ss, accents stay), normalised once more, as UTF-8. Half a surrogate pair
/// becomes a question mark. Pure ASCII costs one pass. Any thread.
[[nodiscard]] QByteArray foldedText(QStringView text, CaseFolding folding);

}  // namespace quillo
