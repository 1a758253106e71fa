// SPDX-License-Identifier: MIT
#include "platform/network/system_resolver.h"

#include <netdb.h>

#include <QMetaObject>
#include <QUrl>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace quillo {
namespace {

using Addresses = std::unique_ptr<addrinfo, decltype([](addrinfo* list) { freeaddrinfo(list); })>;

Addresses addressesOf(const std::string& name) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_ADDRCONFIG;
    addrinfo* list = nullptr;
    return Addresses(getaddrinfo(name.c_str(), nullptr, &hints, &list) == 0 ? list : nullptr);
}

QList<QHostAddress> listOf(const addrinfo* list) {
    QList<QHostAddress> addresses;
    for (; list != nullptr; list = list->ai_next) {
        const QHostAddress address(list->ai_addr);
        if (!address.isNull() && !addresses.contains(address)) {
            addresses.append(address);
        }
    }
    return addresses;
}

/// One look-up. It lives with its context; the thread that asks keeps no more than the link.
class Lookup final : public QObject {
public:
    struct Link {
        std::mutex mutex;
        Lookup* lookup = nullptr;  ///< Guarded by the mutex.
    };

    Lookup(QObject* context, std::function<void(const QList<QHostAddress>&)> found)
        : QObject(context), m_found(std::move(found)) {
        m_link->lookup = this;
    }

    ~Lookup() override {
        const std::lock_guard lock(m_link->mutex);
        m_link->lookup = nullptr;
    }
    Q_DISABLE_COPY_MOVE(Lookup)

    void start(std::string name) {
        try {
            std::thread([link = m_link, name = std::move(name)] { ask(*link, name); }).detach();
        } catch (const std::system_error&) {
            // No thread is to be had.
            QMetaObject::invokeMethod(this, [this] { finish({}); }, Qt::QueuedConnection);
        }
    }

private:
    // The program may be ending while the system is asked: nothing of Qt is touched until it is
    // known that somebody still waits.
    static void ask(Link& link, const std::string& name) {
        const Addresses addresses = addressesOf(name);
        const std::lock_guard lock(link.mutex);
        if (Lookup* lookup = link.lookup) {
            QMetaObject::invokeMethod(
                lookup, [lookup, list = listOf(addresses.get())] { lookup->finish(list); },
                Qt::QueuedConnection);
        }
    }

    void finish(const QList<QHostAddress>& addresses) {
        m_found(addresses);
        deleteLater();
    }

    std::shared_ptr<Link> m_link = std::make_shared<Link>();
    std::function<void(const QList<QHostAddress>&)> m_found;
};

}  // namespace

HostResolver systemResolver() {
    return [](const QString& name, QObject* context,
              std::function<void(const QList<QHostAddress>&)> found) {
        auto* lookup = new Lookup(context, std::move(found));
        lookup->start(QUrl::toAce(name).toStdString());
    };
}

}  // namespace quillo
