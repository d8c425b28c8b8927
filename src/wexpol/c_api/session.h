// What the parts of the C interface share.

#ifndef WEXPOL_C_API_SESSION_H_
#define WEXPOL_C_API_SESSION_H_

#include <string>
#include <string_view>
#include <utility>

#include "wexpol.h"
#include "wexpol/policydb/facade.h"
#include "wexpol_c.h"

struct wexpol_session {
  CPolicyDB db;
  std::string error;
};

namespace wexpol {

// Hands `text` to the caller of the C interface, who may not want it. Throws without memory.
void HandOver(std::string_view text, char** out);

// Answers the code of the engine's last failure on the session, its error object is kept.
int EngineFailure(wexpol_session& session);

// The same for a failure that left an error object.
int Failure(wexpol_session& session, const std::string& error);

// What `question` answers of an open session; `failure` when it is closed, null, or the question
// throws. `out`, which may be null, is null unless the question hands a text over.
template <typename Answer, typename Question>
Answer AskSession(wexpol_session* session, Answer failure, char** out,
                  Question&& question) noexcept {
  if (out) *out = nullptr;
  if (!session) return failure;
  return Ask(failure, [&] { return static_cast<Answer>(question(session->db)); });
}

// The code of an operation that says whether it is done.
template <typename Operation>
int RunSession(wexpol_session* session, char** out, Operation&& operation) noexcept {
  if (out) *out = nullptr;
  if (!session) return SQLITE_MISUSE;
  return Ask(SQLITE_NOMEM,
             [&] { return operation(session->db) ? SQLITE_OK : EngineFailure(*session); });
}

}  // namespace wexpol

#endif  // WEXPOL_C_API_SESSION_H_
