// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace quillo {

/// Whether the signature over the message was made with the key's other half (Ed25519, RFC 8032).
/// A key that is not 32 bytes or a signature that is not 64 is never right. Takes about a second
/// for a few hundred megabytes. Any thread.
[[nodiscard]] bool isSignedBy(const QByteArray& publicKey, const QByteArray& message,
                              const QByteArray& signature);

}  // namespace quillo
