#include "control/basic_control.h"

#include <algorithm>

#include "link/main_controller.h"

namespace zorvik {

BasicControl::BasicControl(MainController& main) : main_(main) {
  DeviceCache& c = main_.cache();
  c.V1 = 200;   // mV per division
  c.M1 = 3;     // peak pairs, the stored default acquisition mode
  c.T1 = 0x20;  // rising edge
  c.S1 = 128;   // level at mid screen
}

void BasicControl::put1(const char* name, int value) {
  if (main_.Online()) main_.link()->PutRegister1(name, static_cast<uint8_t>(value));
}
void BasicControl::put2(const char* name, int value) {
  if (main_.Online()) main_.link()->PutRegister2(name, value);
}
void BasicControl::put4(const char* name, int value) {
  if (main_.Online()) main_.link()->PutRegister4(name, value);
}

void BasicControl::PutGetRegisterO1() { put1("O1", main_.cache().O1); }
void BasicControl::PutGetRegisterM1() { put1("M1", main_.cache().M1); }
void BasicControl::PutGetRegisterT1() { put1("T1", main_.cache().T1); }
void BasicControl::PutGetRegisterV1() { put2("V1", main_.cache().V1); }
void BasicControl::PutGetRegisterP1() { put2("P1", main_.cache().P1); }
void BasicControl::PutGetRegisterS1() { put1("S1", main_.cache().S1); }
void BasicControl::PutGetRegisterRT() { put1("RT", main_.cache().RT); }
void BasicControl::PutGetRegisterAP() { put1("AP", main_.cache().AP); }
void BasicControl::PutGetRegisterAR() { put1("AR", main_.cache().AR); }
void BasicControl::PutGetRegisterTA() { put4("TA", main_.cache().TA); }
void BasicControl::PutGetRegisterTW() { put4("TW", main_.cache().TW); }
void BasicControl::PutGetRegisterTD() { put4("TD", main_.cache().TD); }
void BasicControl::PutGetRegisterTC() { put2("TC", main_.cache().TC); }
void BasicControl::PutGetRegisterRS() { put1("RS", main_.cache().RS); }

void BasicControl::SetupTimeDiv() {
  DeviceCache& c = main_.cache();
  // 100 us a division at the safe clock: 16 samples a division, 6.25 us a sample.
  const int32_t mc = c.MCd > 0 ? c.MCd : 1000;
  const int32_t ts = std::max(c.TOl, static_cast<int32_t>(6.25e-6 / (mc * 1e-11) * 256));
  if (ts != c.TS) put4("TS", ts);
  put2("MC", mc);
  // One screen of 10 divisions of 16 samples, and a little more, within the memory of the mode.
  int32_t qs = 10 * 16 + 12;
  int32_t qsMax = c.QShTable[c.limitRow(ts)][c.limitColumn()];
  if (qsMax > 0) qs = std::min(qs, qsMax);
  put2("QS", qs);
}

}  // namespace zorvik
