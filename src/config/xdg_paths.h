#pragma once
#include <string>

namespace zorvik {

// $XDG_CONFIG_HOME when it is an absolute path, else ~/.config (the home from $HOME or the user database).
std::string xdgConfigHome();

}  // namespace zorvik
