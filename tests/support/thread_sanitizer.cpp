// SPDX-License-Identifier: MIT
// Tells the thread sanitizer what it cannot see of Qt, which is not instrumented. Part of every
// test executable; empty in other builds.
#include "support/thread_sanitizer.h"

#ifdef QUILLO_THREAD_SANITIZER

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <QMetaObject>
#include <QObject>
#include <cstdarg>

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

namespace {

// A queued call, wrapped: what was done before it was posted happens before it is run. Qt orders
// the two by a mutex of its own.
class OrderedCall final : public QtPrivate::QSlotObjectBase {
public:
    explicit OrderedCall(QtPrivate::QSlotObjectBase* inner)
        : QSlotObjectBase(run), m_inner(inner) {}

private:
    static void run(int which, QSlotObjectBase* base, QObject* receiver, void** arguments, bool*) {
        __tsan_acquire(base);
        auto* self = static_cast<OrderedCall*>(base);
        if (which == Call) {
            self->m_inner->call(receiver, arguments);
        } else if (which == Destroy) {
            self->m_inner->destroyIfLastRef();
            delete self;
        }
    }

    QtPrivate::QSlotObjectBase* m_inner;
};

}  // namespace

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot,
                                   Qt::ConnectionType type, void* result) {
    using Invoke = bool (*)(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*);
    static const auto next = reinterpret_cast<Invoke>(
        dlsym(RTLD_NEXT,
              "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14"
              "ConnectionTypeEPv"));
    auto* ordered = new OrderedCall(slot);
    __tsan_release(ordered);
    return next(object, ordered, type, result);
}

#endif

namespace quillo::testing {

void linkThreadSanitizerSupport() {}

}  // namespace quillo::testing
