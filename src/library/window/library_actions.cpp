// SPDX-License-Identifier: MIT
#include "library/window/library_actions.h"

#include <QCoreApplication>
#include <QMimeData>
#include <QPointer>
#include <algorithm>
#include <utility>

#include "base/logging.h"
#include "model/groups.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcActions, "LibraryView")

// Few enough that a capture, which waits for the same thread, is not held up.
constexpr qsizetype kAtOnce = 200;
// Longer orders are written on the store's thread.
constexpr qsizetype kMostMembersAtOnce = 5'000;

FetchRequest requestFor(const QList<QUuid>& clips) {
    FetchRequest request;
    for (const QUuid& clip : clips) {
        request.ids.append({Entity::Clip, clip});
    }
    return request;
}

/// What is left of a pinboard that was deleted.
struct LostPinboard {
    std::optional<QString> title;
    std::optional<QString> color;
    std::optional<QByteArray> order;
    qint64 place = 0;
    QList<QUuid> clips;
};

LostPinboard valuesOf(const Pinboard& board) {
    return {.title = board.title(),
            .color = board.colorHex(),
            .order = board.clipOrder(),
            .place = board.sortIndex(),
            .clips = board.clipIds().value_or(QList<QUuid>())};
}

Result<QUuid> restore(ObjectContext& context, const LostPinboard& lost) {
    const auto board = context.insert<Pinboard>();
    board->setTitle(lost.title);
    board->setColorHex(lost.color);
    board->setSortIndex(lost.place);
    board->setClipOrder(lost.order);
    const Result<void> saved = context.save();
    return saved ? Result<QUuid>(board->id()) : std::unexpected(saved.error());
}

void logFailure(const Result<void>& done, const char* what) {
    if (!done) {
        qCCritical(lcActions, "Error %s: %ls", what, qUtf16Printable(done.error().text));
    }
}

void pin(ObjectContext& context, const QList<QUuid>& ids, bool isPinned) {
    const auto clips = context.fetch<Clip>(requestFor(ids));
    for (const auto& clip : clips.value_or(QList<std::shared_ptr<Clip>>())) {
        if (clip->isPinned() != isPinned) {
            clip->setPinned(isPinned);
        }
    }
    logFailure(context.save(), "pinning clips");
}

void setMembersIn(ObjectContext& context, const QUuid& pinboard, const QList<QUuid>& clips,
                  bool areMembers) {
    if (const auto board = context.object<Pinboard>(pinboard)) {
        logFailure(areMembers ? addClips(*board, clips) : removeClips(*board, clips),
                   "changing a pinboard");
    }
}

Result<void> reorder(Pinboard& board, const ClipMove& move) {
    const auto shown = board.orderedClipIds();
    if (!shown) {
        return std::unexpected(shown.error());
    }
    board.setClipOrderEntries(orderAsShown(board.clipOrderEntries(), withClipsMoved(*shown, move)));
    return board.context()->save();
}

}  // namespace

LibraryActions::LibraryActions(PersistenceController& persistence, PasteBack& pasteBack,
                               const GroupList& groups, std::chrono::milliseconds secondThoughts,
                               QObject* parent)
    : QObject(parent), m_persistence(persistence), m_pasteBack(pasteBack), m_groups(groups) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(secondThoughts);
    connect(&m_timer, &QTimer::timeout, this, &LibraryActions::completeDeletion);
}

LibraryActions::~LibraryActions() {
    completeDeletion();
}

// In the order asked for; one that is gone is missing.
QList<std::shared_ptr<Clip>> LibraryActions::fetch(const QList<QUuid>& clips) const {
    QHash<QUuid, std::shared_ptr<Clip>> found;
    for (qsizetype i = 0; i < clips.size(); i += kAtOnce) {
        const auto some = context().fetch<Clip>(requestFor(clips.mid(i, kAtOnce)));
        for (const auto& clip : some.value_or(QList<std::shared_ptr<Clip>>())) {
            found.insert(clip->id(), clip);
        }
    }
    QList<std::shared_ptr<Clip>> ordered;
    for (const QUuid& id : clips) {
        if (const auto clip = found.value(id)) {
            ordered.append(clip);
        }
    }
    return ordered;
}

qsizetype LibraryActions::copy(const QList<QUuid>& clips) {
    const QList<std::shared_ptr<Clip>> found =
        fetch(clips.first(std::min(clips.size(), kMostCopied)));
    if (found.size() == 1) {
        m_pasteBack.copyInDetail(*found.constFirst());
        return 1;
    }
    return found.isEmpty() ? 0 : m_pasteBack.copyTogether(found);
}

std::unique_ptr<QMimeData> LibraryActions::dragData(const QList<QUuid>& clips) const {
    const auto some = fetch(clips.first(std::min(clips.size(), kMostCopied)));
    if (some.isEmpty()) {
        return nullptr;
    }
    return some.size() == 1 ? m_pasteBack.dragData(*some.constFirst()) : m_pasteBack.dragData(some);
}

void LibraryActions::copyCard(const QUuid& clip) {
    if (const auto found = context().object<Clip>(clip)) {
        m_pasteBack.copyQuickly(*found);
    }
}

void LibraryActions::copyTransformed(const QUuid& clip, TextTransformation transformation) {
    if (const auto found = context().object<Clip>(clip)) {
        m_pasteBack.copyTransformed(*found, transformation);
    }
}

// Few at once; many in pieces on the store's thread, so that nothing waits for them.
void LibraryActions::inPieces(
    const QList<QUuid>& clips,
    const std::function<void(ObjectContext&, const QList<QUuid>&)>& work) {
    if (clips.size() <= kAtOnce) {
        work(context(), clips);
        return;
    }
    for (qsizetype i = 0; i < clips.size(); i += kAtOnce) {
        m_persistence.perform(
            [some = clips.mid(i, kAtOnce), work](ObjectContext& store) { work(store, some); });
    }
}

void LibraryActions::setPinned(const QList<QUuid>& clips, bool isPinned) {
    inPieces(clips, [isPinned](ObjectContext& store, const QList<QUuid>& some) {
        pin(store, some, isPinned);
    });
}

void LibraryActions::setMembers(const QUuid& pinboard, const QList<QUuid>& clips, bool areMembers) {
    inPieces(clips, [pinboard, areMembers](ObjectContext& store, const QList<QUuid>& some) {
        setMembersIn(store, pinboard, some, areMembers);
    });
}

void LibraryActions::moveClips(const QUuid& pinboard, const ClipMove& move) {
    const auto work = [pinboard, move](ObjectContext& store) {
        if (const auto board = store.object<Pinboard>(pinboard)) {
            logFailure(reorder(*board, move), "moving clips");
        }
    };
    const auto item = m_groups.item(pinboard);
    if (item && item->memberCount > kMostMembersAtOnce) {
        m_persistence.perform(work);
    } else {
        work(context());
    }
}

void LibraryActions::deleteClips(const QList<QUuid>& clips) {
    m_pending.unite(QSet<QUuid>(clips.begin(), clips.end()));
    m_timer.start();
    Q_EMIT pendingChanged();
}

void LibraryActions::undoDeletion() {
    m_timer.stop();
    if (!std::exchange(m_pending, {}).isEmpty()) {
        Q_EMIT pendingChanged();
    }
}

// Many go in pieces on the store's thread; until the last is gone they stay out of sight here.
void LibraryActions::completeDeletion() {
    m_timer.stop();
    const QList<QUuid> clips = m_pending.values();
    if (clips.isEmpty()) {
        return;
    }
    for (qsizetype i = 0; i < clips.size(); i += kAtOnce) {
        m_persistence.perform([some = clips.mid(i, kAtOnce)](ObjectContext& store) {
            if (const auto deleted = store.batchDelete(requestFor(some)); !deleted) {
                qCCritical(lcActions, "Error deleting clips: %ls",
                           qUtf16Printable(deleted.error().text));
            }
        });
    }
    m_persistence.perform([clips, self = QPointer(this)](ObjectContext& /*store*/) {
        QMetaObject::invokeMethod(
            qApp,
            [self, clips] {
                if (self) {
                    self->m_pending.subtract(QSet<QUuid>(clips.begin(), clips.end()));
                    Q_EMIT self->pendingChanged();
                }
            },
            Qt::QueuedConnection);
    });
}

std::function<void()> LibraryActions::deletePinboard(const QUuid& pinboard) {
    const auto board = m_groups.group(pinboard);
    if (board == nullptr) {
        return {};
    }
    const LostPinboard lost = valuesOf(*board);
    if (const Result<void> deleted = deleteGroup(*board); !deleted) {
        qCCritical(lcActions, "Error deleting a pinboard: %ls",
                   qUtf16Printable(deleted.error().text));
        return {};
    }
    return [self = QPointer(this), lost] {
        if (!self) {
            return;
        }
        if (const Result<QUuid> restored = restore(self->context(), lost)) {
            self->setMembers(*restored, lost.clips, true);
        } else {
            qCCritical(lcActions, "Error restoring a pinboard: %ls",
                       qUtf16Printable(restored.error().text));
        }
    };
}

bool arePinned(ObjectContext& context, const QList<QUuid>& clips) {
    qsizetype pinned = 0;
    for (qsizetype i = 0; i < clips.size() && i < LibraryActions::kMostCopied; i += kAtOnce) {
        FetchRequest request = requestFor(clips.mid(i, kAtOnce));
        request.conditions = {
            {std::to_underlying(ClipAttribute::IsPinned), Condition::Operator::Equal, qint64{1}}};
        pinned += context.count(request).value_or(0);
    }
    return pinned == clips.size();
}

}  // namespace quillo
