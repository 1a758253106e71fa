// SPDX-License-Identifier: MIT
#include "app/updates/update_window.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "appearance/fonts.h"
#include "appearance/palette.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kWidth = 440;
constexpr int kMargin = 20;
constexpr int kIconSize = 40;
constexpr int kTitlePixels = 15;
constexpr int kTextPixels = 13;
constexpr int kLongestProgress = 1'000;

// In the roles of the palette, which follows the theme.
const QString kProgressStyle =
    u"QProgressBar{background:palette(button);border:none;border-radius:3px;max-height:6px}"
    "QProgressBar::chunk{background:palette(highlight);border-radius:3px}"_s;

}  // namespace

UpdateWindow::UpdateWindow(QWidget* parent)
    : QDialog(parent),
      m_icon(new QLabel(this)),
      m_title(new QLabel(this)),
      m_text(new QLabel(this)),
      m_progress(new QProgressBar(this)),
      m_close(new PushButton(PushButton::Style::Plain, {})),
      m_action(new PushButton(PushButton::Style::Default, {})) {
    setWindowTitle(u"Software Update"_s);
    m_text->setForegroundRole(QPalette::PlaceholderText);
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setFont(sizedFont(font(), kTitlePixels, QFont::DemiBold));
    m_text->setFont(sizedFont(font(), kTextPixels, QFont::Normal));
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(u"Progress"_s);
    m_progress->setStyleSheet(kProgressStyle);
    layOut();
    takeColors();
    connect(m_close, &PushButton::clicked, this, &QDialog::reject);
    connect(m_action, &PushButton::clicked, this, [this] {
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
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kMargin);
    all->setSizeConstraint(QLayout::SetFixedSize);
    all->addLayout(top);
    all->addLayout(buttonRow({m_close, m_action}));
    m_text->setFixedWidth(kWidth - 2 * kMargin - kIconSize - 16);
    setTabOrder(m_action, m_close);
}

void UpdateWindow::takeColors() {
    const Palette& colors = paletteFor(schemeOf(palette()));
    PopupLook look = popupLook(colors);
    look.field = colors.field;
    dressControls(*this, look);
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
