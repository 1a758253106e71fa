// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QUuid>
#include <QWidget>
#include <optional>

#include "library/window/library_look.h"
#include "model/store/object_context.h"

class QLabel;

namespace quillo {

class FormField;
class PinboardPreview;
class PushButton;
class SwatchRow;

/// The form of a new pinboard, or of one that is edited: name, colour, and how it will look. Saves
/// what is confirmed, and stays as it is where that fails. Knows nothing of what it stands in.
class PinboardEditor final : public QWidget {
    Q_OBJECT

public:
    /// No pinboard: a new one. The context must outlive the form.
    PinboardEditor(ObjectContext& context, std::optional<QUuid> pinboard,
                   QWidget* parent = nullptr);

    [[nodiscard]] FormField& nameField() { return *m_name; }
    void setColor(const QColor& color);
    void setLook(const PopupLook& look);
    /// As the button does: a name without anything but white space does nothing.
    void confirm();

Q_SIGNALS:
    void saved(const QUuid& pinboard);
    void cancelled();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fill();
    void choose(const QColor& color);
    [[nodiscard]] Result<QUuid> save();

    ObjectContext& m_context;
    std::optional<QUuid> m_pinboard;
    QColor m_color;
    QLabel* m_heading;
    FormField* m_name;
    SwatchRow* m_swatches;
    PinboardPreview* m_preview;
    PushButton* m_cancel;
    PushButton* m_confirm;
    QList<QLabel*> m_labels;
};

/// The form of another name for a pinboard, which may be none at all. Saves what is confirmed.
class RenamePinboardForm final : public QWidget {
    Q_OBJECT

public:
    RenamePinboardForm(ObjectContext& context, const QUuid& pinboard, QWidget* parent = nullptr);

    [[nodiscard]] FormField& nameField() { return *m_name; }
    void setLook(const PopupLook& look);
    void confirm();

Q_SIGNALS:
    void saved();
    void cancelled();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    ObjectContext& m_context;
    QUuid m_pinboard;
    QLabel* m_heading;
    FormField* m_name;
    PushButton* m_cancel;
    PushButton* m_confirm;
};

}  // namespace quillo
