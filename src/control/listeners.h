#pragma once
#include <functional>
#include <utility>
#include <vector>

namespace zorvik {

// Those who follow a model: panels, pages, the display. Called in the order they came.
class Listeners {
 public:
  void add(std::function<void()> listener) { listeners_.push_back(std::move(listener)); }
  void operator()() const {
    for (const auto& l : listeners_) l();
  }

 private:
  std::vector<std::function<void()>> listeners_;
};

}  // namespace zorvik
