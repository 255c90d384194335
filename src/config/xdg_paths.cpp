#include "config/xdg_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace zorvik {

std::string xdgConfigHome() {
  // A relative value is to be ignored, so a stray setting can't scatter files into the working folder.
  if (const char* x = std::getenv("XDG_CONFIG_HOME"); x != nullptr && x[0] == '/') return x;
  std::string home;
  if (const char* h = std::getenv("HOME"); h != nullptr && h[0] != '\0') {
    home = h;
  } else if (const passwd* pw = getpwuid(getuid()); pw != nullptr && pw->pw_dir != nullptr) {
    home = pw->pw_dir;
  }
  return home + "/.config";
}

}  // namespace zorvik
