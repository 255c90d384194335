#include "cli/settings_command.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "config/catalogue.h"
#include "config/cpu_speed.h"
#include "config/registry.h"
#include "config/registry_errors.h"
#include "config/registry_store.h"
#include "core/latin1_text.h"
#include "session/command_line.h"

namespace zorvik {

namespace {

constexpr const char* kUsage =
    "usage: settings [--instance 1|2] set SECTION/NAME=VALUE... | get SECTION/NAME | export FILE.reg | "
    "import FILE.reg | reset";

void print(std::ostream& out, const QJsonObject& o) {
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
}

struct Options {
  int instance = 1;
  std::vector<std::string> words;
};

Options parseOptions(const std::vector<std::string>& args) {
  Options o;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string value;
    if (args[i] == "--instance") {
      if (i + 1 >= args.size()) throw Fault("--instance needs a value");
      value = args[++i];
    } else if (args[i].rfind("--instance=", 0) == 0) {
      value = args[i].substr(11);
    } else if (args[i].rfind("--", 0) == 0) {
      throw Fault("unknown option: " + args[i]);
    } else {
      o.words.push_back(args[i]);
      continue;
    }
    if (value != "1" && value != "2") throw Fault("--instance wants 1 or 2");
    o.instance = value == "2" ? 2 : 1;
  }
  return o;
}

std::vector<SettingAssignment> assignments(const std::vector<std::string>& words) {
  bool pairs = !words.empty();
  for (const std::string& w : words)
    pairs = pairs && w.find('/') != std::string::npos && w.find('=', w.find('/')) != std::string::npos;
  if (!pairs && words.size() == 3) return {{words[0], words[1], words[2]}};
  if (!pairs) throw Fault(kUsage);
  std::vector<SettingAssignment> out;
  for (const std::string& w : words) out.push_back(parseSettingAssignment(w));
  return out;
}

int set(RegistryStore& store, const Options& o, const std::vector<std::string>& words, std::ostream& out) {
  std::vector<SettingAssignment> all = assignments(words);
  std::string settingsName = settingsNameFor(o.instance);
  {
    RegistryStore::Transaction t(store);
    for (const auto& a : all) SaveSettingValue(store, settingsName, a.section, a.name, a.value);
    t.commit();
  }
  QJsonArray written;
  for (const auto& a : all)
    written.append(QJsonObject{{"section", latin1Text(a.section)},
                               {"name", latin1Text(a.name)},
                               {"value", latin1Text(a.value.empty() ? " " : a.value)}});
  print(out, QJsonObject{{"instance", o.instance}, {"set", written}});
  return 0;
}

int get(RegistryStore& store, const Options& o, const std::vector<std::string>& words, std::ostream& out) {
  std::string section, name;
  if (words.size() == 2) {
    section = words[0];
    name = words[1];
  } else if (words.size() == 1 && words[0].find('/') != std::string::npos && words[0].find('/') > 0) {
    section = words[0].substr(0, words[0].find('/'));
    name = words[0].substr(words[0].find('/') + 1);
  } else {
    throw Fault(kUsage);
  }
  std::string value = GetSettingValue(store, settingsNameFor(o.instance), section, name, "");
  bool stored = !value.empty();
  if (!stored) value = catalogueDefault(section, name, CpuMHz());
  print(out, QJsonObject{{"instance", o.instance},
                         {"section", latin1Text(section)},
                         {"name", latin1Text(name)},
                         {"value", latin1Text(value)},
                         {"stored", stored}});
  return 0;
}

int run(const std::vector<std::string>& args, std::ostream& out) {
  Options o = parseOptions(args);
  if (o.words.empty()) throw Fault(kUsage);
  const std::string command = o.words[0];
  const std::vector<std::string> words(o.words.begin() + 1, o.words.end());
  bool oneFile = command == "export" || command == "import";
  if ((oneFile && words.size() != 1) || (command == "reset" && !words.empty())) throw Fault(kUsage);
  if (command != "set" && command != "get" && !oneFile && command != "reset") throw Fault(kUsage);

  RegistryStore store(RegistryStore::defaultPath());
  const std::string settingsName = settingsNameFor(o.instance);
  if (command == "set") return set(store, o, words, out);
  if (command == "get") return get(store, o, words, out);
  if (command == "export") {
    if (!SaveAllSettings(store, settingsName, words[0])) throw Fault("export wants a file name");
    return 0;
  }
  if (command == "import") {
    LoadAllSettings(store, words[0]);
    // A path is the file system's bytes, shown as Qt names files (UTF-8 here), not as stored text.
    print(out, QJsonObject{{"imported", QFile::decodeName(QByteArray::fromStdString(words[0]))}});
    return 0;
  }
  ResetSettings(store, settingsName);
  print(out, QJsonObject{{"instance", o.instance}, {"reset", true}});
  return 0;
}

}  // namespace

int runSettingsCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  try {
    return run(args, out);
  } catch (const RegFileError& e) {
    err << "zorvik-cli settings: " << e.source() << ": " << e.description();
    if (e.line() > 0) err << " (line " << e.line() << ")";
    err << "\n";
  } catch (const std::exception& e) {
    err << "zorvik-cli settings: " << e.what() << "\n";
  }
  return 2;
}

}  // namespace zorvik
