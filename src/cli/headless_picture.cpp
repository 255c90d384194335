#include "cli/headless_picture.h"

#include <QBuffer>
#include <QGuiApplication>

#include "control/channel_control.h"
#include "core/fault.h"
#include "display/display_labels.h"
#include "display/view_zoom.h"
#include "export/display_pictures.h"

namespace zorvik {

void zoomVertically(HeadlessDisplay& rig, float vZoom) {
  ChannelControl channel(rig.main());
  channel.setVertZoom(vZoom, 0, ViewZoom::kMin, ViewZoom::kMax);
  PlotInputs& in = rig.display().inputs();
  in.voltPerDiv = channel.model().ZoomVoltPerDiv;
  in.voltOffset = channel.model().ZoomCentre;
  rig.display().refreshVertical();
}

QImage headlessPicture(HeadlessDisplay& rig, bool labels) {
  if (labels && !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
    throw Fault("--labels needs the GUI application object");
  // The texts the window keeps beside the display's own labels.
  const MainState& state = rig.main().state();
  DisplayLabels texts = rig.display().labels();
  texts.ModeTransparant = state.modeText;
  texts.modeColor = state.modeColor;
  texts.RISmodeTransparant = state.risVisible ? state.risCaption : std::string();
  texts.noTrigger = state.noTriggerVisible;
  return displayPicture(rig.display(), texts, labels);
}

std::string pngBytes(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "PNG")) throw Fault("cannot encode the picture as PNG");
  return bytes.toStdString();
}

std::vector<PacketFile> readPacketFiles(const std::vector<std::string>& paths) {
  std::vector<PacketFile> packets;
  for (const std::string& path : paths) packets.push_back(readPacketFile(path));
  return packets;
}

void playPacket(HeadlessDisplay& rig, const PacketFile& packet, const DisplayOptions& options) {
  rig.packet(packet.bytes, options.samplesPerDiv.value_or(packet.samplesPerDiv.value_or(16)));
}

}  // namespace zorvik
