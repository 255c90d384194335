#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

namespace zorvik {

// SampleBuf: the samples of one segment on the common 16-bit scale, sample i at index i. It grows with
// the record, and every index outside the record (below 0, past the end) reads 0, which plots as the
// bottom edge and is then skipped by the drawing rule.
class SampleBuf {
 public:
  static constexpr int64_t kMinLength = 8193;  // the record every buffer holds at least

  // Two characters a sample (high byte first), or one character times 256. Returns the sample count.
  int64_t fill(std::string_view segment, bool twoBytes);
  int64_t length() const { return length_; }
  int32_t at(int64_t i) const {
    return i >= 0 && i < static_cast<int64_t>(data_.size()) ? data_[static_cast<size_t>(i)] : 0;
  }
  // Samples 0 to length - 1 (and one beyond after repeatLast()).
  const int32_t* data() const { return data_.data(); }
  // Sample L takes the value of sample L - 1, for the interpolations that look one sample ahead.
  void repeatLast();

 private:
  std::vector<int32_t> data_;
  int64_t length_ = 0;
  int64_t dirty_ = 0;  // entries from length_ on that hold something other than 0
};

}  // namespace zorvik
