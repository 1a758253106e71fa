// SPDX-License-Identifier: MIT
#include "library/window/library_empty_state.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"
#include "library/groups/text_color.h"

namespace quillo {
namespace {

constexpr int kSymbol = 40;
constexpr int kMargin = 24;
constexpr int kCaptionWidth = 300;

}  // namespace

LibraryEmptyState::LibraryEmptyState(const Texts& texts, QWidget* parent)
    : QWidget(parent),
      m_look(libraryLook(ColorScheme::Light)),
      m_symbol(new QLabel),
      m_title(new QLabel),
      m_caption(new QLabel),
      m_button(new PushButton(PushButton::Style::Plain, texts.button)) {
    m_title->setFont(sizedFont(font(), 15, QFont::DemiBold));
    m_caption->setFont(sizedFont(font(), 12, QFont::Normal));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(8);
    column->addStretch();
    for (QLabel* label : {m_symbol, m_title, m_caption}) {
        label->setAlignment(Qt::AlignCenter);
        label->setWordWrap(true);
    }
    m_caption->setMaximumWidth(kCaptionWidth);
    auto* caption = new QHBoxLayout;
    caption->addStretch(1);
    caption->addWidget(m_caption, kCaptionWidth);
    caption->addStretch(1);
    column->addWidget(m_symbol);
    column->addWidget(m_title);
    column->addLayout(caption);
    column->addSpacing(4);
    column->addWidget(m_button, 0, Qt::AlignHCenter);
    column->addStretch();
    connect(m_button, &PushButton::clicked, this, &LibraryEmptyState::pressed);
    setTexts(texts);
}

void LibraryEmptyState::setTexts(const Texts& texts) {
    m_texts = texts;
    m_title->setText(texts.title);
    m_caption->setText(texts.caption);
    m_caption->setVisible(!texts.caption.isEmpty());
    m_button->setText(texts.button);
    m_button->setVisible(!texts.button.isEmpty());
    m_button->updateGeometry();
    showSymbol();
}

void LibraryEmptyState::setLook(const LibraryLook& look) {
    m_look = look;
    setTextColor(*m_title, look.primaryText);
    setTextColor(*m_caption, look.secondaryText);
    m_button->setLook(look.controls);
    showSymbol();
}

void LibraryEmptyState::showSymbol() {
    m_symbol->setPixmap(
        symbolPixmap(m_texts.symbol, kSymbol, m_look.secondaryText, devicePixelRatioF()));
}

}  // namespace quillo
