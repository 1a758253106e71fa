// SPDX-License-Identifier: MIT
// The main function of every test executable: a home of its own, no display unless one is asked
// for, and no colours of the person's.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>
#include <cstdarg>

namespace {

void redirectHome(const QString& home) {
    qputenv("HOME", home.toUtf8());
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(variable, (home + u'/' + QString::fromLatin1(variable).toLower()).toUtf8());
    }
}

}  // namespace

#if defined(__SANITIZE_THREAD__) || (defined(__has_feature) && __has_feature(thread_sanitizer))
// QProcess starts its children by clone(CLONE_VM | CLONE_VFORK). The thread sanitizer takes that
// for a fork, resets its state in the child, which shares the parent's memory, and ends the test.
// Here the call goes past its interceptor; until the child's exec the parent stands still. The
// child's descriptors are no longer ours: what it does to them is left out.
extern "C" void AnnotateIgnoreWritesBegin(const char* file, int line);
extern "C" void AnnotateIgnoreWritesEnd(const char* file, int line);

extern "C" int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) {
    std::va_list more;
    va_start(more, argument);
    void* const parentId = va_arg(more, void*);
    void* const threadStorage = va_arg(more, void*);
    void* const childId = va_arg(more, void*);
    va_end(more);
    using Clone = int (*)(int (*)(void*), void*, int, void*, ...);
    static const auto next = reinterpret_cast<Clone>(dlsym(RTLD_NEXT, "clone"));
    AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    const int child = next(function, stack, flags, argument, parentId, threadStorage, childId);
    AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
    return child;
}
#endif

int main(int argc, char** argv) {
    const QTemporaryDir home;
    redirectHome(home.path());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
