// SPDX-License-Identifier: MIT
// The main function of every test executable: a home of its own, no display unless one is asked
// for, and no colours of the person's.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

#include "support/thread_sanitizer.h"

namespace {

void redirectHome(const QString& home) {
    qputenv("HOME", home.toUtf8());
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(variable, (home + u'/' + QString::fromLatin1(variable).toLower()).toUtf8());
    }
}

}  // namespace

int main(int argc, char** argv) {
    quillo::testing::linkThreadSanitizerSupport();
    const QTemporaryDir home;
    redirectHome(home.path());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
