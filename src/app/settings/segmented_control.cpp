// SPDX-License-Identifier: MIT
#include "app/settings/segmented_control.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include "app/settings/settings_look.h"
#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kHeight = 26;
constexpr int kInset = 2;
constexpr int kPadding = 10;
constexpr int kSymbol = 13;
constexpr int kAfterSymbol = 5;
constexpr qreal kRadius = 7;

}  // namespace

class Segment final : public PanelButton {
public:
    Segment(const QString& text, QString symbol, SegmentedControl::Arrows arrows, QWidget* parent)
        : PanelButton(QAccessible::RadioButton, parent),
          m_symbol(std::move(symbol)),
          m_arrows(arrows) {
        setText(text);
        setAccessibleName(text);
        setCheckable(true);
        setFont(sizedFont(font(), 12, QFont::Medium));
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
        setFixedHeight(kHeight - 2 * kInset);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

    [[nodiscard]] QSize sizeHint() const override {
        const int text = fontMetrics().horizontalAdvance(QAbstractButton::text());
        return {text + symbolWidth() + 2 * kPadding, kHeight - 2 * kInset};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const PopupLook& look = lookOf(*this).controls;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isChecked() || underMouse()) {
            fillRounded(painter, rect(), kRadius - kInset,
                        isChecked() ? look.accent : mixed(look.field, look.primaryText, 0.08));
        }
        const QColor ink = isChecked() ? look.onAccent : look.secondaryText;
        const int width = symbolWidth() + fontMetrics().horizontalAdvance(text());
        const int x = (this->width() - width) / 2;
        if (!m_symbol.isEmpty()) {
            painter.drawPixmap(x, (height() - kSymbol) / 2,
                               symbolPixmap(m_symbol, kSymbol, ink, devicePixelRatioF()));
        }
        painter.setPen(ink);
        painter.drawText(rect().adjusted(x + symbolWidth(), 0, 0, 0),
                         Qt::AlignVCenter | Qt::AlignLeft, text());
        if (hasFocus()) {
            paintFocusRing(painter, rect(), kRadius - kInset,
                           isChecked() ? look.onAccent : look.ring);
        }
    }

    void keyPressEvent(QKeyEvent* event) override {
        const int step = event->key() == Qt::Key_Right ? 1 : event->key() == Qt::Key_Left ? -1 : 0;
        if (step == 0 || m_arrows == SegmentedControl::Arrows::Choose) {
            PanelButton::keyPressEvent(event);
        } else if (QAbstractButton* next = group()->button(group()->id(this) + step)) {
            next->setFocus(Qt::TabFocusReason);
        }
    }

private:
    [[nodiscard]] int symbolWidth() const {
        return m_symbol.isEmpty() ? 0 : kSymbol + kAfterSymbol;
    }

    QString m_symbol;
    SegmentedControl::Arrows m_arrows;
};

SegmentedControl::SegmentedControl(const QString& name, Arrows arrows, QWidget* parent)
    : QWidget(parent),
      m_group(new QButtonGroup(this)),
      m_row(new QHBoxLayout(this)),
      m_arrows(arrows) {
    setAccessibleName(name);
    m_row->setContentsMargins(kInset, kInset, kInset, kInset);
    m_row->setSpacing(0);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    connect(m_group, &QButtonGroup::idClicked, this, &SegmentedControl::chosen);
}

void SegmentedControl::addSegment(const QString& text, const QString& symbol) {
    auto* segment = new Segment(text, symbol, m_arrows, this);
    m_group->addButton(segment, int(m_group->buttons().size()));
    m_row->addWidget(segment, 1);
    keepOneTabStop(*m_group);
}

void SegmentedControl::setCurrentIndex(int index) {
    if (QAbstractButton* segment = m_group->button(index)) {
        segment->setChecked(true);
    } else if (QAbstractButton* held = m_group->checkedButton()) {
        m_group->setExclusive(false);
        held->setChecked(false);
        m_group->setExclusive(true);
    }
    keepOneTabStop(*m_group);
}

void keepOneTabStop(const QButtonGroup& group) {
    const QList<QAbstractButton*> buttons = group.buttons();
    const QAbstractButton* stop =
        group.checkedButton() != nullptr ? group.checkedButton() : buttons.value(0);
    for (QAbstractButton* button : buttons) {
        button->setFocusPolicy(button == stop ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

int SegmentedControl::currentIndex() const {
    return m_group->checkedId();
}

void SegmentedControl::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, rect(), kRadius, lookOf(*this).controls.field);
}

}  // namespace quillo
