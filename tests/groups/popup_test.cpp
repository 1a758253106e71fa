// SPDX-License-Identifier: MIT
#include "library/groups/popup.h"

#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "appearance/contrast.h"
#include "appearance/panel_look.h"
#include "groups/panel_fixture.h"
#include "library/groups/popup_geometry.h"
#include "library/groups/text_field_menu.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

TEST(PopupGeometry, APopupStandsBesideItsAnchorAndInsideItsBounds) {
    using enum PopupSide;
    const QRect bounds(8, 8, 984, 304);
    const struct {
        const char* name;
        QRect anchor;
        QSize wanted;
        PopupSide side;
        QRect ground;
        bool isCut = false;
    } rows[] = {
        {"below", {100, 40, 26, 26}, {200, 100}, Below, {100, 70, 200, 100}},
        {"ends at the bounds", {100, 40, 26, 26}, {200, 242}, Below, {100, 70, 200, 242}},
        {"no room below: above", {100, 200, 26, 26}, {200, 150}, Below, {100, 46, 200, 150}},
        {"no room above: below", {100, 40, 26, 26}, {200, 100}, Above, {100, 70, 200, 100}},
        {"neither: over the anchor", {100, 150, 26, 26}, {200, 200}, Below, {100, 112, 200, 200}},
        {"at the right edge", {960, 40, 26, 26}, {200, 100}, Below, {792, 70, 200, 100}},
        {"anchor beyond the edge", {1200, 40, 26, 26}, {200, 100}, Below, {792, 70, 200, 100}},
        {"at the left edge", {-50, 40, 26, 26}, {200, 100}, Below, {8, 70, 200, 100}},
        {"right", {100, 40, 50, 26}, {200, 100}, Right, {154, 40, 200, 100}},
        {"no room right: left", {850, 40, 50, 26}, {200, 100}, Right, {646, 40, 200, 100}},
        {"right, moved up", {100, 290, 50, 26}, {200, 100}, Right, {154, 212, 200, 100}},
        {"too long", {100, 40, 26, 26}, {200, 900}, Below, {100, 8, 200, 304}, true},
        {"too wide", {100, 40, 26, 26}, {2000, 100}, Below, {8, 70, 984, 100}},
        {"a point", {300, 100, 0, 0}, {200, 100}, Below, {300, 104, 200, 100}},
    };
    for (const auto& row : rows) {
        const PopupPlace place = placePopup({.anchor = row.anchor,
                                             .wanted = row.wanted,
                                             .bounds = bounds,
                                             .side = row.side,
                                             .gap = 4});
        EXPECT_EQ(place.ground, row.ground) << row.name;
        EXPECT_EQ(place.isCut, row.isCut) << row.name;
    }
}

TEST(PopupLook, TextCanBeReadOnWhateverBackgroundIsChosen) {
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        for (int lightness = 0; lightness <= 255; lightness += 15) {
            PanelColors colors;
            colors.scheme = scheme;
            colors.background = QColor::fromHsl(lightness, 120, lightness);
            const PopupLook look = popupLook(PanelLook(colors).palette());
            for (const QColor& text : {look.primaryText, look.secondaryText}) {
                EXPECT_TRUE(isReadable(text, {look.ground})) << lightness;
                EXPECT_TRUE(isReadable(text, {look.field})) << lightness;
            }
            EXPECT_TRUE(isReadable(look.destructive, {look.ground})) << lightness;
            EXPECT_TRUE(isReadable(look.onAccent, {look.accent})) << lightness;
        }
    }
}

class PopupTest : public PanelTest {
protected:
    Popup* newPopup(int height = 60) {
        auto* popup = new Popup(&panel);
        auto* content = new QWidget;
        content->setMinimumSize(200, height);
        auto* column = new QVBoxLayout(content);
        for (int i = 0; i < 2; ++i) {
            column->addWidget(new QLineEdit);
        }
        popup->setContent(content);
        return popup;
    }
    static QList<QLineEdit*> fields(const Popup& popup) { return popup.findChildren<QLineEdit*>(); }
};

TEST_F(PopupTest, ARightClickOutsideClosesAndOpensAnotherMenuAtOnce) {
    Popup* popup = newPopup();
    popup->openAt({100, 40, 26, 26});
    click(popup->ground().center());
    EXPECT_TRUE(popup->isOpen());
    click(control.geometry().center());
    EXPECT_FALSE(popup->isOpen());
    EXPECT_EQ(control.presses, 0) << "a left click only closes";
    popup->openAt({100, 40, 26, 26});
    click(control.geometry().center(), Qt::RightButton);
    EXPECT_FALSE(popup->isOpen());
    EXPECT_EQ(control.presses, 1);
}

TEST_F(PopupTest, ClosesWhenThePanelHidesOrAnotherPartTakesTheFocus) {
    Popup* popup = newPopup();
    popup->openAt({100, 40, 26, 26});
    panel.hide();
    panel.show();
    EXPECT_FALSE(popup->isOpen());
    EXPECT_TRUE(popup->isHidden());
    QApplication::setActiveWindow(&panel);
    Control other(&panel);
    other.show();
    popup->openAt({100, 40, 26, 26});
    other.setFocus();
    EXPECT_FALSE(popup->isOpen());
    EXPECT_TRUE(other.hasFocus());
}

TEST_F(PopupTest, OnlyOneIsOpenUnlessItIsOpenedFromInsideTheOther) {
    Popup* first = newPopup();
    Popup* second = newPopup();
    first->openAt({100, 40, 26, 26});
    control.setFocus();
    second->openAt({300, 40, 26, 26});
    EXPECT_FALSE(first->isOpen());
    TextFieldMenu menuOfField(*fields(*second)[0], &panel,
                              [] { return paletteFor(ColorScheme::Dark); });
    fields(*second)[0]->setFocus();
    press(Qt::Key_Menu);
    Popup* menu = Popup::openIn(&panel);
    ASSERT_NE(menu, second);
    EXPECT_TRUE(second->isOpen());
    press(Qt::Key_Escape);
    EXPECT_TRUE(second->isOpen());
    EXPECT_TRUE(fields(*second)[0]->hasFocus());
    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_NE(Popup::openIn(&panel), second);
    click({10, 300});
    EXPECT_EQ(Popup::openIn(&panel), nullptr) << "outside of both";
    settle();
}

TEST_F(PopupTest, FollowsThePanelsSizeAndScrollsWhatIsTooLong) {
    Popup* popup = newPopup(900);
    popup->openAt({900, 40, 26, 26});
    EXPECT_TRUE(panel.rect().contains(popup->ground()));
    auto* scroll = popup->findChild<QScrollArea*>();
    EXPECT_GT(scroll->verticalScrollBar()->maximum(), 500);
    settle();
    fields(*popup)[0]->setFocus();
    press(Qt::Key_Tab);
    EXPECT_GT(scroll->verticalScrollBar()->value(), 0) << "the focused field is in view";
    panel.resize(600, 320);
    EXPECT_TRUE(panel.rect().contains(popup->ground()));
    popup->content()->setMinimumHeight(0);
    popup->content()->setFixedHeight(100);
    settle();
    EXPECT_EQ(popup->ground().height(), 112);
}

}  // namespace
}  // namespace quillo::testing
