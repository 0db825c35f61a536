#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <thread>

namespace korvanel::test {

inline constexpr int kTimedOut = -1;

// Runs `body` in a child process and returns its exit code (0..255), or
// 128 + the signal that ended it, or kTimedOut when it has not ended within
// `limit` (the child is then killed),
// so a test of something that could block or spin fails instead of hanging.
inline int ExitCodeWithin(std::chrono::milliseconds limit, const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) std::_Exit(body());
  if (child < 0) return kTimedOut;
  const auto deadline = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > deadline) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      return kTimedOut;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace korvanel::test
