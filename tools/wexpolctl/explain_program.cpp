// wexpolctl explain: the decision at the start of a program, step by step and without learning.

#include <array>
#include <charconv>

#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/explain.h"
#include "wexpol/appcontrol/app_control_info.h"
#include "wexpol/identity/login.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"

namespace wexpolctl {
namespace {

constexpr int kDigestBytes = 16;

// Opens the single steps of the decision.
class Steps : public CAppControlInfo {
 public:
  using CAppControlInfo::IsAppBlocked;
  using CAppControlInfo::IsAppMonitored;
  using CAppControlInfo::LookupChecksum;
  using CAppControlInfo::LookupFile;
};

// What the program is told by; an empty digest is none.
struct Program {
  std::string file;
  std::string digits;
  std::array<unsigned char, kDigestBytes> md5{};

  const char* name() const { return file.empty() ? nullptr : file.c_str(); }
  int md5_length() const { return digits.empty() ? 0 : kDigestBytes; }
};

Program ProgramOf(const Options& options) {
  Program program{options.Text("--file"), options.Text("--md5")};
  bool good = program.digits.empty() || program.digits.size() == std::size_t{2} * kDigestBytes;
  for (std::size_t i = 0; good && i < program.digits.size() / 2; ++i) {
    const char* at = program.digits.data() + 2 * i;
    good = std::from_chars(at, at + 2, program.md5[i], 16).ptr == at + 2;
  }
  if (!good) {
    throw Failure{kUsage, "'" + program.digits + "' is no MD5 digest.",
                  "Write it as 32 hexadecimal digits."};
  }
  return program;
}

// Walks the steps in the order of the decision and notes each one that is reached.
class Walk {
 public:
  Walk(sqlite3* db, Report& report)
      : db_(db),
        listing_(report.AddListing("steps", {"step", "answer", "rule set", "row", "app"})) {}

  // What decided, in words.
  const char* Decide(Steps& info, const Program& program) {
    const char* name = program.name();
    const unsigned char* md5 = program.md5.data();
    const int length = program.md5_length();
    const bool name_known = Note("is the file name known", info.LookupFile(db_, name), nullptr);
    md5_known_ = Note("is the digest known", info.LookupChecksum(db_, md5, length), nullptr);
    if (!name_known && !md5_known_) return "unknown: neither blocked nor monitored";
    by_name_ = Note("blocked by name", info.IsAppBlocked(db_, name), &info);
    if (by_name_) return "blocked by its name";
    if (Note("blocked by digest", info.IsAppBlocked(db_, md5, length), &info)) {
      return "blocked by its digest";
    }
    by_name_ = Note("monitored by name", info.IsAppMonitored(db_, name), &info);
    if (by_name_) return "monitored by its name";
    if (Note("monitored by digest", info.IsAppMonitored(db_, md5, length), &info)) {
      return "monitored by its digest";
    }
    return "neither blocked nor monitored";
  }

  // Whether the agent, which this is not, would now learn the digest.
  bool WouldLearn(const Program& program) const {
    return by_name_ && program.md5_length() > 0 && !md5_known_;
  }

 private:
  bool Note(const char* step, bool answer, const CAppControlInfo* match) {
    if (answer && match) {
      listing_.Add({Text(step), Flag(true), Number(match->app_control_id),
                    Number(match->app_control_app_id), Number(match->app_id)});
    } else {
      listing_.Add({Text(step), Flag(answer), Nothing(), Nothing(), Nothing()});
    }
    return answer;
  }

  sqlite3* db_;
  Listing& listing_;
  bool by_name_ = false;
  bool md5_known_ = false;
};

// The last part of a path of either kind.
std::string NameAlone(const std::string& file) {
  return file.substr(file.find_last_of("/\\") + 1);  // All of it where there is no separator.
}

// Why nothing is blocked; empty when there is a policy that may.
std::string WhyNoPolicy(sqlite3* db, const Steps& info) {
  if (info.policy_id >= 0) return {};
  if (info.login_id < 0) return "Without a login nothing is blocked: give one by --login.";
  const std::string login = "login " + std::to_string(info.login_id);
  if (wexpol::QueryExists(db, "SELECT id FROM logins WHERE id=?", info.login_id)) {
    return "The " + login + " has no policy, so nothing is blocked.";
  }
  return "There is no " + login + ", so nothing is blocked: see 'wexpolctl list logins'.";
}

}  // namespace

ExitCode ExplainProgram(Call& call) {
  const Program program = ProgramOf(call.options);
  Database database(call.database, Database::kAsk);
  sqlite3* db = database.handle();
  const wexpol::ReadScope scope(db);

  Steps info;
  info.login_id = static_cast<std::int32_t>(call.options.Number("--login").value_or(-1));
  info.policy_id = static_cast<std::int32_t>(CLogin::GetPolicyId(db, info.login_id));
  Report& report = call.report;
  report.Add("file", program.file.empty() ? Nothing() : Text(program.file));
  report.Add("digest", program.digits.empty() ? Nothing() : Text(program.digits));
  report.Add("login", info.login_id < 0 ? Nothing() : Number(info.login_id));
  report.Add("policy", info.policy_id < 0 ? Nothing() : Number(info.policy_id));
  if (const std::string why = WhyNoPolicy(db, info); !why.empty()) report.AddLine(why);
  if (const std::string name = NameAlone(program.file); name != program.file) {
    report.AddLine("A program is known by its name alone: ask for --file " + name + ".");
  }
  Walk walk(db, report);
  report.Add("decision", Text(walk.Decide(info, program)));
  report.Add("agent would learn the digest", Flag(walk.WouldLearn(program)));
  if (info.app_id >= 0) {
    report.Add("app",
               Text(wexpol::QueryText(db, "SELECT name FROM apps WHERE id=?", info.app_id).view()));
  }
  return kDone;
}

}  // namespace wexpolctl
