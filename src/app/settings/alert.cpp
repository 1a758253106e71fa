// SPDX-License-Identifier: MIT
#include "app/settings/alert.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <utility>

#include "app/settings/settings_label.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kWidth = 280;

}  // namespace

void Alert::show(QWidget* over, const Texts& texts) {
    auto* alert = new Alert(over, texts);
    alert->open(alert->findChild<PushButton*>(QStringLiteral("dismiss")));
}

Alert::Alert(QWidget* over, const Texts& texts) : Sheet(over) {
    setAccessibleName(texts.title);
    setAccessibleDescription(texts.message);
    auto* content = new QWidget;
    content->setFixedWidth(kWidth);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(new SettingsLabel(SettingsLabel::Style::Title, texts.title));
    column->addWidget(new SettingsLabel(SettingsLabel::Style::Caption, texts.message));
    column->addSpacing(8);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    const auto dismissStyle =
        texts.destructive ? PushButton::Style::Plain : PushButton::Style::Default;
    auto* dismiss = new PushButton(dismissStyle, texts.dismiss);
    dismiss->setObjectName(QStringLiteral("dismiss"));
    connect(dismiss, &QAbstractButton::clicked, this, &Sheet::closeSheet);
    buttons->addWidget(dismiss);
    if (texts.destructive) {
        auto* destroy = new PushButton(PushButton::Style::Destructive, texts.destructive->title);
        connect(destroy, &QAbstractButton::clicked, this, [this, run = texts.destructive->run] {
            closeSheet();
            run();
        });
        buttons->addWidget(destroy);
    }
    column->addLayout(buttons);
    setContent(content);
}

}  // namespace quillo
