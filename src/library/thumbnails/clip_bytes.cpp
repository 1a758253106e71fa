// SPDX-License-Identifier: MIT
#include "library/thumbnails/clip_bytes.h"

#include <future>

#include "model/clip.h"
#include "model/persistence_controller.h"

namespace quillo {
namespace {

QByteArray bytesOf(ObjectContext& context, const QUuid& id, ClipAttribute attribute) {
    const auto clip = context.object<Clip>(id);
    const auto* bytes =
        clip ? std::get_if<QByteArray>(&clip->value(std::to_underlying(attribute))) : nullptr;
    return bytes != nullptr ? *bytes : QByteArray();
}

}  // namespace

ClipBytesLoader storedBytesLoader(PersistenceController& persistence) {
    return [&persistence](const QUuid& id, ClipAttribute attribute) {
        QByteArray bytes;
        const Result<void> done = persistence.read(
            [&](ObjectContext& context) { bytes = bytesOf(context, id, attribute); });
        if (done) {
            return bytes;
        }
        // In line with the captures, then.
        std::promise<QByteArray> promise;
        persistence.perform(
            [&](ObjectContext& context) { promise.set_value(bytesOf(context, id, attribute)); });
        return promise.get_future().get();
    };
}

}  // namespace quillo
