// SPDX-License-Identifier: MIT
#pragma once

#include <QHostAddress>

namespace quillo {

/// Whether an address belongs to the public internet, by IANA's registries of special-purpose
/// addresses (RFC 6890): none of this machine, a local network, a multicast group, documentation
/// or the future. An IPv4 address in IPv6 clothes (mapped, NAT64) is judged by what it wraps; the
/// tunnels of old (6to4, Teredo) are not public.
[[nodiscard]] bool isPublicAddress(const QHostAddress& address);

/// One spelling for an address: an IPv4 address in IPv6 clothes (mapped) without them.
[[nodiscard]] QHostAddress plainAddress(const QHostAddress& address);

}  // namespace quillo
