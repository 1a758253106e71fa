// SPDX-License-Identifier: MIT
// Text can be read on every card, whatever the person's colours and opacities are.
#include <gtest/gtest.h>

#include "appearance/panel_look.h"

namespace quillo {
namespace {

QColor painted(const QColor& color, const QColor& behind) {
    return mixed(behind, QColor(color.rgb()), color.alphaF());
}

// What the eye sees on a card, layer by layer over something behind the window.
void expectReadable(const PanelColors& colors, FilterType filter, const QColor& behind) {
    const PanelLook look(colors);
    const CardLook card = look.card(ClipType::Text, filter);
    const QColor panel = painted(look.palette().panelBackground, behind);
    const QColor ground = painted(card.ground, panel);
    const QColor badge = painted(card.badge, ground);
    // A byte of rounding at each layer may cost this much.
    constexpr double kEnough = kTextContrast - 0.12;
    EXPECT_GE(contrastRatio(card.primaryText, ground), kEnough);
    EXPECT_GE(contrastRatio(card.secondaryText, ground), kEnough);
    EXPECT_GE(contrastRatio(card.badgeText, badge), kEnough);
}

TEST(PanelLook, TextIsReadableAtEveryOpacityAndColour) {
    const QColor colors[] = {QColor(0, 0, 0),       QColor(255, 255, 255),   QColor(118, 118, 118),
                             QColor(255, 255, 0),   QColor(255, 0, 0),       QColor(0, 0, 255),
                             QColor(0x4d, 96, 255), QColor(0x2c, 0x2c, 0x2e)};
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        for (const QColor& background : colors) {
            for (const QColor& tint : colors) {
                for (const double opacity : {-1.0, 0.3, 0.65, 1.0}) {
                    for (const double share : {0.15, 1.0}) {
                        PanelColors set{.scheme = scheme,
                                        .background = background,
                                        .panelOpacity = opacity,
                                        .itemOpacity = opacity};
                        set.backgroundColors.insert(ClipType::Text, tint);
                        set.backgroundOpacities.insert(ClipType::Text, share);
                        SCOPED_TRACE(::testing::Message()
                                     << background.name().toStdString() << " "
                                     << tint.name().toStdString() << " " << opacity << " " << share
                                     << " scheme " << int(scheme));
                        expectReadable(set, FilterType::Text, background);
                        set.backdrop = Backdrop::Visible;
                        expectReadable(set, FilterType::Text, Qt::black);
                        expectReadable(set, FilterType::Text, Qt::white);
                    }
                }
            }
        }
    }
}

TEST(PanelLook, ReadableColoursOfTheSchemeStayAsTheyAre) {
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        const Palette& palette = paletteFor(scheme);
        const PanelLook look(
            {.scheme = scheme, .background = palette.panelBackground, .itemOpacity = 0.5});
        EXPECT_EQ(look.palette(), palette);
        for (const FilterType filter : allCases<FilterType>()) {
            const CardLook card = look.card(ClipType::FileUrl, filter);
            EXPECT_EQ(card.primaryText, palette.primaryText);
            EXPECT_EQ(card.secondaryText, palette.secondaryText);
            EXPECT_NEAR(card.ground.alphaF(), 0.5, 0.01) << "a known ground lets opacities be";
        }
        EXPECT_GE(contrastRatio(Qt::white, palette.accent), kTextContrast);
        EXPECT_GE(contrastRatio(palette.secondaryText, palette.field), kTextContrast);
    }
}

TEST(PanelLook, ACardShowsTheChosenColoursElseThoseOfWhatItIs) {
    PanelColors set;
    EXPECT_EQ(PanelLook(set).card(ClipType::Text, FilterType::Link).tile,
              defaultColor(FilterType::Link));
    set.colors.insert(ClipType::Text, QColor(1, 2, 3));
    EXPECT_EQ(PanelLook(set).card(ClipType::Text, FilterType::Text).tile, QColor(1, 2, 3));
    EXPECT_EQ(PanelLook(set).card(ClipType::Text, FilterType::Link).tile,
              defaultColor(FilterType::Link));
    set.badgeColors.insert(FilterType::Link, Qt::yellow);
    const CardLook link = PanelLook(set).card(ClipType::Text, FilterType::Link);
    EXPECT_EQ(link.tile, QColor(Qt::yellow));
    EXPECT_NE(link.tileSymbol, QColor(Qt::white));
    set.backgroundColors.insert(ClipType::Text, Qt::red);
    set.backgroundOpacities.insert(ClipType::Text, 1.0);
    EXPECT_EQ(PanelLook(set).card(ClipType::Text, FilterType::Link).ground.rgb(),
              QColor(Qt::red).rgb());
}

}  // namespace
}  // namespace quillo
