// The confinement on Linux: Landlock refuses files and network; a seccomp filter refuses sockets,
// new programs and tracing.

#include "platform/Descriptor.h"
#include "platform/Files.h"
#include "platform/Mounts.h"
#include "platform/System.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <system_error>

namespace {

using std::filesystem::path;

/// The ruleset attributes of the newest kernel known here. The constants below are missing from
/// headers of older systems.
struct RulesetAttributes {
  std::uint64_t files;
  std::uint64_t network;
  std::uint64_t scopes;
};

constexpr std::uint64_t accessRefer = 1U << 13U;
constexpr std::uint64_t accessTruncate = 1U << 14U;
constexpr std::uint64_t accessControlDevice = 1U << 15U;
constexpr std::uint64_t networkBind = 1U << 0U;
constexpr std::uint64_t networkConnect = 1U << 1U;
constexpr std::uint64_t scopeAbstractSockets = 1U << 0U;
constexpr std::uint64_t scopeSignals = 1U << 1U;

constexpr std::uint64_t reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t besideDatabases = LANDLOCK_ACCESS_FS_READ_FILE |
                                          LANDLOCK_ACCESS_FS_WRITE_FILE |
                                          LANDLOCK_ACCESS_FS_MAKE_REG | accessTruncate;
constexpr std::uint64_t changing = reading | besideDatabases | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                   LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR;

/// The rights that concern a single file. The kernel refuses a rule about a file with any other
/// right.
constexpr std::uint64_t ofOneFile = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                    LANDLOCK_ACCESS_FS_READ_FILE | accessTruncate |
                                    accessControlDevice;

/// The rights that this Landlock edition of the kernel can refuse. A later edition includes all
/// earlier ones.
RulesetAttributes refusable(long edition) {
  // The first edition has all rights up to MAKE_SYM.
  RulesetAttributes attributes{2 * LANDLOCK_ACCESS_FS_MAKE_SYM - 1, 0, 0};
  if (edition >= 2) attributes.files |= accessRefer;
  if (edition >= 3) attributes.files |= accessTruncate;
  if (edition >= 4) attributes.network = networkBind | networkConnect;
  if (edition >= 5) attributes.files |= accessControlDevice;
  if (edition >= 6) attributes.scopes = scopeAbstractSockets | scopeSignals;
  return attributes;
}

/// The size in bytes of the attributes that the edition knows.
std::size_t sizeFor(long edition) {
  if (edition >= 6) return sizeof(RulesetAttributes);
  return edition >= 4 ? offsetof(RulesetAttributes, scopes) : offsetof(RulesetAttributes, network);
}

/// The rules of the future process, built step by step. False means that the kernel refused a step.
class Ruleset {
public:
  /// Refuses everything at first. Landlock's `edition` counts from 1.
  explicit Ruleset(long edition) : refused(refusable(edition)), rules(made(refused, edition)) {}

  /// Allows `rights` on a file, or below a folder. A missing path needs no rule.
  bool allow(const path& place, std::uint64_t rights) {
    const Descriptor file = Descriptor::ofFile(place, O_PATH);
    if (!file) return errno != EMFILE && errno != ENFILE && errno != ENOMEM;
    struct stat status {};
    if (fstat(file.get(), &status) != 0) return false;
    const std::uint64_t possible = S_ISDIR(status.st_mode) ? refused.files : ofOneFile;
    const landlock_path_beneath_attr rule{rights & possible & refused.files, file.get()};
    // Descriptors outside any file system, such as the pipe behind /dev/stdin, are never refused.
    return syscall(SYS_landlock_add_rule, rules.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0U) ==
               0 ||
           errno == EBADFD;
  }

  bool enforce() const { return syscall(SYS_landlock_restrict_self, rules.get(), 0U) == 0; }

  bool refusesNetwork() const { return refused.network != 0; }

private:
  static int made(const RulesetAttributes& attributes, long edition) {
    return static_cast<int>(
        syscall(SYS_landlock_create_ruleset, &attributes, sizeFor(edition), 0U));
  }

  RulesetAttributes refused;
  Descriptor rules;
};

/// The folder whose rule keeps `database` accessible. A rule applies to a folder itself and
/// everything below it. It does not apply to a later folder of the same name, or to a drive that is
/// mounted over it. So the rule applies one folder above the deepest existing one and above its
/// mount. The exception is `keptMount`, which stays mounted. A network share is not accessed at
/// all, because an unreachable share would block. Its rule applies to the folder that it is mounted
/// in.
path lastingFolder(const path& database, const Mounts& mounts,
                   std::optional<std::size_t> keptMount) {
  const Mounts::Place place = mounts.followed(database, keptMount);
  if (place.beforeRemote) return place.folder;
  if (!place.mount || place.mount == keptMount) return place.folder.parent_path();
  return mounts[*place.mount].place.parent_path();
}

/// The folders of the databases, each once.
std::set<path> lastingFolders(const System::Reach& reach) {
  if (reach.databases.empty()) return {};
  const Mounts mounts(fileContents("/proc/self/mountinfo").value_or(""));
  const std::optional<std::size_t> kept = mounts.of(reach.staying);
  std::set<path> folders;
  std::error_code error;
  for (const path& database : reach.databases) {
    if (database.empty()) continue;
    folders.insert(lastingFolder(std::filesystem::absolute(database, error), mounts, kept));
  }
  return folders;
}

bool allowed(Ruleset& rules, const System::Reach& reach) {
  const auto each = [&rules](const auto& places, std::uint64_t rights) {
    return std::ranges::all_of(
        places, [&rules, rights](const path& place) { return rules.allow(place, rights); });
  };
  // SQLite and libsodium read random numbers; SQLite opens /dev/null to occupy free low
  // descriptors.
  return rules.allow("/dev/urandom", LANDLOCK_ACCESS_FS_READ_FILE) &&
         rules.allow("/dev/null", LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE) &&
         each(reach.read, reading) && each(lastingFolders(reach), besideDatabases) &&
         each(reach.change, changing);
}

/// Allows only the files in `reach`, out of everything that Landlock controls.
void confineFiles(const System::Reach& reach, System::Confinement& confinement) {
  const long edition =
      syscall(SYS_landlock_create_ruleset, nullptr, 0U, LANDLOCK_CREATE_RULESET_VERSION);
  if (edition < 1) return;  // not built in, switched off, or forbidden by a container
  Ruleset rules(edition);
  if (!allowed(rules, reach) || !rules.enforce()) return;
  confinement.files = true;
  confinement.network = rules.refusesNetwork();
}

#if defined(__x86_64__)
constexpr std::uint32_t thisMachine = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t thisMachine = AUDIT_ARCH_AARCH64;
#elif defined(__riscv) && __riscv_xlen == 64
constexpr std::uint32_t thisMachine = AUDIT_ARCH_RISCV64;
#else
constexpr std::uint32_t thisMachine = 0;  // unknown: the call numbers are unverified
#endif

/// System calls that none of our programs makes once it is confined.
constexpr auto refusedCalls = std::to_array<std::uint32_t>(
    {// Sockets, and calls on a socket that the client passed as a standard stream.
     SYS_socket,
     SYS_socketpair,
     SYS_connect,
     SYS_bind,
     SYS_listen,
     SYS_accept,
     SYS_accept4,
     SYS_sendto,
     SYS_sendmsg,
     SYS_sendmmsg,
     SYS_recvfrom,
     SYS_recvmsg,
     SYS_recvmmsg,
     SYS_getsockname,
     SYS_getpeername,
     SYS_getsockopt,
     SYS_setsockopt,
     SYS_shutdown,
     // New programs and processes.
     SYS_execve,
     SYS_execveat,
     SYS_clone,
     SYS_clone3,
#ifdef SYS_fork
     SYS_fork,
     SYS_vfork,
#endif
     // Memory and files of other processes.
     SYS_ptrace,
     SYS_process_vm_readv,
     SYS_process_vm_writev,
     SYS_pidfd_open,
     SYS_pidfd_getfd,
     SYS_kcmp,
     // Kernel internals, and ways to bypass this filter.
     SYS_perf_event_open,
     SYS_bpf,
     SYS_userfaultfd,
     SYS_io_uring_setup,
     SYS_io_uring_enter,
     SYS_io_uring_register,
     SYS_open_by_handle_at});

/// The call numbers of x32, an x86 ABI that we do not use, start here.
constexpr std::uint32_t firstForeignCall = 0x40000000;

constexpr sock_filter statement(unsigned code, std::uint32_t operand) {
  return {static_cast<std::uint16_t>(code), 0, 0, operand};
}

/// Compares, then skips `yes` or `no` statements after this one.
constexpr sock_filter branch(unsigned comparison, std::uint32_t operand, std::size_t yes,
                             std::size_t no) {
  return {static_cast<std::uint16_t>(BPF_JMP | comparison | BPF_K),
          static_cast<std::uint8_t>(yes),
          static_cast<std::uint8_t>(no),
          operand};
}

/// The filter program that the kernel runs at every call.
constexpr auto filter() {
  constexpr std::size_t count = refusedCalls.size();
  static_assert(count < 250, "a branch reaches 255 steps");
  std::array<sock_filter, count + 6> program{};
  // The architecture of the call: the numbers are meaningless for another one.
  program[0] = statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch));
  program[1] = branch(BPF_JEQ, thisMachine, 0, count + 3);
  // The number of the call.
  program[2] = statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
  program[3] = branch(BPF_JGE, firstForeignCall, count + 1, 0);
  // A match with the list jumps to the last statement.
  for (std::size_t index = 0; index < count; ++index) {
    program[4 + index] = branch(BPF_JEQ, refusedCalls[index], count - index, 0);
  }
  program[count + 4] = statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  program[count + 5] = statement(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM);
  return program;
}

/// Installs the filter; whether the kernel refuses the listed calls from now on.
bool confineCalls() {
  if (thisMachine == 0) return false;
  auto program = filter();
  const sock_fprog installed{static_cast<unsigned short>(program.size()), program.data()};
  return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &installed, 0, 0) == 0;
}

}  // namespace

System::Confinement System::confine(const Reach& reach) {
  Confinement confinement;
  // The kernel accepts filters only from a process that cannot gain privileges by execve any more.
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return confinement;
  confineFiles(reach, confinement);
  confinement.calls = confineCalls();
  return confinement;
}
