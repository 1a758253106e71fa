// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QStandardPaths>
#include <chrono>

#include "app/allocator.h"
#include "app/app_delegate.h"
#include "app/exit_guard.h"
#include "app/instance_lock.h"
#include "app/termination_signals.h"
#include "base/logging.h"
#include "platform/freedesktop/dbus_application_service.h"
#include "platform/freedesktop/session_bus.h"

namespace {

QUILLO_LOG_CATEGORY(lcMain, "main")

QString lockFolder() {
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                             : runtime;
}

// Without an address the bus library starts a bus of its own, for whoever asks first; Qt does.
void keepFromStartingABus() {
    if (quillo::sessionBusAddress().isEmpty()) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }
}

int raiseTheRunningOne() {
    using namespace std::chrono_literals;
    const auto raised = quillo::activateRunningApplication(3s);
    if (raised) {
        qCInfo(lcMain, "Quillo is already running: it shows its library");
    } else {
        qCInfo(lcMain, "Quillo is already running and cannot be told to show itself: %s",
               qUtf8Printable(raised.error().text));
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    quillo::returnLargeBlocksToTheSystem();
    quillo::installLogHandler();
    qCInfo(lcMain, "Starting Quillo application");
    quillo::TerminationSignals::block();
    keepFromStartingABus();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    QCoreApplication::setApplicationName(QStringLiteral("Quillo"));
    // Draws standard widgets from the palette alone, so that a chosen theme reaches them all.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication application(argc, argv);
    const quillo::TerminationSignals signalHandler([] { QCoreApplication::quit(); });
    QGuiApplication::setDesktopFileName(quillo::kApplicationId);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    const quillo::Result<quillo::InstanceLock> lock = quillo::InstanceLock::acquire(lockFolder());
    if (!lock && lock.error().kind == quillo::ErrorKind::Busy) {
        return raiseTheRunningOne();
    }
    quillo::AppDelegate delegate;
    const quillo::ExitGuard exitGuard([&delegate] { delegate.endWithoutDisplay(); });
    if (const auto started = delegate.applicationDidFinishLaunching(); !started) {
        qCCritical(lcMain, "Quillo cannot run here: %s", qUtf8Printable(started.error().text));
        return 1;
    }
    return QApplication::exec();
}
