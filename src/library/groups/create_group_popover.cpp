// SPDX-License-Identifier: MIT
#include "library/groups/create_group_popover.h"

#include "base/logging.h"
#include "library/groups/form_controls.h"
#include "library/groups/text_field_menu.h"
#include "model/groups.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcChips, "GroupChipsView")

constexpr int kGapBelowChips = 10;

}  // namespace

CreateGroupPopover::CreateGroupPopover(QWidget* panel, ObjectContext& context,
                                       const Palette& colors)
    : Popup(panel, colors), m_context(context), m_form(new GroupForm) {
    setAccessibleName(QStringLiteral("New Group"));
    setGap(kGapBelowChips);
    setAlignment(PopupAlignment::Center);
    m_form->setFixedWidth(kWidth - 2);
    m_form->setLook(look());
    setContent(m_form);
    new TextFieldMenu(m_form->nameField(), panel, [this] { return panelColors(); });
    connect(m_form, &GroupForm::confirmed, this, &CreateGroupPopover::create);
    connect(m_form, &GroupForm::cancelled, this, &QWidget::close);
}

void CreateGroupPopover::lookChanged() {
    m_form->setLook(look());
}

QWidget* CreateGroupPopover::initialFocus() const {
    return &m_form->nameField();
}

// The form starts anew whether or not the group could be saved: it waits in the context.
void CreateGroupPopover::create(const QString& name, const QColor& color) {
    const auto group = createGroup(m_context, {name, color, GroupPlace::AfterListed, {}});
    if (!group) {
        qCCritical(lcChips, "Error creating group: %ls", qUtf16Printable(group.error().text));
    }
    m_form->startAnew();
    close();
    if (group && *group != nullptr) {
        Q_EMIT created((*group)->id());
    }
}

}  // namespace quillo
