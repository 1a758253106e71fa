// SPDX-License-Identifier: MIT
#include "library/groups/group_form.h"

#include <QApplication>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "base/color_text.h"
#include "library/groups/color_picker.h"
#include "library/groups/form_controls.h"
#include "library/groups/form_label.h"
#include "library/groups/swatch_row.h"
#include "model/group_palette.h"
#include "model/groups.h"

namespace quillo {
namespace {

constexpr int kMargin = 13;
/// Without a heading the form is part of something that has one.
constexpr int kInlineMargin = 9;
constexpr int kMarginAbove = 7;
constexpr int kHeadingHeight = 18;

}  // namespace

GroupForm::GroupForm(const Texts& texts, CustomColor custom, QWidget* parent)
    : QWidget(parent), m_name(new FormField), m_swatches(new SwatchRow) {
    setAccessibleName(texts.heading);
    m_name->setPlaceholderText(QStringLiteral("Group name"));
    m_name->setAccessibleName(QStringLiteral("Group name"));
    auto* column = new QVBoxLayout(this);
    const int margin = texts.heading.isEmpty() ? kInlineMargin : kMargin;
    column->setContentsMargins(margin, kMarginAbove, margin, kMarginAbove);
    column->setSpacing(0);
    if (!texts.heading.isEmpty()) {
        auto* heading = new FormLabel(FormLabel::Style::Title, texts.heading);
        heading->setFixedHeight(kHeadingHeight);
        column->addWidget(heading);
        column->addSpacing(8);
    }
    column->addWidget(m_name);
    column->addSpacing(7);
    column->addWidget(m_swatches);
    if (custom == CustomColor::Offered) {
        addCustomColor(*column);
    }
    column->addSpacing(11);
    addButtons(*column, texts.confirm);
    connect(m_swatches, &SwatchRow::chosen, this, &GroupForm::choose);
    m_swatches->setColor(m_color);
}

void GroupForm::addCustomColor(QVBoxLayout& column) {
    m_custom = new PushButton(PushButton::Style::Bare, QStringLiteral("Custom color"));
    m_custom->setSymbol(QStringLiteral("paintpalette"));
    m_custom->setCheckable(true);
    m_picker = new ColorPicker;
    m_picker->setColor(m_color);
    m_picker->hide();
    column.addSpacing(6);
    column.addWidget(m_custom);
    column.addSpacing(4);
    column.addWidget(m_picker);
    connect(m_custom, &PushButton::clicked, this, [this] { showPicker(!isPickerShown()); });
    connect(m_picker, &ColorPicker::colorChanged, this, [this](const QColor& color) {
        m_color = color;
        m_swatches->setColor(color);
    });
}

void GroupForm::addButtons(QVBoxLayout& column, const QString& confirmText) {
    m_cancel = new PushButton(PushButton::Style::Plain, QStringLiteral("Cancel"));
    m_confirm = new PushButton(PushButton::Style::Default, confirmText);
    column.addLayout(buttonRow({m_cancel, m_confirm}));
    connect(m_cancel, &PushButton::clicked, this, &GroupForm::cancelled);
    connect(m_confirm, &PushButton::clicked, this, &GroupForm::confirm);
}

QString GroupForm::name() const {
    return m_name->text();
}

void GroupForm::setName(const QString& name) {
    m_name->setText(name);
}

void GroupForm::setColor(const QColor& color) {
    m_color = color;
    m_swatches->setColor(color);
    if (m_picker != nullptr) {
        m_picker->setColor(color);
    }
}

void GroupForm::choose(const QColor& color) {
    m_color = color;
    if (m_picker != nullptr) {
        m_picker->setColor(color);
    }
    // A click takes the focus from the field; what is typed next is the name.
    if (!isAncestorOf(QApplication::focusWidget())) {
        m_name->setFocus();
    }
}

void GroupForm::startAnew() {
    setName(QString());
    setColor(colorFromHex(randomGroupColor()).value_or(QColor(kStandardBlue)));
    showPicker(false);
}

bool GroupForm::isPickerShown() const {
    return m_picker != nullptr && !m_picker->isHidden();
}

void GroupForm::showPicker(bool isShown) {
    if (m_picker != nullptr) {
        m_picker->setVisible(isShown);
        m_custom->setChecked(isShown);
    }
}

void GroupForm::setLook(const PopupLook& look) {
    applyLook(*this, look);
    m_name->setLook(look);
    m_swatches->setLook(look);
    m_cancel->setLook(look);
    m_confirm->setLook(look);
    if (m_picker != nullptr) {
        m_custom->setLook(look);
        m_picker->setLook(look);
    }
}

void GroupForm::confirm() {
    if (groupTitleFromText(name()).has_value()) {
        Q_EMIT confirmed(name(), m_color);
    } else {
        m_name->setFocus();
    }
}

void GroupForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        confirm();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace quillo
