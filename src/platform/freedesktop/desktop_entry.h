// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

namespace quillo {

/// The part of a desktop entry that says which program it stands for (freedesktop Desktop Entry
/// Specification 1.5).
struct DesktopEntry {
    QString name;      ///< Localised.
    QString iconName;  ///< Localised; a themed icon's name or an absolute path.
    QString startupWmClass;
    QString program;  ///< File name of the program that Exec starts; empty when a shell does it.
    QStringList categories;
    bool isHidden = false;      ///< The entry counts as deleted.
    bool isVisible = true;      ///< It is shown in menus.
    bool isAutostarted = true;  ///< In an autostart folder: it is not switched off.
};

/// The locales under which a key is looked up, best first, for a POSIX locale name: for
/// "sr_YU.UTF-8@Latn" these are sr_YU@Latn, sr_YU, sr@Latn, sr. Empty for C and POSIX.
[[nodiscard]] QList<QByteArray> localeCandidates(const QByteArray& posixLocale);

/// The locale of this process's messages, from LC_ALL, LC_MESSAGES, LANG.
[[nodiscard]] QByteArray messagesLocale();

/// Reads an entry of type Application. None for another type or what is no desktop entry. Lines
/// over 16 KiB and lines after the 10,000th are not looked at.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(const QByteArray& bytes,
                                                            const QList<QByteArray>& locales);

/// The file name of the program in a command line (an Exec key without its quoting, or a running
/// process's arguments): behind "env" and its assignments, and behind an interpreter the script.
/// Empty where that cannot be told.
[[nodiscard]] QString programOfCommand(const QStringList& arguments);

}  // namespace quillo
