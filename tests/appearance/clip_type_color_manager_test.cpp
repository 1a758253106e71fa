// SPDX-License-Identifier: MIT
// What colours and sizes the overlay: read from the settings, changed, edited by hand, reset.
#include <gtest/gtest.h>

#include <QJsonArray>

#include "appearance/clip_type_color_manager.h"
#include "support/fake_system_appearance.h"
#include "support/memory_user_defaults.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

const QColor kLightDefault(0xf0, 0xf0, 0xf2);
const QColor kDarkDefault(0x2c, 0x2c, 0x2e);

QString joined(const QList<FilterType>& filters) {
    QStringList names;
    for (const FilterType filter : filters) {
        names.append(rawValue(filter));
    }
    return names.join(u' ');
}

const QString kDefaultOrder =
    u"text link richText html image color allFiles folder pdf word excel powerpoint csv archive "
    "audio video"_s;

class Colors : public ::testing::Test {
protected:
    void make(const QJsonObject& settings = {}) {
        m_manager.reset();
        m_theme.reset();
        m_defaults = std::make_unique<MemoryUserDefaults>(settings);
        m_theme = std::make_unique<ThemeManager>(*m_defaults, m_system);
        m_manager = std::make_unique<ClipTypeColorManager>(*m_defaults, *m_theme);
    }

    FakeSystemAppearance m_system;
    std::unique_ptr<MemoryUserDefaults> m_defaults;
    std::unique_ptr<ThemeManager> m_theme;
    std::unique_ptr<ClipTypeColorManager> m_manager;
};

TEST_F(Colors, EmptySettingsGiveTheDefaultsAndNothingIsWritten) {
    make();
    EXPECT_EQ(m_manager->panelOpacity(), 1.0);
    EXPECT_EQ(joined(m_manager->visibleFilters()), u"text link html image allFiles"_s);
    EXPECT_EQ(m_manager->panelBackgroundColor(), kLightDefault);
    EXPECT_TRUE(m_manager->filterBadgeColors().isEmpty());
    EXPECT_TRUE(m_defaults->values().isEmpty());
}

TEST_F(Colors, StoredNumbersCountAndOtherTypesAreAbsent) {
    make({{u"panelOpacity"_s, 0.5},
          {u"panelWidth"_s, u"0.8"_s},
          {u"itemOpacity"_s, true},
          {u"filterChipVisible_video"_s, true},
          {u"filterChipVisible_text"_s, 0},
          {u"clipTypeColor_3"_s, u"#010203"_s},
          {u"clipTypeBgColor_0"_s, u"#abc"_s},
          {u"clipTypeBgOpacity_4"_s, 1},
          {u"filterBadgeColor_csv"_s, u"no colour"_s},
          {u"filterBadgeColor_link"_s, u"0a0B0c"_s}});
    EXPECT_EQ(m_manager->panelOpacity(), 0.5);
    EXPECT_EQ(m_manager->panelWidth(), 1.0);
    EXPECT_EQ(m_manager->itemOpacity(), 1.0);
    EXPECT_EQ(joined(m_manager->visibleFilters()), u"text link html image allFiles video"_s);
    EXPECT_EQ(m_manager->colors().value(ClipType::Image), QColor(1, 2, 3));
    EXPECT_EQ(m_manager->backgroundColors().value(ClipType::Text), defaultColor(ClipType::Text));
    EXPECT_EQ(m_manager->backgroundOpacities().value(ClipType::FileUrl), 1.0);
    EXPECT_EQ(m_manager->filterBadgeColors().keys(), QList{FilterType::Link});
    EXPECT_EQ(m_manager->badgeColor(FilterType::Link), QColor(10, 11, 12));
}

TEST_F(Colors, TheChipOrderHasEveryFilterOnceWhateverIsStored) {
    const QString afterVideo =
        u"video text link richText html image color allFiles folder pdf word excel powerpoint csv "
        "archive audio"_s;
    const struct {
        QJsonValue stored;
        QString order;
    } rows[] = {
        {QJsonArray{u"video"_s, u"unknown"_s, u"text"_s}, afterVideo},
        {QJsonArray{u"video"_s, u"video"_s, u"Text"_s}, afterVideo},
        {QJsonArray{u"video"_s, 3}, kDefaultOrder},
        {QJsonArray{}, kDefaultOrder},
        {u"video"_s, kDefaultOrder},
    };
    for (const auto& row : rows) {
        make({{u"filterChipOrder"_s, row.stored}});
        EXPECT_EQ(joined(m_manager->filterOrder()), row.order);
    }
}

TEST_F(Colors, MovingAndHidingChipsIsStored) {
    make();
    const QList<FilterType> five = m_manager->filterOrder().first(5);
    const struct {
        QList<int> sources;
        int destination;
        QString order;
    } rows[] = {
        {{0}, 2, u"link text richText html image"_s},
        {{4, 1}, 0, u"link image text richText html"_s},
        {{1, 2}, 5, u"text html image link richText"_s},
        {{1}, 1, u"text link richText html image"_s},
        {{9, -1}, 0, u"text link richText html image"_s},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(joined(movedFilters(five, row.sources, row.destination)), row.order);
    }
    m_manager->moveFilter({15}, 0);
    m_manager->setFilterVisible(FilterType::Video, true);
    m_manager->setFilterVisible(FilterType::Text, false);
    EXPECT_EQ(m_defaults->strings(u"filterChipOrder"_s)->constFirst(), u"video"_s);
    EXPECT_EQ(m_defaults->boolean(u"filterChipVisible_text"_s), false);
    EXPECT_EQ(m_defaults->boolean(u"filterChipVisible_audio"_s), false);
    EXPECT_EQ(joined(m_manager->visibleFilters()), u"video link html image allFiles"_s);
}

TEST_F(Colors, ACustomBackgroundIsReadKeptAndReplacedByAnotherTheme) {
    make({{u"panelBackgroundColor"_s, u"  #1a2b3c\n"_s}, {u"appTheme"_s, u"dark"_s}});
    EXPECT_EQ(m_manager->panelBackgroundColor(), QColor(0x1a, 0x2b, 0x3c));
    EXPECT_TRUE(m_manager->hasCustomPanelBackground());
    m_manager->resetPanelBackgroundColor(ColorScheme::Light);
    EXPECT_EQ(m_manager->panelBackgroundColor(), kLightDefault);
    EXPECT_FALSE(m_defaults->object(u"panelBackgroundColor"_s));
    m_manager->resetPanelBackgroundColor();
    EXPECT_EQ(m_manager->panelBackgroundColor(), kDarkDefault);

    m_manager->setPanelBackgroundColor(QColor(1, 2, 3, 4));
    m_manager->savePanelBackgroundColor();
    EXPECT_FALSE(m_defaults->object(u"panelBackgroundColor"_s)) << "not marked as custom";
    m_manager->setHasCustomPanelBackground(true);
    m_manager->savePanelBackgroundColor();
    EXPECT_EQ(m_defaults->string(u"panelBackgroundColor"_s), u"#010203"_s);

    make({{u"panelBackgroundColor"_s, u"#abc"_s}});
    EXPECT_FALSE(m_manager->hasCustomPanelBackground());
    m_system.state(ColorScheme::Dark);
    EXPECT_EQ(m_manager->panelBackgroundColor(), kDarkDefault) << "the default follows the desktop";
}

// One edit by hand that changes the theme and the colour: the theme is told of first.
TEST_F(Colors, AColourThatCameInWithTheThemeIsNotForgottenForIt) {
    make();
    QObject::connect(m_theme.get(), &ThemeManager::currentThemeChanged, m_manager.get(),
                     [this] { m_manager->resetPanelBackgroundColor(m_theme->effectiveScheme()); });
    m_defaults->blockSignals(true);
    m_defaults->setObject(u"panelBackgroundColor"_s, u"#112233"_s);
    m_defaults->blockSignals(false);
    m_defaults->setObject(u"appTheme"_s, u"dark"_s);
    EXPECT_EQ(m_manager->panelBackgroundColor(), QColor(0x11, 0x22, 0x33));
    EXPECT_EQ(m_defaults->string(u"panelBackgroundColor"_s), u"#112233"_s);
    m_defaults->setObject(u"appTheme"_s, u"light"_s);
    EXPECT_EQ(m_manager->panelBackgroundColor(), kLightDefault);
}

TEST_F(Colors, EditsByHandAreTakenOverAndToldOf) {
    make();
    using Manager = ClipTypeColorManager;
    const struct {
        QString key;
        QJsonValue value;
        void (Manager::*signal)();
    } rows[] = {
        {u"panelOpacity"_s, 0.4, &Manager::panelOpacityChanged},
        {u"panelWidth"_s, 0.8, &Manager::panelWidthChanged},
        {u"itemOpacity"_s, 0.6, &Manager::itemOpacityChanged},
        {u"panelBackgroundColor"_s, u"#123456"_s, &Manager::panelBackgroundColorChanged},
        {u"filterChipOrder"_s, QJsonArray{u"pdf"_s}, &Manager::filterOrderChanged},
        {u"filterChipVisible_pdf"_s, true, &Manager::filterVisibilityChanged},
        {u"filterBadgeColor_pdf"_s, u"#123456"_s, &Manager::filterBadgeColorsChanged},
        {u"clipTypeColor_1"_s, u"#123456"_s, &Manager::colorsChanged},
        {u"clipTypeBgColor_1"_s, u"#123456"_s, &Manager::backgroundColorsChanged},
        {u"clipTypeBgOpacity_1"_s, 0.9, &Manager::backgroundOpacitiesChanged},
    };
    int told = 0;
    for (const auto& row : rows) {
        QObject::connect(m_manager.get(), row.signal, m_manager.get(), [&told] { ++told; });
    }
    for (const auto& row : rows) {
        m_defaults->setObject(row.key, row.value);
        EXPECT_EQ(std::exchange(told, 0), 1) << row.key.toStdString();
        m_defaults->remove(row.key);
        EXPECT_EQ(std::exchange(told, 0), 1) << row.key.toStdString();
    }
}

TEST_F(Colors, ResettingBadgesForgetsTheKindsColoursUntilTheyAreLoadedAgain) {
    make({{u"filterBadgeColor_pdf"_s, u"#123456"_s}, {u"clipTypeColor_2"_s, u"#123456"_s}});
    m_manager->setFilterBadgeColor(QColor(1, 2, 3), FilterType::Csv);
    EXPECT_EQ(m_defaults->string(u"filterBadgeColor_csv"_s), u"#010203"_s);
    m_manager->resetBadgeColors();
    EXPECT_TRUE(m_defaults->values().isEmpty());
    EXPECT_TRUE(m_manager->filterBadgeColors().isEmpty());
    EXPECT_TRUE(m_manager->colors().isEmpty());
    m_manager->resetToDefaults();
    EXPECT_EQ(m_manager->colors().size(), 5);
}

TEST_F(Colors, ResettingToDefaultsWritesThemAndKeepsTheBadgeColours) {
    make({{u"panelOpacity"_s, 0.4},
          {u"panelBackgroundColor"_s, u"#123456"_s},
          {u"filterBadgeColor_pdf"_s, u"#123456"_s},
          {u"clipTypeBgOpacity_1"_s, 0.9},
          {u"filterChipVisible_pdf"_s, true},
          {u"filterChipOrder"_s, QJsonArray{u"pdf"_s}}});
    m_manager->resetToDefaults();
    QJsonObject expected{
        {u"panelOpacity"_s, 1.0},
        {u"panelWidth"_s, 1.0},
        {u"itemOpacity"_s, 1.0},
        {u"filterBadgeColor_pdf"_s, u"#123456"_s},
        {u"filterChipOrder"_s, QJsonArray::fromStringList(kDefaultOrder.split(u' '))}};
    const QStringList shown = u"text link html image allFiles"_s.split(u' ');
    for (const QString& filter : kDefaultOrder.split(u' ')) {
        expected.insert(u"filterChipVisible_"_s + filter, shown.contains(filter));
    }
    EXPECT_EQ(m_defaults->values(), expected);
    EXPECT_EQ(m_manager->panelBackgroundColor(), kLightDefault);
    EXPECT_EQ(m_manager->backgroundOpacities().value(ClipType::Rtf), 0.15);
}

}  // namespace
}  // namespace quillo::testing
