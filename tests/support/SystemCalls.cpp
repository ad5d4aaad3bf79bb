#include "tests/support/SystemCalls.h"

#include <sys/syscall.h>

#include <algorithm>
#include <array>

namespace kr::testing {
namespace {

constexpr int kNone = -1;

struct Call {
  long number;
  const char* name;
  int path = kNone;
  int size = kNone;
  bool mayBeInterrupted = false;
  bool waitsForDisk = false;
};

constexpr Call kCalls[] = {
    {SYS_access, "access", 0},
    {SYS_chmod, "chmod", 0},
    {SYS_chown, "chown", 0},
    {SYS_clone, "clone"},
    {SYS_clone3, "clone3"},
    {SYS_close, "close", kNone, kNone, true},
    {SYS_copy_file_range, "copy_file_range", kNone, 4, true},
    {SYS_dup, "dup"},
    {SYS_faccessat, "faccessat", 1},
    {SYS_faccessat2, "faccessat2", 1},
    {SYS_fadvise64, "fadvise64"},
    {SYS_fallocate, "fallocate", kNone, kNone, true},
    {SYS_fchmod, "fchmod"},
    {SYS_fchmodat, "fchmodat", 1},
    {SYS_fchown, "fchown"},
    {SYS_fchownat, "fchownat", 1},
    {SYS_fcntl, "fcntl"},
    {SYS_fdatasync, "fdatasync", kNone, kNone, true, true},
    {SYS_fgetxattr, "fgetxattr"},
    {SYS_flistxattr, "flistxattr"},
    {SYS_flock, "flock"},
    {SYS_fremovexattr, "fremovexattr"},
    {SYS_fsetxattr, "fsetxattr"},
    {SYS_fstat, "fstat"},
    {SYS_fstatfs, "fstatfs"},
    {SYS_fsync, "fsync", kNone, kNone, true, true},
    {SYS_ftruncate, "ftruncate", kNone, kNone, true},
    {SYS_getdents64, "getdents64"},
    {SYS_getrandom, "getrandom", kNone, 1, true},
    {SYS_getxattr, "getxattr", 0},
    {SYS_io_uring_enter, "io_uring_enter", kNone, kNone, true},
    {SYS_io_uring_setup, "io_uring_setup"},
    {SYS_ioctl, "ioctl"},
    {SYS_lchown, "lchown", 0},
    {SYS_lgetxattr, "lgetxattr", 0},
    {SYS_link, "link", 1},
    {SYS_linkat, "linkat", 3},
    {SYS_listxattr, "listxattr", 0},
    {SYS_llistxattr, "llistxattr", 0},
    {SYS_lremovexattr, "lremovexattr", 0},
    {SYS_lseek, "lseek"},
    {SYS_lsetxattr, "lsetxattr", 0},
    {SYS_lstat, "lstat", 0},
    {SYS_mkdir, "mkdir", 0},
    {SYS_mkdirat, "mkdirat", 1},
    {SYS_mmap, "mmap"},
    {SYS_newfstatat, "newfstatat", 1},
    {SYS_open, "open", 0},
    {SYS_openat, "openat", 1},
    {SYS_openat2, "openat2", 1},
    {SYS_pread64, "pread64", kNone, 2, true},
    {SYS_pwrite64, "pwrite64", kNone, 2, true},
    {SYS_read, "read", kNone, 2, true},
    {SYS_readlink, "readlink", 0},
    {SYS_readlinkat, "readlinkat", 1},
    {SYS_readv, "readv", kNone, 2, true},
    {SYS_rename, "rename", 1},
    {SYS_renameat, "renameat", 3},
    {SYS_renameat2, "renameat2", 3},
    {SYS_rmdir, "rmdir", 0},
    {SYS_sendfile, "sendfile", kNone, 3, true},
    {SYS_splice, "splice", kNone, 4, true},
    {SYS_stat, "stat", 0},
    {SYS_statfs, "statfs", 0},
    {SYS_statx, "statx", 1},
    {SYS_symlink, "symlink", 1},
    {SYS_symlinkat, "symlinkat", 2},
    {SYS_sync, "sync", kNone, kNone, false, true},
    {SYS_sync_file_range, "sync_file_range", kNone, kNone, false, true},
    {SYS_syncfs, "syncfs", kNone, kNone, false, true},
    {SYS_truncate, "truncate", 0},
    {SYS_unlink, "unlink", 0},
    {SYS_unlinkat, "unlinkat", 1},
    {SYS_utimensat, "utimensat", 1},
    {SYS_write, "write", kNone, 2, true},
    {SYS_writev, "writev", kNone, 2, true},
};

const Call* find(long number) {
  const auto* call = std::find_if(std::begin(kCalls), std::end(kCalls),
                                  [&](const Call& one) { return one.number == number; });
  return call == std::end(kCalls) ? nullptr : call;
}

std::optional<std::size_t> argument(int index) {
  return index == kNone ? std::nullopt : std::optional(static_cast<std::size_t>(index));
}

}  // namespace

std::string systemCallName(long number) {
  const Call* call = find(number);
  return call != nullptr ? call->name : "call " + std::to_string(number);
}

std::optional<std::size_t> pathArgument(long number) {
  const Call* call = find(number);
  return argument(call != nullptr ? call->path : kNone);
}

std::optional<std::size_t> sizeArgument(long number) {
  const Call* call = find(number);
  return argument(call != nullptr ? call->size : kNone);
}

bool mayBeInterrupted(long number) {
  const Call* call = find(number);
  return call != nullptr && call->mayBeInterrupted;
}

bool waitsForDisk(long number) {
  const Call* call = find(number);
  return call != nullptr && call->waitsForDisk;
}

}  // namespace kr::testing
