// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "appearance/palette.h"

class QLabel;
class QToolButton;

namespace quillo {

class SearchField;

/// The line above the cards: the program's name, the number of clips, the search field, the
/// lock and close buttons.
class OverlayBar final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kHeight = 40;

    explicit OverlayBar(QWidget* parent = nullptr);

    [[nodiscard]] SearchField& search() { return *m_search; }

    void setTotal(qsizetype total);
    void setLocked(bool isLocked);
    void setColors(const Palette& colors);

Q_SIGNALS:
    void lockToggled();
    void closeRequested();

private:
    [[nodiscard]] QToolButton* addButton(const QString& name, const QString& tip);
    void updateIcons();

    QLabel* m_name;
    QLabel* m_total;
    SearchField* m_search;
    QToolButton* m_lock;
    QToolButton* m_close;
    Palette m_colors = paletteFor(ColorScheme::Light);
    bool m_isLocked = true;
};

}  // namespace quillo
