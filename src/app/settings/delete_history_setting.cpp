// SPDX-License-Identifier: MIT
#include "app/settings/delete_history_setting.h"

#include "app/settings/settings_look.h"
#include "library/groups/alert.h"
#include "library/groups/form_controls.h"
#include "model/history_deletion.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QString idleCaption() {
    return u"Remove all clipboard history"_s;
}

}  // namespace

DeleteHistorySetting::DeleteHistorySetting(const SettingsServices& services, SettingsRow& row)
    : QObject(&row),
      m_persistence(services.persistence),
      m_row(row),
      m_button(new PushButton(PushButton::Style::Destructive, u"Delete All"_s)),
      m_trouble(new FormLabel(FormLabel::Style::Trouble)) {
    row.setDestructive();
    row.setCaption(idleCaption());
    row.addControl(m_button);
    row.addBelow(m_trouble);
    m_trouble->hide();
    m_button->setToolTip(idleCaption());
    connect(m_button, &QAbstractButton::clicked, this, &DeleteHistorySetting::ask);
}

void DeleteHistorySetting::ask() {
    m_trouble->hide();
    Alert::show(&m_row, settingsControls,
                {.title = u"Delete All Clips?"_s,
                 .message = u"This will permanently delete your entire clipboard history. This "
                            "action cannot be undone."_s,
                 .dismiss = u"Cancel"_s,
                 .destructive = Alert::Action{u"Delete All"_s, [this] { deleteAll(); }}});
}

void DeleteHistorySetting::deleteAll() {
    m_button->setEnabled(false);
    m_row.setCaption(u"Deleting…"_s);
    deleteHistory(m_persistence, *this, [this](const Result<void>& result) { showEnd(result); });
}

void DeleteHistorySetting::showEnd(const Result<void>& result) {
    m_button->setEnabled(true);
    m_row.setCaption(result ? u"All clips are deleted"_s : idleCaption());
    m_trouble->setVisible(!result);
    if (!result) {
        m_trouble->setText(u"Nothing was deleted: %1"_s.arg(result.error().text));
    }
}

}  // namespace quillo
