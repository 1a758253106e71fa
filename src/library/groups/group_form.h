// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QWidget>

#include "library/groups/popup_look.h"

class QVBoxLayout;

namespace quillo {

class ColorPicker;
class FormField;
class PushButton;
class SwatchRow;

/// The colour that a form starts with.
inline constexpr QRgb kStandardBlue = 0xff4d96ff;

/// Name and colour of a group, to be filled in. Knows no store: what is confirmed is a signal.
/// Return confirms. For a new group, one that is edited, and inline in a list.
class GroupForm final : public QWidget {
    Q_OBJECT

public:
    struct Texts {
        QString heading = QStringLiteral("New Group");  ///< None when empty.
        QString confirm = QStringLiteral("Create");
    };
    enum class CustomColor { Offered, NotOffered };

    explicit GroupForm(CustomColor custom = CustomColor::Offered, QWidget* parent = nullptr)
        : GroupForm(Texts(), custom, parent) {}
    GroupForm(const Texts& texts, CustomColor custom, QWidget* parent = nullptr);

    [[nodiscard]] QString name() const;
    [[nodiscard]] QColor color() const { return m_color; }
    void setName(const QString& name);
    void setColor(const QColor& color);
    /// What follows a creation: no name, a random colour of the palette, no picker.
    void startAnew();

    void setLook(const PopupLook& look);
    [[nodiscard]] FormField& nameField() { return *m_name; }
    /// Whether the picker for any colour is shown.
    [[nodiscard]] bool isPickerShown() const;
    void showPicker(bool isShown);

    /// As the button does: a name without anything but white space does nothing.
    void confirm();

Q_SIGNALS:
    /// The name is as typed; something is left of it without white space.
    void confirmed(const QString& name, const QColor& color);
    void cancelled();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addCustomColor(QVBoxLayout& column);
    void addButtons(QVBoxLayout& column, const QString& confirmText);
    void choose(const QColor& color);

    FormField* m_name;
    SwatchRow* m_swatches;
    PushButton* m_custom = nullptr;
    ColorPicker* m_picker = nullptr;
    PushButton* m_cancel = nullptr;
    PushButton* m_confirm = nullptr;
    QColor m_color{kStandardBlue};
};

}  // namespace quillo
