#pragma once

// The manual is one text resource cut into tagged pages:
//   <<BASIC_USAGE>>
//   ...lines...
//   <</BASIC_USAGE>>
// Short pages feed the viewer's help overlay; the long ones in a fixed order
// make the manual printed by --help and shown in the help window.

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace korvanel {

struct ManualPage {
  size_t first_line = 0;
  size_t line_count = 0;
};

class CManualPages {
 public:
  explicit CManualPages(std::string_view text);
  bool Has(const std::string& tag) const { return pages_.count(tag) != 0; }
  // The page's lines joined with line feeds; empty when the tag is unknown.
  std::string Page(const std::string& tag) const;
  // MANUAL_MENU followed by the manual's pages in order.
  std::string Manual() const;
  // The overlay pages 0..10.
  static const std::vector<std::string>& OverlayTags();

 private:
  std::vector<std::string> lines_;
  std::map<std::string, ManualPage> pages_;
};

// The program's own manual text (a built-in resource).
std::string_view ManualText();
const CManualPages& Manual();

// What -h prints.
std::string ShortUsageText();

}  // namespace korvanel
