#include "tools/wexpolctl/archive.h"

#include <miniz.h>

namespace wexpolctl {

struct Archive::State {
  mz_zip_archive zip = {};
};

void Archive::Closer::operator()(State* state) const {
  mz_zip_writer_end(&state->zip);
  delete state;
}

Archive::Archive() : state_(new State) { mz_zip_writer_init_heap(&state_->zip, 0, 0); }

bool Archive::Add(const std::string& name, const std::string& text) {
  return mz_zip_writer_add_mem(&state_->zip, name.c_str(), text.data(), text.size(),
                               static_cast<mz_uint>(MZ_DEFAULT_LEVEL));
}

std::string Archive::Finish() {
  void* bytes = nullptr;
  std::size_t size = 0;
  if (!mz_zip_writer_finalize_heap_archive(&state_->zip, &bytes, &size)) return {};
  std::string archive(static_cast<const char*>(bytes), size);
  mz_free(bytes);
  return archive;
}

}  // namespace wexpolctl
