// SPDX-License-Identifier: MIT
#include "platform/freedesktop/desktop_entry.h"

#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <array>

namespace quillo {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestLine = 16 * 1024;
constexpr int kMostLines = 10'000;

using Keys = QHash<QByteArray, QByteArray>;

/// Most lines of an entry are names and comments in languages that are not asked for.
bool isWanted(QByteArrayView key, const QList<QByteArray>& locales) {
    constexpr std::array wanted{
        "Type"_L1,   "Name"_L1,      "Icon"_L1,       "StartupWMClass"_L1,           "Exec"_L1,
        "Hidden"_L1, "NoDisplay"_L1, "Categories"_L1, "X-GNOME-Autostart-enabled"_L1};
    const qsizetype bracket = key.indexOf('[');
    const QByteArrayView name = bracket < 0 ? key : key.first(bracket);
    const bool isKnown = std::ranges::any_of(
        wanted, [name](QLatin1StringView known) { return name == QByteArrayView(known); });
    if (!isKnown || bracket < 0) {
        return isKnown;
    }
    return std::ranges::any_of(locales, [&](const QByteArray& locale) {
        return key.endsWith("]") && key.sliced(bracket + 1).chopped(1) == QByteArrayView(locale);
    });
}

/// The keys of the group "Desktop Entry", the first value of each.
Keys desktopEntryGroup(const QByteArray& bytes, const QList<QByteArray>& locales) {
    Keys result;
    bool isInGroup = false;
    qsizetype start = 0;
    for (int count = 0; count < kMostLines && start < bytes.size(); ++count) {
        const qsizetype newline = bytes.indexOf('\n', start);
        const qsizetype end = newline < 0 ? bytes.size() : newline;
        const QByteArrayView line = QByteArrayView(bytes).sliced(start, end - start).trimmed();
        start = end + 1;
        if (line.isEmpty() || line.startsWith('#') || line.size() > kLongestLine) {
            continue;
        }
        if (line.startsWith('[')) {
            if (isInGroup) {
                break;
            }
            isInGroup = line == "[Desktop Entry]";
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!isInGroup || equals <= 0) {
            continue;
        }
        const QByteArrayView key = line.first(equals).trimmed();
        if (isWanted(key, locales) && !result.contains(key.toByteArray())) {
            result.insert(key.toByteArray(), line.sliced(equals + 1).trimmed().toByteArray());
        }
    }
    return result;
}

/// Splits at the separator and resolves the escapes of the type "string"; in a list a separator
/// can be escaped too. Without a separator there is one element.
QStringList unescaped(const QByteArray& value, char separator = '\0') {
    QList<QByteArray> elements{QByteArray()};
    for (qsizetype i = 0; i < value.size(); ++i) {
        const char character = value[i];
        if (separator != '\0' && character == separator) {
            elements.append(QByteArray());
            continue;
        }
        if (character != '\\' || i + 1 == value.size()) {
            elements.last().append(character);
            continue;
        }
        const char escaped = value[++i];
        switch (escaped) {
            case 's':
                elements.last().append(' ');
                break;
            case 'n':
                elements.last().append('\n');
                break;
            case 't':
                elements.last().append('\t');
                break;
            case 'r':
                elements.last().append('\r');
                break;
            default:
                if (escaped != '\\' && escaped != separator) {
                    elements.last().append('\\');
                }
                elements.last().append(escaped);
        }
    }
    QStringList result;
    for (const QByteArray& element : std::as_const(elements)) {
        result.append(QString::fromUtf8(element));
    }
    return result;
}

QString text(const Keys& keys, const QByteArray& key) {
    return unescaped(keys.value(key)).constFirst();
}

QString localizedText(const Keys& keys, const QByteArray& key, const QList<QByteArray>& locales) {
    for (const QByteArray& locale : locales) {
        const QByteArray localizedKey = key + '[' + locale + ']';
        if (keys.contains(localizedKey)) {
            return text(keys, localizedKey);
        }
    }
    return text(keys, key);
}

bool isTrue(const Keys& keys, const QByteArray& key) {
    const QByteArray value = keys.value(key);
    return value == "true" || value == "1";
}

/// The arguments of an Exec key: double quotes group, a backslash in them escapes.
QStringList execArguments(const QString& command) {
    QStringList result;
    QString argument;
    bool isQuoted = false;
    bool hasArgument = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar character = command[i];
        if (character == u'"') {
            isQuoted = !isQuoted;
            hasArgument = true;
        } else if (isQuoted && character == u'\\' && i + 1 < command.size()) {
            argument.append(command[++i]);
        } else if (!isQuoted && character.isSpace()) {
            if (hasArgument) {
                result.append(argument);
            }
            argument.clear();
            hasArgument = false;
        } else {
            argument.append(character);
            hasArgument = true;
        }
    }
    if (hasArgument) {
        result.append(argument);
    }
    return result;
}

bool isInterpreter(const QString& program) {
    constexpr std::array prefixes{"python"_L1, "perl"_L1, "ruby"_L1};
    constexpr std::array names{"sh"_L1,   "bash"_L1, "dash"_L1, "zsh"_L1, "node"_L1,
                               "java"_L1, "gjs"_L1,  "mono"_L1, "lua"_L1, "wish"_L1};
    return std::ranges::any_of(
               prefixes, [&](QLatin1StringView prefix) { return program.startsWith(prefix); }) ||
           std::ranges::find(names, program) != names.end();
}

/// Programs that start another one which their arguments do not name by its file.
bool isLauncher(const QString& program) {
    constexpr std::array names{"flatpak"_L1, "snap"_L1,       "gtk-launch"_L1,  "xdg-open"_L1,
                               "pkexec"_L1,  "sudo"_L1,       "dbus-launch"_L1, "exo-open"_L1,
                               "gio"_L1,     "systemd-run"_L1};
    return std::ranges::find(names, program) != names.end();
}

QString scriptOfInterpreter(const QStringList& arguments, qsizetype first) {
    if (first >= arguments.size() || arguments[first].startsWith(u'-')) {
        return {};
    }
    return QFileInfo(arguments[first]).fileName();
}

}  // namespace

QList<QByteArray> localeCandidates(const QByteArray& posixLocale) {
    const qsizetype at = posixLocale.indexOf('@');
    const QByteArray modifier = at < 0 ? QByteArray() : posixLocale.sliced(at);
    const QByteArray withoutModifier = at < 0 ? posixLocale : posixLocale.first(at);
    const QByteArray languageAndCountry = withoutModifier.split('.').constFirst();
    const QByteArray language = languageAndCountry.split('_').constFirst();
    if (language.isEmpty() || language == "C" || language == "POSIX") {
        return {};
    }
    QList<QByteArray> result;
    for (const QByteArray& candidate :
         {languageAndCountry + modifier, languageAndCountry, language + modifier, language}) {
        if (!result.contains(candidate)) {
            result.append(candidate);
        }
    }
    return result;
}

QByteArray messagesLocale() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const QByteArray value = qgetenv(variable); !value.isEmpty()) {
            return value;
        }
    }
    return {};
}

std::optional<DesktopEntry> parseDesktopEntry(const QByteArray& bytes,
                                              const QList<QByteArray>& locales) {
    const Keys keys = desktopEntryGroup(bytes, locales);
    if (keys.value("Type") != "Application") {
        return std::nullopt;
    }
    DesktopEntry entry;
    entry.name = localizedText(keys, "Name", locales);
    entry.iconName = localizedText(keys, "Icon", locales);
    entry.startupWmClass = text(keys, "StartupWMClass");
    entry.program = programOfCommand(execArguments(text(keys, "Exec")));
    entry.categories = unescaped(keys.value("Categories"), ';');
    entry.categories.removeAll(QString());
    entry.isHidden = isTrue(keys, "Hidden");
    entry.isVisible = !isTrue(keys, "NoDisplay");
    entry.isAutostarted = keys.value("X-GNOME-Autostart-enabled", "true") != "false";
    return entry;
}

QString programOfCommand(const QStringList& arguments) {
    qsizetype first = 0;
    if (!arguments.isEmpty() && QFileInfo(arguments.constFirst()).fileName() == "env"_L1) {
        first = 1;
        while (first < arguments.size() && arguments[first].contains(u'=')) {
            ++first;
        }
    }
    if (first >= arguments.size()) {
        return {};
    }
    const QString program = QFileInfo(arguments[first]).fileName();
    if (isLauncher(program)) {
        return {};
    }
    return isInterpreter(program) ? scriptOfInterpreter(arguments, first + 1) : program;
}

}  // namespace quillo
