#pragma once
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli render FILE --view spectrum|histogram --png OUT: the plot of the Spectrum or Stat window
// for the packet, drawn as the window draws it. True when the arguments ask for a view.
bool asksForView(const std::vector<std::string>& args);
int renderView(const std::vector<std::string>& args);

}  // namespace zorvik
