// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/confinement.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <utility>

#include "host/document/openfile.h"
#include "host/document/sanitized.h"

namespace document {
namespace {

// A limit that is lower already stays.
bool limit(__rlimit_resource_t resource, rlim_t most) {
  rlimit both{};
  if (getrlimit(resource, &both) != 0) return false;
  both.rlim_max = std::min(both.rlim_max, most);
  both.rlim_cur = std::min(both.rlim_cur, both.rlim_max);
  return setrlimit(resource, &both) == 0;
}

bool limitResources(const Limits &limits) {
  constexpr rlim_t descriptors = 64, stack = 8 << 20;
  // Whatever is written is sent through a socket, or is in memory that is there already.
  std::vector<std::pair<__rlimit_resource_t, rlim_t>> all = {
      {RLIMIT_FSIZE, 0}, {RLIMIT_CORE, 0}, {RLIMIT_NOFILE, descriptors}};
  // The mapping of the file does not count as memory. Other memory that only the last limit counts is denied below.
  if (limits.memory != 0)
    all.insert(
        all.end(),
        {{RLIMIT_STACK, stack}, {RLIMIT_DATA, limits.memory}, {RLIMIT_AS, limits.memory + host::OpenFile::largest}});
  bool limited = true;
  for (const auto &[resource, most] : all)
    limited = limit(resource, most) && limited;
  return limited;
}

bool giveUpPrivileges() {
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0;
}

// ---- files ----

// The C library has no functions for these calls.
long landlock(long number, auto... arguments) { return syscall(number, arguments...); }

// All that the kernel can forbid; what it does not know yet must not be asked for.
uint64_t forbiddable(long version) {
  uint64_t all = (uint64_t{LANDLOCK_ACCESS_FS_MAKE_SYM} << 1) - 1;
  if (version >= 2) all |= LANDLOCK_ACCESS_FS_REFER;
  if (version >= 3) all |= uint64_t{1} << 14; // truncating a file
  return all;
}

bool restrictFiles() {
  const long version = landlock(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 1) return false;
  landlock_ruleset_attr all{};
  all.handled_access_fs = forbiddable(version);
  const auto rules = static_cast<int>(landlock(SYS_landlock_create_ruleset, &all, sizeof all, 0));
  if (rules < 0) return false;
  for (const std::string &readable : readablePaths()) {
    landlock_path_beneath_attr below{};
    below.parent_fd = open(readable.c_str(), O_PATH | O_CLOEXEC);
    struct stat status {};
    if (below.parent_fd < 0) continue; // there is none
    below.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE;
    if (fstat(below.parent_fd, &status) == 0 && S_ISDIR(status.st_mode))
      below.allowed_access |= LANDLOCK_ACCESS_FS_READ_DIR;
    landlock(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &below, 0);
    close(below.parent_fd);
  }
  const bool restricted = landlock(SYS_landlock_restrict_self, rules, 0) == 0;
  close(rules);
  return restricted;
}

// ---- system calls ----

// Those that computing, reading fonts and answering need.
constexpr int harmless[] = {SCMP_SYS(access),
                            SCMP_SYS(brk),
                            SCMP_SYS(clock_getres),
                            SCMP_SYS(clock_gettime),
                            SCMP_SYS(clock_gettime64),
                            SCMP_SYS(clock_nanosleep),
                            SCMP_SYS(clock_nanosleep_time64),
                            SCMP_SYS(close),
                            SCMP_SYS(dup),
                            SCMP_SYS(exit),
                            SCMP_SYS(exit_group),
                            SCMP_SYS(faccessat),
                            SCMP_SYS(faccessat2),
                            SCMP_SYS(fadvise64),
                            SCMP_SYS(fstat),
                            SCMP_SYS(fstat64),
                            SCMP_SYS(fstatat64),
                            SCMP_SYS(fstatfs),
                            SCMP_SYS(futex),
                            SCMP_SYS(futex_time64),
                            SCMP_SYS(getcwd),
                            SCMP_SYS(getdents),
                            SCMP_SYS(getdents64),
                            SCMP_SYS(getegid),
                            SCMP_SYS(getegid32),
                            SCMP_SYS(geteuid),
                            SCMP_SYS(geteuid32),
                            SCMP_SYS(getgid),
                            SCMP_SYS(getgid32),
                            SCMP_SYS(getpid),
                            SCMP_SYS(getrandom),
                            SCMP_SYS(getrlimit),
                            SCMP_SYS(getrusage),
                            SCMP_SYS(gettid),
                            SCMP_SYS(gettimeofday),
                            SCMP_SYS(getuid),
                            SCMP_SYS(getuid32),
                            SCMP_SYS(_llseek),
                            SCMP_SYS(lseek),
                            SCMP_SYS(lstat),
                            SCMP_SYS(madvise),
                            SCMP_SYS(mremap),
                            SCMP_SYS(munmap),
                            SCMP_SYS(nanosleep),
                            SCMP_SYS(newfstatat),
                            SCMP_SYS(poll),
                            SCMP_SYS(ppoll),
                            SCMP_SYS(ppoll_time64),
                            SCMP_SYS(pread64),
                            SCMP_SYS(read),
                            SCMP_SYS(readlink),
                            SCMP_SYS(readlinkat),
                            SCMP_SYS(readv),
                            SCMP_SYS(restart_syscall),
                            SCMP_SYS(rseq),
                            SCMP_SYS(rt_sigaction),
                            SCMP_SYS(rt_sigprocmask),
                            SCMP_SYS(rt_sigreturn),
                            SCMP_SYS(sched_getaffinity),
                            SCMP_SYS(sched_yield),
                            SCMP_SYS(set_robust_list),
                            SCMP_SYS(sigaltstack),
                            SCMP_SYS(stat),
                            SCMP_SYS(stat64),
                            SCMP_SYS(statfs),
                            SCMP_SYS(statfs64),
                            SCMP_SYS(statx),
                            SCMP_SYS(sysinfo),
                            SCMP_SYS(time),
                            SCMP_SYS(ugetrlimit),
                            SCMP_SYS(uname),
                            SCMP_SYS(write),
                            SCMP_SYS(writev)};

scmp_arg_cmp argument(unsigned index, scmp_compare compare, scmp_datum_t value, scmp_datum_t masked = 0) {
  return {index, compare, value, masked};
}

class Filter {
public:
  Filter() : context_(seccomp_init(SCMP_ACT_ERRNO(EPERM)), seccomp_release) {}
  explicit operator bool() const { return context_ != nullptr && valid_; }

  void allow(int call, std::initializer_list<scmp_arg_cmp> conditions = {}) { add(SCMP_ACT_ALLOW, call, conditions); }
  void answer(int call, int error) { add(SCMP_ACT_ERRNO(static_cast<uint32_t>(error)), call, {}); }
  bool load() { return seccomp_load(context_.get()) == 0; }

private:
  void add(uint32_t action, int call, std::initializer_list<scmp_arg_cmp> conditions) {
    if (context_ == nullptr || call == __NR_SCMP_ERROR) return;
    const int added = seccomp_rule_add_array(context_.get(), action, call, static_cast<unsigned>(conditions.size()),
                                             conditions.begin());
    valid_ = valid_ && (added == 0 || added == -EDOM || added == -EOPNOTSUPP); // a call of another machine
  }

  std::unique_ptr<void, decltype(&seccomp_release)> context_;
  bool valid_ = true;
};

bool filterCalls() {
  Filter filter;
  for (const int call : harmless)
    filter.allow(call);
  // Memory that can be executed would be a way to run what a file brings.
  constexpr scmp_arg_cmp notExecuted{2, SCMP_CMP_MASKED_EQ, PROT_EXEC, 0};
  filter.allow(SCMP_SYS(mprotect), {notExecuted});
  // New memory is private and no stack, because the limit of memory counts neither.
#ifdef __NR_mmap2
  constexpr int map = SCMP_SYS(mmap2); // the other call has its arguments in memory
#else
  constexpr int map = SCMP_SYS(mmap);
#endif
  for (const scmp_datum_t flag : {MAP_SHARED, MAP_ANONYMOUS})
    filter.allow(map, {notExecuted, argument(3, SCMP_CMP_MASKED_EQ, flag | MAP_GROWSDOWN, 0)});
  // Files are opened for reading. Where the kernel restricts them, only some.
  constexpr scmp_datum_t writing = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND;
  filter.allow(SCMP_SYS(openat), {argument(2, SCMP_CMP_MASKED_EQ, writing, 0)});
  filter.allow(SCMP_SYS(open), {argument(1, SCMP_CMP_MASKED_EQ, writing, 0)});
  // Others would have the kernel send signals, or lock files.
  for (const int call : {SCMP_SYS(fcntl), SCMP_SYS(fcntl64)})
    for (const scmp_datum_t what : {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL})
      filter.allow(call, {argument(1, SCMP_CMP_EQ, what)});
  filter.allow(SCMP_SYS(sendmsg), {argument(2, SCMP_CMP_EQ, MSG_NOSIGNAL)});
  filter.allow(SCMP_SYS(recvmsg), {argument(2, SCMP_CMP_EQ, MSG_CMSG_CLOEXEC | MSG_DONTWAIT)});
  // Limits are looked at; a signal goes to the process itself, as when it gives up.
  filter.allow(SCMP_SYS(prlimit64), {argument(2, SCMP_CMP_EQ, 0)});
  filter.allow(SCMP_SYS(tgkill), {argument(0, SCMP_CMP_EQ, static_cast<scmp_datum_t>(getpid()))});
  // The undefined-behaviour sanitizer asks with a pipe whether memory can be read.
  if (host::isSanitized)
    for (const int call : {SCMP_SYS(pipe), SCMP_SYS(pipe2)})
      filter.allow(call);
  // The C library asks for the older call if there is none of these.
  filter.answer(SCMP_SYS(clone3), ENOSYS);
  filter.answer(SCMP_SYS(openat2), ENOSYS);
  return filter && filter.load();
}

} // namespace

std::vector<std::string> readablePaths() {
  std::vector<std::string> all = {
      "/usr/share/fonts",      "/usr/local/share/fonts", "/usr/share/fontconfig",        "/etc/fonts",
      "/var/cache/fontconfig", "/usr/share/poppler",     "/usr/share/ghostscript/fonts", "/usr/share/X11/fonts"};
  const auto below = [&](const char *variable, const char *directory) {
    if (const char *base = std::getenv(variable); base != nullptr && *base == '/')
      all.push_back(std::string(base) + directory);
  };
  below("HOME", "/.fonts");
  below("HOME", "/.local/share/fonts");
  below("HOME", "/.config/fontconfig");
  below("HOME", "/.cache/fontconfig");
  below("XDG_DATA_HOME", "/fonts");
  below("XDG_CONFIG_HOME", "/fontconfig");
  below("XDG_CACHE_HOME", "/fontconfig");
  below("FONTCONFIG_PATH", "");
  below("FONTCONFIG_FILE", ""); // this file alone, wherever it is
  return all;
}

Layers confine(const Limits &limits) {
  Layers layers;
  layers.privileges = giveUpPrivileges();
  layers.resources = limitResources(limits);
  layers.files = restrictFiles();
  layers.calls = filterCalls();
  return layers;
}

} // namespace document
