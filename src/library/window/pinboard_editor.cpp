// SPDX-License-Identifier: MIT
#include "library/window/pinboard_editor.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "base/logging.h"
#include "library/groups/form_controls.h"
#include "library/groups/form_label.h"
#include "library/groups/group_form.h"
#include "library/groups/swatch_row.h"
#include "model/groups.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcEditor, "PinboardManagementView")

constexpr int kWidth = 320;
constexpr int kDisc = 28;
constexpr int kPreviewHeight = 36;
constexpr int kFolder = 18;

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

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        fillRounded(painter, rect(), 7, palette().color(QPalette::Base));
        painter.drawPixmap(10, (height() - kFolder) / 2,
                           symbolPixmap(u"folder.fill"_s, kFolder, m_color, devicePixelRatioF()));
        const QRect text = rect().adjusted(10 + kFolder + 8, 0, -10, 0);
        painter.setFont(sizedFont(font(), 13, QFont::Medium));
        painter.setPen(
            palette().color(m_name.isEmpty() ? QPalette::PlaceholderText : QPalette::WindowText));
        painter.drawText(text, Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(
                             m_name.isEmpty() ? u"Pinboard name"_s : m_name.simplified(),
                             Qt::ElideRight, text.width()));
    }

private:
    QString m_name;
    QColor m_color;
};

PinboardEditor::PinboardEditor(ObjectContext& context, std::optional<QUuid> pinboard,
                               QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_pinboard(pinboard),
      m_color(kStandardBlue),
      m_name(new FormField),
      m_swatches(new SwatchRow(kDisc)),
      m_preview(new PinboardPreview) {
    setAccessibleName(pinboard ? u"Edit Pinboard"_s : u"New Pinboard"_s);
    setFixedWidth(kWidth);
    m_name->setPlaceholderText(u"Pinboard name"_s);
    m_name->setAccessibleName(u"Name"_s);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(new FormLabel(FormLabel::Style::Title, accessibleName()));
    const auto add = [column](const QString& label, QWidget* part) {
        column->addSpacing(4);
        column->addWidget(new FormLabel(FormLabel::Style::Heading, label));
        column->addWidget(part);
    };
    add(u"Name"_s, m_name);
    add(u"Color"_s, m_swatches);
    add(u"Preview"_s, m_preview);
    column->addSpacing(8);
    auto* cancel = new PushButton(PushButton::Style::Plain, u"Cancel"_s);
    auto* confirm = new PushButton(PushButton::Style::Default, pinboard ? u"Save"_s : u"Create"_s);
    column->addLayout(buttonRow({cancel, confirm}));
    connect(m_name, &QLineEdit::textChanged, this,
            [this](const QString& name) { m_preview->show(name, m_color); });
    connect(m_swatches, &SwatchRow::chosen, this, &PinboardEditor::choose);
    connect(cancel, &PushButton::clicked, this, &PinboardEditor::cancelled);
    connect(confirm, &PushButton::clicked, this, &PinboardEditor::confirm);
    fill();
}

void PinboardEditor::fill() {
    const auto board = m_pinboard ? m_context.object<Pinboard>(*m_pinboard) : nullptr;
    if (board != nullptr) {
        m_name->setText(board->title().value_or(QString()));
        m_color = groupColor(*board).value_or(m_color);
    }
    m_swatches->setColor(m_color);
    choose(m_color);
}

void PinboardEditor::choose(const QColor& color) {
    m_color = color;
    m_preview->show(m_name->text(), color);
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

}  // namespace quillo
