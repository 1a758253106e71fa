// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>

#include "base/clock.h"
#include "model/store/held_work.h"
#include "model/store/object_context.h"

namespace quillo {

class UserDefaults;

enum class StoreState {
    Loaded,    ///< The file is open.
    InMemory,  ///< The file cannot be used at present; captures are held and saved later.
    Failed,    ///< Neither the file nor its replacement could be opened; otherwise as InMemory.
};

enum class StoreKind { OnDisk, InMemory };

/// Owns the one store of clips and groups: opens it, migrates it, sets a broken file aside and
/// hands out contexts. A store that is busy, unreadable for lack of rights, on a full disk or
/// written by a newer version is never touched: captures then go to memory and are saved through
/// the normal way (duplicates, limit) when a later attempt to open it succeeds.
/// Made and destroyed on the main thread; destruction waits for work that was begun.
class PersistenceController final : public QObject {
    Q_OBJECT

public:
    struct Options {
        StoreKind kind = StoreKind::OnDisk;
        /// The folder that holds the store's own folder "Quillo"; empty takes the XDG data home.
        QString baseFolder;
        const Clock* clock = nullptr;            ///< Must outlive the controller.
        const UserDefaults* defaults = nullptr;  ///< For the history limit of a late save.
        std::chrono::milliseconds retryInterval{10'000};
        std::chrono::milliseconds lockedRetryInterval{1'000};
    };

    /// Opens the store before it returns.
    explicit PersistenceController(const Options& options, QObject* parent = nullptr);
    ~PersistenceController() override;

    [[nodiscard]] StoreState state() const;

    /// The store's file; empty for one in memory.
    [[nodiscard]] QString storePath() const;

    /// The main thread's context.
    [[nodiscard]] ObjectContext& viewContext();

    /// Runs work with a fresh background context on the store's own thread, in the order of the
    /// calls. Returns at once. Any thread.
    void perform(std::move_only_function<void(ObjectContext&)> work);

    /// Runs work at once on the calling thread with a context that only reads and waits neither for
    /// what was performed nor for a save. An error when the store cannot be read at present: work
    /// was then not run. Any thread but the main thread.
    [[nodiscard]] Result<void> read(const std::function<void(ObjectContext&)>& work);

    /// The same as perform() for work that a lock of another process must not lose: while it
    /// answers Busy it is held in memory and done again, at intervals that double up to a minute,
    /// and what is performed this way meanwhile lines up behind it. sizeBytes is about what the
    /// work keeps in memory; beyond HeldWork's bounds the new work is dropped with a line in the
    /// log.
    void performPatiently(HeldWork::Work work, qint64 sizeBytes);

    /// Waits until everything performed so far is done; what a lock holds up is tried once more.
    /// For shutdown and tests.
    void waitUntilIdle();

    /// To follow the deletion of everything: removes the stores that were set aside and gives the
    /// file's free space back. Returns at once; done after the work performed so far. Any thread.
    void eraseTraces();

Q_SIGNALS:
    void stateChanged();

private:
    class Private;
    std::unique_ptr<Private> d;
};

}  // namespace quillo
