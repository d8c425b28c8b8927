// The code that the pages show to hosts, taken from the pages, on a database of the samples.

#include "pages.h"

#include <gtest/gtest.h>

#include "agent_folder.h"

namespace {

constexpr unsigned char kDigest[16] = {1};

class Provisioned : public AgentFolder {
 protected:
  Provisioned() { Provision(); }
};

class Pages : public Provisioned {
 protected:
  CPolicyDB db_{"60718", SQLITE_OPEN_READWRITE, 2000};
};

TEST_F(Pages, Readme) {
  EXPECT_EQ(page_readme::StoreDevices(db_, "[]"), "");
  EXPECT_EQ(page_readme::StoreDevices(db_, "["), R"({"desc": "Error parsing json"})");
  EXPECT_FALSE(page_readme::MayStart(db_, 9001, "patience.exe", kDigest));
  EXPECT_TRUE(page_readme::MayStart(db_, 9001, "unknown.exe", {2}));
}

TEST_F(Pages, Hosts) {
  EXPECT_TRUE(page_hosts::Open(db_));
  EXPECT_EQ(page_hosts::NamesOfLogins(db_).size(), 3u);
  db_.CloseDB();
  EXPECT_TRUE(page_hosts::Open(db_));
  db_.CloseDB();
  std::filesystem::remove(folder_ / "wexpol.db");
  EXPECT_FALSE(page_hosts::Open(db_));  // There is no backup.
}

TEST_F(Pages, KeepUpToDate) {
  using page_keep_up_to_date::Store;
  std::string error;
  EXPECT_TRUE(Store(db_,
                    {{&CPolicyDB::ClearLogins, &CPolicyDB::AddLogins, "[]"},
                     {nullptr, &CPolicyDB::ClearAndAddApps, "[]"}},
                    error));
  CApp app;
  EXPECT_FALSE(db_.GetApp(app, 1));
  EXPECT_FALSE(Store(db_,
                     {{nullptr, &CPolicyDB::ClearAndAddApps, R"([{"id": 1}])"},
                      {nullptr, &CPolicyDB::ClearAndAddDevices, "none"}},
                     error));
  EXPECT_EQ(error, R"({"desc": "Error parsing json"})");
  EXPECT_FALSE(db_.GetApp(app, 1));
  EXPECT_EQ(page_keep_up_to_date::VersionReport(db_).substr(0, 5), R"({"g":)");
}

TEST_F(Pages, ProcessStart) {
  std::wstring name;
  using page_process_start::Decide;
  EXPECT_EQ(Decide(db_, L"OFFICE\\anna", "patience.exe", kDigest, name), CONTROL_FLAG_BLOCK);
  EXPECT_EQ(Decide(db_, L"OFFICE\\anna", "unknown.exe", {2}, name), CONTROL_FLAG_NONE);
}

TEST_F(Pages, RaiseAnAlert) {
  const auto alerts = page_raise_an_alert::Occurred(db_, 4, "found by the page");
  ASSERT_EQ(alerts.count(202), 1u);
  EXPECT_NE(alerts.at(202).find("found by the page"), std::string::npos);
  page_raise_an_alert::Sent(db_, 202);
  EXPECT_TRUE(page_raise_an_alert::Occurred(db_, 4, "again").empty());
  EXPECT_GE(page_raise_an_alert::NextCheck(db_), 0);
}

TEST_F(Pages, ArmTheScans) {
  const auto next = page_arm_the_scans::NextRun(db_);
  ASSERT_TRUE(next);
  EXPECT_EQ(next->schedule, 1);
  EXPECT_EQ(next->seconds, 0);
}

TEST_F(Pages, NewFile) {
  const std::filesystem::path file = folder_ / "new";
  std::filesystem::create_directory(file);
  Run(WEXPOLCTL, "--root " + file.string() + " init");
  EXPECT_TRUE(page_new_file::MoveTo(db_, (file / "wexpol.db").wstring().c_str()));
  EXPECT_FALSE(page_new_file::MoveTo(db_, (file / "none.db").wstring().c_str()));
}

}  // namespace
