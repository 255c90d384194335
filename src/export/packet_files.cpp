#include "export/packet_files.h"

#include <exception>

#include "core/file_write.h"
#include "export/acquisition_hold.h"
#include "export/csv_text.h"
#include "export/file_io.h"
#include "export/text_file.h"
#include "export/zrv_file.h"
#include "link/device_context.h"

namespace zorvik {

void PacketFiles::SaveLastPacket2binary() {
  AcquisitionHold hold(main_.link());
  std::string path = SaveFileDialog(dialogs_, main_.settings(), kZrvSaveFilter, kZrvExtension, kZrvCategory);
  if (path.empty()) return;
  saveLastPacketTo(main_, path);
  hold.release();
  main_.messages().show(BoxKind::InfoBox, main_.identity().InstanceTitle, "Last packet saved\rin " + path,
                        kZrvSavedKey);
}

void PacketFiles::SaveLastPacket2csv() {
  saveCsv([this] { return packetCsvText(main_.LastPacket()); }, "Last packet body saved:");
}

void PacketFiles::SaveLastPacket2scaledCsv() {
  const std::string text = scaledCsvText(main_.LastPacket(), main_.scale());
  AcquisitionHold hold(main_.link());
  std::string path = SaveFileDialog(dialogs_, main_.settings(), kCsvFilter, kCsvExtension, kCsvCategory);
  if (path.empty()) return;
  writeFileReplacing(path, text);
  hold.release();
  main_.messages().show(BoxKind::InfoBox, main_.identity().InstanceTitle,
                        "Last packet saved in seconds and volts:\r\n" + path, kCsvSavedKey);
}

void PacketFiles::saveCsv(const std::function<std::string()>& text, const std::string& savedText) {
  AcquisitionHold hold(main_.link());
  std::string path = SaveFileDialog(dialogs_, main_.settings(), kCsvFilter, kCsvExtension, kCsvCategory);
  // A cancelled dialog fails in the writer like any other name that can't be written: both boxes show.
  WriteTextFile(path, text(), main_.messages(), main_.identity().InstanceTitle);
  hold.release();
  main_.messages().show(BoxKind::InfoBox, main_.identity().InstanceTitle, savedText + "\r\n" + path,
                        kCsvSavedKey);
}

void PacketFiles::RestorePacketFromBinary() {
  AcquisitionHold hold(main_.link());
  hold.keepStopped();  // the restored packet stays on the screen until the user starts again
  std::string path = OpenFileDialog(dialogs_, main_.settings(), kZrvOpenFilter, kZrvCategory);
  zorvik::RestorePacketFile(main_, path);
}

void PacketFiles::RestorePacketFile(const std::string& path) {
  zorvik::RestorePacketFile(main_, path);
}

void RestorePacketFile(DeviceContext& main, const std::string& path) {
  if (path.empty() || !isExistingFile(path)) return;
  std::string bytes = readWholeFile(path, kZrvMaxBytes);
  std::optional<ZrvContents> contents = parseZrv(bytes);
  if (!contents) {
    const std::string& title = main.identity().InstanceTitle;
    main.messages().show(BoxKind::InfoBox, title, "This is not zorvik file", title);
    return;
  }
  if (contents->samplesPerDiv) {
    {
      RecordScale scale = main.scale();
      scale.SamplesPerDiv = *contents->samplesPerDiv;
      main.setScale(scale);
    }
    main.mutableState().fields[kCurSamplesPerDivField] = std::to_string(main.scale().SamplesPerDiv);
    main.changed();
  }
  main.setLastPacket(contents->packet);
  main.ProcessPacket(contents->packet);
}

void restoreDefaultPacket(DeviceContext& main, const std::string& namedFile) {
  try {
    if (!namedFile.empty() && !isExistingFile(namedFile))
      readWholeFile(namedFile, kZrvMaxBytes);  // the reason
    RestorePacketFile(main, namedFile.empty() ? kDefaultPacketFile : namedFile);
  } catch (const std::exception& e) {
    main.messages().show(BoxKind::Critical, main.identity().InstanceTitle, e.what());
  }
}

void saveLastPacketTo(DeviceContext& main, const std::string& path) {
  writeFileReplacing(path, makeZrv(main.LastPacket(), main.scale().SamplesPerDiv));
}

}  // namespace zorvik
