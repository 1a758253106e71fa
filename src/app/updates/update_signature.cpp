// SPDX-License-Identifier: MIT
#include "app/updates/update_signature.h"

#include <nettle/eddsa.h>

namespace quillo {
namespace {

const uint8_t* bytesOf(const QByteArray& array) {
    return reinterpret_cast<const uint8_t*>(array.constData());
}

}  // namespace

bool isSignedBy(const QByteArray& publicKey, const QByteArray& message,
                const QByteArray& signature) {
    return publicKey.size() == ED25519_KEY_SIZE && signature.size() == ED25519_SIGNATURE_SIZE &&
           ed25519_sha512_verify(bytesOf(publicKey), size_t(message.size()), bytesOf(message),
                                 bytesOf(signature)) == 1;
}

}  // namespace quillo
