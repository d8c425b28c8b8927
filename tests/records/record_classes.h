// Every record class, for what must hold of all of them.

#ifndef WEXPOL_TESTS_RECORDS_RECORD_CLASSES_H_
#define WEXPOL_TESTS_RECORDS_RECORD_CLASSES_H_

#include "wexpol.h"

namespace internal {

template <typename... Records>
struct RecordClasses {
  template <typename Visitor>
  static void ForEach(const Visitor& visitor) {
    (visitor.template operator()<Records>(), ...);
  }
};

using AllRecordClasses =
    RecordClasses<CAccount, CDevice, CNic, CLogin, CLoginDetail, CNetwork, CDeviceGroup, CCategory,
                  CFilterSetting, CFilterUrl, CFilterCategory, CFilterProxyPort, CProxyPort,
                  CSafeSearchParameter, CIcatKeyword, CNeverBlockApp, CNeverBlockDomain,
                  CSwgSettings, CApp, CAppFile, CAppChecksum, CAppControl, CAppControlApp, CPolicy,
                  CAuthLog, CService, CPolicyService, CDeviceService, CServiceConfiguration,
                  CGlobalConfiguration, CDeviceSubserviceVersion>;

}  // namespace internal

// Calls visitor.operator()<Record>() for each.
template <typename Visitor>
void ForEachRecordClass(const Visitor& visitor) {
  internal::AllRecordClasses::ForEach(visitor);
}

#endif  // WEXPOL_TESTS_RECORDS_RECORD_CLASSES_H_
