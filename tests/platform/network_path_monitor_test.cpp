// SPDX-License-Identifier: MIT
// The network's state from a service on a bus of the test's own, and from the kernel.
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QFile>
#include <QProcess>

#include "platform/freedesktop/network_path_monitor.h"
#include "platform/freedesktop/routing_table.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo {
namespace {

using testing::waitUntil;

/// What the desktop's network service tells, as the test says.
class FakeNetworkManager final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.NetworkManager")
    Q_PROPERTY(uint State MEMBER state)
    Q_PROPERTY(uint Connectivity MEMBER connectivity)

public:
    uint state = 0;
    uint connectivity = 0;
};

class NetworkPath : public ::testing::Test {
protected:
    void SetUp() override {
        m_daemon.start(QStringLiteral(QUILLO_DBUS_DAEMON),
                       {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        ASSERT_TRUE(m_daemon.waitForReadyRead());
        m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
    }

    void TearDown() override {
        QDBusConnection::disconnectFromBus(u"service"_s);
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    void serve(FakeNetworkManager& service) {
        auto bus = QDBusConnection::connectToBus(m_address, u"service"_s);
        ASSERT_TRUE(bus.registerObject(u"/org/freedesktop/NetworkManager"_s, &service,
                                       QDBusConnection::ExportAllProperties));
        ASSERT_TRUE(bus.registerService(u"org.freedesktop.NetworkManager"_s));
    }

    [[nodiscard]] NetworkPathMonitor::Options options(bool hasRoute) const {
        return {m_address, [hasRoute] { return hasRoute; }};
    }

    static std::optional<bool> check(NetworkPathMonitor& monitor) {
        std::atomic<int> answer = -1;
        monitor.check(500ms, [&](bool isSatisfied) { answer = isSatisfied ? 1 : 0; });
        return waitUntil([&] { return answer >= 0; }) ? std::optional(answer == 1) : std::nullopt;
    }

    QString m_address;
    QProcess m_daemon;
};

TEST_F(NetworkPath, IsWhatTheServiceSaysAndWhereItDoesNotKnowWhatTheKernelSays) {
    FakeNetworkManager service;
    serve(service);
    NetworkPathMonitor withRoute(options(true));
    NetworkPathMonitor withoutRoute(options(false));
    const struct {
        const char* name;
        uint state;
        uint connectivity;
        bool withRoute;
        bool withoutRoute;
    } rows[] = {
        {"connected", 70, 4, true, true},
        {"connected, not checked", 70, 0, true, true},
        {"connected to a site", 60, 3, true, true},
        {"behind a log-in page", 60, 2, false, false},
        {"a portal found late", 70, 2, false, false},
        {"only locally", 50, 1, true, false},
        {"connecting", 40, 0, true, false},
        {"disconnected, or somebody else's network", 20, 1, true, false},
        {"asleep", 10, 1, true, false},
        {"unknown", 0, 0, true, false},
    };
    for (const auto& row : rows) {
        service.state = row.state;
        service.connectivity = row.connectivity;
        EXPECT_EQ(check(withRoute), row.withRoute) << row.name;
        EXPECT_EQ(check(withoutRoute), row.withoutRoute) << row.name;
    }
}

TEST_F(NetworkPath, IsWhatTheKernelSaysWhereNobodyElseDoes) {
    for (const bool hasRoute : {true, false}) {
        NetworkPathMonitor withoutService(options(hasRoute));
        EXPECT_EQ(check(withoutService), hasRoute);
        NetworkPathMonitor withoutBus({u"unix:path=/nowhere/at/all"_s, [=] { return hasRoute; }});
        EXPECT_EQ(check(withoutBus), hasRoute);
    }
}

TEST_F(NetworkPath, AServiceThatHangsIsNotWaitedForLonger) {
    FakeNetworkManager service;
    serve(service);
    NetworkPathMonitor monitor(options(true));
    EXPECT_EQ(check(monitor), true);
    ::kill(pid_t(m_daemon.processId()), SIGSTOP);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(check(monitor), true);
    EXPECT_LT(timer.elapsed(), 5'000);
    ::kill(pid_t(m_daemon.processId()), SIGCONT);
}

/// The kernel's own tables as text.
bool tablesHoldDefaultRoute() {
    QFile ipv4(u"/proc/net/route"_s);
    QFile ipv6(u"/proc/net/ipv6_route"_s);
    bool isFound = false;
    if (ipv4.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : ipv4.readAll().split('\n')) {
            const QList<QByteArray> fields = line.simplified().split(' ');
            isFound |= fields.value(1) == "00000000" && fields.value(7) == "00000000" &&
                       (fields.value(3).toInt(nullptr, 16) & 0x0200) == 0;
        }
    }
    if (ipv6.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : ipv6.readAll().split('\n')) {
            const QList<QByteArray> fields = line.simplified().split(' ');
            isFound |= fields.value(1) == "00" && fields.value(0) == QByteArray(32, '0') &&
                       fields.value(9) != "lo";
        }
    }
    return isFound;
}

TEST(RoutingTable, KnowsAWayOutWhereTheKernelsTablesShowOne) {
    EXPECT_EQ(hasDefaultRoute(), tablesHoldDefaultRoute());
}

}  // namespace
}  // namespace quillo

#include "network_path_monitor_test.moc"
