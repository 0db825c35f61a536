#pragma once

// Where a pool run with progress takes place. Without a host the calling
// thread runs the pool itself and blocks; the viewer installs a host that
// runs it on a helper thread while its window keeps painting, and shows a
// progress window with a Cancel button when the run takes long.

#include <functional>
#include <string_view>

namespace korvanel {

class IRunHost {
 public:
  virtual ~IRunHost() = default;
  // Runs `work` (the pool run and its progress thread) and returns once it
  // has ended. `title` names the operation, for the progress window.
  virtual void RunPool(std::string_view title, const std::function<void()>& work) = 0;
};

}  // namespace korvanel
