// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace quillo {

/// The ways in which the desktop and a second start reach the running program.
enum class ApplicationAction { ShowOverlay, ShowLibrary, ShowSettings };

/// How the desktop reaches the running program, whether or not there is a status item. Main thread.
class ApplicationService : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// Asked for from outside.
    void requested(ApplicationAction action);
};

}  // namespace quillo
