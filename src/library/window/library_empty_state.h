// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "library/window/library_look.h"

class QLabel;

namespace quillo {

class PushButton;

/// What an area says that has nothing to show: a symbol, a line, a quiet line below it, and a
/// button where something can be done about it.
class LibraryEmptyState final : public QWidget {
    Q_OBJECT

public:
    struct Texts {
        QString symbol;
        QString title;
        QString caption = {};
        QString button = {};  ///< None when empty.
    };

    explicit LibraryEmptyState(const Texts& texts, QWidget* parent = nullptr);

    void setTexts(const Texts& texts);
    void setLook(const LibraryLook& look);

Q_SIGNALS:
    void pressed();

private:
    void showSymbol();

    Texts m_texts;
    LibraryLook m_look;
    QLabel* m_symbol;
    QLabel* m_title;
    QLabel* m_caption;
    PushButton* m_button;
};

}  // namespace quillo
