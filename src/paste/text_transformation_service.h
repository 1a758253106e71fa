// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>

#include "paste/text_transformation.h"

namespace quillo {

/// Applies transformations to texts. Case follows a language's own rules (Unicode chapter 3.13,
/// SpecialCasing.txt): in Turkish "i" becomes "İ". Any thread; the cost is linear in the text.
class TextTransformationService final {
public:
    explicit TextTransformationService(const QLocale& locale = QLocale());

    /// The one for the person's own language.
    [[nodiscard]] static const TextTransformationService& shared();

    /// A text that cannot be transformed comes back as it is.
    [[nodiscard]] QString apply(TextTransformation transformation, const QString& text) const;

private:
    [[nodiscard]] QString sentenceCased(const QString& text) const;

    QByteArray m_locale;  ///< As ICU names it.
};

}  // namespace quillo
