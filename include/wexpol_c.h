/** @file
 * WexPolicy for C and for everything that can call C: what an agent does from its start to its
 * stop. C++ hosts that are built with the library's compiler may use wexpol.h instead.
 *
 * - Texts are UTF-8. Every text argument may be null, malformed or hostile: it then names nothing,
 *   and the operation answers its failure.
 * - A session is used by one thread at a time; every operation takes a null session for a closed
 *   one.
 * - An operation that answers a *code* answers 0 when it is done, else the engine's code
 *   (5 busy, 11 and 26 damaged, 14 cannot be opened, 19 constraint, 21 no open session, ...), and 1
 *   for a fault of a document. wexpol_error() tells more.
 * - An operation that answers *yes or no* answers 1 or 0; what cannot be asked is answered 0.
 * - A `char** text` receives a text that the caller releases with wexpol_free(), or null after a
 *   failure. Null may be passed where the text is not wanted.
 * - Records and lists are JSON texts with the members of the console's documents.
 * - Nothing is thrown.
 */

#ifndef WEXPOL_C_H_
#define WEXPOL_C_H_

#include <stdint.h>

#include "wexpol/platform/export.h"
#include "wexpol/platform/version.h"

#ifdef __cplusplus
extern "C" {
#endif

/** One open policy database. */
typedef struct wexpol_session wexpol_session;

/** What a program may do; see wexpol_decide_program(). */
enum { WEXPOL_PROGRAM_FREE = 0, WEXPOL_PROGRAM_BLOCKED = 1, WEXPOL_PROGRAM_MONITORED = 2 };

/** The bits of wexpol_service_state(). */
enum {
  WEXPOL_SERVICE_TO_BE_INSTALLED = 1,
  WEXPOL_SERVICE_INSTALLED = 2,
  WEXPOL_SERVICE_ENABLED = 4, /**< switched on, whatever its status and account */
  WEXPOL_SERVICE_ACTIVE = 8,  /**< installed, switched on, and the account is active */
  WEXPOL_SERVICE_AVAILABLE = 16
};

/** What is tried for a service: WEXPOL_ATTEMPT_... */
enum { WEXPOL_ATTEMPT_DOWNLOAD = 0, WEXPOL_ATTEMPT_INSTALL = 1 };

/** Which password is meant. */
enum { WEXPOL_PASSWORD_OVERRIDE = 0, WEXPOL_PASSWORD_UNINSTALL = 1 };
/** What wexpol_check_password() answers. */
enum {
  WEXPOL_PASSWORD_VALID = 0,
  WEXPOL_PASSWORD_INVALID = 1,
  WEXPOL_PASSWORD_NO_POLICY = 2, /**< not to be treated as valid */
  WEXPOL_PASSWORD_DB_ERROR = 3
};

/** The kinds of category that wexpol_has_category() tells. */
enum { WEXPOL_CATEGORY_MOVIES_AND_TV = 0, WEXPOL_CATEGORY_PORNOGRAPHY = 1 };

/** @name The library */
/** @{ */

/** "1.0.0", of the library that is loaded; WEXPOL_VERSION is that of this header. Constant. */
WEXPOL_API const char* wexpol_version(void);

/** Releases a text; null is none. */
WEXPOL_API void wexpol_free(char* text);

/** For tests and tools: as wexpol::RedirectMachine, everything that processes share is moved to the
 * existing `folder`; an empty text is the machine's own again. Answers a code. Not while another
 * thread is in the library. */
WEXPOL_API int wexpol_redirect_machine(const char* folder);

/** @} */
/** @name The session */
/** @{ */

/** Opens the file at `path`; a null path searches: beside the program, in the current folder, at
 * the installed location, and at last restores the backup. Waits up to `busy_timeout_ms` for other
 * writers, then and in later operations. Answers a code: 23 for a wrong access code.
 *
 * `session` is made, to be closed, also when no file could be opened, so that wexpol_restore() can
 * be asked; it is null only for a wrong access code, without memory, and for a null argument. */
WEXPOL_API int wexpol_open(wexpol_session** session, const char* access_code, const char* path,
                           int read_only, int busy_timeout_ms);

/** Closes and frees the session; null is none. */
WEXPOL_API void wexpol_close(wexpol_session* session);

/** What the last operation that failed on this session says:
 * {"code": 19,"desc": "UNIQUE constraint failed: accounts.id"}, without "code" for a fault of a
 * document; empty while none has. Valid until the next operation on the session. */
WEXPOL_API const char* wexpol_error(const wexpol_session* session);

/** Yes or no: whether every table that the library works on is there. */
WEXPOL_API int wexpol_is_provisioned(wexpol_session* session);

/** Yes or no: whether the whole file can be decrypted and is well formed. Reads all of it; an empty
 * file is well formed, too. */
WEXPOL_API int wexpol_check(wexpol_session* session);

/** Puts the backup in the place of the database at the installed location and opens that. Without
 * a backup it only opens. Answers a code. */
WEXPOL_API int wexpol_restore(wexpol_session* session);

/** Begins a transaction: all or nothing of the operations until wexpol_commit(). Answers a code. */
WEXPOL_API int wexpol_begin(wexpol_session* session);
/** Stores what was done since wexpol_begin(). Answers a code: 1 without a transaction. */
WEXPOL_API int wexpol_commit(wexpol_session* session);
/** Takes back what was done since wexpol_begin(). Answers a code. */
WEXPOL_API int wexpol_roll_back(wexpol_session* session);

/** @} */
/** @name Tables, by their names */
/** @{ */

/** Replaces the rows of a table by the records of a document: an array of them, one, or an object
 * that holds either under the name of the table. Answers a code. The first record that fails ends
 * it, and those before it stay: bracket it with wexpol_begin(). */
WEXPOL_API int wexpol_replace_table(wexpol_session* session, const char* table, const char* json);
/** The same, beside the rows that are there. */
WEXPOL_API int wexpol_add_to_table(wexpol_session* session, const char* table, const char* json);
/** Empties a table. Answers a code. */
WEXPOL_API int wexpol_clear_table(wexpol_session* session, const char* table);

/** The rows in which `column` has the value, or all for a null column, as a JSON array. Answers a
 * code. Holds secrets where the table does. */
WEXPOL_API int wexpol_list_table(wexpol_session* session, const char* table, const char* column,
                                 int64_t value, char** json);

/** What tells whether two computers hold the same rows of a table: 40 hexadecimal digits. Answers a
 * code. */
WEXPOL_API int wexpol_content_hash(wexpol_session* session, const char* table, char** hash);

/** The versions of the tables that customers share, for the request to the console. Answers a
 * code. */
WEXPOL_API int wexpol_version_report(wexpol_session* session, char** json);

/** @} */
/** @name Identity, policies, passwords */
/** @{ */

/** The id of the device that this computer is, -1 when it is not known; its record into `json`,
 * null while the console has not sent it. */
WEXPOL_API int32_t wexpol_this_device(wexpol_session* session, char** json);

/** Yes or no: whether requests can be authenticated. `header` receives the header line to send,
 * that of an unknown agent for a no. The line is a secret. A disabled account fails when
 * `fail_if_disabled` is set; an invitation's token serves where the device has none when
 * `allow_invite` is set. */
WEXPOL_API int wexpol_credential(wexpol_session* session, int fail_if_disabled, int allow_invite,
                                 char** header);

/** The id of the policy of a user on this device, of the first policy for a user who is not known;
 * -1 when there is none. */
WEXPOL_API int32_t wexpol_policy_of_login(wexpol_session* session, const char* login);

/** Whether that is the password of `kind` (WEXPOL_PASSWORD_OVERRIDE, ..._UNINSTALL) of the policy:
 * WEXPOL_PASSWORD_VALID or why not. */
WEXPOL_API int wexpol_check_password(wexpol_session* session, int32_t policy, int kind,
                                     const char* password);

/** @} */
/** @name Services and configuration */
/** @{ */

/** The bits WEXPOL_SERVICE_... of a service on this device; 0 for one that is not known. */
WEXPOL_API int wexpol_service_state(wexpol_session* session, int16_t service);

/** Starts both counts of attempts anew. Answers a code. */
WEXPOL_API int wexpol_restart_attempts(wexpol_session* session, int16_t service);

/** Counts an attempt (WEXPOL_ATTEMPT_...): 1 go on, 0 no more, three are allowed; -1 when the
 * counts were never started. */
WEXPOL_API int wexpol_count_attempt(wexpol_session* session, int16_t service, int attempt);

/** Yes or no: whether there is a value of that key for the service. */
WEXPOL_API int wexpol_get_configuration(wexpol_session* session, const char* key, int16_t service,
                                        char** value);

/** Replaces the value of the key, or adds it. Answers a code. */
WEXPOL_API int wexpol_set_configuration(wexpol_session* session, const char* key, int16_t service,
                                        const char* value);

/** @} */
/** @name Programs */
/** @{ */

/** WEXPOL_PROGRAM_...: what the program may do when `login` starts it. `md5` are the 16 bytes of
 * the digest of its file, null when it is not known. `why` receives what decided:
 * {"policy_id": 501,"app_control_id": 41,"app_control_app_id": 1,"app_id": 1} for a program that is
 * blocked, its "app_id" and "app_name" for one that is monitored, else {}. What cannot be read does
 * not match. */
WEXPOL_API int wexpol_decide_program(wexpol_session* session, const char* login,
                                     const char* file_name, const unsigned char* md5, char** why);

/** Makes a digest of 16 bytes known: WEXPOL_PROGRAM_BLOCKED or ..._MONITORED. Answers a code. */
WEXPOL_API int wexpol_learn_program(wexpol_session* session, const unsigned char* md5, int flag);

/** @} */
/** @name The web filter */
/** @{ */

/** Yes or no: whether one of the categories, a JSON array of their names, is of that kind
 * (WEXPOL_CATEGORY_...). */
WEXPOL_API int wexpol_has_category(wexpol_session* session, int kind, const char* names);

/** Yes or no: whether that domain is one that is never filtered. Case counts. */
WEXPOL_API int wexpol_is_never_blocked(wexpol_session* session, const char* domain);

/** @} */
/** @name Alerts */
/** @{ */

/** Records an occurrence of a kind of event. `types` receives the ids of the alert event types to
 * send an alert for now, as a JSON array; the alerts are rows of "alert_logs". Null details are
 * those of the type. Answers a code. */
WEXPOL_API int wexpol_occurred(wexpol_session* session, int16_t kind, const char* details,
                               char** types);

/** The console has taken the alert of that type: it is removed, and what occurs during the
 * suppression that starts now is held back. Answers a code. */
WEXPOL_API int wexpol_alert_sent(wexpol_session* session, int32_t type);

/** Seconds until the next check of each enabled type that has a timer, by its id: {"203": 1800}.
 * Starts the timers that were not. Answers a code. */
WEXPOL_API int wexpol_check_timers(wexpol_session* session, char** json);

/** @} */
/** @name Scans, time, restart */
/** @{ */

/** Seconds until the next run of a schedule that is switched on, 0 is now, -1 never; `schedule`,
 * unless null, receives its id. */
WEXPOL_API int64_t wexpol_next_scan(wexpol_session* session, int32_t* schedule);

/** The time zone and the time servers of this device:
 * {"zone": {"bias": -60,...},"servers": ["..."]}, without a zone where none is assigned.
 * Biases are minutes. Yes or no: whether the zone is known, or known to be none. */
WEXPOL_API int wexpol_time_information(wexpol_session* session, char** json);

/** The command line of the safe-reboot tool, empty when no restart is wanted. A null title or
 * service name is that of the brand. Yes or no: whether there are settings. */
WEXPOL_API int wexpol_safe_reboot_line(wexpol_session* session, const char* title,
                                       const char* service_name, char** line);

/** @} */

#ifdef __cplusplus
}
#endif

#endif /* WEXPOL_C_H_ */
