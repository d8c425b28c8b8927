// Remote control, restart policy, support display and the brand.

#include <cstring>

#include "tests/support/child_process.h"
#include "tests/support/policy_test.h"
#include "wexpol/devicecare/brand.h"
#include "wexpol/devicecare/safe_reboot.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/shared_memory.h"

namespace {

using wexpol::AgentKey;
using wexpol::Brand;

class DeviceCareTest : public PolicyTest {
 protected:
  ~DeviceCareTest() override { wexpol::ReleaseBrandForTesting(); }
};

TEST_F(DeviceCareTest, RemoteControlDocumentsAndUrlParameters) {
  CRemoteControlSetting setting;
  for (const std::int16_t quality : std::initializer_list<std::int16_t>{-1, 1, 3}) {
    setting.stream_quality_id = quality;
    EXPECT_EQ(setting.GetStreamQualityCommandLineOption(), L"&color=64k") << quality;
  }
  const std::string record = R"({"id": 4,"stream_quality_id": 2,"leave_effects": true})";
  for (const char* key : {"remote_control_setting", "premium_remote_control_setting",
                          "remote_control_settings", "premium_remote_control_settings"}) {
    const std::string document = std::string("{\"") + key + "\":" + record + "}";
    EXPECT_TRUE(db().ClearRemoteControlSettings());
    EXPECT_TRUE(db().AddRemoteControlSettings(document.c_str())) << key;
  }
  ASSERT_TRUE(ParseText(setting, record));
  EXPECT_EQ(setting.GetStreamQualityCommandLineOption() + setting.GetLeaveCommandLineOptions(),
            L"&color=high_speed&leave_aero=false&leave_background=false&leave_effects=true");
}

TEST_F(DeviceCareTest, RemoteControlOfTheLocalDevice) {
  Sql("INSERT INTO devices(id,policy_id,allow_remote_connection) "
      "VALUES(0,2,1),(1,2,1),(7,3,0),(8,4,1);"
      "INSERT INTO policy_services(id,policy_id,service_id) VALUES(11,2,3),(12,3,3);"
      "INSERT INTO premium_remote_control_settings(id,policy_service_id) VALUES(20,11),(21,12)");
  // The local device, its setting, and whether it lets technicians in.
  const long cases[][3] = {{-1, -1, 0}, {0, -1, 0}, {1, 20, 1}, {7, 21, 0}, {8, -1, 1}, {9, -1, 0}};
  for (const auto& [device, setting, allowed] : cases) {
    if (device != -1) CDeviceInfo::WriteDeviceID(device);
    CRemoteControlSetting record;
    EXPECT_EQ(db().GetRemoteControlSettingIdForThisDevice(), setting) << device;
    EXPECT_EQ(db().GetRemoteControlSetting(&record), setting != -1) << device;
    EXPECT_EQ(record.id, setting) << device;
    EXPECT_EQ(db().IsVncConnectionAllowed(), allowed != 0) << device;
  }
}

TEST_F(DeviceCareTest, RestartCommandLine) {
  const auto line = [](const std::string& members, Brand brand, bool under_system,
                       const wchar_t* title, const wchar_t* service) {
    CRestartPolicySettings policy;
    EXPECT_TRUE(ParseText(policy, R"({"id": 1,"restart_required_option_id": )" + members + "}"));
    return wexpol::SafeRebootCommandLine(policy, brand, under_system, title, service);
  };
  EXPECT_EQ(line("1", Brand::kQel, false, L"Update", nullptr),
            L"-n \"Qel Corvane - Update\" -u \"Qel Antivirus Service\" -power 4 -demo -us  -o 8 ");
  EXPECT_EQ(line("0", Brand::kQel, false, L"Update", nullptr), L"");
  EXPECT_EQ(line("3", Brand::kQel, true, L"", L"S"), L"-n \"Qel Corvane - \" -u \"S\" -power 4 ");

  const std::string extend = R"(2,"user_extend_time": 30,"user_cancel_timeout_restart": true,)"
                             R"("display_dialog_countdown": 300,"display_system_countdown": )";
  const std::pair<std::string, std::wstring> cases[] = {
      {"1", L" -o 8 "},
      {"2", L"-w -1 -o 1 -s -1 -m -1 "},
      {extend + R"(0,"force_action_time": 60,"user_cancel_timeout_logs_off": true)",
       L"-i 30 -o 7 -s 300 -m 60 "},
      {extend + R"(15,"user_can_extend_time": false)", L"-w 15 -o 4 -s 300 -m -1 "},
      {R"(2,"user_extend_time": 0)", L"-w -1 -o 1 -s -1 -m -1 "},
      {R"(2,"user_extend_time": 1)", L"-i 1 -w -1 -o 1 -s -1 -m -1 "},
  };
  const std::wstring zentra = L"-n \"Zentra Corvane - Restart Required\" -u \"Zentra Antivirus";
  for (const auto& [members, options] : cases) {
    EXPECT_EQ(line(members, Brand::kZentra, true, nullptr, nullptr),
              zentra + L" Service\" -power 4 " + options);
  }
  EXPECT_TRUE(wexpol::IsProcessRunningAsServiceUnderSYSTEM(L"SYSTEM"));
  EXPECT_FALSE(wexpol::IsProcessRunningAsServiceUnderSYSTEM(L"system"));
}

TEST_F(DeviceCareTest, StoredRestartPolicyAndSupportDisplay) {
  CRestartPolicySettings policy;
  EXPECT_FALSE(db().IsSupportDisplaySettingsAvailable());
  EXPECT_TRUE(db().ClearAndAddRestartPolicySettings(R"({"id": 9})"));
  EXPECT_TRUE(db().GetRestartPolicySettings(&policy));
  EXPECT_TRUE(policy.user_can_extend_time);
  EXPECT_TRUE(db().ClearAndAddSupportDisplaySettings("{}"));  // No key is required.
  EXPECT_TRUE(db().IsSupportDisplaySettingsAvailable());
}

// The maker that a command line of this process names.
std::wstring Maker() {
  std::wstring line;
  CRestartPolicySettings().GetIvantiSafeRebootCommandLineOptions(line, L"T", nullptr);
  return line.substr(4, line.find(L' ', 4) - 4);
}

// Succeeds when the block holds brand 6 of "Shared".
const ChildFunction kSeesBlock("sees_brand_block", [](const Arguments&) {
  const auto info = wexpol::ReadBrandInfo();
  return info && info->brand_id == 6 && info->product_name == L"Shared" ? 0 : 1;
});

TEST_F(DeviceCareTest, BrandBlockIsFilledByItsCreatorAndTakenAsItIs) {
  EXPECT_EQ(wexpol::ReadBrandInfo()->product_name, L"Corvane Agent");
  wexpol::ReleaseBrandForTesting();
  ASSERT_TRUE(wexpol::WriteText(AgentKey::kClass, L"PN", std::wstring(100, L'x')));
  EXPECT_EQ(wexpol::ReadBrandInfo()->product_name, std::wstring(80, L'x'));
  wexpol::ReleaseBrandForTesting();
  ASSERT_TRUE(wexpol::WriteDword(AgentKey::kAgent, L"BID", 6) &&
              wexpol::WriteText(AgentKey::kClass, L"PN", L"Shared"));
  EXPECT_EQ(Maker(), L"Qel");
  const wexpol::NamedMapping block(L"Global\\LumoraBrandInfo", 168);
  ASSERT_TRUE(block.data() && !block.created());
  EXPECT_EQ(std::memcmp(block.data(), u"\6\0Shared\0", 20), 0);
  ASSERT_TRUE(wexpol::WriteDword(AgentKey::kAgent, L"BID", 1));
  ChildProcess first(environment().folder(), "sees_brand_block");
  ChildProcess second(environment().folder(), "sees_brand_block");
  EXPECT_EQ(Join(first.Succeeded(), second.Succeeded()), "1 1");
}

TEST_F(DeviceCareTest, BrandOfAHostileBlock) {
  const wexpol::NamedMapping block(L"Global\\LumoraBrandInfo", 168);
  ASSERT_TRUE(block.created());
  std::memset(block.data(), 'A', 168);  // No terminator anywhere.
  EXPECT_EQ(wexpol::ReadBrandInfo()->product_name, std::wstring(80, L'\x4141'));
  EXPECT_EQ(Maker(), L"Zentra");
  for (const std::int32_t id : {4, 5, 6, 7, -1}) {
    std::memcpy(block.data(), &id, sizeof id);
    EXPECT_EQ(Maker(), id == 5 || id == 6 ? L"Qel" : L"Zentra") << id;
  }
}

}  // namespace
