#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace zorvik {

enum class Waveform { Sine, Square, Triangle, Dc, Noise };

// The properties the instrument answers to GetProperty.
inline constexpr std::array<std::string_view, 17> kSimPropertyNames = {
    "VNM", "VSN", "VHW", "VSW", "MCd", "MCl", "MCh", "TOv", "TOl",
    "TMl", "TMh", "TPl", "QSh", "TCh", "P1h", "P1l", "L_B"};

// Faults the simulated instrument can be told to show (`fault=...`, may be given more than once).
struct SimFaults {
  bool noPort = false;                // noport: the port cannot be opened
  bool noDevice = false;              // nodevice: the port opens, no device answers
  bool boot = false;                  // boot: the device has no runnable firmware
  std::optional<uint64_t> lostAfter;  // lost:N: the device is lost after the N-th packet of a session
  bool badHeader = false;             // badheader: an unknown header follows the session start
  bool noTrigger = false;             // notrigger: the trigger comparator never fires, so Auto runs
                                      //   free (untriggered packets) and Norm sends empty "D"s
  std::set<std::string> missing;      // missing:NAME: these properties never answer
};

// Everything about the simulated instrument, with the defaults of a small USB scope.
// Set by `--sim key=value[,key=value...]`; the keys are the member names below.
struct SimConfig {
  // --- Input signal ---------------------------------------------------------------------------
  Waveform signal = Waveform::Sine;  // signal  sine | square | triangle | dc | noise
  double freq = 1000.0;              // freq    Hz
  double vpp = 1.0;                  // vpp     V peak to peak (noise signal: its 6-sigma band)
  double offset = 0.0;               // offset  V, DC level of the input
  double noise = 0.002;              // noise   V rms of the instrument's own noise
  uint64_t seed = 1;                 // seed    all randomness derives from it
  double rate = 50.0;                // rate    packets per second; 0 means `max` (no pacing delay)

  // --- Properties (answers to GetProperty) ---------------------------------------------------
  std::string VNM = "Zorvik ZV-1";  // model name
  std::string VSN = "ZV1-000123";   // serial number, also the USB serial
  std::string VHW = "1.2";          // hardware version
  std::string VSW = "2.05";         // firmware version
  uint32_t MCd = 1000;              // safe clock period, 10 ps units: 10 ns, 100 MHz
  uint32_t MCl = 800;               // shortest clock period: 8 ns, 125 MHz
  uint32_t MCh = 50000;             // longest clock period: 500 ns, 2 MHz
  uint32_t TOv = 0x7;               // clocks per sample: half a clock, 1 and 2
  uint32_t TOl = 256;               // shortest real-time sampling period, clocks x 256
  uint32_t TMl = 8;                 // shortest RIS sampling period, clocks x 256
  uint32_t TMh = 256;               // longest RIS sampling period, clocks x 256
  uint32_t TPl = 25600;             // shortest roll sampling period, clocks x 256
  uint32_t QSh = 16384;             // samples in the 8-bit modes (M1 0, 2, 4); half in M1 1, 3
  std::optional<uint32_t> TCh;      // presample limit; unset: QSh of the mode less 16
  int16_t P1h = 768;                // highest hardware offset, 1/256 of full scale
  int16_t P1l = -768;               // lowest hardware offset
  uint8_t L_B = 0;                  // one status byte (255 would mean a firmware error)

  // --- USB identity (not settable) -----------------------------------------------------------
  std::string usbName = "Zorvik DSO";
  std::string usbVersion = "2.00";

  SimFaults faults;

  // Pacing delay between packets in ms; 0 for `max`.
  int pacingMs() const;
  // The memory limits of an acquisition mode (M1 low three bits).
  uint32_t qshForMode(uint8_t m1) const;
  uint32_t tchForMode(uint8_t m1) const;
};

// Applies one `--sim` option text on top of `config`. Throws Fault on an unknown key or a bad value.
void applySimOptions(SimConfig& config, std::string_view text);

// The defaults with one option text applied.
SimConfig parseSimConfig(std::string_view text);

}  // namespace zorvik
