#pragma once

// Files dropped on the window: each opens as by File > Open; two equal-sized
// files dropped alone make a comparison party and are diffed at once.

#include <string>
#include <vector>

namespace korvanel {

class AppState;

void OpenDroppedFiles(AppState& app, const std::vector<std::string>& paths);

}  // namespace korvanel
