#include "FlashSerial/GensioEventLoop.hpp"

#include <gensio/gensio.h>
#include <gensio/gensio_unix.h>

namespace tarnwick {

namespace {

void ignoreLog(gensio_os_funcs*, gensio_log_levels, const char*, va_list) {}

gensio_os_funcs* allocate() {
  gensio_os_funcs* loop = nullptr;
  if (gensio_unix_funcs_alloc(nullptr, 0, &loop) != 0) return nullptr;
  gensio_os_funcs_set_vlog(loop, ignoreLog);
  return loop;
}

// The loop the library keeps: the first stack it makes binds it. An echo stack does nothing else.
bool introduceLasting() {
  gensio_os_funcs* lasting = allocate();
  if (!lasting) return false;
  gensio* stack = nullptr;
  if (str_to_gensio("echo", lasting, nullptr, nullptr, &stack) != 0) return false;
  gensio_free(stack);
  return true;
}

} // namespace

gensio_os_funcs* newGensioEventLoop() {
  static const bool introduced = introduceLasting();
  if (!introduced) return nullptr;
  return allocate();
}

} // namespace tarnwick
