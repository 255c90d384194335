#include "session/command_line.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <system_error>

#include "config/text_number.h"
#include "core/fault.h"
#include "link/device_address.h"

namespace zorvik {

CommandLine parseCommandLine(const std::vector<std::string>& args) {
  CommandLine cl;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--sim", v)) {
      cl.simOptions.push_back(v);
    } else if (takeValue(args, i, "--device", v)) {
      parseDeviceAddress(v);
      cl.device = v;
    } else if (takeValue(args, i, "--set", v)) {
      parseSettingAssignment(v);
      cl.sets.push_back(v);
    } else if (takeValue(args, i, "--report-after", v)) {
      cl.reportAfter = numberOption("--report-after", v);
      if (!(cl.reportAfter > 0 && cl.reportAfter <= 86400))
        throw Fault("--report-after takes seconds from above 0 to 86400: " + v);
    } else if (args[i] == "--dev") {
      cl.dev = true;
    } else if (args[i].rfind("-", 0) == 0) {
      throw Fault("unknown option: " + args[i]);
    } else if (args[i].find_first_of("./") != std::string::npos) {
      // The instance words are plain; a name with a dot or a slash is a file, as a file manager passes it.
      if (!cl.packetFile.empty()) throw Fault("one packet file at a time: " + args[i]);
      cl.packetFile = args[i];
    } else {
      cl.words.push_back(args[i]);
    }
  }
  return cl;
}

InfoRequest infoRequest(const std::vector<std::string>& args) {
  for (const std::string& a : args) {
    if (a == "--help" || a == "-h") return InfoRequest::Help;
    if (a == "--version") return InfoRequest::Version;
  }
  return InfoRequest::None;
}

std::string programVersion() {
  return std::to_string(ZORVIK_VERSION_MAJOR) + "." + std::to_string(ZORVIK_VERSION_MINOR) + "." +
         std::to_string(ZORVIK_VERSION_PATCH);
}

std::string guiUsage() {
  return "usage: zorvik [first] [reset] [--sim KEY=VALUE,...] [--device ADDRESS] [--set SECTION/NAME=VALUE] "
         "[--dev] [--report-after SECONDS] [FILE.zrv]\n"
         "The Zorvik oscilloscope: the window of a one-channel USB oscilloscope, here on its simulated\n"
         "instrument.\n"
         "  first                this process is the first instance even while another runs\n"
         "  reset                this instance's settings back to their defaults before the start\n"
         "  --sim KEY=VALUE,...  the simulated instrument (signal, freq, amplitude, offset, noise,\n"
         "                       fault, ...; repeatable)\n"
         "  --device unix:PATH|tcp:HOST:PORT  the instrument served there (zorvik-sim) instead of the\n"
         "                       simulated one in this program\n"
         "  --set SECTION/NAME=VALUE  a setting stored before the start (repeatable)\n"
         "  --dev                the developer's plot speed test (key T)\n"
         "  --report-after SECONDS  connects, runs serially and after SECONDS prints the packets processed,\n"
         "                       the display's paints and the share of one core on one line, and quits\n"
         "  FILE.zrv             a packet file shown at the start instead of default.zrv\n"
         "  -h, --help           this text\n"
         "  --version            the version\n";
}

SettingAssignment parseSettingAssignment(const std::string& text) {
  size_t slash = text.find('/');
  size_t eq = slash == std::string::npos ? std::string::npos : text.find('=', slash);
  if (slash == std::string::npos || slash == 0 || eq == std::string::npos || eq == slash + 1)
    throw Fault("malformed setting (want SECTION/NAME=VALUE): " + text);
  return {text.substr(0, slash), text.substr(slash + 1, eq - slash - 1), text.substr(eq + 1)};
}

bool takeValue(const std::vector<std::string>& args, size_t& i, const std::string& name, std::string& value) {
  if (args[i] == name) {
    if (i + 1 >= args.size()) throw Fault(name + " needs a value");
    value = args[++i];
    return true;
  }
  if (args[i].rfind(name + "=", 0) == 0) {
    value = args[i].substr(name.size() + 1);
    return true;
  }
  return false;
}

int wholeNumberOption(const std::string& name, const std::string& text, int lo, int hi) {
  long long v = 0;
  const char* end = text.data() + text.size();
  auto [at, ec] = std::from_chars(text.data(), end, v);
  if (ec != std::errc() || at != end || v < lo || v > hi)
    throw Fault(name + " wants a whole number from " + std::to_string(lo) + " to " + std::to_string(hi) +
                ": " + text);
  return static_cast<int>(v);
}

double numberOption(const std::string& name, const std::string& text) {
  const std::optional<double> v = parseLeadingNumber(text);
  if (!v || !std::isfinite(*v)) throw Fault(name + " takes a number, not \"" + text + "\"");
  return *v;
}

}  // namespace zorvik
