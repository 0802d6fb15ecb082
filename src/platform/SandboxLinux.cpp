// What the Linux kernel refuses to a confined program: files by Landlock, the network by Landlock
// and, with sockets, programs and tracing, by a seccomp filter.

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

/// The form of the rules' set that the newest kernel known here takes, and what stands in it that
/// headers of older systems do not name.
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

/// Those rights that concern a single file. The kernel refuses rules about files with others.
constexpr std::uint64_t ofOneFile = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                    LANDLOCK_ACCESS_FS_READ_FILE | accessTruncate |
                                    accessControlDevice;

/// What the kernel's edition of Landlock can refuse. A later edition knows all of an earlier one.
RulesetAttributes refusable(long edition) {
  // Of the first edition: everything up to the making of symbolic links.
  RulesetAttributes attributes{2 * LANDLOCK_ACCESS_FS_MAKE_SYM - 1, 0, 0};
  if (edition >= 2) attributes.files |= accessRefer;
  if (edition >= 3) attributes.files |= accessTruncate;
  if (edition >= 4) attributes.network = networkBind | networkConnect;
  if (edition >= 5) attributes.files |= accessControlDevice;
  if (edition >= 6) attributes.scopes = scopeAbstractSockets | scopeSignals;
  return attributes;
}

/// How many bytes of the attributes the edition knows.
std::size_t sizeFor(long edition) {
  if (edition >= 6) return sizeof(RulesetAttributes);
  return edition >= 4 ? offsetof(RulesetAttributes, scopes) : offsetof(RulesetAttributes, network);
}

/// The rules of a process to be, made step by step. False stands for a kernel that refuses one.
class Ruleset {
public:
  /// Everything is refused at first. Landlock's `edition` counts from 1.
  explicit Ruleset(long edition) : refused(refusable(edition)), rules(made(refused, edition)) {}

  /// Allows `rights` to a file, or below a folder. What is not there needs no rule.
  bool allow(const path& place, std::uint64_t rights) {
    const Descriptor file = Descriptor::ofFile(place, O_PATH);
    if (!file) return errno != EMFILE && errno != ENFILE && errno != ENOMEM;
    struct stat status {};
    if (fstat(file.get(), &status) != 0) return false;
    const std::uint64_t possible = S_ISDIR(status.st_mode) ? refused.files : ofOneFile;
    const landlock_path_beneath_attr rule{rights & possible & refused.files, file.get()};
    // What has no place in a file system, such as the pipe behind /dev/stdin, is never refused.
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

/// The folder from which `database` stays in reach. A rule holds for a folder itself and what lies
/// below it, not for another folder of its name or a drive that comes to cover it: so the rule is
/// laid one folder above the deepest one that is there, and above the drive it lies on, unless that
/// is `keptMount`, which stays. A share of the network is not even looked at, because one that is
/// out of reach would keep us waiting: the rule is laid on the folder that it is mounted in.
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
  // SQLite and libsodium draw random numbers, and SQLite fills low descriptors that are free.
  return rules.allow("/dev/urandom", LANDLOCK_ACCESS_FS_READ_FILE) &&
         rules.allow("/dev/null", LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE) &&
         each(reach.read, reading) && each(lastingFolders(reach), besideDatabases) &&
         each(reach.change, changing);
}

/// Leaves the files in `reach`, and nothing that Landlock knows beside them.
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
constexpr std::uint32_t thisMachine = 0;  // whose calls have numbers that nobody has looked at
#endif

/// Calls that no program of ours makes once it is confined.
constexpr auto refusedCalls = std::to_array<std::uint32_t>(
    {// Sockets, and what is done with one that the client handed over as a standard stream.
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
     // New programs and new processes.
     SYS_execve,
     SYS_execveat,
     SYS_clone,
     SYS_clone3,
#ifdef SYS_fork
     SYS_fork,
     SYS_vfork,
#endif
     // Other processes' memory and files.
     SYS_ptrace,
     SYS_process_vm_readv,
     SYS_process_vm_writev,
     SYS_pidfd_open,
     SYS_pidfd_getfd,
     SYS_kcmp,
     // The kernel's own insides, and the ways round this filter.
     SYS_perf_event_open,
     SYS_bpf,
     SYS_userfaultfd,
     SYS_io_uring_setup,
     SYS_io_uring_enter,
     SYS_io_uring_register,
     SYS_open_by_handle_at});

/// x86 numbers the calls of one more kind of program, which none of ours is, from here on.
constexpr std::uint32_t firstForeignCall = 0x40000000;

constexpr sock_filter statement(unsigned code, std::uint32_t operand) {
  return {static_cast<std::uint16_t>(code), 0, 0, operand};
}

/// Compares; goes on `yes` or `no` steps beyond the next one.
constexpr sock_filter branch(unsigned comparison, std::uint32_t operand, std::size_t yes,
                             std::size_t no) {
  return {static_cast<std::uint16_t>(BPF_JMP | comparison | BPF_K),
          static_cast<std::uint8_t>(yes),
          static_cast<std::uint8_t>(no),
          operand};
}

/// The program that the kernel runs at every call.
constexpr auto filter() {
  constexpr std::size_t count = refusedCalls.size();
  static_assert(count < 250, "a branch reaches 255 steps");
  std::array<sock_filter, count + 6> program{};
  // Which machine the call was made for: numbers mean nothing for another one.
  program[0] = statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch));
  program[1] = branch(BPF_JEQ, thisMachine, 0, count + 3);
  // Which call it is.
  program[2] = statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
  program[3] = branch(BPF_JGE, firstForeignCall, count + 1, 0);
  // Each call of the list goes to the last step.
  for (std::size_t index = 0; index < count; ++index) {
    program[4 + index] = branch(BPF_JEQ, refusedCalls[index], count - index, 0);
  }
  program[count + 4] = statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  program[count + 5] = statement(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM);
  return program;
}

/// Whether the kernel refuses the calls of the list from now on.
bool confineCalls() {
  if (thisMachine == 0) return false;
  auto program = filter();
  const sock_fprog installed{static_cast<unsigned short>(program.size()), program.data()};
  return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &installed, 0, 0) == 0;
}

}  // namespace

System::Confinement System::confine(const Reach& reach) {
  Confinement confinement;
  // The kernel lets itself be told only by a process that cannot gain rights by a program any more.
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return confinement;
  confineFiles(reach, confinement);
  confinement.calls = confineCalls();
  return confinement;
}
