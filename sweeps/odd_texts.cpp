// Odd texts for every question that takes a text.

#include <chrono>

#include "sweeps/store.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/statement.h"

namespace {

using namespace sweeps;

// A null text, and texts that statements, formats, buffers and encodings have trouble with.
std::vector<std::optional<std::string>> Texts(Random& random, long count) {
  std::vector<std::optional<std::string>> texts = {std::nullopt,
                                                   "",
                                                   " ",
                                                   "'",
                                                   "''",
                                                   "\"",
                                                   "' OR 1=1 --",
                                                   "'; DELETE FROM devices; --",
                                                   "%s%s%n",
                                                   "%99999999d",
                                                   "*",
                                                   "?",
                                                   "[",
                                                   "{",
                                                   "[[]]",
                                                   "[{\"id\": \"x\"}]",
                                                   "null",
                                                   "-1",
                                                   "1e999",
                                                   "\\",
                                                   "/",
                                                   "..\\..\\x.exe",
                                                   "a\nb",
                                                   "\r",
                                                   "\t",
                                                   "\x01\x7f",
                                                   "\xff\xfe",
                                                   "\xc0\x80",
                                                   "\xed\xa0\x80",
                                                   "\xf4\x90\x80\x80",
                                                   "\xf0\x9f\x98\x80",
                                                   "\xe2\x80\xae",
                                                   "id",
                                                   "rowid",
                                                   "name; --",
                                                   "*, 1",
                                                   std::string(259, 'a'),
                                                   std::string(260, '\\'),
                                                   std::string(894, 'x'),
                                                   std::string(895, 'x'),
                                                   std::string(100000, 'n'),
                                                   std::string(3000, '['),
                                                   "https://x/?" + std::string(70000, '&')};
  while (static_cast<long>(texts.size()) < count) {
    std::string text(static_cast<std::size_t>(Below(random, 40)), ' ');
    for (char& c : text) c = static_cast<char>(Below(random, 2) ? random() : '%' + random() % 24);
    texts.push_back(text);
  }
  return texts;
}

// What a question is given: a text in both widths, and the same as rows of the registry's kind.
struct Given {
  const char* narrow;
  const wchar_t* wide;
  int size;
};

using Question = void (*)(CPolicyDB& db, const Given& given);

template <auto kList, typename Record>
void ListBy(CPolicyDB& db, const Given& given) {
  std::list<Record*> rows;
  (db.*kList)(rows, given.narrow, 1);
  for (Record* each : rows) delete each;
}

std::set<std::wstring> OneName(const Given& given) { return {given.wide ? given.wide : L""}; }

// None of them changes what the file holds.
constexpr Question kQuestions[] = {
    [](CPolicyDB& db, const Given& g) { db.GetLoginId(g.wide); },
    [](CPolicyDB& db, const Given& g) { db.GetPolicyId(g.wide); },
    [](CPolicyDB& db, const Given& g) { db.CheckLoginDetails(g.wide, g.narrow); },
    [](CPolicyDB& db, const Given& g) { db.CheckLoginDetails(L"OFFICE\\anna", g.narrow); },
    [](CPolicyDB& db, const Given& g) { db.IsValidPassword(g.wide, 0, 501, 0); },
    [](CPolicyDB& db, const Given& g) { db.IsValidPassword(g.wide, 0, 502, 1); },
    [](CPolicyDB&, const Given& g) {
      CPolicy().SetProxyServerPasswordEncrypted(g.wide, L"key");
      CPolicy().SetProxyServerPasswordEncrypted(L"AAAAAAAAAAA=", g.wide ? g.wide : L"");
    },
    [](CPolicyDB& db, const Given& g) { db.AnyMoviesAndTvCategories(OneName(g)); },
    [](CPolicyDB& db, const Given& g) { db.IsPornCategoryPresent(OneName(g)); },
    [](CPolicyDB& db, const Given& g) {
      const auto* md5 = reinterpret_cast<const unsigned char*>(g.narrow);
      CAppControlInfo info;
      info.login_id = 9001;
      db.IsAppControlled(info, g.narrow, nullptr, 0);
      db.IsAppMonitored(info, g.narrow, nullptr, 0);
      db.IsAppControlled(info, nullptr, md5, g.size);
      db.IsAppMonitored(info, "none.exe", md5, g.size);
    },
    [](CPolicyDB& db, const Given& g) {
      std::string value;
      bool flag = false;
      db.GetServiceConfiguration(value, g.narrow, 0);
      db.GetServiceConfiguration(flag, g.narrow, -1);
    },
    [](CPolicyDB& db, const Given& g) { db.SetDeviceServiceInfo(-5, g.narrow, 1); },
    [](CPolicyDB& db, const Given& g) { db.IsOnlineBackupAllowed(g.wide); },
    [](CPolicyDB& db, const Given& g) {
      std::map<long, long> timers;
      db.GetAlertCheckTimerValues(timers, g.narrow, -7, nullptr);
    },
    ListBy<&CPolicyDB::GetDevices, CDevice>,
    ListBy<&CPolicyDB::GetLogins, CLogin>,
    ListBy<&CPolicyDB::GetCategories, CCategory>,
    ListBy<&CPolicyDB::GetAlertEventTypes, CAlertEventType>,
    ListBy<&CPolicyDB::GetNics, CNic>,
    [](CPolicyDB&, const Given& g) {
      CInstallInvite invite(1, g.wide);
      invite.link = g.narrow;
      std::wstring parameters;
      invite.BuildInstallCmdLineParameters(parameters);
      CInstallInvite::GetAccountId(g.narrow);
    },
    [](CPolicyDB&, const Given& g) {
      REG_TZI_FORMAT zone;
      CTimeZone::ConvertCommaSeparatedWindowsDataToTZI(&zone, g.narrow);
    },
    [](CPolicyDB&, const Given& g) {
      CAuthInfo info;
      info.ConvertAuthUrlToWide(g.narrow);
      info.token = g.wide;
      info.header_name = L"X-Device-Token";
      std::wstring header;
      info.BuildHttpHeader(header);
    },
    [](CPolicyDB&, const Given& g) {
      CPolicyDB other(kAccessCode, g.wide, kReadWrite, 0);
      other.OpenDB(g.wide, kReadWrite, 0);
    },
    [](CPolicyDB&, const Given& g) {
      try {
        const CPolicyDB other(g.narrow, kReadWrite, 0);
      } catch (int) {
      }
    },
    // Documents that are refused, or hold nothing.
    [](CPolicyDB& db, const Given& g) { db.AddLogins(g.narrow); },
    [](CPolicyDB& db, const Given& g) { db.UpdateDevices(g.narrow); },
    [](CPolicyDB& db, const Given& g) { db.UpdateNics(g.narrow); },
    [](CPolicyDB& db, const Given& g) {
      CDevice device;
      db.AddDevice(&device, g.narrow);
    },
    [](CPolicyDB& db, const Given& g) {
      CFilterUrl url;
      db.AddFilterUrl(&url, g.narrow);
    },
    [](CPolicyDB& db, const Given& g) {
      CDeviceSubserviceVersion version;
      db.UpdateDeviceSubserviceVersion(&version, g.narrow);
    },
};

// Another one when somebody else has written to the file.
int Version(sqlite3* db) {
  wexpol::Statement version(db, "PRAGMA data_version");
  return version.StepRow() ? version.Int(0) : -1;
}

void Run(const Options& options, Figures& figures) {
  Random random(options.seed);
  constexpr long kCount = static_cast<long>(std::size(kQuestions));
  const auto texts = Texts(random, options.size / kCount);
  const Store store;
  StoreSamples();
  {
    CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 100);
    std::map<long, long> started;  // So that a question of them starts none.
    db.GetAlertCheckTimerValues(started, nullptr, 0, nullptr);
  }
  const auto describe = [&](long i) {
    const auto& text = texts[static_cast<std::size_t>(i / kCount)];
    return "question " + std::to_string(i % kCount) + ", " +
           (text ? '"' + text->substr(0, 40) + '"' : "null");
  };
  RunIsolated(
      static_cast<long>(texts.size()) * kCount, figures, describe, [&](long i, Figures& each) {
        const auto& text = texts[static_cast<std::size_t>(i / kCount)];
        const std::wstring wide = wexpol::Utf8ToWide(text.value_or(""));
        CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 100);
        const Handle raw = OpenRaw();
        const int version = Version(raw.get());
        const auto start = std::chrono::steady_clock::now();
        kQuestions[i % kCount](db, {text ? text->c_str() : nullptr, text ? wide.c_str() : nullptr,
                                    text ? static_cast<int>(text->size()) : 0});
        if (std::chrono::steady_clock::now() - start > std::chrono::seconds(5)) {
          each.Add(kLockKept, describe(i) + ": takes seconds");
        }
        if (Version(raw.get()) != version) each.Add(kMixed, describe(i));
        if (db.AddAlertSent(1) != SQLITE_DONE || db.RemoveAlertSent(1) != SQLITE_DONE) {
          each.Add(kLockKept, describe(i));
        }
      });
}

const Sweep kSweep("texts", 6000, 1300, &Run);

}  // namespace
