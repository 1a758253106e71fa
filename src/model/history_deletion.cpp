// SPDX-License-Identifier: MIT
#include "model/history_deletion.h"

#include <QPointer>
#include <utility>

#include "base/logging.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcHistory, "HistoryDeletion")

// What is in memory only as long as the file cannot be used is not the history.
Result<void> checkedAgainst(StoreState state, Result<void> result) {
    if (result && state != StoreState::Loaded) {
        return failure(ErrorKind::Busy, QStringLiteral("the history cannot be reached at present"));
    }
    return result;
}

}  // namespace

void deleteHistory(PersistenceController& persistence, QObject& context,
                   std::function<void(Result<void>)> done) {
    persistence.perform([&persistence, guard = QPointer<QObject>(&context),
                         done = std::move(done)](ObjectContext& store) mutable {
        const Result<QList<ObjectId>> deleted = store.batchDelete({});
        Result<void> result;
        if (deleted) {
            qCInfo(lcHistory, "Deleted all %lld clips", qlonglong(deleted->size()));
            persistence.eraseTraces();
        } else {
            qCCritical(lcHistory, "Cannot delete the history: %s",
                       qUtf8Printable(deleted.error().text));
            result = std::unexpected(deleted.error());
        }
        QMetaObject::invokeMethod(
            &persistence,
            [&persistence, guard = std::move(guard), done = std::move(done), result] {
                if (guard) {
                    done(checkedAgainst(persistence.state(), result));
                }
            },
            Qt::QueuedConnection);
    });
}

}  // namespace quillo
