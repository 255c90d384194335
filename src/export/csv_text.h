#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace zorvik {

struct RecordScale;

// The CSV files are one column: each value followed by a lone CR (no LF); the text writer adds the
// closing CR LF.

// An integer with its sign position kept: " 137", " 0", "-5", then CR.
void appendCsvInteger(std::string& out, long long value);

// Every byte of the packet from the fifth on (the master word and the first segment word are left
// out; later segment words and both bytes of 16-bit samples are written as they lie).
std::string packetCsvText(std::string_view packet);

// The packet in seconds and volts for spreadsheets and numpy: a header line, then one row a sample,
// "time_s,volts" (peak records "time_s,min_v,max_v", each pair ordered), LF line ends. Codes become volts
// as the meters read them; time 0 is the first sample (the packet doesn't carry its presamples), a peak
// pair of one-character samples spans two sample periods. Fault when the packet is too short to be one or
// has more than one segment.
std::string scaledCsvText(std::string_view packet, const RecordScale& scale);

// A float in its default text form: up to seven significant digits, the exponent form ("1.234568E-05")
// below 0.0001 and from 10 000 000 on.
std::string floatText(float value);

// The spectrum's bins 0 to bins - 1, one float a line.
std::string spectrumCsvText(const std::vector<float>& amplitudes, int bins);

}  // namespace zorvik
