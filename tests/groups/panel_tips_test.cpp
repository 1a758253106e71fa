// SPDX-License-Identifier: MIT
#include "library/groups/panel_tips.h"

#include <QHelpEvent>
#include <QToolTip>

#include "groups/panel_fixture.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

class PanelTipsTest : public PanelTest {
protected:
    void hover(QWidget& widget) {
        QHelpEvent event(QEvent::ToolTip, {1, 1}, widget.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&widget, &event);
    }
    PanelTips tips{&panel};
};

TEST_F(PanelTipsTest, AChildsTipIsShownInsideThePanelUntilSomethingIsDone) {
    control.setGeometry(990, 310, 10, 10);
    control.setToolTip(u"A text that needs a little room"_s);
    const QList<std::function<void()>> ends = {
        [this] { press(Qt::Key_A); },
        [this] { click({5, 5}); },
        [this] {
            QEvent leave(QEvent::Leave);
            QCoreApplication::sendEvent(&control, &leave);
        },
        [this] { control.hide(); },
    };
    for (const auto& end : ends) {
        control.show();
        hover(control);
        EXPECT_EQ(tips.text(), control.toolTip());
        EXPECT_FALSE(QToolTip::isVisible());
        for (const QWidget* child : panel.findChildren<QWidget*>()) {
            EXPECT_TRUE(panel.rect().contains(child->geometry()));
        }
        end();
        EXPECT_FALSE(tips.isShown());
    }
}

TEST_F(PanelTipsTest, OthersTipsAndPlacesInsideAWidgetAreLeftToThem) {
    hover(control);
    EXPECT_FALSE(tips.isShown()) << "no text";
    EXPECT_EQ(PanelTips::of(&control), &tips);
    PanelTips::of(&control)->show(u"place"_s, {100, 100, 10, 10});
    EXPECT_EQ(tips.text(), u"place"_s);
    QMouseEvent move(QEvent::MouseMove, QPointF(300, 300), panel.mapToGlobal(QPointF(300, 300)),
                     Qt::NoButton, {}, {});
    QCoreApplication::sendEvent(&panel, &move);
    EXPECT_FALSE(tips.isShown());
    QWidget stranger;
    stranger.setToolTip(u"x"_s);
    EXPECT_EQ(PanelTips::of(&stranger), nullptr);
    hover(stranger);
    EXPECT_FALSE(tips.isShown());
    QToolTip::hideText();
}

}  // namespace
}  // namespace quillo::testing
