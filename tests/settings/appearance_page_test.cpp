// SPDX-License-Identifier: MIT
// The controls of the page: what they show, what they write, and that they follow their owners.
#include <QJsonArray>
#include <QMouseEvent>
#include <QScrollBar>

#include "app/settings/color_well.h"
#include "app/settings/filter_list.h"
#include "app/settings/filter_row.h"
#include "app/settings/segmented_control.h"
#include "app/settings/settings_section.h"
#include "app/settings/toggle_switch.h"
#include "app/settings/value_slider.h"
#include "library/groups/chip_row.h"
#include "library/groups/color_picker.h"
#include "library/groups/form_controls.h"
#include "settings/appearance_fixture.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

constexpr QColor kRed(0xff, 0x6b, 0x6b);
constexpr QColor kGreen(0x6b, 0xcb, 0x77);

class AppearancePage : public AppearancePageTest {
protected:
    SegmentedControl& segments(const QString& name) { return named<SegmentedControl>(name); }
    ColorWell& badge(const QString& name) {
        return named<ColorWell>(name, u"BadgeColorsSection"_s);
    }
    ToggleSwitch& toggle(const QString& name) { return named<ToggleSwitch>(name); }
    FilterList& filters() { return named<FilterList>(u"Type Filters"_s); }
    void choose(const QString& control, const QString& segment) {
        for (PanelButton* button : segments(control).findChildren<PanelButton*>()) {
            if (button->accessibleName() == segment) {
                button->click();
            }
        }
    }
    void pick(ColorWell& well, const QColor& color) {
        well.click();
        chooseSwatch(color);
        press(Qt::Key_Escape);
        settle();
    }
    void key(QWidget& control, int code) {
        control.setFocus();
        press(code);
    }
    void click(const QString& name) { window.findChild<QAbstractButton*>(name)->click(); }

    /// The first letters of what a list holds.
    [[nodiscard]] static QString order(const QList<FilterType>& shown) {
        QStringList names;
        for (const FilterType filter : shown.first(5)) {
            names += rawValue(filter);
        }
        return names.join(u' ');
    }
    [[nodiscard]] QString shownOrder() {
        QList<FilterType> shown;
        for (const FilterRow* row : filters().rows()) {
            shown += row->filter();
        }
        return order(shown);
    }
    void mouse(QEvent::Type type, int y) {
        const QPoint at(20, y);
        QMouseEvent event(type, at, filters().mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        QApplication::sendEvent(&filters(), &event);
    }
    /// From the middle of one row by way of others to the middle of the last.
    void drag(int from, const QList<int>& over) {
        const auto middle = [](int row) { return row * (FilterRow::kHeight + 1) + 19; };
        mouse(QEvent::MouseButtonPress, middle(from));
        for (const int row : over) {
            mouse(QEvent::MouseMove, middle(row));
        }
    }
    void drop() { mouse(QEvent::MouseButtonRelease, 0); }
};

TEST_F(AppearancePage, ShowingWritesNothing) {
    const QJsonObject stored{{u"panelWidth"_s, 0.85},
                             {u"panelOpacity"_s, 0.1},
                             {u"itemOpacity"_s, 7},
                             {u"filterChipOrder"_s, QJsonArray{u"video"_s}},
                             {u"filterBadgeColor_link"_s, u"#102030"_s}};
    for (auto at = stored.begin(); at != stored.end(); ++at) {
        defaults.setObject(at.key(), at.value());
    }
    open();
    EXPECT_EQ(segments(u"Color Scheme"_s).currentIndex(), 0);
    EXPECT_EQ(segments(u"Width"_s).currentIndex(), 0) << "0.85 is less than the whole";
    const auto percent = [this](const QString& name) {
        return named<ValueSlider>(name).accessibleDescription();
    };
    EXPECT_EQ(percent(u"Panel Opacity"_s), u"30%"_s) << "as little as the panel takes";
    EXPECT_EQ(percent(u"Item Opacity"_s), u"100%"_s);
    EXPECT_EQ(shownOrder(), u"video text link richText html"_s);
    EXPECT_EQ(badge(u"Link"_s).color(), QColor(0x10, 0x20, 0x30));
    EXPECT_EQ(badge(u"PDF"_s).color(), defaultColor(FilterType::Pdf));
    EXPECT_EQ(defaults.values(), stored);
}

TEST_F(AppearancePage, EveryControlWritesItsSettingAndFollowsAnEdit) {
    open();
    const auto slider = [this](const QString& name) {
        return QString::number(named<ValueSlider>(name).shownValue()) + u' ' +
               named<ValueSlider>(name).accessibleDescription();
    };
    const struct {
        const char* name;
        std::function<void()> act;
        QString key;
        QJsonValue written;
        QJsonValue edited;
        std::function<QString()> shown;
        QString shownThen;
    } rows[] = {
        {"theme",
         [&] {
             key(named<PanelButton>(u"Auto"_s), Qt::Key_Right);
             press(Qt::Key_Right);
         },
         u"appTheme"_s, u"dark"_s, u"light"_s,
         [&] { return QString::number(segments(u"Color Scheme"_s).currentIndex()); }, u"1"_s},
        {"width", [&] { choose(u"Width"_s, u"80%"_s); }, u"panelWidth"_s, 0.8, 0.9,
         [&] { return QString::number(segments(u"Width"_s).currentIndex()); }, u"1"_s},
        {"panel opacity", [&] { key(named<ValueSlider>(u"Panel Opacity"_s), Qt::Key_Left); },
         u"panelOpacity"_s, 0.95, 0.52, [&] { return slider(u"Panel Opacity"_s); }, u"0.5 52%"_s},
        {"item opacity", [&] { key(named<ValueSlider>(u"Item Opacity"_s), Qt::Key_Home); },
         u"itemOpacity"_s, 0.3, 0.75, [&] { return slider(u"Item Opacity"_s); }, u"0.75 75%"_s},
        {"background", [&] { pick(named<ColorWell>(u"Background"_s), kRed); },
         u"panelBackgroundColor"_s, u"#FF6B6B"_s, u"#112233"_s,
         [&] { return named<ColorWell>(u"Background"_s).accessibleDescription(); }, u"#112233"_s},
        {"badge", [&] { pick(badge(u"HTML"_s), kGreen); }, u"filterBadgeColor_html"_s, u"#6BCB77"_s,
         u"#445566"_s, [&] { return badge(u"HTML"_s).accessibleDescription(); }, u"#445566"_s},
        {"visibility", [&] { key(toggle(u"Text"_s), Qt::Key_Space); }, u"filterChipVisible_text"_s,
         false, true, [&] { return toggle(u"Text"_s).isChecked() ? u"on"_s : u"off"_s; }, u"on"_s},
        {"a hidden one", [&] { toggle(u"Video"_s).click(); }, u"filterChipVisible_video"_s, true,
         false, [&] { return toggle(u"Video"_s).isChecked() ? u"on"_s : u"off"_s; }, u"off"_s},
    };
    for (const auto& row : rows) {
        row.act();
        EXPECT_EQ(defaults.object(row.key), row.written) << row.name;
        defaults.setObject(row.key, row.edited);
        EXPECT_EQ(row.shown(), row.shownThen) << row.name;
        EXPECT_EQ(defaults.object(row.key), row.edited) << row.name << ": showing wrote";
    }
}

TEST_F(AppearancePage, AColorIsTypedAndFollowedWhileItsSheetIsOpen) {
    open();
    badge(u"Image"_s).setFocus();
    press(Qt::Key_Return);
    inSheet<ColorPicker>().hexField().setFocus();
    inSheet<ColorPicker>().hexField().selectAll();
    type(u"#0A0B0C"_s);
    EXPECT_EQ(colors.badgeColor(FilterType::Image), QColor(10, 11, 12));
    colors.setFilterBadgeColor(kRed, FilterType::Image);
    EXPECT_EQ(inSheet<ColorPicker>().color(), kRed);
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(Sheet::openIn(&window), nullptr);
    EXPECT_TRUE(badge(u"Image"_s).hasFocus());
}

TEST_F(AppearancePage, TheThreeResetsForgetWhatIsTheirs) {
    open();
    pick(named<ColorWell>(u"Background"_s), kRed);
    pick(badge(u"Text"_s), kRed);
    colors.setPanelOpacity(0.5);
    colors.setFilterVisible(FilterType::Text, false);
    named<PushButton>(u"Reset to default"_s).click();
    EXPECT_FALSE(defaults.object(u"panelBackgroundColor"_s).has_value());
    EXPECT_EQ(named<ColorWell>(u"Background"_s).color(), colors.defaultPanelBackground());
    click(u"ResetEverything"_s);
    EXPECT_EQ(named<ValueSlider>(u"Panel Opacity"_s).shownValue(), 1.0);
    EXPECT_TRUE(toggle(u"Text"_s).isChecked());
    EXPECT_EQ(badge(u"Text"_s).color(), kRed) << "badge colours are kept";
    click(u"ResetBadgeColors"_s);
    EXPECT_EQ(badge(u"Text"_s).color(), defaultColor(FilterType::Text));
}

TEST_F(AppearancePage, FiltersAreMovedByPointerAndKeys) {
    open();
    const auto alt = [this](int row, int code) {
        filters().rows().at(row)->toggle().setFocus();
        press(code, Qt::AltModifier);
    };
    const struct {
        const char* name;
        std::function<void()> act;
        QString shown;
        bool isStored = true;
    } rows[] = {
        {"there and back", [&] { drag(1, {3, 1}), drop(); }, u"text link richText html image"_s,
         false},
        {"dragged down", [&] { drag(0, {1, 2}), drop(); }, u"link richText text html image"_s},
        {"dragged up", [&] { drag(4, {2, 0}), drop(); }, u"image link richText text html"_s},
        {"Escape",
         [&] {
             drag(1, {3});
             QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
             QApplication::sendEvent(QWidget::keyboardGrabber(), &escape);
             drop();
         },
         u"image link richText text html"_s, false},
        {"pressed only", [&] { drag(1, {}), drop(); }, u"image link richText text html"_s, false},
        {"Alt-Down", [&] { alt(0, Qt::Key_Down); }, u"link image richText text html"_s},
        {"Alt-Up", [&] { alt(2, Qt::Key_Up); }, u"link richText image text html"_s},
        {"Alt-Up at the top", [&] { alt(0, Qt::Key_Up); }, u"link richText image text html"_s,
         false},
        {"another order meanwhile",
         [&] {
             drag(0, {2});
             colors.moveFilter({4}, 0);
             defaults.remove(u"filterChipOrder"_s);
             drop();
         },
         u"text link richText html image"_s},
    };
    for (const auto& row : rows) {
        const auto before = defaults.object(u"filterChipOrder"_s);
        row.act();
        EXPECT_EQ(shownOrder(), row.shown) << row.name;
        EXPECT_EQ(order(colors.filterOrder()), row.shown) << row.name;
        EXPECT_EQ(defaults.object(u"filterChipOrder"_s) != before, row.isStored) << row.name;
    }
}

TEST_F(AppearancePage, AFilterKeepsTheFocusAndSaysItsPlaceWhenItIsMoved) {
    open();
    auto& image = toggle(u"Image"_s);
    image.setFocus();
    for (int i = 0; i < 2; ++i) {
        press(Qt::Key_Up, Qt::AltModifier);
    }
    EXPECT_TRUE(image.hasFocus());
    EXPECT_TRUE(image.accessibleDescription().startsWith(u"3 of 16"_s));
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &toggle(u"Rich Text"_s))
        << "Tab goes in the order shown";
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_TRUE(toggle(u"Link"_s).hasFocus());
    press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), &named<ValueSlider>(u"Item Opacity"_s));
}

TEST_F(AppearancePage, NearTheEdgeADragScrollsThePage) {
    open();
    auto* page = window.findChild<QScrollArea*>();
    page->ensureWidgetVisible(filters().rows().first(), 0, 0);
    const int before = page->verticalScrollBar()->value();
    const int edge = filters().mapFromGlobal(page->viewport()->mapToGlobal(QPoint(0, 380))).y();
    mouse(QEvent::MouseButtonPress, 19);
    mouse(QEvent::MouseMove, edge);
    EXPECT_TRUE(waitUntil([&] { return page->verticalScrollBar()->value() > before + 25; }));
    EXPECT_NE(filters().rows().first()->filter(), FilterType::Text) << "the row goes with it";
    drop();
    EXPECT_EQ(colors.filterOrder().indexOf(FilterType::Text),
              (filters().rows().indexOf(window.findChild<FilterRow*>(u"text"_s))));
}

TEST_F(AppearancePage, ThePlaceIsThePanelsAndNothingWithoutOne) {
    auto panel = std::make_unique<FakePositionControl>();
    colors.setOverlayController(panel.get());
    open();
    auto* section = window.findChild<QWidget*>(u"PositionSection"_s);
    const auto isSaid = [section](const QString& text) {
        return std::ranges::any_of(section->findChildren<FormLabel*>(), [&](const auto* label) {
            return label->isVisibleTo(section) && label->text() == text;
        });
    };
    EXPECT_EQ(segments(u"Dock Position"_s).currentIndex(), 2);
    EXPECT_TRUE(isSaid(u"Panel position is locked."_s));
    choose(u"Dock Position"_s, u"Top"_s);
    toggle(u"Lock Position"_s).click();
    named<PushButton>(u"Reset to Default Position"_s).click();
    EXPECT_EQ(panel->panelPosition(), PanelPosition::Top);
    EXPECT_FALSE(panel->isPositionLocked());
    EXPECT_EQ(panel->resets, 1);
    EXPECT_TRUE(isSaid(u"Drag the panel to reposition it. Changes are saved automatically."_s));
    panel->setPanelPosition(PanelPosition::Center);
    panel->setPositionLocked(true);
    EXPECT_EQ(segments(u"Dock Position"_s).currentIndex(), 1);
    EXPECT_TRUE(toggle(u"Lock Position"_s).isChecked());
    panel.reset();
    EXPECT_FALSE(section->isEnabled());
    choose(u"Dock Position"_s, u"Top"_s);
    EXPECT_EQ(segments(u"Dock Position"_s).currentIndex(), 1);
}

TEST_F(AppearancePage, ThePreviewIsTheChipsAndChoosesNothing) {
    open();
    const auto& chips = named<ChipRow>(u"Preview of the type filters"_s);
    colors.setFilterVisible(FilterType::Image, false);
    colors.moveFilter({1}, 0);
    colors.setFilterBadgeColor(kRed, FilterType::Text);
    QStringList shown;
    for (const Chip* chip : chips.chips()) {
        shown += chip->content().text + (chip->content().badge == kRed ? u"!"_s : QString());
    }
    EXPECT_EQ(shown.join(u' '), u"All Link Text! HTML Files"_s);
    const QJsonObject before = defaults.values();
    chips.chips().at(1)->click();
    EXPECT_EQ(chips.selectedFilter(), FilterType::Link);
    EXPECT_EQ(defaults.values(), before);
}

}  // namespace
}  // namespace quillo::testing
