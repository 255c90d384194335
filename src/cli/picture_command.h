#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli picture FILE... --out OUT.bmp|.gif|.jpg [--labels] [--transparent] [display options of render]:
// the packets played in turn onto the display, and its picture written as the File menu saves it: the
// format from the extension, the JPEG with its comment at quality 80, the GIF with the program's palette
// (--transparent: the display's background clear).
int runPictureCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// zorvik-cli animate FILE... --out OUT.gif [--delay-ms N] [--labels] [--transparent] [display options]:
// one frame per packet file, as the recorder keeps and writes them: each frame stands N ms (default 100)
// until the next packet, the last one 0 as the recorder leaves it.
// Both: a bad argument or file, or a file that can't be written, gives one line on err and 2, and leaves
// any earlier file of that name as it was.
int runAnimateCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
