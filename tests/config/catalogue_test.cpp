#include "config/catalogue.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "config/text_number.h"
#include "core/fault.h"

namespace zorvik {
namespace {

TEST(Catalogue, DocumentedDefaults) {
  EXPECT_EQ(catalogueDefault("Sampling", "RisAveragesPeaks", 200), "16");
  EXPECT_EQ(catalogueDefault("View", "ShowTime", 300), "7");
  EXPECT_EQ(catalogueDefault("View", "ShowTime", 301), "5");
  EXPECT_EQ(catalogueDefault("View", "GridFore", 600), "False");
  EXPECT_EQ(catalogueDefault("View", "GridFore", 601), "True");
  EXPECT_EQ(catalogueDefault("Plot1", "Interpolation", 299), "0");
  EXPECT_EQ(catalogueDefault("Plot1", "Interpolation", 300), "3");
  EXPECT_EQ(catalogueDefault("Plot1", "MemoMode", 300, 1), "2");
  EXPECT_EQ(catalogueDefault("Plot1", "MemoMode", 300, 4), "1");
  EXPECT_EQ(catalogueDefault("Spectrum", "Line1", 300), "True");
  EXPECT_EQ(catalogueDefault("Stat", "Line1", 300), "False");
  EXPECT_EQ(catalogueDefault("SaveStat", "WithLabels", 300), "True");
  EXPECT_THROW(catalogueDefault("SaveStat", "AutoFileName", 300), Fault);
  EXPECT_EQ(catalogueDefault("Meters Colors", "FRH min Fore", 300), "-2147483630");
  EXPECT_EQ(catalogueDefault("Meters setting", "DCV AvgTime", 300), "3");
  EXPECT_EQ(catalogueDefault("HideInfoWin", "AnyKeyAtAll", 300), "False");
  EXPECT_EQ(catalogueDefault("Ch1", "TrigCompens50 mV", 300), "0");
  EXPECT_EQ(catalogueDefault("Startup Position", "ZorvikWin Left", 300), "");  // centred by the reader
}

TEST(Catalogue, NamesAreMatchedAsTheStoreMatchesThem) {
  EXPECT_EQ(catalogueDefault("stat", "Line1width", 300), "1");
  EXPECT_EQ(catalogueDefault("View", "Hor.lab.font size ", 300), "5");
  EXPECT_THROW(catalogueDefault("View", "Hor.lab.font size", 300), Fault);
  EXPECT_THROW(catalogueDefault("Meters setting", "XYZ AvgTime", 300), Fault);
  EXPECT_THROW(catalogueDefault("Nowhere", "Zoom", 300), Fault);

  EXPECT_EQ(zoomValueName("", 2, "LineWidth"), " 2LineWidth");
  EXPECT_EQ(zoomValueName("HorZoom", -1, "Poz"), "HorZoom-1Poz");
  EXPECT_EQ(catalogueDefault("Plot1", " 2LineWidth", 2400), "2");
  EXPECT_EQ(catalogueDefault("Plot1", " 3PeakWidth", 299), "1");
  EXPECT_EQ(catalogueDefault("Plot1", " 0LineWidth", 2400), "1");
  EXPECT_EQ(catalogueDefault("Plot1", " 1Speed", 200), "2");
  EXPECT_THROW(catalogueDefault("Plot1", "2LineWidth", 2400), Fault);
  EXPECT_THROW(catalogueDefault("Plot1", " xLineWidth", 2400), Fault);
  EXPECT_NE(findCatalogueEntry("Hor", zoomValueName("HorZoom", 10, "Poz")), nullptr);
}

bool wellFormed(SettingType type, const std::string& text) {
  auto whole = [&](double lo, double hi) {
    char* end = nullptr;
    long long v = std::strtoll(text.c_str(), &end, 10);
    return !text.empty() && *end == '\0' && v >= lo && v <= hi;
  };
  switch (type) {
    case SettingType::Bool:
      return text == "True" || text == "False";
    case SettingType::Int:
      return whole(-32768, 32767);
    case SettingType::Long:
      return whole(-2147483648.0, 2147483647.0);
    case SettingType::Single:
    case SettingType::Double:
      return parseLeadingNumber(text).has_value();
    case SettingType::Text:
      return true;
  }
  return false;
}

// Every row, in every section it names, for slow and fast machines, finds itself and has a default
// its reader can convert (or none, where the reader computes it).
TEST(Catalogue, EveryDefaultIsWellFormed) {
  int rows = 0;
  for (const CatalogueEntry& e : catalogueEntries()) {
    std::string name(e.name);
    for (auto [holder, stand] : {std::pair{"<Z>", " 2"}, {"<Name>", "NOV"}, {"<Any>", "x"}})
      if (auto p = name.find(holder); p != std::string::npos)
        name.replace(p, std::string(holder).size(), stand);
    for (std::string_view section : catalogueSections(e)) {
      ++rows;
      EXPECT_EQ(findCatalogueEntry(section, name), &e) << section << "/" << name;
      for (int cpu : {100, 300, 601}) {
        std::string def = catalogueDefault(section, name, cpu);
        bool computed = e.rule == DefaultRule::Reader || e.rule == DefaultRule::WrittenOnly;
        EXPECT_TRUE(computed ? def.empty() : wellFormed(e.type, def))
            << section << "/" << name << " = " << def;
      }
    }
  }
  EXPECT_GT(rows, 200);
}

}  // namespace
}  // namespace zorvik
