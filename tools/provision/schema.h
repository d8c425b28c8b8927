// The SQL that makes the tables.

#ifndef PROVISION_SCHEMA_H_
#define PROVISION_SCHEMA_H_

namespace provision {

extern const char kSchema[];

}  // namespace provision

#endif  // PROVISION_SCHEMA_H_
