// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

class QWidget;

namespace quillo {

class ClipTypeColorManager;
class ObjectContext;
class ThemeManager;

/// The sections of the page that shows how Quillo looks, in their order. Each follows its owner,
/// which must outlive it, and writes only what a person chose. Their object names are those of the
/// functions, without "make".

[[nodiscard]] std::unique_ptr<QWidget> makeThemeSection(ThemeManager& theme);
[[nodiscard]] std::unique_ptr<QWidget> makeGroupsSection(ObjectContext& context);
[[nodiscard]] std::unique_ptr<QWidget> makePanelSection(ClipTypeColorManager& manager);
[[nodiscard]] std::unique_ptr<QWidget> makeTypeFiltersSection(ClipTypeColorManager& manager);
/// Disabled while nothing is there that the place could be set of.
[[nodiscard]] std::unique_ptr<QWidget> makePositionSection(const ClipTypeColorManager& manager);
[[nodiscard]] std::unique_ptr<QWidget> makeBadgeColorsSection(ClipTypeColorManager& manager);
[[nodiscard]] std::unique_ptr<QWidget> makePreviewSection(const ClipTypeColorManager& manager,
                                                          const ThemeManager& theme);

}  // namespace quillo
