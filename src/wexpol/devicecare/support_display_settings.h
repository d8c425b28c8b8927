// The contact information that is shown to the user: table "support_display_settings", one row.

#ifndef WEXPOL_DEVICECARE_SUPPORT_DISPLAY_SETTINGS_H_
#define WEXPOL_DEVICECARE_SUPPORT_DISPLAY_SETTINGS_H_

#include "wexpol/records/record.h"

// Each text is shown when the flag before it is set. The order is that of the columns.
struct tblSupportDisplaySettings {  // NOLINT(clang-analyzer-optin.performance.Padding)
  bool enabled = false;
  bool company_name_enabled = false;
  wexpol::Text company_name;
  bool phone_number_enabled = false;
  wexpol::Text phone_number;
  bool email_address_enabled = false;
  wexpol::Text email_address;
  bool mobile_number_enabled = false;
  wexpol::Text mobile_number;
  wexpol::Text additional_information;
  bool link_1_enabled = false;
  wexpol::Text link_1_text;
  wexpol::Text link_1_url;
  bool link_2_enabled = false;
  wexpol::Text link_2_text;
  wexpol::Text link_2_url;
  bool link_3_enabled = false;
  wexpol::Text link_3_text;
  wexpol::Text link_3_url;
  bool logo_enabled = false;
  wexpol::Text logo;  // The image data as text, as received.
  bool contact_name_enabled = false;
  wexpol::Text contact_name;
};

// Whom the user is told to turn to for help.
//
// The table has no key: DelFromDB empties it and UpdateDB writes every row.
class WEXPOL_API CSupportDisplaySettings
    : public wexpol::Record<CSupportDisplaySettings, tblSupportDisplaySettings> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_DEVICECARE_SUPPORT_DISPLAY_SETTINGS_H_
