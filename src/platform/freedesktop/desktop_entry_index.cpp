// SPDX-License-Identifier: MIT
#include "platform/freedesktop/desktop_entry_index.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "base/logging.h"

namespace quillo {

using namespace Qt::StringLiterals;

namespace {

QUILLO_LOG_CATEGORY(lcDesktopEntries, "DesktopEntryIndex")

constexpr qint64 kLongestCommandLine = 16 * 1024;

}  // namespace

DesktopEntryIndex::DesktopEntryIndex(const QStringList& folders, const QList<QByteArray>& locales)
    : m_folders(folders), m_locales(locales) {}

DesktopEntryIndex::~DesktopEntryIndex() = default;

QStringList DesktopEntryIndex::defaultFolders() {
    QStringList result;
    for (const QString& folder :
         QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        result.append(folder + u"/applications"_s);
    }
    return result;
}

void DesktopEntryIndex::warmUp() {
    std::unique_lock lock(m_mutex);
    if (!m_catalogue) {
        startScan(lock);
    }
}

void DesktopEntryIndex::startScan(const std::unique_lock<std::mutex>& lock) {
    Q_ASSERT(lock.owns_lock());
    if (m_isScanning) {
        return;
    }
    m_isScanning = true;
    // The thread of an earlier scan has nothing more to do once the flag is down.
    m_thread = std::jthread([this] {
        QElapsedTimer timer;
        timer.start();
        auto scanned = std::make_shared<const DesktopEntryCatalogue>(
            DesktopEntryCatalogue::scan(m_folders, m_locales));
        qCDebug(lcDesktopEntries) << scanned->size() << "entries read in" << timer.elapsed()
                                  << "ms";
        const std::lock_guard guard(m_mutex);
        m_catalogue = std::move(scanned);
        m_isScanning = false;
        m_scanned.notify_all();
    });
}

DesktopEntryIndex::Catalogue DesktopEntryIndex::catalogue() {
    std::unique_lock lock(m_mutex);
    if (!m_catalogue) {
        startScan(lock);
        m_scanned.wait(lock, [this] { return m_catalogue != nullptr; });
    }
    return m_catalogue;
}

void DesktopEntryIndex::rescanIfOutdated(const Catalogue& catalogue) {
    if (catalogue->isOutdated()) {
        std::unique_lock lock(m_mutex);
        startScan(lock);
    }
}

std::optional<InstalledApplication> DesktopEntryIndex::applicationOfWindow(
    const ProgramTraces& traces) {
    const Catalogue entries = catalogue();
    auto result = entries->applicationOfWindow(traces);
    if (!result && traces.processId > 0) {
        result = entries->applicationOfProgram(programOfProcess(traces.processId));
    }
    if (!result) {
        rescanIfOutdated(entries);
    }
    return result;
}

std::optional<InstalledApplication> DesktopEntryIndex::application(
    const QString& bundleIdentifier) {
    const Catalogue entries = catalogue();
    auto result = entries->application(bundleIdentifier);
    if (!result) {
        rescanIfOutdated(entries);
    }
    return result;
}

QString programOfProcess(qint64 processId) {
    const QString folder = u"/proc/%1/"_s.arg(processId);
    QFile commandLine(folder + u"cmdline"_s);
    QStringList arguments;
    if (commandLine.open(QIODevice::ReadOnly)) {
        for (const QByteArray& argument : commandLine.read(kLongestCommandLine).split('\0')) {
            arguments.append(QString::fromLocal8Bit(argument));
        }
    }
    // The link tells the program even when it has written a title over its arguments; behind an
    // interpreter only the arguments tell the script.
    const QString executable = QFile::symLinkTarget(folder + u"exe"_s);
    if (!executable.isEmpty()) {
        arguments.isEmpty() ? arguments.append(executable) : arguments.replace(0, executable);
    }
    QString program = programOfCommand(arguments);
    constexpr QLatin1StringView replaced{" (deleted)"};
    return program.endsWith(replaced) ? program.chopped(replaced.size()) : program;
}

}  // namespace quillo
