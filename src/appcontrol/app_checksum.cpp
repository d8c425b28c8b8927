#include "appcontrol/app_checksum.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblAppChecksum::id>("id", records::kKey),
    Column<&tblAppChecksum::app_id>("app_id"),
    Column<&tblAppChecksum::md5>("md5", records::kRequired),
    Column<&tblAppChecksum::control_flag>("control_flag", records::kAlwaysSet),
};

// Names three parameters on purpose: the bind of the fourth must keep failing.
constexpr char kInsert[] = "INSERT INTO app_checksums(id,app_id,md5) VALUES(?,?,?)";

}  // namespace

const records::Table& CAppChecksum::Table() {
  static const records::Table& table =
      *new records::Table("app_checksums", "app_checksum", kColumns, {.insert = kInsert});
  return table;
}
