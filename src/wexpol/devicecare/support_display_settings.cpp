#include "wexpol/devicecare/support_display_settings.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblSupportDisplaySettings::enabled>("enabled"),
    Column<&tblSupportDisplaySettings::company_name_enabled>("company_name_enabled"),
    Column<&tblSupportDisplaySettings::company_name>("company_name"),
    Column<&tblSupportDisplaySettings::phone_number_enabled>("phone_number_enabled"),
    Column<&tblSupportDisplaySettings::phone_number>("phone_number"),
    Column<&tblSupportDisplaySettings::email_address_enabled>("email_address_enabled"),
    Column<&tblSupportDisplaySettings::email_address>("email_address"),
    Column<&tblSupportDisplaySettings::mobile_number_enabled>("mobile_number_enabled"),
    Column<&tblSupportDisplaySettings::mobile_number>("mobile_number"),
    Column<&tblSupportDisplaySettings::additional_information>("additional_information"),
    Column<&tblSupportDisplaySettings::link_1_enabled>("link_1_enabled"),
    Column<&tblSupportDisplaySettings::link_1_text>("link_1_text"),
    Column<&tblSupportDisplaySettings::link_1_url>("link_1_url"),
    Column<&tblSupportDisplaySettings::link_2_enabled>("link_2_enabled"),
    Column<&tblSupportDisplaySettings::link_2_text>("link_2_text"),
    Column<&tblSupportDisplaySettings::link_2_url>("link_2_url"),
    Column<&tblSupportDisplaySettings::link_3_enabled>("link_3_enabled"),
    Column<&tblSupportDisplaySettings::link_3_text>("link_3_text"),
    Column<&tblSupportDisplaySettings::link_3_url>("link_3_url"),
    Column<&tblSupportDisplaySettings::logo_enabled>("logo_enabled"),
    Column<&tblSupportDisplaySettings::logo>("logo"),
    Column<&tblSupportDisplaySettings::contact_name_enabled>("contact_name_enabled"),
    Column<&tblSupportDisplaySettings::contact_name>("contact_name"),
};

}  // namespace

const wexpol::Table& CSupportDisplaySettings::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("support_display_settings", "support_display_setting", kColumns);
  return table;
}
