#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli render FILE... --png OUT.png [options]: the packets (raw or zrv) through ProcessPacket onto
// the display's surface, written as a PNG of exactly that surface (341 x 277 at zoom 1, 501 x 277 wide).
// Options: --zoom 0..3, --wide, --interp none|line|sinx|lanczos|lagrange, --taps N (2 to 256, a power of
// two), --hzoom 1|2|4|5|10, --vzoom 1|2|5|10, --samples-per-div N (default the zrv file's, else 16),
// --labels (the labels and markers of the window painted over it), --persist intensity|color,
// --depth infinite|128|32|8, --repeat N (the files played N times in turn) and --set SECTION/NAME=VALUE
// for any other plot setting.
// A bad argument or file: one line on err, return 2.
int runRenderCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
