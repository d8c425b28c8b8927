// The decision at the start of a program, beside the plain way and the limit, and while another
// process synchronises:
//  - preparing: each statement prepared, stepped and finalized by itself;
//  - held: statements kept by hand, all of a decision inside one read.

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "bench/bench_support.h"
#include "bench/documents.h"
#include "tools/provision/provision.h"

namespace {

using std::chrono_literals::operator""us;

using Digest = std::array<unsigned char, 16>;

struct Program {
  std::string name;
  Digest md5;
};

// 5,000 programs of six names and twenty digests each, 250 of them blocked under each of eight
// policies; the others are monitored.
constexpr char kFill[] =
    "BEGIN;"
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<5000)"
    " INSERT INTO apps SELECT i, 1, 'Program ' || i FROM n;"
    "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<29999)"
    " INSERT INTO app_files SELECT i+1, i%5000+1, 'program-' || (i*7919%30000) || '.exe' FROM n;"
    "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<99999)"
    " INSERT INTO app_checksums SELECT i+1, i%5000+1, randomblob(16), iif(i%5000<2000,1,2) FROM n;"
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<8)"
    " INSERT INTO policy_services(id, policy_id) SELECT i, 100+i FROM n;"
    "INSERT INTO app_controls(id, policy_service_id, enabled) SELECT id, id, 1 FROM "
    "policy_services;"
    "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<1999)"
    " INSERT INTO app_control_apps SELECT i+1, i+1, i%8+1 FROM n;"
    "INSERT INTO logins(id, policy_id) VALUES(1, 103);"
    "COMMIT;";

constexpr char kBlocked[] =
    "f.app_id IN (SELECT app_id FROM app_control_apps WHERE app_control_id=3)";
constexpr char kMonitored[] = "f.app_id>2000";

class AppDatabase : public bench::Database {
 public:
  AppDatabase() { Sql(kFill); }

  // Some known programs; `by_name` and `by_digest` say what of them is known.
  std::vector<Program> Programs(const std::string& which, bool by_name, bool by_digest) {
    const std::string sql =
        "SELECT f.name, c.md5 FROM app_files f JOIN app_checksums c ON c.app_id=f.app_id WHERE " +
        which + " ORDER BY f.id*7919%30011, c.id LIMIT 64";
    std::vector<Program> programs;
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(handle(), sql.c_str(), -1, &select, nullptr);
    while (sqlite3_step(select) == SQLITE_ROW) {
      Program program;
      program.name = reinterpret_cast<const char*>(sqlite3_column_text(select, 0));
      const auto* md5 = static_cast<const unsigned char*>(sqlite3_column_blob(select, 1));
      std::copy_n(md5, program.md5.size(), program.md5.begin());
      if (!by_name) program.name += ".copy";
      if (!by_digest) program.md5[0] ^= 0xFF, program.md5[15] ^= 0xFF;
      programs.push_back(program);
    }
    sqlite3_finalize(select);
    return programs;
  }
};

enum Sql {
  kBegin,
  kCommit,
  kPolicy,
  kFile,
  kChecksum,
  kBlockedByName,
  kBlockedByDigest,
  kMonitoredByName,
  kMonitoredByDigest,
  kName,
  kSqlCount
};
constexpr const char* kTexts[kSqlCount] = {
    "BEGIN",
    "COMMIT",
    "SELECT policy_id FROM logins WHERE id=?",
    "SELECT id FROM app_files WHERE name=?",
    "SELECT id FROM app_checksums WHERE md5=?",
    "SELECT app_controls.id, app_control_apps.id, apps.id, 1 FROM app_control_apps "
    "INNER JOIN apps ON apps.id=app_control_apps.app_id "
    "INNER JOIN app_files ON app_files.app_id=apps.id "
    "INNER JOIN app_controls ON app_controls.id=app_control_apps.app_control_id "
    "WHERE app_controls.enabled=1 AND app_controls.policy_id=? AND app_files.name=?",
    "SELECT app_controls.id, app_control_apps.id, apps.id, control_flag FROM app_control_apps "
    "INNER JOIN apps ON apps.id=app_control_apps.app_id "
    "INNER JOIN app_checksums ON app_checksums.app_id=apps.id "
    "INNER JOIN app_controls ON app_controls.id=app_control_apps.app_control_id "
    "WHERE control_flag=1 AND app_controls.enabled=1 AND app_controls.policy_id=? "
    "AND app_checksums.md5=?",
    "SELECT 0, 0, apps.id, 2 FROM app_files INNER JOIN apps ON apps.id=app_files.app_id "
    "WHERE apps.app_type_id=? AND app_files.name=?",
    "SELECT 0, 0, apps.id, control_flag FROM app_checksums "
    "INNER JOIN apps ON apps.id=app_checksums.app_id "
    "WHERE control_flag=2 AND apps.app_type_id=? AND app_checksums.md5=?",
    "SELECT name FROM apps WHERE id=?",
};

// The statements of a decision, prepared for each use.
class Preparing {
 public:
  explicit Preparing(sqlite3* db) : db_(db) {}
  void Begin() {}
  void End() {}
  sqlite3_stmt* Borrow(Sql sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(db_, kTexts[sql], -1, &statement, nullptr);
    return statement;
  }
  void Return(sqlite3_stmt* statement) { sqlite3_finalize(statement); }

 private:
  sqlite3* db_;
};

// The same, prepared once; a decision is one read.
class Held {
 public:
  explicit Held(sqlite3* db) {
    for (int sql = 0; sql < kSqlCount; ++sql) {
      sqlite3_prepare_v3(db, kTexts[sql], -1, SQLITE_PREPARE_PERSISTENT, &statements_[sql],
                         nullptr);
    }
  }
  ~Held() {
    for (sqlite3_stmt* statement : statements_) sqlite3_finalize(statement);
  }
  void Begin() { Run(kBegin); }
  void End() { Run(kCommit); }
  sqlite3_stmt* Borrow(Sql sql) { return statements_[sql]; }
  void Return(sqlite3_stmt* statement) { sqlite3_reset(statement); }

 private:
  void Run(Sql sql) {
    sqlite3_step(statements_[sql]);
    sqlite3_reset(statements_[sql]);
  }

  sqlite3_stmt* statements_[kSqlCount];
};

// A decision written out by hand.
template <typename Statements>
class ByHand {
 public:
  explicit ByHand(sqlite3* db) : statements_(db) {}

  bool Decide(const Program& program) {
    statements_.Begin();
    const bool answer = DecideInRead(program);
    statements_.End();
    return answer;
  }

 private:
  template <typename Bind>
  bool Row(Sql sql, Bind bind) {
    sqlite3_stmt* statement = statements_.Borrow(sql);
    bind(statement);
    const bool row = sqlite3_step(statement) == SQLITE_ROW;
    if (row) value_ = sqlite3_column_int(statement, sqlite3_column_count(statement) > 1 ? 2 : 0);
    statements_.Return(statement);
    return row;
  }
  bool ByNumber(Sql sql, int number) {
    return Row(sql, [&](sqlite3_stmt* statement) { sqlite3_bind_int(statement, 1, number); });
  }
  bool ByName(Sql sql, int number, const std::string& name) {
    return Row(sql, [&](sqlite3_stmt* statement) {
      if (number) sqlite3_bind_int(statement, 1, number);
      sqlite3_bind_text(statement, number ? 2 : 1, name.c_str(), -1, SQLITE_STATIC);
    });
  }
  bool ByDigest(Sql sql, int number, const Digest& md5) {
    return Row(sql, [&](sqlite3_stmt* statement) {
      if (number) sqlite3_bind_int(statement, 1, number);
      sqlite3_bind_blob(statement, number ? 2 : 1, md5.data(), 16, SQLITE_STATIC);
    });
  }

  bool DecideInRead(const Program& program) {
    const int policy = ByNumber(kPolicy, 1) ? value_ : -1;
    if (!ByName(kFile, 0, program.name) && !ByDigest(kChecksum, 0, program.md5)) return false;
    if (ByName(kBlockedByName, policy, program.name)) return ByDigest(kChecksum, 0, program.md5);
    if (ByDigest(kBlockedByDigest, policy, program.md5)) return true;
    if (ByName(kMonitoredByName, 1, program.name)) {
      return ByNumber(kName, value_) && ByDigest(kChecksum, 0, program.md5);
    }
    return ByDigest(kMonitoredByDigest, 1, program.md5) && ByNumber(kName, value_);
  }

  Statements statements_;
  int value_ = 0;
};

bool DecideOurs(CPolicyDB& db, const Program& program) {
  CAppControlInfo info;
  info.login_id = 1;
  return db.IsAppControlled(info, program.name.c_str(), program.md5.data(), 16);
}

void Decision(benchmark::State& state, const std::string& which, bool by_name, bool by_digest) {
  AppDatabase database;
  const auto programs = database.Programs(which, by_name, by_digest);
  const bool expected = by_name || by_digest;
  // Each contender has a connection, and so a page cache, of its own.
  sqlite3* third = wexpol::OpenKeyed(database.path(), SQLITE_OPEN_READWRITE);
  ByHand<Preparing> preparing(third);
  ByHand<Held> held(database.handle());
  const auto each = [&](auto decide) {
    return [&, decide, next = std::size_t{0}]() mutable {
      if (decide(programs[next++ % programs.size()]) != expected) std::abort();
    };
  };
  bench::Compare(
      state,
      {{"ours",
        each([&](const Program& program) { return DecideOurs(database.session(), program); }),
        {}},
       {"preparing", each([&](const Program& program) { return preparing.Decide(program); }), {}},
       {"held", each([&](const Program& program) { return held.Decide(program); }), {}}},
      320, 101);
  sqlite3_close(third);
}

// Counts the times that a connection takes the lock of a reader.
int lock_cycles = 0;
int CountingFcntl(int file, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  const auto* lock = static_cast<const struct flock*>(argument);
  if (command == F_SETLK && lock->l_type == F_RDLCK && lock->l_len > 1) ++lock_cycles;
  return fcntl(file, command, argument);
}

// Of a decision on a file in rollback mode, where each is a call of the system.
void LockCyclesOfADecision(benchmark::State& state) {
  AppDatabase database;
  database.Sql("PRAGMA journal_mode = DELETE");
  sqlite3_vfs* vfs = sqlite3_vfs_find("unix");
  vfs->xSetSystemCall(vfs, "fcntl", reinterpret_cast<sqlite3_syscall_ptr>(CountingFcntl));
  const struct {
    const char* name;
    const char* which;
    bool by_name, by_digest;
  } kKinds[] = {{"unknown", kBlocked, false, false},
                {"blocked_by_name", kBlocked, true, true},
                {"blocked_by_digest", kBlocked, false, true},
                {"monitored_by_name", kMonitored, true, true},
                {"monitored_by_digest", kMonitored, false, true}};
  for ([[maybe_unused]] auto _ : state) {
    for (const auto& kind : kKinds) {
      const auto programs = database.Programs(kind.which, kind.by_name, kind.by_digest);
      lock_cycles = 0;
      for (const Program& program : programs) DecideOurs(database.session(), program);
      state.counters[kind.name] = lock_cycles / static_cast<double>(programs.size());
    }
  }
  vfs->xSetSystemCall(vfs, "fcntl", nullptr);
}

// A process that replaces a table of 20,000 wide rows over and over until it is killed. Made before
// the parent opens a database, which must not be carried into another process.
class Synchroniser {
 public:
  Synchroniser() {
    void* shared =
        mmap(nullptr, sizeof *rounds_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED || pipe(pipe_) != 0) std::abort();
    rounds_ = new (shared) std::atomic<int>(0);
    child_ = fork();
    if (child_ == 0) Run();
  }
  ~Synchroniser() {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
    for (const int end : pipe_) close(end);
    munmap(rounds_, sizeof *rounds_);
  }
  void Start(const std::wstring& path) {
    const std::size_t size = path.size() * sizeof(wchar_t);
    if (write(pipe_[1], path.data(), size) != static_cast<ssize_t>(size)) std::abort();
  }
  int rounds() const { return *rounds_; }

 private:
  [[noreturn]] void Run() {
    wchar_t path[260] = {};
    if (read(pipe_[0], path, sizeof path - sizeof *path) <= 0) _exit(1);
    const std::string json = bench::Devices(20000);
    CPolicyDB db("60718", path, SQLITE_OPEN_READWRITE, 5000);
    while (db.Transaction(TRANSACTION_BEGIN) && db.ClearAndAddDevices(json.c_str()) &&
           db.Transaction(TRANSACTION_COMMIT)) {
      ++*rounds_;
    }
    _exit(1);
  }

  int pipe_[2];
  std::atomic<int>* rounds_;  // In memory that both processes see.
  pid_t child_;
};

double Microseconds(const std::function<void()>& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
      .count();
}

// Decisions for some seconds while another process writes, with a pause between them. One that
// learns meets a program by its name whose digest is new every time.
void DecisionUnderSynchronisation(benchmark::State& state, bool learns,
                                  std::chrono::microseconds pause) {
  Synchroniser synchroniser;
  AppDatabase database;
  auto programs = database.Programs(kBlocked, true, true);
  synchroniser.Start(database.path());
  std::vector<double> times;
  int failed = 0;
  for ([[maybe_unused]] auto _ : state) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(state.range(0));
    while (std::chrono::steady_clock::now() < end) {
      Program& program = programs[times.size() % programs.size()];
      if (learns) {
        const auto number = static_cast<std::uint32_t>(times.size());
        std::memcpy(program.md5.data(), &number, sizeof number);
      }
      times.push_back(Microseconds([&] { failed += !DecideOurs(database.session(), program); }));
      if (pause.count() > 0) std::this_thread::sleep_for(pause);
    }
  }
  std::sort(times.begin(), times.end());
  state.counters["decisions"] = static_cast<double>(times.size());
  state.counters["median_us"] = times[times.size() / 2];
  state.counters["p99_us"] = times[times.size() * 99 / 100];
  state.counters["worst_us"] = times.back();
  state.counters["failed"] = failed;
  state.counters["synchronised"] = synchroniser.rounds();
}

// A million digests, and a million categories that names of hosts are looked up in, beside ten
// thousand of each.
void Flat(benchmark::State& state) {
  bench::Database few;
  CPolicyDB& db = few.session();
  for (const int rows : {10000, 1000000}) {
    const std::string count = std::to_string(rows);
    few.Sql(
        "DELETE FROM app_checksums; DELETE FROM categories;"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
        count +
        ") INSERT INTO app_checksums SELECT i, 1, randomblob(16), 1 FROM n;"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
        count + ") INSERT INTO categories(id, name) SELECT i, 'category ' || i FROM n");
    int next = 0;
    const auto decide = [&] {
      Program program{"unknown.exe", {}};
      std::memcpy(program.md5.data(), &++next, sizeof next);
      if (DecideOurs(db, program)) std::abort();
    };
    const auto categories = [&] {
      const std::wstring name = L"category " + std::to_wstring(++next * 7919LL % rows + 1);
      if (db.IsPornCategoryPresent({name})) std::abort();
    };
    bench::Compare(
        state, {{"decision_" + count, decide, {}}, {"category_" + count, categories, {}}}, 2000);
  }
}

BENCHMARK_CAPTURE(Decision, unknown, kBlocked, false, false)->Iterations(1);
BENCHMARK_CAPTURE(Decision, blocked_by_name, kBlocked, true, true)->Iterations(1);
BENCHMARK_CAPTURE(Decision, blocked_by_digest, kBlocked, false, true)->Iterations(1);
BENCHMARK_CAPTURE(Decision, monitored_by_name, kMonitored, true, true)->Iterations(1);
BENCHMARK_CAPTURE(Decision, monitored_by_digest, kMonitored, false, true)->Iterations(1);
BENCHMARK(LockCyclesOfADecision)->Iterations(1);
BENCHMARK_CAPTURE(DecisionUnderSynchronisation, settled, false, 0us)->Arg(20)->Iterations(1);
BENCHMARK_CAPTURE(DecisionUnderSynchronisation, settled_each_200_us, false, 200us)
    ->Arg(20)
    ->Iterations(1);
BENCHMARK_CAPTURE(DecisionUnderSynchronisation, learning_each_200_us, true, 200us)
    ->Arg(20)
    ->Iterations(1);
BENCHMARK(Flat)->Iterations(1);

}  // namespace
