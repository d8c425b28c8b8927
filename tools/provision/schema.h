// The SQL that makes the tables.

#ifndef WEXPOL_PROVISION_SCHEMA_H_
#define WEXPOL_PROVISION_SCHEMA_H_

namespace wexpol {

extern const char kSchema[];

}  // namespace wexpol

#endif  // WEXPOL_PROVISION_SCHEMA_H_
