#include "cli/files_command.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "cli/decode_command.h"
#include "config/registry_settings.h"
#include "config/registry_store.h"
#include "config/text_number.h"
#include "core/fault.h"
#include "core/progress_line.h"
#include "export/csv_text.h"
#include "export/file_io.h"
#include "export/packet_files.h"
#include "export/text_file.h"
#include "export/zrv_file.h"
#include "link/device_context.h"
#include "session/command_line.h"
#include "session/headless_session.h"

namespace zorvik {

namespace {

constexpr int kMaxSimPackets = 9999;  // the four digits of the file names

int failed(std::ostream& err, const std::string& what) {
  err << "zorvik-cli: " << what << "\n";
  return 2;
}

std::string packetFileName(int n) {
  char name[16];
  std::snprintf(name, sizeof name, "%04d.zrv", n);
  return name;
}

struct SimRun {
  int packets = 1;
  double timeoutSeconds = 10;
  std::string outDir;
  CommandLine line;
};

SimRun parseSimArgs(const std::vector<std::string>& args) {
  SimRun run;
  std::vector<std::string> rest;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--packets", v)) {
      auto n = parseLeadingNumber(v);
      if (!n || *n < 1 || *n > kMaxSimPackets || *n != static_cast<int>(*n))
        throw Fault("--packets wants a count from 1 to " + std::to_string(kMaxSimPackets));
      run.packets = static_cast<int>(*n);
    } else if (takeValue(args, i, "--timeout", v)) {
      auto s = parseLeadingNumber(v);
      if (!s || *s <= 0 || *s > 3600) throw Fault("--timeout wants seconds");
      run.timeoutSeconds = *s;
    } else if (takeValue(args, i, "--out", v)) {
      run.outDir = v;
    } else {
      rest.push_back(args[i]);
    }
  }
  run.line = parseCommandLine(rest);
  if (!run.line.words.empty()) throw Fault("unexpected argument: " + run.line.words[0]);
  if (run.outDir.empty()) throw Fault("usage: zorvik-cli sim --packets N --out DIR [--sim ...] [--set ...]");
  return run;
}

int simulate(const SimRun& run, std::ostream& out, std::ostream& err) {
  std::error_code ec;
  std::filesystem::create_directories(run.outDir, ec);
  if (ec) throw Fault("cannot make folder " + run.outDir + ": " + ec.message());

  // A scratch store unless ZORVIK_REGISTRY names a real one.
  const char* env = std::getenv("ZORVIK_REGISTRY");
  RegistryStore store(env && *env ? std::string(env) : std::string(":memory:"));
  RegistrySettings settings(store, "Zorvik DSO1");
  for (const auto& s : run.line.sets) {
    SettingAssignment a = parseSettingAssignment(s);
    settings.SaveSettingValue(a.section, a.name, a.value);
  }
  HeadlessSession session(settings, run.line.simOptions);
  MainController& main = session.main();
  const int timeoutMs = static_cast<int>(run.timeoutSeconds * 1000);
  QElapsedTimer clock;
  clock.start();
  auto left = [&] { return std::max(0, timeoutMs - static_cast<int>(clock.elapsed())); };

  main.KeyConnect_Click();
  bool ready = HeadlessSession::spinUntil(
      [&] {
        return main.sessionState() == SessionState::Ready || main.sessionState() == SessionState::NoSession;
      },
      left());
  ready = ready && main.sessionState() == SessionState::Ready;
  QJsonArray files;
  std::string error = ready ? "" : "the session did not reach Ready";
  main.setPacketCount(0);
  ProgressLine progress(err, ProgressLine::stderrIsTerminal(), "packets", run.packets);
  for (int n = 1; ready && n <= run.packets; ++n) {
    progress.step(n);
    session.link().SendCommand("D", true, true);
    if (!HeadlessSession::spinUntil([&] { return main.PacketCount() >= n || !main.Online(); }, left()) ||
        main.PacketCount() < n) {
      error = "only " + std::to_string(n - 1) + " of " + std::to_string(run.packets) + " packets arrived";
      break;
    }
    std::string name = packetFileName(n);
    saveLastPacketTo(main, (std::filesystem::path(run.outDir) / name).string());
    QJsonObject f;
    f["file"] = QString::fromStdString(name);
    f["bytes"] = static_cast<qint64>(kZrvMagic.size() + 2 + main.LastPacket().size());
    f["samples_per_div"] = main.scale().SamplesPerDiv;
    files.append(f);
  }
  if (main.Online()) {
    session.link().CloseSession();
    HeadlessSession::spinUntil([&] { return main.state().connectVisible; }, 3000);
  }

  QJsonObject o;
  o["ready_reached"] = ready;
  o["packets"] = static_cast<int>(files.size());
  o["out"] = QString::fromStdString(run.outDir);
  o["sample_count"] = main.SampleCount();
  o["files"] = files;
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  return error.empty() ? 0 : failed(err, error);
}

}  // namespace

int runCsvCommand(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
  try {
    std::string input, output;
    bool scaled = false, scaleGiven = false;
    ScaleOptions scale;
    for (size_t i = 0; i < args.size(); ++i) {
      std::string v;
      if (takeValue(args, i, "--out", v))
        output = v;
      else if (args[i] == "--scaled")
        scaled = true;
      else if (takeScaleOption(args, i, scale))
        scaleGiven = true;
      else if (args[i].rfind("-", 0) == 0 || !input.empty())
        throw Fault("unexpected argument: " + args[i]);
      else
        input = args[i];
    }
    if (input.empty() || output.empty())
      throw Fault(
          "usage: zorvik-cli csv FILE --out OUT.csv [--scaled [--volts-per-div V] [--zero V] "
          "[--sample-period S]]");
    // The raw codes have no scale: a scale given to them would be silently lost.
    if (scaleGiven && !scaled) throw Fault("--volts-per-div, --zero and --sample-period need --scaled");
    std::string bytes = readPacketBytes(input);
    if (std::optional<ZrvContents> zrv = parseZrv(bytes)) bytes = std::move(zrv->packet);
    requirePacket(input, bytes);
    if (scaled) {
      RecordScale record;
      record.FullScaleVolts = static_cast<float>(8 * scale.voltsPerDiv);
      record.ZeroVolts = static_cast<float>(scale.zero);
      record.SamplePeriod = static_cast<float>(scale.samplePeriod);
      writeFileReplacing(output, scaledCsvText(bytes, record));
    } else {
      writeFileReplacing(output, textFileBytes(packetCsvText(bytes)));
    }
    return 0;
  } catch (const std::exception& e) {
    return failed(err, e.what());
  }
}

int runSimCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  try {
    return simulate(parseSimArgs(args), out, err);
  } catch (const std::exception& e) {
    return failed(err, e.what());
  }
}

}  // namespace zorvik
