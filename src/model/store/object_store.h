// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

#include "base/clock.h"
#include "model/store/object_context.h"
#include "model/store/store_opening.h"
#include "model/store/store_queue.h"

namespace quillo {

/// One open store with its view context and its queue of background work, and the place where
/// the contexts tell each other what they saved. Made and destroyed on the main thread;
/// destruction finishes the work that was begun.
class ObjectStore final {
public:
    /// Both must be open; clock must outlive the store.
    ObjectStore(StoreConnections connections, const Clock& clock);
    ~ObjectStore();
    ObjectStore(const ObjectStore&) = delete;
    ObjectStore& operator=(const ObjectStore&) = delete;

    [[nodiscard]] ObjectContext& viewContext() { return *m_view; }

    /// Runs work with a fresh background context on the store's own thread. Any thread.
    void perform(std::move_only_function<void(ObjectContext&)> work);
    /// Runs work at once on the calling thread with a context that only reads, on a connection of
    /// its own: it waits for no other work. Not run where the store cannot be opened again. Any
    /// thread but the main thread.
    [[nodiscard]] Result<void> read(const std::function<void(ObjectContext&)>& work);
    /// The same as perform() without a context.
    void post(StoreQueue::Job job) { m_queue->post(std::move(job)); }
    void waitUntilIdle() { m_queue->waitUntilIdle(); }

    using Carry = std::function<Result<void>(ObjectContext& from, ObjectContext& to)>;
    /// Exchanges the store under the contexts, once carry has taken along what the present one
    /// holds; on its failure everything stays. Main-thread work on the store waits meanwhile. The
    /// view context is told to fetch everything anew. On the store's thread, in a posted job.
    [[nodiscard]] Result<void> exchange(StoreConnections next, const Carry& carry);

    /// Gives free pages back to the disk and empties the log. On the store's thread.
    [[nodiscard]] Result<void> compact();

private:
    friend class ObjectContext;

    void publish(const ObjectContext* origin, const ChangeSet& changes);
    void contentWasDiscarded() { m_queue->requestTidyUp(); }
    void everythingWasDiscarded();
    void lookForUnclearedPages();
    [[nodiscard]] bool tidyUp();
    void runInContext(SqliteDatabase& database, const std::function<void(ObjectContext&)>& work);

    const Clock& m_clock;
    StoreConnections m_connections;
    std::recursive_mutex m_viewGate;  ///< Held while the view context uses its connection.
    std::atomic<bool> m_hasUnclearedPages = false;
    std::mutex m_contextsMutex;
    ObjectContext* m_background = nullptr;
    std::unique_ptr<ObjectContext> m_view;
    std::unique_ptr<StoreQueue> m_queue;  ///< Last: its thread uses everything above.
};

}  // namespace quillo
