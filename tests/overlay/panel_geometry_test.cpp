// SPDX-License-Identifier: MIT
// Where the panel goes.
#include <gtest/gtest.h>

#include "overlay/panel_geometry.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

// A screen with a bar of 30 at its top and a dock of 60 at its bottom, right of another screen.
const ScreenArea kScreen{{1920, 100, 1440, 900}, {1920, 130, 1440, 810}};

TEST(PanelGeometry, PlacesThePanelByItsPosition) {
    const struct {
        const char* name;
        PanelPosition position;
        std::optional<QPoint> custom;
        int width;
        QPoint origin;
    } rows[] = {
        {"bottom counts from the whole screen", PanelPosition::Bottom, {}, 1440, {1920, 660}},
        {"top counts from the visible part", PanelPosition::Top, {}, 1440, {1920, 154}},
        {"centre of the visible part", PanelPosition::Center, {}, 1440, {1920, 375}},
        {"narrower is centred", PanelPosition::Bottom, {}, 1152, {2064, 660}},
        {"a dragged place wins", PanelPosition::Top, QPoint(7, 8), 1440, {7, 8}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(originForPanel(row.position, row.custom, kScreen, row.width), row.origin)
            << row.name;
    }
}

TEST(PanelGeometry, APlaceOffEveryScreenIsBroughtToTheNearest) {
    const QList<QRect> screens = {{0, 0, 1000, 800}, {1000, 0, 1000, 800}};
    const struct {
        const char* name;
        QRect frame;
        QRect shown;
    } rows[] = {
        {"on a screen", {100, 100, 500, 320}, {100, 100, 500, 320}},
        {"partly on one stays", {-400, 100, 500, 320}, {-400, 100, 500, 320}},
        {"beyond the right", {5000, 100, 500, 320}, {1500, 100, 500, 320}},
        {"below the left one", {100, 2000, 500, 320}, {100, 480, 500, 320}},
        {"wider than every screen", {9000, 0, 3000, 320}, {1000, 0, 3000, 320}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(nearestVisibleFrame(row.frame, screens), row.shown) << row.name;
    }
    EXPECT_EQ(nearestVisibleFrame({1, 2, 3, 4}, {}), QRect(1, 2, 3, 4));
}

}  // namespace
}  // namespace quillo
