// The contact information that is shown to the user: table "support_display_settings", one row.

#ifndef DEVICECARE_SUPPORT_DISPLAY_SETTINGS_H_
#define DEVICECARE_SUPPORT_DISPLAY_SETTINGS_H_

#include "records/record.h"

// Each text is shown when the flag before it is set. The order is that of the columns.
struct tblSupportDisplaySettings {  // NOLINT(clang-analyzer-optin.performance.Padding)
  bool enabled = false;
  bool company_name_enabled = false;
  records::Text company_name;
  bool phone_number_enabled = false;
  records::Text phone_number;
  bool email_address_enabled = false;
  records::Text email_address;
  bool mobile_number_enabled = false;
  records::Text mobile_number;
  records::Text additional_information;
  bool link_1_enabled = false;
  records::Text link_1_text;
  records::Text link_1_url;
  bool link_2_enabled = false;
  records::Text link_2_text;
  records::Text link_2_url;
  bool link_3_enabled = false;
  records::Text link_3_text;
  records::Text link_3_url;
  bool logo_enabled = false;
  records::Text logo;  // The image data as text, as received.
  bool contact_name_enabled = false;
  records::Text contact_name;
};

// The table has no key: DelFromDB empties it and UpdateDB writes every row.
class WEXPOL_API CSupportDisplaySettings
    : public records::Record<CSupportDisplaySettings, tblSupportDisplaySettings> {
 public:
  static const records::Table& Table();
};

#endif  // DEVICECARE_SUPPORT_DISPLAY_SETTINGS_H_
