// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QStandardPaths>

#include "app/app_delegate.h"
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
    quillo::installLogHandler();
    qCInfo(lcMain, "Starting Quillo application");
    quillo::TerminationSignals::block();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    QCoreApplication::setApplicationName(QStringLiteral("Quillo"));
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
    if (const auto started = delegate.applicationDidFinishLaunching(); !started) {
        qCCritical(lcMain, "Quillo cannot run here: %s", qUtf8Printable(started.error().text));
        return 1;
    }
    return QApplication::exec();
}
