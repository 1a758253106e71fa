// SPDX-License-Identifier: MIT
#include "library/groups/swatch_row.h"

#include <QButtonGroup>
#include <algorithm>
#include <utility>

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
            markStop();
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
    markStop();
}

// Tab stops at the chosen one, from which the arrow keys choose.
void SwatchRow::markStop() {
    const auto chosen = std::ranges::find_if(m_swatches, &Swatch::isChecked);
    const Swatch* stop = chosen != m_swatches.end() ? *chosen : m_swatches.constFirst();
    for (Swatch* swatch : std::as_const(m_swatches)) {
        swatch->setFocusPolicy(swatch == stop ? Qt::TabFocus : Qt::NoFocus);
    }
}

void SwatchRow::setLook(const PopupLook& look) {
    for (Swatch* swatch : std::as_const(m_swatches)) {
        swatch->setLook(look);
    }
}

QSize SwatchRow::sizeHint() const {
    return {int(m_swatches.size()) * (height() + 1), height()};
}

void SwatchRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const double step = double(width() - height()) / double(m_swatches.size() - 1);
    for (qsizetype i = 0; i < m_swatches.size(); ++i) {
        m_swatches.at(i)->move(int(double(i) * step), 0);
    }
}

}  // namespace quillo
