// SPDX-License-Identifier: MIT
#include "app/termination_signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <csignal>

namespace quillo {
namespace {

sigset_t terminationSignals() {
    sigset_t signalSet;
    sigemptyset(&signalSet);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signalSet, signal);
    }
    return signalSet;
}

}  // namespace

void TerminationSignals::block() {
    const sigset_t signalSet = terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signalSet, nullptr);
}

TerminationSignals::TerminationSignals(std::function<void()> handler, QObject* parent)
    : QObject(parent) {
    const sigset_t signalSet = terminationSignals();
    m_signals = UniqueFd(signalfd(-1, &signalSet, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!m_signals.isValid()) {
        return;
    }
    m_notifier = new QSocketNotifier(m_signals.get(), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this, handler = std::move(handler)] {
        signalfd_siginfo info = {};
        if (::read(m_signals.get(), &info, sizeof info) == sizeof info) {
            handler();
        }
    });
}

}  // namespace quillo
