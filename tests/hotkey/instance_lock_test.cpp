// SPDX-License-Identifier: MIT
// One running program for each person.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "app/instance_lock.h"

namespace quillo {
namespace {

TEST(InstanceLock, IsHeldByOneAndFreeAgainWhenThatOneEnds) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("run"));
    {
        const Result<InstanceLock> first = InstanceLock::acquire(path);
        ASSERT_TRUE(first);
        const Result<InstanceLock> second = InstanceLock::acquire(path);
        ASSERT_FALSE(second);
        EXPECT_EQ(second.error().kind, ErrorKind::Busy);
    }
    EXPECT_TRUE(InstanceLock::acquire(path));
}

}  // namespace
}  // namespace quillo
