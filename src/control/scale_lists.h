#pragma once
#include <string>

namespace zorvik {

// The V/div list of the channel: 1 mV to 10 V in steps of 1, 2, 5; the panel offers 20 mV and up.
constexpr int kVoltDivCount = 13;
constexpr int kVoltDivFirst = 4;
constexpr int kVoltDivLast = 12;
// The time/div list: 1 ns to 500 ms; the panel offers 20 ns and up, below 500 ns only with RIS.
constexpr int kTimeDivCount = 27;
constexpr int kTimeDivFirst = 4;
constexpr int kTimeDivLast = 26;
constexpr int kTimeDivRealTime = 8;  // 500 ns: the fastest real-time position

// Volts per division at a position, as the channel's 32-bit arithmetic holds it. Fault out of range.
float voltDivValue(int position);
// Seconds per division at a position. Fault out of range.
float timeDivValue(int position);
// "20mV", "1V", "500ns", "2µs" (UTF-8).
std::string voltDivText(int position);
std::string timeDivText(int position);

// The horizontal zoom that stands in for a position below 500 ns while RIS is off.
int fallbackZoom(int position);
// The zoom after the position rose from below 500 ns to 500 ns or more by `jump` steps.
int zoomAfterRise(int zoom, int jump);

}  // namespace zorvik
