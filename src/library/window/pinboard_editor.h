// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QUuid>
#include <QWidget>
#include <optional>

#include "model/store/object_context.h"

namespace quillo {

class FormField;
class PinboardPreview;
class SwatchRow;

/// The form of a new pinboard, or of one that is edited: name, colour, and how it will look. Saves
/// what is confirmed, and stays as it is where that fails. For a sheet, whose colours it takes.
class PinboardEditor final : public QWidget {
    Q_OBJECT

public:
    /// No pinboard: a new one. The context must outlive the form.
    PinboardEditor(ObjectContext& context, std::optional<QUuid> pinboard,
                   QWidget* parent = nullptr);

    [[nodiscard]] FormField& nameField() { return *m_name; }

Q_SIGNALS:
    void saved(const QUuid& pinboard);
    void cancelled();

private:
    void fill();
    void choose(const QColor& color);
    /// A name without anything but white space does nothing.
    void confirm();
    [[nodiscard]] Result<QUuid> save();

    ObjectContext& m_context;
    std::optional<QUuid> m_pinboard;
    QColor m_color;
    FormField* m_name;
    SwatchRow* m_swatches;
    PinboardPreview* m_preview;
};

}  // namespace quillo
