// SPDX-License-Identifier: MIT
#include "app/settings/appearance_sections.h"
#include "app/settings/group_management_list.h"
#include "app/settings/settings_section.h"
#include "app/settings/symbol_button.h"

namespace quillo {

std::unique_ptr<QWidget> makeGroupsSection(ObjectContext& context) {
    auto section = std::make_unique<SettingsSection>(QStringLiteral("Groups"));
    section->setObjectName(QStringLiteral("GroupsSection"));
    auto* header = new SettingsRow({.title = QStringLiteral("Clip Groups"),
                                    .caption = QStringLiteral("Organize clips into colored groups"),
                                    .symbol = QStringLiteral("folder.fill")});
    auto* add = new SymbolButton(QStringLiteral("plus"), QStringLiteral("Create new group"));
    auto* list = new GroupManagementList(context);
    QObject::connect(add, &QAbstractButton::clicked, list, &GroupManagementList::openAddSheet);
    header->addControl(add);
    section->addRow(header);
    section->addRow(list);
    return section;
}

}  // namespace quillo
