// SPDX-License-Identifier: MIT
#include "library/groups/alert.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "library/groups/form_label.h"

namespace quillo {
namespace {

constexpr int kWidth = 280;

}  // namespace

void Alert::show(QWidget* over, Look look, const Texts& texts) {
    auto* alert = new Alert(over, look, texts.title);
    alert->setAccessibleDescription(texts.message);
    alert->m_column->addWidget(new FormLabel(FormLabel::Style::Caption, texts.message));
    using Style = PushButton::Style;
    QList<PushButton*> buttons{
        alert->button(texts.destructive ? Style::Plain : Style::Default, {texts.dismiss, {}})};
    if (texts.destructive) {
        buttons.append(alert->button(Style::Destructive, *texts.destructive));
    }
    alert->finish(buttons, buttons.constFirst());
}

void Alert::ask(QWidget* over, Look look, const Question& question) {
    auto* alert = new Alert(over, look, question.title);
    auto* field = new FormField;
    field->setAccessibleName(question.field);
    field->setPlaceholderText(question.field);
    field->setText(question.text);
    field->selectAll();
    alert->m_column->addWidget(field);
    const auto answer = [field, answered = question.answered] { answered(field->text()); };
    alert->finish({alert->button(PushButton::Style::Plain, {QStringLiteral("Cancel"), {}}),
                   alert->button(PushButton::Style::Default, {question.confirm, answer})},
                  field);
}

Alert::Alert(QWidget* over, Look look, const QString& title) : Sheet(over, look) {
    setAccessibleName(title);
    auto* content = new QWidget(this);
    content->setFixedWidth(kWidth);
    m_column = new QVBoxLayout(content);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(8);
    m_column->addWidget(new FormLabel(FormLabel::Style::Title, title));
}

PushButton* Alert::button(PushButton::Style style, const Action& action) {
    auto* button = new PushButton(style, action.title);
    connect(button, &QAbstractButton::clicked, this, [this, run = action.run] {
        closeSheet();
        if (run) {
            run();
        }
    });
    return button;
}

void Alert::finish(const QList<PushButton*>& buttons, QWidget* firstFocus) {
    m_column->addSpacing(8);
    m_column->addLayout(buttonRow(buttons));
    setContent(m_column->parentWidget());
    open(firstFocus);
}

}  // namespace quillo
