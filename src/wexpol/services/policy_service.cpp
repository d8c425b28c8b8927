#include "wexpol/services/policy_service.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblPolicyService::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblPolicyService::policy_id>("policy_id"),
    Column<&tblPolicyService::service_id>("service_id"),
    Column<&tblPolicyService::enabled>("enabled"),
};

}  // namespace

const wexpol::Table& CPolicyService::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("policy_services", "policy_service", kColumns);
  return table;
}
