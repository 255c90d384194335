#pragma once
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zorvik {

// How a reader converts the stored text.
enum class SettingType { Bool, Int, Long, Single, Double, Text };

// Where a setting's default comes from.
enum class DefaultRule {
  Fixed,         // `value`
  CpuAbove,      // `value` when CpuMHz is above `threshold`, else `slow`
  CpuAtLeast,    // `value` when CpuMHz is at least `threshold`, else `slow`
  ZoomWidth,     // the <Z> zoom when CpuMHz is at least 300, else 1; 1 when the zoom is below 1
  SegmentCount,  // 2 when the segment count is below 2, else 1
  Reader,        // the reader computes it: centred positions, design sizes, values another part sets
  WrittenOnly,   // stored for the record, never read
};

// One row of the catalogue of every setting.
// `sections` is one section or several joined by '|' that hold the same value. `name` may hold one
// placeholder: "<Z>" (a zoom as its text with the leading blank or minus sign: " 1", "-1"), "<Name>"
// (the three-letter name of a meter quantity) or, at its end, "<Any>" (any text).
struct CatalogueEntry {
  std::string_view sections;
  std::string_view name;
  SettingType type;
  DefaultRule rule;
  std::string_view value{};
  std::string_view slow{};
  int threshold = 0;
};

std::span<const CatalogueEntry> catalogueEntries();
std::vector<std::string_view> catalogueSections(const CatalogueEntry& entry);

// The nineteen meter quantities that <Name> stands for.
std::span<const std::string_view> meterNames();

// A name with a zoom in it, e.g. zoomValueName("HorZoom", 2, "Poz") = "HorZoom 2Poz".
std::string zoomValueName(std::string_view prefix, long long zoom, std::string_view suffix);

// The row that covers a stored name, section and name compared without regard to ASCII case (as the
// store compares them, so "Line1width" is "Line1Width"); a literal row before a placeholder row.
// Null when the catalogue has none.
const CatalogueEntry* findCatalogueEntry(std::string_view section, std::string_view name);

// The default text of a setting for a machine of `cpuMHz`: "True"/"False" for Bool, decimal text for
// numbers; empty when the reader computes it (DefaultRule::Reader, WrittenOnly) and for an empty text.
// Throws Fault for a name the catalogue doesn't hold.
std::string catalogueDefault(std::string_view section, std::string_view name, int cpuMHz,
                             int segmentCount = 1);

}  // namespace zorvik
