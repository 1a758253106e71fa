// SPDX-License-Identifier: MIT
#include "model/store/object_store.h"

#include <QMetaObject>

#include "base/logging.h"
#include "model/store/object_context_p.h"
#include "model/store/store_schema.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcStore, "ObjectStore")

}  // namespace

ObjectStore::ObjectStore(StoreConnections connections, const Clock& clock)
    : m_clock(clock), m_connections(std::move(connections)) {
    using Private = ObjectContext::Private;
    m_view.reset(new ObjectContext(std::make_unique<Private>(*this, Private::Role::View, nullptr)));
    m_queue = std::make_unique<StoreQueue>([this] { return tidyUp(); });
    lookForUnclearedPages();
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

Result<void> ObjectStore::read(const std::function<void(ObjectContext&)>& work) {
    QByteArray address;
    {
        const std::lock_guard lock(m_contextsMutex);
        address = m_connections.address;
    }
    auto reader = openReader(address);
    if (!reader) {
        return std::unexpected(reader.error());
    }
    using Private = ObjectContext::Private;
    ObjectContext context(
        std::make_unique<Private>(*this, Private::Role::Background, reader->get()));
    work(context);
    return {};
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

void ObjectStore::everythingWasDiscarded() {
    m_hasUnclearedPages = true;
    m_queue->requestTidyUp();
}

// A process that ended between deleting everything and clearing its pages leaves them to us.
void ObjectStore::lookForUnclearedPages() {
    if (hasUnclearedPages(*m_connections.writer).value_or(false)) {
        everythingWasDiscarded();
    }
}

bool ObjectStore::tidyUp() {
    Result<void> done;
    if (m_hasUnclearedPages.exchange(false)) {
        done = rebuildFile(*m_connections.writer);
        m_hasUnclearedPages = !done;
    }
    if (done) {
        done = m_connections.writer->truncateLog();
    }
    if (done) {
        return true;
    }
    // Somebody reads at this moment; anything else will not pass by waiting.
    if (done.error().kind == ErrorKind::Busy) {
        return false;
    }
    qCCritical(lcStore, "Cannot clear what was deleted: %s", qUtf8Printable(done.error().text));
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
    {
        const std::lock_guard lock(m_contextsMutex);
        std::swap(m_connections, next);
    }
    lookForUnclearedPages();
    ChangeSet everything;
    everything.everything = true;
    publish(nullptr, everything);
    return {};
}

Result<void> ObjectStore::compact() {
    if (auto done = rebuildFile(*m_connections.writer); !done) {
        return done;
    }
    m_hasUnclearedPages = false;
    m_queue->requestTidyUp();
    return {};
}

}  // namespace quillo
