// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/network/public_address.h"

namespace quillo {
namespace {

// The first and the last address of each special block, and what lies just outside.
TEST(PublicAddress, IsNoneOfAMachineALocalNetworkOrAGroup) {
    const struct {
        const char* address;
        bool isPublic;
    } rows[] = {
        {"0.0.0.0", false},
        {"0.255.255.255", false},
        {"1.0.0.0", true},
        {"9.255.255.255", true},
        {"10.0.0.0", false},
        {"10.255.255.255", false},
        {"11.0.0.0", true},
        {"100.63.255.255", true},
        {"100.64.0.0", false},
        {"100.127.255.255", false},
        {"100.128.0.0", true},
        {"127.0.0.1", false},
        {"127.255.255.255", false},
        {"128.0.0.0", true},
        {"169.253.255.255", true},
        {"169.254.169.254", false},
        {"169.255.0.0", true},
        {"172.15.255.255", true},
        {"172.16.0.0", false},
        {"172.31.255.255", false},
        {"172.32.0.0", true},
        {"192.0.0.8", false},
        {"192.0.1.0", true},
        {"192.0.2.1", false},
        {"192.88.99.1", false},
        {"192.167.255.255", true},
        {"192.168.0.0", false},
        {"192.168.255.255", false},
        {"192.169.0.0", true},
        {"198.17.255.255", true},
        {"198.18.0.0", false},
        {"198.19.255.255", false},
        {"198.20.0.0", true},
        {"198.51.100.7", false},
        {"203.0.113.7", false},
        {"223.255.255.255", true},
        {"224.0.0.1", false},
        {"239.255.255.255", false},
        {"240.0.0.0", false},
        {"255.255.255.255", false},
        {"::", false},
        {"::1", false},
        {"::127.0.0.1", false},
        {"::ffff:127.0.0.1", false},
        {"::ffff:10.1.2.3", false},
        {"::ffff:8.8.8.8", true},
        {"64:ff9b::7f00:1", false},
        {"64:ff9b::808:808", true},
        {"64:ff9b:1::1", false},
        {"100::1", false},
        {"1fff:ffff::1", false},
        {"2000::1", true},
        {"2001::1", false},
        {"2001:1ff:ffff::1", false},
        {"2001:200::1", true},
        {"2001:db8::1", false},
        {"2001:db9::1", true},
        {"2002:7f00:1::1", false},
        {"2003::1", true},
        {"2a00:1450::1", true},
        {"3ffe:ffff::1", true},
        {"3fff:fff::1", false},
        {"3fff:1000::1", true},
        {"4000::1", false},
        {"fc00::1", false},
        {"fdff::1", false},
        {"fe80::1", false},
        {"fec0::1", false},
        {"ff02::1", false},
    };
    for (const auto& row : rows) {
        const QHostAddress address(QString::fromLatin1(row.address));
        ASSERT_FALSE(address.isNull()) << row.address;
        EXPECT_EQ(isPublicAddress(address), row.isPublic) << row.address;
    }
    EXPECT_FALSE(isPublicAddress(QHostAddress()));
}

}  // namespace
}  // namespace quillo
