#include "app/command_line.h"

#include "core/fault.h"

namespace zorvik {

namespace {
// Accepts "--opt value" and "--opt=value".
bool takeValue(const std::vector<std::string>& args, size_t& i, const std::string& opt, std::string& out) {
  const std::string& a = args[i];
  if (a == opt) {
    if (i + 1 >= args.size()) throw Fault(opt + " needs a value");
    out = args[++i];
    return true;
  }
  if (a.rfind(opt + "=", 0) == 0) {
    out = a.substr(opt.size() + 1);
    return true;
  }
  return false;
}
}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& args) {
  CommandLine cl;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--sim", v)) {
      cl.simOptions.push_back(v);
    } else if (takeValue(args, i, "--set", v)) {
      parseSettingAssignment(v);
      cl.sets.push_back(v);
    } else if (args[i] == "--dev") {
      cl.dev = true;
    } else if (args[i].rfind("-", 0) == 0) {
      throw Fault("unknown option: " + args[i]);
    } else {
      cl.words.push_back(args[i]);
    }
  }
  return cl;
}

SettingAssignment parseSettingAssignment(const std::string& text) {
  size_t slash = text.find('/');
  size_t eq = slash == std::string::npos ? std::string::npos : text.find('=', slash);
  if (slash == std::string::npos || slash == 0 || eq == std::string::npos || eq == slash + 1)
    throw Fault("malformed setting (want SECTION/NAME=VALUE): " + text);
  return {text.substr(0, slash), text.substr(slash + 1, eq - slash - 1), text.substr(eq + 1)};
}

}  // namespace zorvik
