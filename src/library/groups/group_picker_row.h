// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QUuid>
#include <optional>

#include "library/groups/panel_button.h"
#include "library/groups/popup_look.h"

namespace quillo {

/// A line of the group picker: a symbol, a square of the group's colour, a title.
class GroupPickerRow final : public PanelButton {
    Q_OBJECT

public:
    static constexpr int kHeight = 28;

    struct Content {
        QUuid group = {};
        QString title = {};
        bool hasColor = false;
        std::optional<QColor> color = {};  ///< None is the accent.
    };

    GroupPickerRow(QAccessible::Role role, const Content& content, QWidget* parent = nullptr);

    [[nodiscard]] QUuid group() const { return m_content.group; }
    void setSymbol(const QString& name);
    [[nodiscard]] QString symbol() const { return m_symbol; }
    void setLook(const PopupLook& look);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Content m_content;
    QString m_symbol;
    PopupLook m_look;
};

}  // namespace quillo
