#include "cli/command_table.h"

#include "cli/bench_command.h"
#include "cli/decode_command.h"
#include "cli/files_command.h"
#include "cli/firmware_command.h"
#include "cli/histogram_command.h"
#include "cli/measure_command.h"
#include "cli/picture_command.h"
#include "cli/render_command.h"
#include "cli/session_command.h"
#include "cli/settings_command.h"
#include "cli/spectrum_command.h"
#include "cli/timebase_command.h"

namespace zorvik {

namespace {

// The scale options of measure and spectrum: a file holds no scale of its own.
const std::string kScaleHelp =
    "  --volts-per-div V    volts a division (default 0.2)\n"
    "  --zero V             the volts at the screen's centre line (default 0)\n"
    "  --sample-period S    seconds a sample (default 1e-6)\n";

// The display options of render and bench.
const std::string kDisplayHelp =
    "  --zoom 0..3          the display's size\n"
    "  --wide               the wide display\n"
    "  --interp none|line|sinx|lanczos|lagrange\n"
    "                       interpolation between samples\n"
    "  --taps N             interpolation taps, a power of two from 2 to 256\n"
    "  --hzoom 1|2|4|5|10   horizontal zoom\n"
    "  --vzoom 1|2|5|10     vertical zoom\n"
    "  --samples-per-div N  default: the zrv file's, else 16\n"
    "  --persist intensity|color\n"
    "                       persistence\n"
    "  --depth infinite|128|32|8\n"
    "                       persistence depth\n"
    "  --set SECTION/NAME=VALUE\n"
    "                       any other plot setting (repeatable)\n";

// The simulated instrument and the settings of session and sim.
const std::string kSimHelp =
    "  --sim KEY=VALUE,...  the simulated instrument (signal, freq, amplitude, offset, noise,\n"
    "                       fault, ...; repeatable)\n"
    "  --set SECTION/NAME=VALUE\n"
    "                       a setting stored before the start (repeatable)\n";

const std::vector<CliCommand> kCommands = {
    {"decode", runDecodeCommand, "decode a packet or zrv file",
     "usage: zorvik-cli decode FILE\n"
     "The head of a raw packet or zrv file (told by its magic): length, segments, modes, sample count.\n"},
    {"measure", runMeasureCommand, "the nineteen meters over segment 1 of a packet",
     "usage: zorvik-cli measure FILE [options]\n"
     "The measurement pass over segment 1 of a packet or zrv file with every meter open.\n" +
         kScaleHelp +
         "  --level 0..3         level of the timing meters: 0 screen centre, 1 peaks centre,\n"
         "                       2 rails centre, 3 the trigger level\n"
         "  --trigger 0..255     the trigger level for --level 3\n"
         "  --negative           periods and pulses from the falls\n"
         "  --20-80              edges timed between 20 % and 80 % (default 10 % and 90 %)\n"},
    {"spectrum", runSpectrumCommand, "the amplitude spectrum of segment 1 of a packet",
     "usage: zorvik-cli spectrum FILE [options]\n"
     "The amplitude spectrum of segment 1 of a packet or zrv file.\n" +
         kScaleHelp +
         "  --window 0..6        Rectangular, Hamming, Hann, Blackman, Flat Top, Triangular,\n"
         "                       Blackman-Harris (default 0)\n"
         "  --doubled            the whole record, zero-padded\n"
         "  --dc                 keep the DC line\n"
         "  --lines K            the K strongest lines (default 5)\n"
         "  --refine             the strongest line refined between bins by sin(x)/x\n"
         "  --band MIN_KHZ:MAX_KHZ\n"
         "                       the main meter over this band\n"
         "  --sinxx              the main meter with sin(x)/x\n"
         "  --thd H              total harmonic distortion up to harmonic H\n"
         "  --power              THD in power instead of amplitude\n"},
    {"session", runSessionCommand, "a session with the simulated instrument, as the window runs it",
     "usage: zorvik-cli session [options]\n"
     "Connects to the simulated instrument, waits for Ready, takes N packets through every stage and\n"
     "disconnects. Exit 0 when Ready was reached and N packets arrived, 1 otherwise.\n"
     "  --packets N          packets to take (default 1)\n"
     "  --single             N presses of Start instead of serial acquisition\n"
     "  --timeout S          seconds to wait (default 10)\n"
     "  --keys K1,K2,...     keys pressed once the session is ready (Comma stands for ,)\n"
     "  --meters all|LIST    meters open (mnemonics such as DCV,FRH); adds their readings\n"
     "  --spectrum           the spectrum open; adds its peak\n"
     "  --histogram          the histogram open; adds its counts\n"
     "  --save-last FILE.zrv the last packet saved as a zrv file\n"
     "  --device ADDRESS     the instrument zorvik-sim serves at unix:PATH or tcp:HOST:PORT instead of\n"
     "                       the simulated one in this program (no --sim then)\n" +
         kSimHelp},
    {"render", runRenderCommand, "packets drawn on the display, saved as a PNG",
     "usage: zorvik-cli render FILE... --png OUT.png [options]\n"
     "The packets (raw or zrv) through the packet entry onto the display, saved as a PNG of the display.\n"
     "  --png OUT.png        the picture to write\n"
     "  --labels             the window's labels and markers over the display\n"
     "  --repeat N           the files played N times in turn\n" +
         kDisplayHelp +
         "With --view, the plot of the Spectrum or Stat window instead, drawn as the window draws it:\n"
         "  zorvik-cli render FILE --view spectrum|histogram --png OUT.png [view options]\n"
         "  --view spectrum|histogram  the window whose plot is drawn\n"
         "  --window 0..6        the spectrum's window function (Rectangular ... Blackman-Harris)\n"
         "  --db                 the amplitude in dB of 1 V; --range 10..70 its visible range in dB\n"
         "  --doubled, --dc      the zero-padded frame; the lowest bins kept\n"
         "  --normalize          the scale set by the strongest line or the highest bin\n"
         "  --percent            the histogram's counts in percent of the record\n"
         "  --hzoom 1|2|5|10     the horizontal zoom; --hpos 0..1 the view's place (0 the left end)\n"
         "  --vzoom 1|2|5|10     the vertical zoom; --vpos 0..1 the view's place (0 the bottom)\n"
         "  --markers X1:X2      the two markers (Hz for the spectrum, volts for the histogram)\n"
         "  --style line,pixel,fill  the plot's styles (default: the window's own)\n"
         "  --interp none|sinxx|lanczos|lagrange  the interpolation between points\n"
         "  --sample-period S, --volts-per-div V, --zero V  the record's scale (1 us, 0.2 V, 0 V)\n"},
    {"picture", runPictureCommand, "packets drawn on the display, saved as BMP, GIF or JPEG",
     "usage: zorvik-cli picture FILE... --out OUT.bmp|OUT.gif|OUT.jpg [options]\n"
     "The packets played in turn onto the display, saved as the File menu saves the picture (the format\n"
     "from the extension).\n"
     "  --out FILE           the picture to write\n"
     "  --labels             the window's labels and markers over the display\n"
     "  --transparent        the display's background clear (GIF)\n" +
         kDisplayHelp},
    {"animate", runAnimateCommand, "one GIF frame per packet, as the animation recorder writes them",
     "usage: zorvik-cli animate FILE... --out OUT.gif [options]\n"
     "One frame per packet file, as the animation recorder keeps and writes them.\n"
     "  --out OUT.gif        the animation to write\n"
     "  --delay-ms N         how long each frame stands (default 100)\n"
     "  --labels             the window's labels and markers over the display\n"
     "  --transparent        the display's background clear\n" +
         kDisplayHelp},
    {"histogram", runHistogramCommand, "the levels of segment 1 counted as the Stat window counts them",
     "usage: zorvik-cli histogram FILE [options]\n"
     "The 256 levels of segment 1 of a packet or zrv file counted as the Stat window counts them.\n"
     "  --csv OUT.csv        also the window's CSV of the counts\n"
     "  --percent            each count also in percent of the samples\n"
     "  --volts-per-div V    volts a division (default 0.2)\n"
     "  --zero V             the volts at the screen's centre line (default 0)\n"},
    {"timebase", runTimebaseCommand, "one run of the time-base rule",
     "usage: zorvik-cli timebase SECONDS_PER_DIV [options]\n"
     "One run of the time-base rule against the simulated instrument's limits.\n"
     "  --limits NAME=V,...  MCd, MCl, MCh, TOv, TOl, TMl, TMh, TPl instead of the simulator's\n"
     "  --ris                random interleaved sampling allowed\n"
     "  --maximize           the most samples the memory holds\n"
     "  --memo-depth 0..3    the memory depth\n"
     "  --wide               the wide display\n"
     "  --clock-min MHZ      lowest sampling clock\n"
     "  --clock-max MHZ      highest sampling clock\n"
     "  --qsh N              the memory table's entry\n"
     "  --ts N               TS before the call\n"},
    {"bench", runBenchCommand, "time packets through the packet entry and the display",
     "usage: zorvik-cli bench [FILE...] [options]\n"
     "Times N packets (after 50 untimed) one by one through the packet entry and the display. Without\n"
     "FILE the packets are acquisitions of the simulated instrument.\n"
     "  --packets N          packets timed (default 1000)\n"
     "  --mode 0..4          the simulated acquisition mode (default 0)\n"
     "  --samples N          simulated samples a packet, 16 to 16384 (default 332)\n"
     "  --device ADDRESS     the stream link alone instead: packets a second from the instrument\n"
     "                       zorvik-sim serves at ADDRESS (serve it with --sim rate=max), records of\n"
     "                       --samples samples (default 8192); no display options then\n"
     "  --full               the whole signal path instead, for each sample format (or --mode's):\n"
     "                       8192-sample packets through the wide display with Sin(x)/x and colour\n"
     "                       grading, every meter, the Blackman-Harris spectrum refined, the\n"
     "                       histogram and the recorder idle; median and packets per second\n" +
         kDisplayHelp},
    {"csv", runCsvCommand, "the packet CSV of a packet or zrv file",
     "usage: zorvik-cli csv FILE --out OUT.csv [--scaled [scale options]]\n"
     "The packet CSV of a raw packet or zrv file, as the window's File menu saves it.\n"
     "  --out OUT.csv        the file to write\n"
     "  --scaled             time_s,volts rows instead (peak records time_s,min_v,max_v),\n"
     "                       LF line ends, time 0 at the first sample; with these options:\n" +
         kScaleHelp},
    {"sim", runSimCommand, "single acquisitions of the simulated instrument saved as zrv files",
     "usage: zorvik-cli sim --packets N --out DIR [options]\n"
     "N single acquisitions of the simulated instrument, saved as DIR/0001.zrv, DIR/0002.zrv, ...\n"
     "  --packets N          1 to 9999\n"
     "  --out DIR            the folder (made when missing)\n"
     "  --timeout S          seconds to wait (default 10)\n" +
         kSimHelp},
    {"zfw", runZfwCommand, "the head and sectors of a firmware image",
     "usage: zorvik-cli zfw FILE\n"
     "A firmware image's target, version, date, body length and sectors.\n"},
    {"settings", runSettingsCommand, "read and write the settings store",
     "usage: zorvik-cli settings [--instance 1|2] set SECTION/NAME=VALUE...\n"
     "       zorvik-cli settings [--instance 1|2] get SECTION/NAME\n"
     "       zorvik-cli settings [--instance 1|2] export FILE.reg | import FILE.reg | reset\n"
     "The settings store of ZORVIK_REGISTRY, or the default one.\n"
     "  --instance 1|2       the first or the second instance's settings (default 1)\n"},
};

}  // namespace

const std::vector<CliCommand>& cliCommands() {
  return kCommands;
}

const CliCommand* findCliCommand(std::string_view name) {
  for (const CliCommand& c : kCommands)
    if (name == c.name) return &c;
  return nullptr;
}

std::string cliOverview() {
  std::string text =
      "usage: zorvik-cli COMMAND [options]\n"
      "       zorvik-cli COMMAND --help\n"
      "       zorvik-cli --version\n"
      "The headless tool of the Zorvik oscilloscope program. Each command prints one JSON object on\n"
      "stdout unless it writes a file; bad input gives one error line on stderr and exit status 2.\n"
      "\n"
      "commands:\n";
  for (const CliCommand& c : kCommands) {
    std::string name = c.name;
    text += "  " + name + std::string(name.size() < 11 ? 11 - name.size() : 1, ' ') + c.summary + "\n";
  }
  return text;
}

}  // namespace zorvik
