// SPDX-License-Identifier: MIT
#include "library/groups/swatch_row.h"

#include <QButtonGroup>

#include "base/color_text.h"
#include "library/groups/swatch.h"
#include "model/group_palette.h"

namespace quillo {
SwatchRow::SwatchRow(int disc, QWidget* parent) : QWidget(parent), m_group(new QButtonGroup(this)) {
    setAccessibleName(QStringLiteral("Color"));
    for (const GroupColor& offered : groupPalette()) {
        const QColor color = QColor::fromString(QLatin1StringView(offered.hex));
        auto* swatch = new Swatch(color, QString::fromLatin1(offered.name), disc, this);
        m_group->addButton(swatch);
        m_swatches.append(swatch);
        connect(swatch, &Swatch::toggled, this, [this, swatch](bool isChosen) {
            if (isChosen && m_isSettled) {
                Q_EMIT chosen(swatch->color());
            }
        });
    }
    setFixedHeight(m_swatches.constFirst()->height());
}

// Two colours are the same when their stored texts are.
void SwatchRow::setColor(const QColor& color) {
    m_isSettled = false;
    m_group->setExclusive(false);
    for (Swatch* swatch : std::as_const(m_swatches)) {
        swatch->setChecked(hexString(swatch->color()) == hexString(color));
    }
    m_group->setExclusive(true);
    m_isSettled = true;
}

void SwatchRow::setLook(const PopupLook& look) {
    for (Swatch* swatch : std::as_const(m_swatches)) {
        swatch->setLook(look);
    }
}

QSize SwatchRow::sizeHint() const {
    return {int(m_swatches.size()) * (height() + 1), height()};
}

// The discs of the first and the last are level with what is above and below the row.
void SwatchRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const double room = width() + 2 * Swatch::kRing - height();
    const double step = room / double(m_swatches.size() - 1);
    for (qsizetype i = 0; i < m_swatches.size(); ++i) {
        m_swatches.at(i)->move(int(double(i) * step) - Swatch::kRing, 0);
    }
}

}  // namespace quillo
