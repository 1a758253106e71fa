// SPDX-License-Identifier: MIT
#include "model/store/held_work.h"

#include <utility>

#include "base/logging.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcController, "PersistenceController")

bool isHeldUp(const Result<void>& done) {
    return !done && done.error().kind == ErrorKind::Busy;
}

}  // namespace

HeldWork::~HeldWork() {
    if (!m_pieces.empty()) {
        qCCritical(lcController,
                   "The store stayed locked; clips that were held in memory: %zu lost",
                   m_pieces.size());
    }
}

void HeldWork::add(Work work, qint64 sizeBytes, ObjectContext& context) {
    if (m_pieces.empty() && !isHeldUp(work(context))) {
        return;
    }
    hold({std::move(work), sizeBytes});
}

void HeldWork::hold(Piece piece) {
    if (m_pieces.empty()) {
        qCWarning(lcController,
                  "The store is locked; new clips are held in memory until it is free");
    } else if (m_pieces.size() >= m_bounds.pieces || m_bytes + piece.sizeBytes > m_bounds.bytes) {
        qCCritical(lcController, "Too much is held in memory; a new clip is dropped");
        return;
    }
    m_bytes += piece.sizeBytes;
    m_pieces.push_back(std::move(piece));
}

void HeldWork::tryAgain(ObjectContext& context) {
    if (m_pieces.empty()) {
        return;
    }
    while (!m_pieces.empty() && !isHeldUp(m_pieces.front().work(context))) {
        m_bytes -= m_pieces.front().sizeBytes;
        m_pieces.pop_front();
    }
    if (m_pieces.empty()) {
        qCInfo(lcController, "The store is free again; the clips held in memory are saved");
    }
}

}  // namespace quillo
