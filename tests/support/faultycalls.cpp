#include "tests/support/faultycalls.h"

#include <sqlite3.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>

namespace tests
{

namespace
{

struct State {
    int failing = 0;
    bool onwards = false;
    int calls = 0;
};

State &TheState()
{
    static State state;
    return state;
}

bool Fails(bool writes)
{
    State &state = TheState();
    const int number = ++state.calls;
    const bool fails =
        number == state.failing || (state.onwards && writes && number > state.failing);
    if (fails)
        errno = writes ? ENOSPC : EIO;
    return fails;
}

ssize_t Read(int fd, void *to, size_t count, off_t offset)
{
    return Fails(false) ? -1 : pread(fd, to, count, offset);
}

ssize_t Write(int fd, const void *from, size_t count, off_t offset)
{
    return Fails(true) ? -1 : pwrite(fd, from, count, offset);
}

int Cut(int fd, off_t size)
{
    return Fails(true) ? -1 : ftruncate(fd, size);
}

void *Map(void *at, size_t size, int protection, int flags, int fd, off_t offset)
{
    return Fails(false) ? MAP_FAILED : mmap(at, size, protection, flags, fd, offset);
}

// Replaces a system call of SQLite by `call`; null restores SQLite's own.
void Set(const char *name, sqlite3_syscall_ptr call)
{
    sqlite3_vfs *vfs = sqlite3_vfs_find(nullptr);
    if (vfs->xGetSystemCall(vfs, name) != nullptr)
        vfs->xSetSystemCall(vfs, name, call);
}

template <class Call>
sqlite3_syscall_ptr Pointer(Call *call)
{
    return reinterpret_cast<sqlite3_syscall_ptr>(call);
}

} // namespace

FaultyCalls::FaultyCalls(int failing, bool onwards)
{
    TheState() = {failing, onwards, 0};
    for (const char *name : {"pread", "pread64"})
        Set(name, Pointer(Read));
    for (const char *name : {"pwrite", "pwrite64"})
        Set(name, Pointer(Write));
    Set("ftruncate", Pointer(Cut));
    Set("mmap", Pointer(Map));
}

FaultyCalls::~FaultyCalls()
{
    for (const char *name : {"pread", "pread64", "pwrite", "pwrite64", "ftruncate", "mmap"})
        Set(name, nullptr);
}

bool FaultyCalls::HasFailed() const
{
    return TheState().calls >= TheState().failing;
}

int FaultyCalls::Calls() const
{
    return TheState().calls;
}

} // namespace tests
