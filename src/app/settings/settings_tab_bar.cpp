// SPDX-License-Identifier: MIT
#include "app/settings/settings_tab_bar.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <array>
#include <utility>

#include "app/settings/segmented_control.h"
#include "app/settings/settings_look.h"
#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr QSize kTab(84, 50);
constexpr int kSpacing = 6;
constexpr int kTop = 7;
constexpr int kHeight = 63;
constexpr int kSymbol = 19;
constexpr int kSymbolTop = 6;
constexpr int kTitleTop = 28;
constexpr int kTitleHeight = 16;
constexpr qreal kRadius = 8;

struct TabTexts {
    QLatin1StringView rawValue;
    QLatin1StringView title;
    QLatin1StringView symbol;
};

constexpr std::array kCases = {SettingsTab::General, SettingsTab::Capture, SettingsTab::Appearance,
                               SettingsTab::Privacy};
constexpr std::array<TabTexts, kCases.size()> kTexts = {{
    {"general"_L1, "General"_L1, "gear"_L1},
    {"capture"_L1, "Capture"_L1, "doc.on.clipboard"_L1},
    {"appearance"_L1, "Appearance"_L1, "paintbrush"_L1},
    {"privacy"_L1, "Privacy"_L1, "hand.raised"_L1},
}};

const TabTexts& textsOf(SettingsTab tab) {
    return kTexts.at(size_t(std::to_underlying(tab)));
}

class TabButton final : public PanelButton {
public:
    TabButton(SettingsTab tab, QWidget* parent)
        : PanelButton(QAccessible::PageTab, parent), m_symbol(quillo::symbol(tab)) {
        setText(title(tab));
        setAccessibleName(title(tab));
        setToolTip(u"%1 (Ctrl-%2)"_s.arg(title(tab)).arg(std::to_underlying(tab) + 1));
        setCheckable(true);
        setFont(sizedFont(font(), 11, QFont::Normal));
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
        setFixedSize(kTab);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const SettingsLook& look = lookOf(*this);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isChecked() || underMouse()) {
            fillRounded(painter, rect(), kRadius,
                        isChecked() ? look.section : mixed(look.window, look.section, 0.5));
        }
        const QColor ink = isChecked() ? look.link : look.heading;
        painter.drawPixmap((width() - kSymbol) / 2, kSymbolTop,
                           symbolPixmap(m_symbol, kSymbol, ink, devicePixelRatioF()));
        painter.setPen(ink);
        painter.drawText(QRect(0, kTitleTop, width(), kTitleHeight), Qt::AlignCenter, text());
        if (hasFocus()) {
            paintFocusRing(painter, rect(), kRadius, look.controls.ring);
        }
    }

private:
    QString m_symbol;
};

}  // namespace

template <>
std::span<const SettingsTab> allCases<SettingsTab>() {
    return kCases;
}

QString rawValue(SettingsTab tab) {
    return textsOf(tab).rawValue;
}

QString title(SettingsTab tab) {
    return textsOf(tab).title;
}

QString symbol(SettingsTab tab) {
    return textsOf(tab).symbol;
}

SettingsTabBar::SettingsTabBar(QWidget* parent) : QWidget(parent), m_group(new QButtonGroup(this)) {
    setAccessibleName(u"Settings"_s);
    setFixedHeight(kHeight);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, kTop, 0, 0);
    row->setSpacing(kSpacing);
    row->addStretch(1);
    for (const SettingsTab tab : kCases) {
        auto* button = new TabButton(tab, this);
        m_group->addButton(button, std::to_underlying(tab));
        row->addWidget(button, 0, Qt::AlignTop);
    }
    row->addStretch(1);
    connect(m_group, &QButtonGroup::idClicked, this,
            [this](int id) { Q_EMIT chosen(SettingsTab(id)); });
}

void SettingsTabBar::setSelectedTab(SettingsTab tab) {
    m_group->button(std::to_underlying(tab))->setChecked(true);
    keepOneTabStop(*m_group);
}

void SettingsTabBar::focusSelected() {
    m_group->checkedButton()->setFocus(Qt::OtherFocusReason);
}

}  // namespace quillo
