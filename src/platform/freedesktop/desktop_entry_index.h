// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/application_index.h"
#include "platform/freedesktop/desktop_entry_catalogue.h"

namespace quillo {

/// The programs that have a desktop entry. The entries are read on a thread of their own, once on
/// first use and again when a program is not found and a folder has changed. The first look-up
/// waits for the first reading; a later reading is waited for by nobody, the look-up that caused
/// it answers none.
class DesktopEntryIndex final : public ApplicationIndex {
public:
    explicit DesktopEntryIndex(
        const QStringList& folders = defaultFolders(),
        const QList<QByteArray>& locales = localeCandidates(messagesLocale()));
    ~DesktopEntryIndex() override;

    /// The folders "applications" of the XDG data dirs, the person's own first.
    [[nodiscard]] static QStringList defaultFolders();

    /// Starts the first reading; returns at once.
    void warmUp();

    [[nodiscard]] std::optional<InstalledApplication> applicationOfWindow(
        const ProgramTraces& traces) override;
    [[nodiscard]] std::optional<InstalledApplication> application(
        const QString& bundleIdentifier) override;

private:
    using Catalogue = std::shared_ptr<const DesktopEntryCatalogue>;

    void startScan(const std::unique_lock<std::mutex>& lock);
    [[nodiscard]] Catalogue catalogue();
    void rescanIfOutdated(const Catalogue& catalogue);

    const QStringList m_folders;
    const QList<QByteArray> m_locales;
    std::mutex m_mutex;
    std::condition_variable m_scanned;
    bool m_isScanning = false;
    Catalogue m_catalogue;
    std::jthread m_thread;
};

/// The file name of the program that a process runs, or of the script that its interpreter runs;
/// empty when the process is gone or is not ours to see.
[[nodiscard]] QString programOfProcess(qint64 processId);

}  // namespace quillo
