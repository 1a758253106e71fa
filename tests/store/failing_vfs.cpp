// SPDX-License-Identifier: MIT
#include "store/failing_vfs.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace quillo::testing {
namespace {

// The real file lies behind it in the same block of memory.
struct File {
    sqlite3_file base;
    FailingVfs* disk;

    static File& of(sqlite3_file* file) { return *reinterpret_cast<File*>(file); }
    static sqlite3_file* real(sqlite3_file* file) {
        return reinterpret_cast<sqlite3_file*>(reinterpret_cast<File*>(file) + 1);
    }
};

template <auto Method, typename... Arguments>
int passOn(sqlite3_file* file, Arguments... arguments) {
    sqlite3_file* real = File::real(file);
    return (real->pMethods->*Method)(real, arguments...);
}

template <DiskOperation Operation, auto Method, typename... Arguments>
int passOnUnlessFailing(sqlite3_file* file, Arguments... arguments) {
    const int code = File::of(file).disk->meet(Operation);
    return code != SQLITE_OK ? code : passOn<Method>(file, arguments...);
}

// What a short read did not bring is zeros: https://sqlite.org/c3ref/io_methods.html
int read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 offset) {
    const int code = File::of(file).disk->meet(DiskOperation::Read);
    if (code == SQLITE_IOERR_SHORT_READ) {
        std::memset(bytes, 0, size_t(size));
    }
    return code != SQLITE_OK ? code : passOn<&sqlite3_io_methods::xRead>(file, bytes, size, offset);
}

int sync(sqlite3_file* file, int) {
    return File::of(file).disk->meet(DiskOperation::Sync);
}

// Letting go of a lock cannot fail.
int lockShared(sqlite3_file* file, int first, int count, int flags) {
    const bool isRelease = (flags & SQLITE_SHM_UNLOCK) != 0;
    const int code = isRelease ? SQLITE_OK : File::of(file).disk->meet(DiskOperation::LockShared);
    return code != SQLITE_OK ? code
                             : passOn<&sqlite3_io_methods::xShmLock>(file, first, count, flags);
}

void barrier(sqlite3_file* file) {
    sqlite3_file* real = File::real(file);
    real->pMethods->xShmBarrier(real);
}

using M = sqlite3_io_methods;
constexpr sqlite3_io_methods kMethods = {
    2,
    passOn<&M::xClose>,
    read,
    passOnUnlessFailing<DiskOperation::Write, &M::xWrite, const void*, int, sqlite3_int64>,
    passOnUnlessFailing<DiskOperation::Truncate, &M::xTruncate, sqlite3_int64>,
    sync,
    passOn<&M::xFileSize, sqlite3_int64*>,
    passOnUnlessFailing<DiskOperation::Lock, &M::xLock, int>,
    passOn<&M::xUnlock, int>,
    passOn<&M::xCheckReservedLock, int*>,
    passOn<&M::xFileControl, int, void*>,
    passOn<&M::xSectorSize>,
    passOn<&M::xDeviceCharacteristics>,
    passOnUnlessFailing<DiskOperation::MapShared, &M::xShmMap, int, int, int, void volatile**>,
    lockShared,
    barrier,
    passOn<&M::xShmUnmap, int>,
    nullptr,
    nullptr,
};

}  // namespace

FailingVfs::FailingVfs() : m_real(sqlite3_vfs_find(nullptr)), m_vfs(*m_real) {
    m_vfs.zName = "failing";
    m_vfs.szOsFile = int(sizeof(File)) + m_real->szOsFile;
    m_vfs.pNext = nullptr;
    m_vfs.pAppData = this;
    m_vfs.xOpen = &FailingVfs::open;
    sqlite3_vfs_register(&m_vfs, 1);
}

FailingVfs::~FailingVfs() {
    sqlite3_vfs_unregister(&m_vfs);
    sqlite3_vfs_register(m_real, 1);
}

void FailingVfs::failAt(DiskOperation operation, int nth, int code) {
    m_remaining = nth;
    m_code = code;
    m_operation = std::to_underlying(operation);
}

int FailingVfs::meet(DiskOperation operation) {
    if (m_operation != std::to_underlying(operation) || --m_remaining != 0) {
        return SQLITE_OK;
    }
    errno = EIO;
    return m_code;
}

int FailingVfs::open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* out) {
    auto& self = *static_cast<FailingVfs*>(vfs->pAppData);
    file->pMethods = nullptr;
    if (const int code = self.meet(DiskOperation::Open); code != SQLITE_OK) {
        return code;
    }
    File::of(file).disk = &self;
    const int code = self.m_real->xOpen(self.m_real, name, File::real(file), flags, out);
    file->pMethods = code == SQLITE_OK ? &kMethods : nullptr;
    return code;
}

}  // namespace quillo::testing
