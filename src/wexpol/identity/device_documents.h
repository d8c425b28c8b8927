// Documents of single devices and interfaces, which have no envelope.

#ifndef WEXPOL_IDENTITY_DEVICE_DOCUMENTS_H_
#define WEXPOL_IDENTITY_DEVICE_DOCUMENTS_H_

#include <string>

class CDevice;
struct sqlite3;

namespace wexpol {

// Each is false, with the error object in `error`, when the document or the engine fails.

// Takes the document of one device, parsed strictly, into `device` and adds its row. A null device
// is a fault of the document.
[[nodiscard]] bool AddDevice(sqlite3* db, CDevice* device, const char* json, std::string& error);

// Updates the rows of one object or of an array of them: what each names. The first that fails ends
// it; the rows before it stay updated. Devices are parsed strictly.
[[nodiscard]] bool UpdateDevices(sqlite3* db, const char* json, std::string& error);
[[nodiscard]] bool UpdateNics(sqlite3* db, const char* json, std::string& error);

}  // namespace wexpol

#endif  // WEXPOL_IDENTITY_DEVICE_DOCUMENTS_H_
