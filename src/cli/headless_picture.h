#pragma once
#include <QImage>
#include <string>
#include <vector>

#include "cli/display_command.h"

namespace zorvik {

// The vertical labels follow the zoom as in the window: the channel's zoom scale at the view's middle
// gives the volts a division and the centre shown.
void zoomVertically(HeadlessDisplay& rig, float vZoom);

// The display's surface, with the labels and markers of the window painted over it when asked (that
// needs the GUI application object).
QImage headlessPicture(HeadlessDisplay& rig, bool labels);

// Every packet file read first, so that a bad one stops the command before anything is drawn.
// The PNG file's bytes of a picture; Fault when it can't be encoded.
std::string pngBytes(const QImage& image);

std::vector<PacketFile> readPacketFiles(const std::vector<std::string>& paths);

// One packet file onto the display, at the samples a division asked for, else the file's, else 16.
void playPacket(HeadlessDisplay& rig, const PacketFile& packet, const DisplayOptions& options);

}  // namespace zorvik
