#include "display/sample_buffer.h"

#include <algorithm>

namespace zorvik {

int64_t SampleBuf::fill(std::string_view segment, bool twoBytes) {
  const int64_t n = static_cast<int64_t>(twoBytes ? segment.size() / 2 : segment.size());
  // Room for the record, the repeated sample and a minimum; the buffer only grows, so a steady stream
  // of records allocates nothing.
  const size_t need = static_cast<size_t>(std::max(n + 1, kMinLength));
  if (data_.size() < need) data_.resize(need, 0);
  const auto* c = reinterpret_cast<const unsigned char*>(segment.data());
  int32_t* d = data_.data();
  if (twoBytes)
    for (int64_t i = 0; i < n; ++i) d[i] = c[2 * i] * 256 + c[2 * i + 1];
  else
    for (int64_t i = 0; i < n; ++i) d[i] = c[i] * 256;
  if (dirty_ > n) std::fill(d + n, d + dirty_, 0);
  dirty_ = n;
  length_ = n;
  d[n] = 0;
  return n;
}

void SampleBuf::repeatLast() {
  if (length_ < 1) return;
  data_[static_cast<size_t>(length_)] = data_[static_cast<size_t>(length_ - 1)];
  dirty_ = length_ + 1;
}

}  // namespace zorvik
