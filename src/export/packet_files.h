#pragma once
#include <functional>
#include <string>
#include <string_view>

#include "export/file_dialogs.h"

namespace zorvik {

class DeviceContext;

// The dialogs' lists, categories and extensions of the data files.
constexpr std::string_view kCsvFilter = filterList("Zorvik CSV Files (*.csv)\0*.csv\0\0");
constexpr const char* kCsvExtension = "csv";
constexpr const char* kCsvCategory = "CSV data";
constexpr const char* kCsvSavedKey = "CsvFileWrited";
constexpr std::string_view kZrvSaveFilter = filterList("Zorvik data files (*.zrv)\0*.zrv\0\0");
constexpr std::string_view kZrvOpenFilter =
    filterList("Zorvik data files (*.zrv)\0*.zrv\0All Files (*.*)\0*.*\0\0");
constexpr const char* kZrvExtension = "zrv";
constexpr const char* kZrvCategory = "Binary data";
constexpr const char* kZrvSavedKey = "BinFileWrited";
constexpr const char* kDefaultPacketFile = "default.zrv";
// The read-out that shows SamplesPerDiv.
constexpr const char* kCurSamplesPerDivField = "DeviceSamplingPage.CurSamplesPerDiv";

// The packet file commands of the main window's menu and the restore of start-up. Faults (a binary file
// that can't be written, a file that can't be read) go to the caller's event boundary; acquisition that
// a save held is let go on first.
class PacketFiles {
 public:
  PacketFiles(DeviceContext& main, FileDialogs& dialogs) : main_(main), dialogs_(dialogs) {}

  // Menu "Save last packet:" / "binary file". A cancelled dialog writes nothing and says nothing.
  void SaveLastPacket2binary();
  // Menu "Save last packet:" / "CSV file".
  void SaveLastPacket2csv();
  // Menu "Save to CSV (time, volts)": the last packet in seconds and volts at the record's scale. A
  // packet with nothing to export is refused before the dialog; a cancelled dialog writes nothing.
  void SaveLastPacket2scaledCsv();
  // Menu "Restore from file". A serial acquisition stays stopped afterwards.
  void RestorePacketFromBinary();
  // An empty name or a missing file is silent; a file without the magic is reported and changes nothing;
  // otherwise the packet is kept as LastPacket and replayed through the packet entry.
  void RestorePacketFile(const std::string& path);

  // The CSV frame that the packet, spectrum and histogram share: the acquisition held around the dialog,
  // the text (built once the name is known) through WriteTextFile, then `savedText` + CR LF + path in the
  // information box under kCsvSavedKey.
  void saveCsv(const std::function<std::string()>& text, const std::string& savedText);

 private:
  DeviceContext& main_;
  FileDialogs& dialogs_;
};

// The restore itself, for callers without dialogs.
void RestorePacketFile(DeviceContext& main, const std::string& path);

// The end of start-up: "default.zrv" of the working directory, if there is one, becomes the first picture.
// Start-up is its own event boundary: a file that can't be read gives the critical box and start-up goes on.
// A file named on the command line takes its place; asked for by name, a file that can't be read is said.
void restoreDefaultPacket(DeviceContext& main, const std::string& namedFile = {});

// LastPacket and SamplesPerDiv as SaveLastPacket2binary writes them, without dialog or box (zorvik-cli).
void saveLastPacketTo(DeviceContext& main, const std::string& path);

}  // namespace zorvik
