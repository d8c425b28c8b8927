#include "services/policy_service.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblPolicyService::id>("id", records::kKey | records::kRequired),
    Column<&tblPolicyService::policy_id>("policy_id"),
    Column<&tblPolicyService::service_id>("service_id"),
    Column<&tblPolicyService::enabled>("enabled"),
};

}  // namespace

const records::Table& CPolicyService::Table() {
  static const records::Table& table =
      *new records::Table("policy_services", "policy_service", kColumns);
  return table;
}
