// SPDX-License-Identifier: MIT
#include "app/settings/privacy_page.h"

#include <QDir>
#include <QUrl>

#include "app/settings/settings_look.h"
#include "app/settings/settings_section.h"
#include "app/settings/symbol_label.h"
#include "library/groups/alert.h"
#include "library/groups/form_controls.h"
#include "platform/freedesktop/file_manager.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kMark = 18;
constexpr int kAppIcon = 48;

QString inHome(const QString& path) {
    const QString home = QDir::homePath();
    return path.startsWith(home + u'/') ? u'~' + path.mid(home.size()) : path;
}

SettingsSection* dataStorage(const QString& storePath) {
    auto* section = new SettingsSection(u"Data Storage"_s);
    auto* device = new SettingsRow({.title = u"All clipboard data stays on your device"_s,
                                    .caption = storePath.isEmpty() ? QString() : inHome(storePath),
                                    .symbol = u"internaldrive"_s});
    device->addControl(
        new SymbolLabel(u"checkmark.shield.fill"_s, kMark, SymbolLabel::Ink::Success));
    section->addRow(device);
    section->addRow(
        new SettingsRow({.title = u"No data is sent to external servers"_s,
                         .caption = u"except for link previews (when enabled): the server of a "
                                    "copied link is asked for its title and image."_s,
                         .symbol = u"info.circle"_s}));
    section->addRow(new SettingsRow(
        {.title = u"Readable by you alone"_s,
         .caption = u"Other users of this computer cannot open the file. It is not encrypted: for "
                    "a computer that may be lost, encrypt its disk."_s,
         .symbol = u"lock.shield"_s}));
    return section;
}

SettingsSection* permissions(DesktopSession session) {
    const bool isX11 = session == DesktopSession::X11;
    auto* section = new SettingsSection(u"Permissions"_s);
    section->addRow(new SettingsRow(
        {.title = isX11 ? u"This app needs no permissions here"_s
                        : u"What this Wayland session lets the app do"_s,
         .caption = isX11 ? u"In an X11 session every program may do what follows."_s
                          : u"It grants no permissions that could be asked for."_s,
         .symbol = u"hand.raised.fill"_s}));
    section->addRow(new SettingsRow(
        {.title = u"Auto-paste"_s,
         .caption = isX11 ? u"Sends the paste keystroke to the window that you came from."_s
                          : u"Reaches programs that run under Xwayland. In others the clip is on "
                            "the clipboard for you to paste."_s,
         .symbol = u"accessibility"_s}));
    section->addRow(new SettingsRow(
        {.title = u"Shortcut"_s,
         .caption = isX11 ? u"Is reserved for Quillo with the display server."_s
                          : u"Is heard while a program that runs under Xwayland has the focus."_s,
         .symbol = u"gearshape.2"_s}));
    return section;
}

SettingsRow* nameRow() {
    auto* row = new SettingsRow(
        {.title = u"Quillo"_s, .caption = u"Version "_s + QStringLiteral(QUILLO_VERSION)});
    row->addInFront(new SymbolLabel(u"AppIcon"_s, kAppIcon));
    return row;
}

void openWebsite(QWidget* over) {
    const QString address = u"https://"_s + QStringLiteral(QUILLO_WEBSITE);
    if (!openAddress(QUrl(address))) {
        Alert::show(over, settingsControls,
                    {.title = u"No program opens links here"_s,
                     .message = u"The website is %1."_s.arg(address)});
    }
}

SettingsRow* websiteRow() {
    auto* row = new SettingsRow({.title = u"Website"_s, .symbol = u"globe"_s});
    row->title().setStyle(FormLabel::Style::Text);
    auto* link = new PushButton(PushButton::Style::Link, QStringLiteral(QUILLO_WEBSITE));
    link->setSymbol(u"arrow.up.right"_s);
    link->setToolTip(u"Open in the browser"_s);
    QObject::connect(link, &QAbstractButton::clicked, row, [row] { openWebsite(row); });
    row->addControl(link);
    return row;
}

SettingsSection* about() {
    auto* section = new SettingsSection(u"About"_s);
    section->addRow(nameRow());
    auto* developer = new SettingsRow({.title = u"Developer"_s, .symbol = u"person.fill"_s});
    developer->title().setStyle(FormLabel::Style::Text);
    developer->addControl(new FormLabel(FormLabel::Style::Status, u"The Quillo developers"_s));
    section->addRow(developer);
    section->addRow(websiteRow());
    return section;
}

}  // namespace

DesktopSession desktopSession() {
    const bool isWayland = qEnvironmentVariable("XDG_SESSION_TYPE") == "wayland"_L1 ||
                           qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    return isWayland ? DesktopSession::Wayland : DesktopSession::X11;
}

PrivacyPage::PrivacyPage(DesktopSession session, const QString& storePath, QWidget* parent)
    : SettingsPage(u"Privacy"_s, parent) {
    addSection(dataStorage(storePath));
    addSection(permissions(session));
    addSection(about());
}

}  // namespace quillo
