// SPDX-License-Identifier: MIT
#include "app/updates/update_window.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/palette.h"
#include "appearance/symbols.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kWidth = 440;
constexpr int kMargin = 20;
constexpr int kIconSize = 40;
constexpr int kTitlePixels = 15;
constexpr int kTextPixels = 13;
constexpr int kLongestProgress = 1'000;

QString styleFor(const Palette& colors) {
    const QColor ring = readableText(colors.accent, Ground{colors.panelBackground});
    return u"QDialog{background:%1}"
           "QLabel#text{color:%2}"
           "QPushButton{background:%3;color:%4;border:2px solid transparent;border-radius:8px;"
           "padding:5px 14px;min-width:64px}"
           "QPushButton:hover{background:%8}"
           "QPushButton:default{background:%5;color:white}"
           "QPushButton:focus{border-color:%6}"
           "QPushButton:default:focus{border-color:%7}"
           "QProgressBar{background:%3;border:none;border-radius:3px;max-height:6px}"
           "QProgressBar::chunk{background:%5;border-radius:3px}"_s.arg(
               colors.panelBackground.name(), colors.secondaryText.name(), colors.field.name(),
               colors.primaryText.name(), colors.accent.name(), ring.name(),
               colors.primaryText.name(), mixed(colors.field, colors.primaryText, 0.1).name());
}

}  // namespace

UpdateWindow::UpdateWindow(QWidget* parent)
    : QDialog(parent),
      m_icon(new QLabel(this)),
      m_title(new QLabel(this)),
      m_text(new QLabel(this)),
      m_progress(new QProgressBar(this)),
      m_close(new QPushButton(this)),
      m_action(new QPushButton(this)) {
    setWindowTitle(u"Software Update"_s);
    m_text->setObjectName(u"text"_s);
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setFont(sizedFont(font(), kTitlePixels, QFont::DemiBold));
    m_text->setFont(sizedFont(font(), kTextPixels, QFont::Normal));
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(u"Progress"_s);
    m_action->setDefault(true);
    layOut();
    takeColors();
    connect(m_close, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_action, &QPushButton::clicked, this, [this] {
        if (m_currentAction == UpdateAction::Close) {
            reject();
        } else {
            Q_EMIT actionChosen(m_currentAction);
        }
    });
}

void UpdateWindow::layOut() {
    auto* texts = new QVBoxLayout;
    texts->setSpacing(6);
    texts->addWidget(m_title);
    texts->addWidget(m_text);
    texts->addWidget(m_progress);
    auto* top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(m_icon, 0, Qt::AlignTop);
    top->addLayout(texts, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addStretch(1);
    buttons->addWidget(m_close);
    buttons->addWidget(m_action);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kMargin);
    all->setSizeConstraint(QLayout::SetFixedSize);
    all->addLayout(top);
    all->addLayout(buttons);
    m_text->setFixedWidth(kWidth - 2 * kMargin - kIconSize - 16);
    setTabOrder(m_action, m_close);
}

void UpdateWindow::takeColors() {
    const Palette& colors = paletteFor(schemeOf(palette()));
    if (const QString style = styleFor(colors); style != styleSheet()) {
        setStyleSheet(style);
    }
    m_icon->setPixmap(symbolPixmap(u"AppIcon"_s, kIconSize, Qt::black, devicePixelRatioF()));
}

void UpdateWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        takeColors();
    }
    QDialog::changeEvent(event);
}

void UpdateWindow::showProgress(const UpdateState& state, bool isShown) {
    m_progress->setVisible(isShown);
    const bool isCounted = state.stage == UpdateStage::Downloading && state.totalBytes > 0;
    m_progress->setRange(0, isCounted ? kLongestProgress : 0);
    if (isCounted) {
        m_progress->setValue(int(state.receivedBytes * kLongestProgress / state.totalBytes));
    }
}

void UpdateWindow::showState(const UpdateState& state) {
    const UpdateTexts texts = updateTexts(state);
    const bool isOther = m_title->text() != texts.title;
    m_title->setText(texts.title);
    m_text->setText(texts.text);
    setAccessibleDescription(texts.title + u". "_s + texts.text);
    showProgress(state, texts.hasProgress);
    m_currentAction = texts.action;
    m_action->setText(texts.actionTitle);
    m_close->setText(texts.closeTitle);
    m_close->setVisible(!texts.closeTitle.isEmpty());
    if (isOther) {
        m_action->setFocus();
    }
}

}  // namespace quillo
