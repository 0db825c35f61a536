#include "app/operation_host.h"

#include "ops/job_runner.h"

namespace korvanel {

void COperationHost::RunPool(std::string_view title, const std::function<void()>& work) {
  running_.store(true, std::memory_order_release);
  struct Done {
    std::atomic<bool>& flag;
    ~Done() { flag.store(false, std::memory_order_release); }
  } done{running_};
  feedback_.RunLongOperation(title, work, [this] { jobs_.Cancel(); });
}

}  // namespace korvanel
