// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QStandardPaths>

#include "app/allocator.h"
#include "app/app_delegate.h"
#include "app/exit_guard.h"
#include "app/instance_lock.h"
#include "app/termination_signals.h"
#include "base/logging.h"

namespace {

QUILLO_LOG_CATEGORY(lcMain, "main")

QString lockFolder() {
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                             : runtime;
}

}  // namespace

int main(int argc, char** argv) {
    quillo::returnLargeBlocksToTheSystem();
    quillo::installLogHandler();
    qCInfo(lcMain, "Starting Quillo application");
    quillo::TerminationSignals::block();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    QCoreApplication::setApplicationName(QStringLiteral("Quillo"));
    // Draws standard widgets from the palette alone, so that a chosen theme reaches them all.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication application(argc, argv);
    const quillo::TerminationSignals signalHandler([] { QCoreApplication::quit(); });
    QGuiApplication::setDesktopFileName(QStringLiteral("quillo"));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    const quillo::Result<quillo::InstanceLock> lock = quillo::InstanceLock::acquire(lockFolder());
    if (!lock && lock.error().kind == quillo::ErrorKind::Busy) {
        qCInfo(lcMain, "Quillo is already running");
        return 0;
    }
    quillo::AppDelegate delegate;
    const quillo::ExitGuard exitGuard([&delegate] { delegate.endWithoutDisplay(); });
    if (const auto started = delegate.applicationDidFinishLaunching(); !started) {
        qCCritical(lcMain, "Quillo cannot run here: %s", qUtf8Printable(started.error().text));
        return 1;
    }
    return QApplication::exec();
}
