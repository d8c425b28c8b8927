/* An agent process in miniature, in C: from its start to its stop.
 *
 *   c_agent FOLDER DOCUMENTS
 *
 * FOLDER takes the place of the machine's locations and registry and holds wexpol.db, made by
 * "wexpolctl --root FOLDER init". DOCUMENTS holds the console's documents, one per table. */

#include <stdio.h>
#include <stdlib.h>
#include <wexpol_c.h>

static const char* const kTables[] = {"accounts",
                                      "policies",
                                      "policy_services",
                                      "devices",
                                      "logins",
                                      "device_services",
                                      "service_configurations",
                                      "apps",
                                      "app_files",
                                      "app_controls",
                                      "app_control_apps",
                                      "categories",
                                      "never_block_domains",
                                      "time_zones",
                                      "time_servers",
                                      "alert_event_types",
                                      "av_schedules",
                                      "restart_policy_settings"};
enum { kTableCount = sizeof kTables / sizeof kTables[0] };

static const char* yes_no(int yes) { return yes ? "yes" : "no"; }

/* Prints a text of the library and releases it. */
static void print_text(const char* what, char* text) {
  printf("%s: %s\n", what, text ? text : "not known");
  wexpol_free(text);
}

/* The whole file, to be released with free(); null when it cannot be read. */
static char* read_file(const char* folder, const char* table) {
  char path[1024];
  long size;
  char* text = NULL;
  FILE* file;
  snprintf(path, sizeof path, "%s/%s.json", folder, table);
  file = fopen(path, "rb");
  if (!file) return NULL;
  if (fseek(file, 0, SEEK_END) == 0 && (size = ftell(file)) >= 0) {
    rewind(file);
    text = malloc((size_t)size + 1);
    if (text) text[fread(text, 1, (size_t)size, file)] = '\0';
  }
  fclose(file);
  return text;
}

/* All documents or none. */
static int synchronise(wexpol_session* session, const char* folder) {
  int i, code = wexpol_begin(session);
  for (i = 0; code == 0 && i < kTableCount; ++i) {
    char* document = read_file(folder, kTables[i]);
    code = wexpol_replace_table(session, kTables[i], document);
    free(document);
    if (code) printf("synchronisation: %s refused: %s\n", kTables[i], wexpol_error(session));
  }
  if (code == 0) return wexpol_commit(session);
  wexpol_roll_back(session);
  return code;
}

static void ask_at_start(wexpol_session* session) {
  char* text;
  printf("this device: %ld\n", (long)wexpol_this_device(session, NULL));
  /* The header line itself is a secret. */
  printf("requests carry a token: %s\n", yes_no(wexpol_credential(session, 1, 1, NULL)));
  printf("antivirus installed and enabled: %s\n",
         yes_no(wexpol_service_state(session, 1) & WEXPOL_SERVICE_ACTIVE));
  printf("console address known: %s\n",
         yes_no(wexpol_get_configuration(session, "policy_api_url", 0, NULL)));
  printf(
      "password accepted: %s\n",
      yes_no(wexpol_check_password(session, wexpol_policy_of_login(session, "OFFICE\\anna"),
                                   WEXPOL_PASSWORD_UNINSTALL, "guess") == WEXPOL_PASSWORD_VALID));
  wexpol_version_report(session, &text);
  print_text("versions", text);
  wexpol_list_table(session, "logins", "is_admin", 0, &text);
  print_text("ordinary logins", text);
  wexpol_time_information(session, &text);
  print_text("time", text);
  wexpol_safe_reboot_line(session, NULL, "Corvane", &text);
  print_text("restart", text);
}

static void install_antivirus(wexpol_session* session) {
  int attempts = 0;
  wexpol_restart_attempts(session, 1);
  while (wexpol_count_attempt(session, 1, WEXPOL_ATTEMPT_INSTALL) == 1) ++attempts;
  printf("attempts to install: %d\n", attempts);
}

static void on_process_start(wexpol_session* session, const char* file_name, unsigned char digest) {
  static const char* const kDecisions[] = {"not controlled", "blocked", "monitored"};
  unsigned char md5[16] = {0}; /* An agent takes the MD5 of the file. */
  char* why;
  int decision;
  md5[0] = digest;
  decision = wexpol_decide_program(session, "OFFICE\\anna", file_name, md5, &why);
  printf("%s: %s, ", file_name, kDecisions[decision]);
  print_text("by", why);
}

static void raise_alert(wexpol_session* session, int16_t kind) {
  char* types;
  wexpol_occurred(session, kind, "found by the example", &types);
  print_text("alerts to send", types);
  wexpol_alert_sent(session, 202);
}

int main(int argc, char** argv) {
  wexpol_session* session;
  int32_t schedule = -1;
  long seconds;
  char* text;
  if (argc != 3) {
    fprintf(stderr, "usage: c_agent FOLDER DOCUMENTS\n");
    return 2;
  }
  printf("WexPolicy %s\n", wexpol_version());
  wexpol_redirect_machine(argv[1]);
  if (wexpol_open(&session, "60718", NULL, 0, 2000) != 0 || !wexpol_is_provisioned(session) ||
      !wexpol_check(session)) {
    if (wexpol_restore(session) != 0) {
      fprintf(stderr, "no database: run 'wexpolctl --root %s init'\n", argv[1]);
      wexpol_close(session);
      return 3;
    }
  }
  if (synchronise(session, argv[2]) != 0) {
    wexpol_close(session);
    return 1;
  }
  printf("synchronised %d tables\n", kTableCount);
  ask_at_start(session);
  install_antivirus(session);
  on_process_start(session, "patience.exe", 1);
  on_process_start(session, "renamed.exe", 1);
  on_process_start(session, "unknown.exe", 2);
  raise_alert(session, 4);
  raise_alert(session, 4);
  wexpol_check_timers(session, &text);
  print_text("check timers", text);
  seconds = (long)wexpol_next_scan(session, &schedule);
  printf("schedule %ld is due in %ld s\n", (long)schedule, seconds);
  wexpol_close(session);
  return 0;
}
