// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>

#include "library/groups/group_form.h"
#include "library/groups/popup.h"
#include "model/store/object_context.h"

namespace quillo {

/// The popover of the "plus" in the chip row: makes a group behind the others. Made once and
/// opened as often as wanted; what was typed stays when it is closed without a group.
class CreateGroupPopover final : public Popup {
    Q_OBJECT

public:
    static constexpr int kWidth = 250;

    /// The context must outlive the popover.
    CreateGroupPopover(QWidget* panel, ObjectContext& context,
                       const Palette& colors = paletteFor(ColorScheme::Light));

    [[nodiscard]] GroupForm& form() { return *m_form; }

Q_SIGNALS:
    void created(const QUuid& group);

protected:
    void lookChanged() override;
    [[nodiscard]] QWidget* initialFocus() const override;

private:
    void create(const QString& name, const QColor& color);

    ObjectContext& m_context;
    GroupForm* m_form;
};

}  // namespace quillo
