// SPDX-License-Identifier: MIT
#include "platform/network/public_address.h"

#include <algorithm>
#include <array>

namespace quillo {
namespace {

struct Ipv4Block {
    quint32 address;
    int prefix;
};

constexpr quint32 ipv4(quint32 a, quint32 b, quint32 c, quint32 d) {
    return (a << 24U) | (b << 16U) | (c << 8U) | d;
}

constexpr std::array<Ipv4Block, 15> kSpecialIpv4{{
    {ipv4(0, 0, 0, 0), 8},        // this network
    {ipv4(10, 0, 0, 0), 8},       // private
    {ipv4(100, 64, 0, 0), 10},    // shared by a provider's customers
    {ipv4(127, 0, 0, 0), 8},      // loopback
    {ipv4(169, 254, 0, 0), 16},   // link-local
    {ipv4(172, 16, 0, 0), 12},    // private
    {ipv4(192, 0, 0, 0), 24},     // protocol assignments
    {ipv4(192, 0, 2, 0), 24},     // documentation
    {ipv4(192, 88, 99, 0), 24},   // 6to4 relays
    {ipv4(192, 168, 0, 0), 16},   // private
    {ipv4(198, 18, 0, 0), 15},    // benchmarks
    {ipv4(198, 51, 100, 0), 24},  // documentation
    {ipv4(203, 0, 113, 0), 24},   // documentation
    {ipv4(224, 0, 0, 0), 4},      // multicast
    {ipv4(240, 0, 0, 0), 4},      // reserved, broadcast
}};

bool isPublicIpv4(quint32 address) {
    return std::ranges::none_of(kSpecialIpv4, [address](const Ipv4Block& block) {
        return (address ^ block.address) >> (32U - quint32(block.prefix)) == 0;
    });
}

bool isInBlock(const QHostAddress& address, const char* block, int prefix) {
    return address.isInSubnet(QHostAddress(QString::fromLatin1(block)), prefix);
}

quint32 lastFourBytes(const QHostAddress& address) {
    const Q_IPV6ADDR bytes = address.toIPv6Address();
    return ipv4(bytes[12], bytes[13], bytes[14], bytes[15]);
}

bool isPublicIpv6(const QHostAddress& address) {
    if (isInBlock(address, "64:ff9b::", 96)) {
        return isPublicIpv4(lastFourBytes(address));
    }
    // All of the global unicast space (RFC 4291, 2.4) but protocol assignments with Teredo,
    // documentation, and 6to4.
    return isInBlock(address, "2000::", 3) && !isInBlock(address, "2001::", 23) &&
           !isInBlock(address, "2001:db8::", 32) && !isInBlock(address, "2002::", 16) &&
           !isInBlock(address, "3fff::", 20);
}

}  // namespace

QHostAddress plainAddress(const QHostAddress& address) {
    bool isIpv4 = false;
    const quint32 inside = address.toIPv4Address(&isIpv4);
    return isIpv4 ? QHostAddress(inside) : address;
}

bool isPublicAddress(const QHostAddress& address) {
    const QHostAddress plain = plainAddress(address);
    switch (plain.protocol()) {
        case QAbstractSocket::IPv4Protocol:
            return isPublicIpv4(plain.toIPv4Address());
        case QAbstractSocket::IPv6Protocol:
            return isPublicIpv6(plain);
        default:
            return false;
    }
}

}  // namespace quillo
