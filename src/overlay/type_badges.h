// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QWidget>
#include <functional>

#include "overlay/overlay_clips.h"

namespace quillo {

/// The counts in the bar: for each kind a coloured tile with its symbol and the number of clips.
class TypeBadges final : public QWidget {
    Q_OBJECT

public:
    explicit TypeBadges(QWidget* parent = nullptr);

    /// False when they are those already shown.
    bool setCounts(const QList<ClipTypeCount>& counts);
    using KindColor = std::function<QColor(ClipType)>;
    void setColors(const QColor& text, KindColor kindColor);

    /// What all counts take; 0 without any.
    [[nodiscard]] int wantedWidth() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QList<ClipTypeCount> m_counts;
    QColor m_text;
    KindColor m_kindColor;
};

}  // namespace quillo
