// SPDX-License-Identifier: MIT
#include "overlay/overlay_bar.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>
#include <QLocale>

#include "appearance/fonts.h"
#include "library/groups/chip_row.h"
#include "library/groups/text_color.h"
#include "overlay/bar_button.h"
#include "overlay/search_field.h"

namespace quillo {
namespace {

// The search field stays where it is whatever is counted: the block before it has the width of
// five badges of three digits and a total of six.
constexpr int kTitleBlockWidth = 301;
constexpr int kTotalWidth = 92;
constexpr int kButtonGap = 8;

QString totalText(qsizetype total) {
    return QStringLiteral("· %1 total").arg(QLocale().toString(total));
}

QString spokenTotal(qsizetype total) {
    return total == 1 ? QStringLiteral("1 clip")
                      : QStringLiteral("%1 clips").arg(QLocale().toString(total));
}

}  // namespace

OverlayBar::OverlayBar(QWidget* parent)
    : QWidget(parent),
      m_name(new QLabel(QStringLiteral("Quillo"), this)),
      m_badges(new TypeBadges(this)),
      m_total(new QLabel(this)),
      m_search(new SearchField(this)),
      m_chips(new ChipRow(this)),
      m_lock(addButton(QStringLiteral("pin.fill"), QString(), QString())),
      m_library(addButton(QStringLiteral("books.vertical"), QStringLiteral("Library"),
                          QStringLiteral("Open the library"))),
      m_settings(addButton(QStringLiteral("gear"), QStringLiteral("Settings"),
                           QStringLiteral("Settings"))),
      m_close(addButton(QStringLiteral("xmark.circle.fill"), QStringLiteral("Close"),
                        QStringLiteral("Close (Esc)"))) {
    setFixedHeight(kHeight);
    m_name->setFont(sizedFont(font(), 13, QFont::Bold));
    m_total->setFont(sizedFont(font(), 12, QFont::Normal));
    connect(m_lock, &BarButton::clicked, this, &OverlayBar::lockToggled);
    connect(m_library, &BarButton::clicked, this, &OverlayBar::libraryRequested);
    connect(m_settings, &BarButton::clicked, this, &OverlayBar::settingsRequested);
    connect(m_close, &BarButton::clicked, this, &OverlayBar::closeRequested);
    setCounts(0, {});
    setLocked(true);
}

BarButton* OverlayBar::addButton(const QString& symbol, const QString& name, const QString& tip) {
    auto* button = new BarButton(symbol, this);
    button->setAccessibleName(name);
    button->setToolTip(tip);
    return button;
}

QList<QWidget*> OverlayBar::controls() const {
    QList<QWidget*> all;
    for (Chip* chip : m_chips->chips()) {
        all.append(chip);
    }
    for (BarButton* button : {m_lock, m_library, m_settings, m_close}) {
        if (button->isEnabled()) {
            all.append(button);
        }
    }
    return all;
}

void OverlayBar::setCounts(qsizetype total, const QList<ClipTypeCount>& counts) {
    const bool areOthers = m_badges->setCounts(counts);
    if (m_total->accessibleName() == spokenTotal(total)) {
        if (areOthers) {
            layOut();
        }
        return;
    }
    m_total->setText(totalText(total));
    m_total->setAccessibleName(spokenTotal(total));
    if (isVisible() && QAccessible::isActive()) {
        QAccessibleEvent changed(m_total, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&changed);
    }
    layOut();
}

void OverlayBar::setLocked(bool isLocked) {
    m_lock->setText(isLocked ? QStringLiteral("Pinned") : QStringLiteral("Drag"));
    m_lock->setSymbol(isLocked ? QStringLiteral("pin.fill") : QStringLiteral("pin.slash"));
    m_lock->setAccessibleName(m_lock->text());
    m_lock->setToolTip(isLocked ? QStringLiteral("Unlock to drag panel")
                                : QStringLiteral("Pin panel position"));
}

void OverlayBar::setLibraryAvailable(bool isAvailable) {
    m_library->setEnabled(isAvailable);
}

void OverlayBar::setSettingsAvailable(bool isAvailable) {
    m_settings->setEnabled(isAvailable);
}

void OverlayBar::setColors(const Palette& colors, TypeBadges::KindColor kindColor) {
    setTextColor(*m_name, colors.primaryText);
    setTextColor(*m_total, colors.secondaryText);
    m_badges->setColors(colors.secondaryText, std::move(kindColor));
    m_search->setColors(colors);
    m_chips->setColors(colors);
    for (BarButton* button : {m_lock, m_library, m_settings, m_close}) {
        button->setColors(colors);
    }
}

BarParts OverlayBar::parts() const {
    const int name = m_name->sizeHint().width() + kBarGap;
    const int buttons = 3 * m_close->wantedWidth(false) + 2 * kButtonGap;
    const int totalText = m_total->sizeHint().width() + 4;
    const int badges = m_badges->wantedWidth();
    // With "Drag" everything else stays where it is with "Pinned".
    const int lockLabel = m_lock->fontMetrics().horizontalAdvance(QStringLiteral("Pinned"));
    const int lockSymbol = m_lock->wantedWidth(false);
    return {.name = name,
            .badges = badges,
            .titleBlock = std::max(kTitleBlockWidth, name + badges + totalText),
            .total = std::max(kTotalWidth, totalText),
            .search = SearchField::kWidth,
            .searchLeast = SearchField::kLeastWidth,
            .chips = m_chips->sizeHint().width(),
            .lock = lockSymbol + 4 + lockLabel + kButtonGap,
            .lockSymbol = lockSymbol + kButtonGap,
            .buttons = buttons};
}

void OverlayBar::layOut() {
    const BarParts wanted = parts();
    const BarLayout layout = barLayout(wanted, width());
    const auto place = [](QWidget* widget, int left, int width, int height) {
        widget->setGeometry(left, (kHeight - height) / 2, width, height);
    };
    place(m_name, kBarMargin, wanted.name - kBarGap, BarButton::kHeight);
    m_badges->setVisible(layout.showsBadges);
    place(m_badges, kBarMargin + wanted.name, wanted.badges, BarButton::kHeight);
    const int totalLeft = kBarMargin + wanted.name + (layout.showsBadges ? wanted.badges : 0);
    place(m_total, totalLeft, wanted.total, BarButton::kHeight);
    constexpr int kRing = SearchField::kRing;
    place(m_search, layout.searchLeft - kRing, layout.searchWidth + 2 * kRing,
          SearchField::kHeight + 2 * kRing);
    place(m_chips, layout.chipsLeft, layout.chipsWidth, ChipRow::kHeight);
    m_lock->setLabelShown(layout.showsLockLabel);
    place(m_lock, layout.lockLeft, m_lock->wantedWidth(layout.showsLockLabel), BarButton::kHeight);
    int left = layout.buttonsLeft;
    for (BarButton* button : {m_library, m_settings, m_close}) {
        place(button, left, button->wantedWidth(false), BarButton::kHeight);
        left += button->width() + kButtonGap;
    }
}

void OverlayBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

bool OverlayBar::event(QEvent* event) {
    // The chips became more or fewer; nobody says so while the panel is hidden.
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show) {
        layOut();
    }
    return QWidget::event(event);
}

}  // namespace quillo
