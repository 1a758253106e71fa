// SPDX-License-Identifier: MIT
#include <QPainter>
#include <QVBoxLayout>

#include "app/settings/appearance_sections.h"
#include "app/settings/settings_look.h"
#include "app/settings/settings_section.h"
#include "appearance/clip_type_color_manager.h"
#include "library/groups/chip_row.h"

namespace quillo {
namespace {

constexpr int kMargin = 10;
constexpr int kInset = 8;
constexpr qreal kRadius = 10;

/// The chips of the panel on a piece of the panel's ground.
class ChipPreview final : public QWidget {
public:
    ChipPreview(const ClipTypeColorManager& manager, const ThemeManager& theme)
        : m_manager(manager), m_chips(new ChipRow) {
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(kMargin + kInset, kMargin, kMargin + kInset, kMargin);
        column->addWidget(m_chips);
        m_chips->setGroupsShown(false);
        m_chips->followFilters(manager);
        m_chips->setAccessibleName(QStringLiteral("Preview of the type filters"));
        connect(&manager, &ClipTypeColorManager::panelBackgroundColorChanged, this,
                [this] { showLook(); });
        connect(&theme, &ThemeManager::effectiveSchemeChanged, this, [this] { showLook(); });
        showLook();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(m_colors.panelBorder, 1));
        painter.setBrush(m_colors.panelBackground);
        painter.drawRoundedRect(
            QRectF(rect()).adjusted(kMargin + 0.5, kMargin + 0.5, -kMargin - 0.5, -kMargin - 0.5),
            kRadius, kRadius);
    }

private:
    // What shines through the panel is not here, so it is shown opaque.
    void showLook() {
        m_colors = m_manager.panelLook(Backdrop::Hidden).palette();
        m_chips->setColors(m_colors);
        update();
    }

    const ClipTypeColorManager& m_manager;
    ChipRow* m_chips;
    Palette m_colors;
};

}  // namespace

std::unique_ptr<QWidget> makePreviewSection(const ClipTypeColorManager& manager,
                                            const ThemeManager& theme) {
    auto section = std::make_unique<SettingsSection>(QStringLiteral("Preview"));
    section->setObjectName(QStringLiteral("PreviewSection"));
    section->addRow(new ChipPreview(manager, theme));
    return section;
}

}  // namespace quillo
