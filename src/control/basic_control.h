#pragma once
#include "link/control_hooks.h"

namespace zorvik {

class MainController;

// The first set of register writers: each writes the cached value of its register while a session stands
// (offline the cache already holds it), and the time base is 100 us a division with a record of one
// screen. The channel, time-base and trigger controllers take their places.
class BasicControl : public ControlHooks {
 public:
  explicit BasicControl(MainController& main);

  void PutGetRegisterO1() override;
  void PutGetRegisterM1() override;
  void PutGetRegisterT1() override;
  void PutGetRegisterV1() override;
  void PutGetRegisterP1() override;
  void PutGetRegisterS1() override;
  void PutGetRegisterRT() override;
  void PutGetRegisterAP() override;
  void PutGetRegisterAR() override;
  void PutGetRegisterTA() override;
  void PutGetRegisterTW() override;
  void PutGetRegisterTD() override;
  void PutGetRegisterTC() override;
  void PutGetRegisterRS() override;
  void SetupTimeDiv() override;

 private:
  void put1(const char* name, int value);
  void put2(const char* name, int value);
  void put4(const char* name, int value);
  MainController& main_;
};

}  // namespace zorvik
