// SPDX-License-Identifier: MIT
#include "model/store/object_store.h"

#include <QMetaObject>

#include "base/logging.h"
#include "model/store/object_context_p.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcStore, "ObjectStore")

}  // namespace

ObjectStore::ObjectStore(StoreConnections connections, const Clock& clock)
    : m_clock(clock), m_connections(std::move(connections)) {
    using Private = ObjectContext::Private;
    m_view.reset(new ObjectContext(std::make_unique<Private>(*this, Private::Role::View, nullptr)));
    m_queue = std::make_unique<StoreQueue>([this] { return truncateLog(); });
}

ObjectStore::~ObjectStore() {
    m_queue->finish();  // Its last jobs still use the members.
    m_view.reset();
    m_connections.view.reset();
}

void ObjectStore::perform(std::move_only_function<void(ObjectContext&)> work) {
    m_queue->post([this, work = std::move(work)]() mutable {
        runInContext(*m_connections.writer, [&](ObjectContext& context) { work(context); });
    });
}

void ObjectStore::runInContext(SqliteDatabase& database,
                               const std::function<void(ObjectContext&)>& work) {
    using Private = ObjectContext::Private;
    ObjectContext context(std::make_unique<Private>(*this, Private::Role::Background, &database));
    {
        const std::lock_guard lock(m_contextsMutex);
        m_background = &context;
    }
    work(context);
    const std::lock_guard lock(m_contextsMutex);
    m_background = nullptr;
}

// The view merges in its own time, by a queued call; a background context before it next reads.
void ObjectStore::publish(const ObjectContext* origin, const ChangeSet& changes) {
    if (origin != m_view.get()) {
        ObjectContext* view = m_view.get();
        if (view->d->post(changes)) {
            QMetaObject::invokeMethod(
                view, [view] { view->d->mergeInbox(); }, Qt::QueuedConnection);
        }
        return;
    }
    const std::lock_guard lock(m_contextsMutex);
    if (m_background != nullptr) {
        m_background->d->post(changes);
    }
}

bool ObjectStore::truncateLog() {
    const auto done = m_connections.writer->truncateLog();
    if (done) {
        return true;
    }
    // Somebody reads at this moment; anything else will not pass by waiting.
    if (done.error().kind == ErrorKind::Busy) {
        return false;
    }
    qCCritical(lcStore, "Cannot empty the write-ahead log: %s", qUtf8Printable(done.error().text));
    return true;
}

Result<void> ObjectStore::exchange(StoreConnections next, const Carry& carry) {
    const std::lock_guard gate(m_viewGate);
    Result<void> carried;
    runInContext(*m_connections.writer, [&](ObjectContext& from) {
        using Private = ObjectContext::Private;
        ObjectContext to(
            std::make_unique<Private>(*this, Private::Role::Background, next.writer.get()));
        carried = carry(from, to);
    });
    if (!carried) {
        return carried;
    }
    std::swap(m_connections, next);
    ChangeSet everything;
    everything.everything = true;
    publish(nullptr, everything);
    return {};
}

Result<void> ObjectStore::compact() {
    if (auto done = m_connections.writer->execute("VACUUM"); !done) {
        return done;
    }
    m_queue->requestTidyUp();
    return {};
}

}  // namespace quillo
