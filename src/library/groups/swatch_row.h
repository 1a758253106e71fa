// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QWidget>

#include "library/groups/popup_look.h"

class QButtonGroup;

namespace quillo {

class Swatch;

/// The nine colours for groups as round swatches, one of them chosen at most. The arrow keys walk
/// and choose.
class SwatchRow final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kDisc = 18;

    /// The discs are that wide.
    explicit SwatchRow(int disc = kDisc, QWidget* parent = nullptr);

    /// Marks the swatch of that colour, or none when it is no colour of the palette.
    void setColor(const QColor& color);
    void setLook(const PopupLook& look);
    [[nodiscard]] const QList<Swatch*>& swatches() const { return m_swatches; }

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// The person chose it.
    void chosen(const QColor& color);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void markStop();

    QButtonGroup* m_group;
    QList<Swatch*> m_swatches;
    bool m_isSettled = true;  ///< What is checked now is the person's doing.
};

}  // namespace quillo
