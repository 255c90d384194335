#include "link/device_cache.h"

namespace zorvik {

int32_t DeviceCache::fastFloor() const {
  for (int n = 0; n < 32; ++n) {
    if (static_cast<uint32_t>(TOv) & (1u << n)) return n == 0 ? 128 : n * 256;
  }
  return 0;  // no fast sampler reported yet
}

int DeviceCache::samplingClass(int32_t ts) const {
  if (ts < TMl) return 0;
  if (ts <= TMh) return ts < fastFloor() ? 1 : 2;
  return ts < TOl ? 3 : 4;
}

void DeviceCache::clearSession() {
  VHW.clear();
  VSW.clear();
  VSN.clear();
  VNM.clear();
  QShTable = {};
  TChTable = {};
  P1hValid = {};
  P1lValid = {};
  TS = 0;
  QS = 0;
}

}  // namespace zorvik
