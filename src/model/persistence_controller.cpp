// SPDX-License-Identifier: MIT
#include "model/persistence_controller.h"

#include <QJsonValue>
#include <QStandardPaths>
#include <QTimer>
#include <algorithm>

#include "base/logging.h"
#include "model/late_save.h"
#include "model/store/object_store.h"
#include "model/store/store_files.h"
#include "platform/user_defaults.h"

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcController, "PersistenceController")

constexpr std::chrono::milliseconds kLongestRetryInterval = 60s;

const Clock& clockOf(const PersistenceController::Options& options) {
    static const SystemClock kSystemClock;
    return options.clock != nullptr ? *options.clock : kSystemClock;
}

StoreLocation locationOf(const PersistenceController::Options& options) {
    if (options.kind == StoreKind::InMemory) {
        return {};
    }
    const QString base = options.baseFolder.isEmpty()
                             ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                             : options.baseFolder;
    return {base + u"/Quillo/Quillo.sqlite"_s};
}

qint64 historyLimit(const UserDefaults* defaults) {
    const auto value = defaults != nullptr ? defaults->object(u"maxHistoryItems"_s) : std::nullopt;
    return value.has_value() ? value->toInteger() : 0;
}

}  // namespace

class PersistenceController::Private final {
public:
    Private(PersistenceController& controller, const Options& theOptions)
        : q(controller), options(theOptions), location(locationOf(theOptions)) {}

    void load();
    void holdInMemory(bool recoveryFailed);
    void tryAgain();
    void openOnStoreThread();
    void loaded();
    void stillNot();
    void setState(StoreState next);
    void tryHeldWork();
    void startWaitingForTheLock();
    void waitForTheLock();

    PersistenceController& q;
    Options options;
    StoreLocation location;
    StoreState state = StoreState::Failed;
    QTimer retryTimer;
    std::chrono::milliseconds retryInterval{};
    QTimer lockedTimer;
    std::chrono::milliseconds lockedInterval{};
    ErrorKind lastLogged = ErrorKind::Failed;  // Touched by one thread at a time.
    HeldWork held;                             // The store's thread's.
    std::unique_ptr<ObjectStore> store;        // Last: its thread uses everything above.
};

void PersistenceController::Private::load() {
    lockedTimer.setSingleShot(true);
    QObject::connect(&lockedTimer, &QTimer::timeout, &q, [this] { tryHeldWork(); });
    const Clock& clock = clockOf(options);
    LoadedStore result = loadStore(location, clock.now());
    if (result.connections) {
        state = StoreState::Loaded;
        store = std::make_unique<ObjectStore>(std::move(*result.connections), clock);
        return;
    }
    lastLogged = result.connections.error().kind;
    holdInMemory(result.recoveryFailed);
}

void PersistenceController::Private::holdInMemory(bool recoveryFailed) {
    state = recoveryFailed ? StoreState::Failed : StoreState::InMemory;
    qCWarning(lcController, "New clips are held in memory until the store can be opened");
    auto memory = openStore({});
    if (!memory) {
        qFatal("No memory for a store: %s", qUtf8Printable(memory.error().text));
    }
    store = std::make_unique<ObjectStore>(std::move(*memory), clockOf(options));
    retryInterval = options.retryInterval;
    retryTimer.setSingleShot(true);
    QObject::connect(&retryTimer, &QTimer::timeout, &q, [this] { tryAgain(); });
    retryTimer.start(retryInterval);
}

void PersistenceController::Private::tryAgain() {
    store->post([this] { openOnStoreThread(); });
}

// In line with the captures, so that none comes between the taking along and the exchange.
void PersistenceController::Private::openOnStoreThread() {
    LoadedStore result = loadStore(location, clockOf(options).now(), &lastLogged);
    if (!result.connections) {
        QMetaObject::invokeMethod(&q, [this] { stillNot(); }, Qt::QueuedConnection);
        return;
    }
    const auto exchanged = store->exchange(
        std::move(*result.connections), [this](ObjectContext& memory, ObjectContext& file) {
            return saveLate(memory, file, historyLimit(options.defaults));
        });
    if (!exchanged) {
        qCCritical(lcController, "The clips held in memory cannot be saved yet: %s",
                   qUtf8Printable(exchanged.error().text));
        QMetaObject::invokeMethod(&q, [this] { stillNot(); }, Qt::QueuedConnection);
        return;
    }
    QMetaObject::invokeMethod(&q, [this] { loaded(); }, Qt::QueuedConnection);
}

void PersistenceController::Private::loaded() {
    setState(StoreState::Loaded);
}

void PersistenceController::Private::stillNot() {
    retryInterval = std::min(retryInterval * 2, kLongestRetryInterval);
    retryTimer.start(retryInterval);
}

void PersistenceController::Private::setState(StoreState next) {
    state = next;
    Q_EMIT q.stateChanged();
}

// On the main thread, each time the store's thread was held up.
void PersistenceController::Private::waitForTheLock() {
    if (!lockedTimer.isActive()) {
        lockedInterval = std::min(lockedInterval * 2, kLongestRetryInterval);
        lockedTimer.start(lockedInterval);
    }
}

void PersistenceController::Private::startWaitingForTheLock() {
    lockedInterval = options.lockedRetryInterval;
    lockedTimer.start(lockedInterval);
}

void PersistenceController::Private::tryHeldWork() {
    store->perform([this](ObjectContext& context) {
        held.tryAgain(context);
        if (!held.isEmpty()) {
            QMetaObject::invokeMethod(&q, [this] { waitForTheLock(); }, Qt::QueuedConnection);
        }
    });
}

PersistenceController::PersistenceController(const Options& options, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(*this, options)) {
    d->load();
}

PersistenceController::~PersistenceController() = default;

StoreState PersistenceController::state() const {
    return d->state;
}

QString PersistenceController::storePath() const {
    return d->location.file;
}

ObjectContext& PersistenceController::viewContext() {
    return d->store->viewContext();
}

void PersistenceController::perform(std::move_only_function<void(ObjectContext&)> work) {
    d->store->perform(std::move(work));
}

Result<void> PersistenceController::read(const std::function<void(ObjectContext&)>& work) {
    return d->store->read(work);
}

void PersistenceController::performPatiently(HeldWork::Work work, qint64 sizeBytes) {
    d->store->perform([this, work = std::move(work), sizeBytes](ObjectContext& context) mutable {
        const bool isFirst = d->held.isEmpty();
        d->held.add(std::move(work), sizeBytes, context);
        if (isFirst && !d->held.isEmpty()) {
            QMetaObject::invokeMethod(
                this, [this] { d->startWaitingForTheLock(); }, Qt::QueuedConnection);
        }
    });
}

void PersistenceController::waitUntilIdle() {
    d->tryHeldWork();
    d->store->waitUntilIdle();
}

void PersistenceController::eraseTraces() {
    d->store->post([this] {
        if (!d->location.file.isEmpty() && !removeStoresSetAside(d->location.file)) {
            qCCritical(lcController, "A store that was set aside cannot be removed");
        }
        if (auto done = d->store->compact(); !done) {
            qCCritical(lcController, "Cannot give the store's free space back: %s",
                       qUtf8Printable(done.error().text));
        }
    });
}

}  // namespace quillo
