#include "control/scale_lists.h"

#include "core/eng_text.h"
#include "core/fault.h"

namespace zorvik {

namespace {
constexpr int kMantissa[9] = {1, 2, 5, 10, 20, 50, 100, 200, 500};

// Positions run through the mantissas in decades of 1000: the first nine in the list's smallest unit.
double listValue(int position, int count, double unit, const char* list) {
  if (position < 0 || position >= count)
    throw Fault(std::string("Position ") + std::to_string(position) + " is outside the " + list + " list");
  double value = kMantissa[position % 9] * unit;
  for (int d = 0; d < position / 9; ++d) value *= 1000;
  return value;
}
}  // namespace

float voltDivValue(int position) {
  return static_cast<float>(listValue(position, kVoltDivCount, 0.001, "V/div"));
}

float timeDivValue(int position) {
  return static_cast<float>(listValue(position, kTimeDivCount, 1e-9, "time/div"));
}

std::string voltDivText(int position) {
  return engineeringText(listValue(position, kVoltDivCount, 0.001, "V/div"), "V");
}

std::string timeDivText(int position) {
  return engineeringText(listValue(position, kTimeDivCount, 1e-9, "time/div"), "s");
}

int fallbackZoom(int position) {
  switch (position) {
    case 7:
      return 2;
    case 6:
      return 4;
    case 5:
      return 5;
    default:
      return 10;
  }
}

int zoomAfterRise(int zoom, int jump) {
  switch (zoom) {
    case 2:
      return 1;
    case 4:
      return jump == 1 ? 2 : 1;
    case 5:
      return jump == 1 ? 4 : jump == 2 ? 2 : 1;
    case 10:
      return jump == 1 ? 5 : jump == 3 ? 2 : jump == 4 ? 4 : 1;
    default:
      return zoom;
  }
}

}  // namespace zorvik
