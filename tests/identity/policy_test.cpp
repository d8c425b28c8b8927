// Policies, the three forms of a password, the encrypted proxy password, and the attempts' log.

#include "wexpol/identity/policy.h"

#include <openssl/evp.h>

#include "tests/support/policy_test.h"
#include "wexpol/identity/password.h"

#ifdef __SANITIZE_ADDRESS__
// Of the sanitizer's interface, whose header not every compiler brings.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*on_allocation)(const volatile void*,
                                                                               std::size_t),
                                                         void (*on_free)(const volatile void*));
extern "C" std::size_t __sanitizer_get_allocated_size(const volatile void* block);
#endif

namespace {

class PolicyTableTest : public PolicyTest {
 protected:
  void SetUp() override {
    Sql("INSERT INTO devices(id,policy_id,token) VALUES(3,70,'t');"
        "INSERT INTO policies(id,name) VALUES(70,'first'),(7,'second');"
        "INSERT INTO logins(id,device_id,name,policy_id) VALUES(1,3,'ann',7),(2,3,'bob',NULL),"
        "(3,4,'eve',7)");
  }

  int Check(const std::string& stored, const wchar_t* entered, short type = 0) {
    Sql("UPDATE policies SET uninstall_password='only this',override_password=" + stored);
    return db().IsValidPassword(entered, 1, 7, type);
  }
};

TEST_F(PolicyTableTest, PolicyOfALogin) {
  // "eve" is known on another device only.
  EXPECT_EQ(Join(db().GetPolicyId(L"ann"), db().GetPolicyId(L"bob"), db().GetPolicyId(L"eve"),
                 db().GetPolicyId(L"x' OR '1'='1")),
            "7 -1 70 70");
  CPolicy policy;
  EXPECT_TRUE(policy.GetDefaultPolicy(handle()));
  EXPECT_STREQ(policy.name, "first");
  EXPECT_TRUE(db().GetPolicy(policy, 7));
  EXPECT_STREQ(policy.name, "second");
  EXPECT_TRUE(db().ClearAndAddPolicies("[]"));
  EXPECT_EQ(db().GetPolicyId(L"eve"), -1);
  Sql("UPDATE devices SET token=NULL");
  CDeviceInfo::WriteDeviceID(-1L);
  EXPECT_EQ(db().GetPolicyId(L"ann"), -1) << "without a local device";
}

TEST_F(PolicyTableTest, Passwords) {
  for (const char* fits : {"'öffne/dich'", "'f32a14449502a61169beb53826ff2c9a'",
                           "'F32A14449502A61169BEB53826FF2C9A'", "'f21490a16bb32f29'"}) {
    EXPECT_EQ(Check(fits, L"öffne/dich"), PASSWORD_VALID) << fits;
    EXPECT_EQ(Check(fits, L"öffne/dich "), PASSWORD_INVALID) << fits;
    EXPECT_EQ(Check(fits, nullptr), PASSWORD_INVALID) << fits;
    EXPECT_EQ(Check(fits, L"only this", 5), PASSWORD_VALID) << fits;
  }
  for (const char* fails :
       {"NULL", "''", "'Öffne/dich'", "'öffne/dic'", "'f32a14449502a61169beb53826ff2c9'",
        "'f32a14449502a61169beb53826ff2c9b'", "'f32a14449502a61169beb53826ff2c9a0'",
        "'g32a14449502a61169beb53826ff2c9a'", "'3a4452619e586fca'" /* the second digits */}) {
    EXPECT_EQ(Check(fails, L"öffne/dich"), PASSWORD_INVALID) << fails;
  }
  EXPECT_EQ(Check("''", L""), PASSWORD_INVALID);
  EXPECT_EQ(db().IsValidPassword(L"", 0, 71, 0), PASSWORD_NO_POLICY);
  Sql("ALTER TABLE policies DROP COLUMN override_password");
  EXPECT_EQ(db().IsValidPassword(L"", 0, 7, 0), PASSWORD_DB_ERROR);
}

TEST(Password, WithoutMd5OnlyTheClearTextFits) {
  const auto missing = [](const void*, std::size_t, wexpol::Md5Digest*) { return false; };
  EXPECT_TRUE(wexpol::FitsPassword(L"d41d8cd98f00b204e9800998ecf8427e", L""));
  EXPECT_FALSE(wexpol::FitsPassword(L"d41d8cd98f00b204e9800998ecf8427e", L"", missing));
  EXPECT_TRUE(wexpol::FitsPassword(L"clear", L"clear", missing));
}

// As the console encrypts.
std::wstring Encrypt(const std::string& plain, std::string key) {
  const unsigned char vector[] = {0x86, 0x5F, 0x1A, 0xC3, 0x4B, 0xD0, 0x97, 0x2E};
  key.resize(24);
  unsigned char bytes[2000], text[3000];
  int size = 0, last = 0;
  EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
  const auto* input = reinterpret_cast<const unsigned char*>(plain.data());
  EVP_EncryptInit_ex(context, EVP_des_ede3_cbc(), nullptr,
                     reinterpret_cast<const unsigned char*>(key.data()), vector);
  EVP_EncryptUpdate(context, bytes, &size, input, static_cast<int>(plain.size()));
  EVP_EncryptFinal_ex(context, bytes + size, &last);
  EVP_CIPHER_CTX_free(context);
  EVP_EncodeBlock(text, bytes, size + last);
  return wexpol::Utf8ToWide(reinterpret_cast<const char*>(text));
}

TEST(ProxyPassword, IsDecrypted) {
  for (const std::string key : {"", "key", "0123456789abcdefghijklmnopqrstuvwxyz", "schlüßel"}) {
    for (const std::string& plain :
         {std::string(), std::string("8 bytes!"), std::string("päß→🔑"), std::string(255, 'x')}) {
      CPolicy policy;
      EXPECT_TRUE(policy.SetProxyServerPasswordEncrypted((Encrypt(plain, key) + L"\r\n").c_str(),
                                                         wexpol::Utf8ToWide(key)));
      EXPECT_EQ(policy.GetProxyServerPassword(), plain);
    }
  }
}

TEST(ProxyPassword, WhatCannotBeDecryptedLeavesTheOldOne) {
  const std::wstring good = Encrypt("Sommer-2024!", "key"),
                     whole = Encrypt("16 bytes of text", "key");
  std::vector<std::wstring> bad = {good + L"=",
                                   good + L"AAAA",
                                   whole + L"A",
                                   whole + L"====",
                                   L"=" + good.substr(1),
                                   L"\r\n" + good.substr(2),
                                   good.substr(0, 4) + L"ü" + good,
                                   std::wstring(100000, L'A'),
                                   Encrypt("\xff\xfe", "key"),
                                   Encrypt(std::string(256, 'x'), "key"),
                                   Encrypt("a", "kez")};
  for (std::size_t size = 0; size < good.size(); ++size) bad.push_back(good.substr(0, size));
  CPolicy policy;
  EXPECT_FALSE(policy.SetProxyServerPasswordEncrypted(nullptr, L"key"));
  EXPECT_FALSE(policy.SetProxyServerPasswordEncrypted(bad[0].c_str(), L"key"));
  policy.SetProxyServerPassword(L"old");
  for (const std::wstring& text : bad) {
    EXPECT_TRUE(policy.SetProxyServerPasswordEncrypted(text.c_str(), L"key"));
    EXPECT_FALSE(policy.IsProxyServerPasswordDifferent(L"old")) << wexpol::WideToUtf8(text);
  }
}

TEST(PolicyTextsTest, DifferWhereOneIsMissingOrAnother) {
  using Text = wexpol::WideText tblPolicy::*;
  const std::tuple<Text, bool (CPolicy::*)(const wchar_t*) const, std::string (CPolicy::*)() const>
      cases[] = {
          {&CPolicy::proxy_server_name, &CPolicy::IsProxyServerNameDifferent,
           &CPolicy::GetProxyServerName},
          {&CPolicy::proxy_server_username, &CPolicy::IsProxyServerUsernameDifferent,
           &CPolicy::GetProxyServerUsername},
          {&CPolicy::proxy_server_password, &CPolicy::IsProxyServerPasswordDifferent,
           &CPolicy::GetProxyServerPassword},
          {&CPolicy::proxy_script, &CPolicy::IsProxyScriptDifferent, &CPolicy::GetProxyScript}};
  for (const auto& [text, differs, get] : cases) {
    CPolicy policy;
    EXPECT_EQ(Join((policy.*differs)(nullptr), (policy.*differs)(L"")), "0 1");
    policy.*text = L"\u00e4";
    EXPECT_EQ(Join((policy.*differs)(L"\u00e4"), (policy.*differs)(L"\u00c4"),
                   (policy.*differs)(nullptr)),
              "0 1 1");
    EXPECT_EQ((policy.*get)(), "\u00e4");
  }
}

#ifdef __SANITIZE_ADDRESS__
// What is looked for in the memory that is given back, and how often it was there.
std::vector<std::string_view> secrets;
int found_secrets = 0;

void OnFree(const volatile void* block) {
  if (secrets.empty() || !block) return;
  const auto* data = static_cast<const char*>(const_cast<const void*>(block));
  const std::string_view bytes(data, __sanitizer_get_allocated_size(data));
  for (const std::string_view secret : secrets) found_secrets += bytes.find(secret) != bytes.npos;
}

std::string_view BytesOf(const std::wstring& text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof text[0]};
}

TEST_F(PolicyTableTest, SecretsAreWiped) {
  const std::string entered = "a rather long password that is entered";
  const std::wstring wide = wexpol::Utf8ToWide(entered), key = L"0123456789abcdefghijklmn",
                     stored = L"0cc175b9c0f1b6a831c399e269772661",
                     cipher = Encrypt("a plain text of some length", wexpol::WideToUtf8(key));
  Sql("UPDATE policies SET override_password='" + wexpol::WideToUtf8(stored) + "'");
  CPolicy policy;
  EXPECT_NE(
      __sanitizer_install_malloc_and_free_hooks([](const volatile void*, std::size_t) {}, &OnFree),
      0);
  secrets = {entered, BytesOf(stored), BytesOf(key), "0123456789abcdefghijklmn",
             "a plain text of some length"};
  EXPECT_EQ(CPolicy::IsValidPassword(wide.c_str(), 0, 7, handle(), 0), PASSWORD_INVALID);
  EXPECT_THROW(wexpol::FitsPassword(stored, wide, [](auto...) -> bool { throw std::bad_alloc(); }),
               std::bad_alloc);
  EXPECT_TRUE(policy.SetProxyServerPasswordEncrypted(cipher.c_str(), key));
  secrets.clear();
  EXPECT_EQ(found_secrets, 0);
}
#endif

using AuthLogTest = PolicyTest;

TEST_F(AuthLogTest, AttemptsAreLoggedOncePerTableId) {
  CAuthLog log;
  EXPECT_FALSE(db().GetAuthLog(log, 5));
  clock().SetLocalOffset(3600);
  const SYSTEMTIME time = {2024, 2, 0, 29, 23, 59, 58, 999}, never = {2023, 2, 0, 29, 0, 0, 0, 0};
  EXPECT_FALSE(db().SetAuthLog(true, 5, &never));
  EXPECT_TRUE(db().SetAuthLog(false, 5, nullptr));
  EXPECT_TRUE(db().SetAuthLog(true, 0x7FFFFFFFFFFFFFFF, &time));
  EXPECT_TRUE(db().SetAuthLog(true, 5, nullptr));
  EXPECT_EQ(Row("SELECT * FROM auth_logs WHERE table_id=5"), "1|20240313130000|1|5");
  ASSERT_TRUE(db().GetAuthLog(log, 0x7FFFFFFFFFFFFFFF));
  EXPECT_EQ(log.date_time.wDayOfWeek, 4);
  EXPECT_EQ(Json(log),
            "{\"id\": 2,\"date_time\": 20240229235958,\"success\": true,"
            "\"table_id\": 9223372036854775807}");
  for (const char* date : {"20240229235958", "20230229000000", "-1", "\"20240101000000\"", "0"}) {
    ASSERT_TRUE(ParseText(log, std::string(R"({"table_id":5,"date_time":)") + date + "}"));
    EXPECT_EQ(Json(log).find(R"("date_time": 20240229235958)") != std::string::npos,
              *date == '2' && date[3] == '4');
  }
  Sql("DROP TABLE auth_logs");
  EXPECT_FALSE(db().SetAuthLog(true, 5, nullptr));
  EXPECT_FALSE(db().GetAuthLog(log, 5));
  EXPECT_EQ(db().GetError(), R"({"code": 1,"desc": "no such table: auth_logs"})");
}

TEST_F(AuthLogTest, SecondsUntilTheNextAttempt) {
  CAuthLog log;
  EXPECT_EQ(log.GetSecondsRemaining(60, 5, handle()), 0);
  db().SetAuthLog(false, 5, nullptr);
  EXPECT_EQ(log.GetSecondsRemaining(0, 5, handle()), 5);
  db().SetAuthLog(true, 5, nullptr);
  for (const auto& [step, expected] :
       {std::pair(0, 60), std::pair(1, 59), std::pair(59, 0), std::pair(1, 0), std::pair(-62, 0)}) {
    clock().Advance(step);
    EXPECT_EQ(log.GetSecondsRemaining(60, 5, handle()), expected) << step;
  }
  for (const std::string stored : {"-1", "NULL", "20240230000000", "9223372036854775807", "'x'"}) {
    Sql("UPDATE auth_logs SET date_time=" + stored);
    EXPECT_EQ(log.GetSecondsRemaining(60, 5, handle()), 0) << stored;
    EXPECT_EQ(log.date_time.wYear, 0);
  }
}

}  // namespace
