#pragma once

namespace zorvik {

// What the display reads from the time base and the vertical channel at every packet: the zoom factors
// and view positions of HScrollView and ScrollVzoom1, the volts shown and the trigger's place in time.
// The window fills it from the controllers; the defaults are the full, unzoomed view.
struct PlotInputs {
  int hZoom = 1;             // the factor in HScrollView's Tag: 1, 2, 4, 5, 10
  double hViewFrac = 0;      // HScrollView Value / Max: -1 (right end) to 1 (left end), 0 the middle
  float vZoom = 1;           // the factor in ScrollVzoom1's Tag: 1, 2, 5, 10
  double vViewFrac = 0;      // ScrollVzoom1 Value / (Max - Min), 0 the middle
  float voltPerDiv = 0.2f;   // volts a division as shown (after the vertical zoom)
  float voltOffset = 0;      // volts at the middle of the screen
  float DelayTime = 0;       // seconds of trigger delay; 0 without
  int PreSamples = 0;        // presamples of the record (TC)
  int hScrollCenterMax = 0;  // HScrollCenter's maximum: the record length while no count is known
  float CentreBase = 0;      // time of the view's middle beside the record's own
  int triggerLevelRow = -1;  // the trigger level's row for SyncroLine; -1 when there is none to show
};

}  // namespace zorvik
