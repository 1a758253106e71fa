// SPDX-License-Identifier: MIT
#include "library/window/pinboard_editor.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "base/logging.h"
#include "library/groups/form_controls.h"
#include "library/groups/group_form.h"
#include "library/groups/swatch_row.h"
#include "model/groups.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcEditor, "PinboardManagementView")

constexpr int kMargin = 14;
constexpr int kWidth = 280;
constexpr int kPreviewHeight = 36;
constexpr int kFolder = 18;

QLabel* smallLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setFont(sizedFont(label->font(), 11, QFont::DemiBold));
    return label;
}

QLabel* headingLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setFont(sizedFont(label->font(), 13, QFont::DemiBold));
    return label;
}

QHBoxLayout* buttonRow(PushButton* cancel, PushButton* confirm) {
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(confirm);
    return row;
}

bool isReturn(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

/// How the pinboard will stand in the sidebar.
class PinboardPreview final : public QWidget {
public:
    PinboardPreview() { setFixedHeight(kPreviewHeight); }

    void show(const QString& name, const QColor& color) {
        m_name = name;
        m_color = color;
        setAccessibleName(u"Preview: "_s + name);
        update();
    }
    void setLook(const PopupLook& look) {
        m_look = look;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_look.field);
        painter.drawRoundedRect(rect(), 7, 7);
        painter.drawPixmap(10, (height() - kFolder) / 2,
                           symbolPixmap(u"folder.fill"_s, kFolder, m_color, devicePixelRatioF()));
        const QRect text = rect().adjusted(10 + kFolder + 8, 0, -10, 0);
        painter.setFont(sizedFont(font(), 13, QFont::Medium));
        painter.setPen(m_name.isEmpty() ? m_look.secondaryText : m_look.primaryText);
        painter.drawText(text, Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(
                             m_name.isEmpty() ? u"Pinboard name"_s : m_name.simplified(),
                             Qt::ElideRight, text.width()));
    }

private:
    QString m_name;
    QColor m_color;
    PopupLook m_look;
};

PinboardEditor::PinboardEditor(ObjectContext& context, std::optional<QUuid> pinboard,
                               QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_pinboard(pinboard),
      m_color(kStandardBlue),
      m_heading(headingLabel(pinboard ? u"Edit Pinboard"_s : u"New Pinboard"_s)),
      m_name(new FormField),
      m_swatches(new SwatchRow),
      m_preview(new PinboardPreview),
      m_cancel(new PushButton(PushButton::Style::Plain, u"Cancel"_s)),
      m_confirm(new PushButton(PushButton::Style::Default, pinboard ? u"Save"_s : u"Create"_s)),
      m_labels{smallLabel(u"Name"_s), smallLabel(u"Color"_s), smallLabel(u"Preview"_s)} {
    setAccessibleName(m_heading->text());
    setFixedWidth(kWidth);
    m_name->setPlaceholderText(u"Pinboard name"_s);
    m_name->setAccessibleName(u"Name"_s);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin - 2, kMargin, kMargin);
    column->setSpacing(6);
    column->addWidget(m_heading);
    const QList<QWidget*> parts{m_name, m_swatches, m_preview};
    for (qsizetype i = 0; i < parts.size(); ++i) {
        column->addSpacing(4);
        column->addWidget(m_labels[i]);
        column->addWidget(parts[i]);
    }
    column->addSpacing(8);
    column->addLayout(buttonRow(m_cancel, m_confirm));
    connect(m_name, &QLineEdit::textChanged, this,
            [this](const QString& name) { m_preview->show(name, m_color); });
    connect(m_swatches, &SwatchRow::chosen, this, &PinboardEditor::choose);
    connect(m_cancel, &PushButton::clicked, this, &PinboardEditor::cancelled);
    connect(m_confirm, &PushButton::clicked, this, &PinboardEditor::confirm);
    fill();
}

void PinboardEditor::fill() {
    const auto board = m_pinboard ? m_context.object<Pinboard>(*m_pinboard) : nullptr;
    if (board != nullptr) {
        m_name->setText(board->title().value_or(QString()));
        m_color = groupColor(*board).value_or(m_color);
    }
    setColor(m_color);
}

void PinboardEditor::setColor(const QColor& color) {
    m_swatches->setColor(color);
    choose(color);
}

void PinboardEditor::choose(const QColor& color) {
    m_color = color;
    m_preview->show(m_name->text(), color);
}

void PinboardEditor::setLook(const PopupLook& look) {
    applyLook(*this, look);
    m_name->setLook(look);
    m_swatches->setLook(look);
    m_preview->setLook(look);
    m_cancel->setLook(look);
    m_confirm->setLook(look);
    for (QLabel* label : std::as_const(m_labels)) {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, look.secondaryText);
        label->setPalette(palette);
    }
}

Result<QUuid> PinboardEditor::save() {
    if (m_pinboard) {
        const auto board = m_context.object<Pinboard>(*m_pinboard);
        const Result<bool> edited =
            board ? editGroup(*board, m_name->text(), m_color) : Result<bool>(true);
        return edited ? Result<QUuid>(*m_pinboard) : std::unexpected(edited.error());
    }
    const auto made =
        createGroup(m_context, {m_name->text(), m_color, GroupPlace::AfterHighest, {}});
    return made ? Result<QUuid>((*made)->id()) : std::unexpected(made.error());
}

void PinboardEditor::confirm() {
    if (!groupTitleFromText(m_name->text())) {
        m_name->setFocus();
        return;
    }
    const Result<QUuid> pinboard = save();
    if (pinboard) {
        Q_EMIT saved(*pinboard);
    } else {
        qCCritical(lcEditor, "Error saving pinboard: %ls", qUtf16Printable(pinboard.error().text));
    }
}

void PinboardEditor::keyPressEvent(QKeyEvent* event) {
    if (isReturn(*event)) {
        confirm();
    } else {
        QWidget::keyPressEvent(event);
    }
}

RenamePinboardForm::RenamePinboardForm(ObjectContext& context, const QUuid& pinboard,
                                       QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_pinboard(pinboard),
      m_heading(headingLabel(u"Rename Pinboard"_s)),
      m_name(new FormField),
      m_cancel(new PushButton(PushButton::Style::Plain, u"Cancel"_s)),
      m_confirm(new PushButton(PushButton::Style::Default, u"Rename"_s)) {
    setAccessibleName(m_heading->text());
    setFixedWidth(kWidth);
    m_name->setPlaceholderText(u"Name"_s);
    m_name->setAccessibleName(u"Name"_s);
    if (const auto board = m_context.object<Pinboard>(pinboard)) {
        m_name->setText(board->title().value_or(QString()));
        m_name->selectAll();
    }
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin - 2, kMargin, kMargin);
    column->setSpacing(10);
    column->addWidget(m_heading);
    column->addWidget(m_name);
    column->addLayout(buttonRow(m_cancel, m_confirm));
    connect(m_cancel, &PushButton::clicked, this, &RenamePinboardForm::cancelled);
    connect(m_confirm, &PushButton::clicked, this, &RenamePinboardForm::confirm);
}

void RenamePinboardForm::setLook(const PopupLook& look) {
    applyLook(*this, look);
    m_name->setLook(look);
    m_cancel->setLook(look);
    m_confirm->setLook(look);
}

// As typed: an empty name is a pinboard without one.
void RenamePinboardForm::confirm() {
    if (const auto board = m_context.object<Pinboard>(m_pinboard)) {
        (void)renameGroup(*board, m_name->text());
    }
    Q_EMIT saved();
}

void RenamePinboardForm::keyPressEvent(QKeyEvent* event) {
    if (isReturn(*event)) {
        confirm();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace quillo
