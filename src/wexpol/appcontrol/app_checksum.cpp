#include "wexpol/appcontrol/app_checksum.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAppChecksum::id>("id", wexpol::kKey),
    Column<&tblAppChecksum::app_id>("app_id"),
    Column<&tblAppChecksum::md5>("md5", wexpol::kRequired),
    Column<&tblAppChecksum::control_flag>("control_flag", wexpol::kAlwaysSet),
};

// Names three parameters on purpose: the bind of the fourth must keep failing.
constexpr char kInsert[] = "INSERT INTO app_checksums(id,app_id,md5) VALUES(?,?,?)";

}  // namespace

const wexpol::Table& CAppChecksum::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("app_checksums", "app_checksum", kColumns, {.insert = kInsert});
  return table;
}
