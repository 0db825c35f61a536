#pragma once

// The saved I-Eval list: named expressions kept in the user's own order,
// stored in a text file ("qel.ieval.txt" by default) and referenced inside
// other expressions by name markers `$name$`, which are expanded before an
// expression is compiled.
//
// File format, item after item in custom order:
//   <name>
//   expression line(s)
//   </name>
// Lines are read without trailing blanks, tabs and carriage returns, so a
// file edited elsewhere loads the same.

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace korvanel {

class CIEvalList {
 public:
  static constexpr size_t kMaxNameLength = 180;
  static constexpr size_t kMaxExpandedLength = 3000;
  // Characters a name may hold after its first one, besides letters and digits.
  static constexpr std::string_view kNameChars = " :;,-+*/=~_&|#!?(){}[]";

  enum class View { Custom, Sorted };

  // The name rule; false with the message (titled "Save name error" by callers).
  static bool CheckName(std::string_view name, std::string& message);

  // Replaces the list with the file's items. Bad items are skipped with a
  // message each and loading goes on; a missing folder fails. A missing file
  // in an existing folder is an empty list. Messages are titled
  // "Load I-Eval list".
  bool Load(const std::string& path, std::vector<std::string>& messages);
  // Titled "Store I-Eval list".
  bool Store(const std::string& path, std::string& message) const;

  // Adds or (after `ask_overwrite` agrees, or without asking when
  // `overwrite_without_prompt`) replaces an item, which keeps its place.
  bool Add(std::string_view name, std::string_view expression, bool overwrite_without_prompt,
           const std::function<bool(std::string_view question)>& ask_overwrite,
           std::string& message);
  bool Delete(std::string_view name);
  // Custom view only; false at the ends, in the sorted view or for unknown names.
  bool MoveUp(std::string_view name);
  bool MoveDown(std::string_view name);

  View GetView() const { return view_; }
  void ToggleView() { view_ = view_ == View::Custom ? View::Sorted : View::Custom; }
  // "Sorted list ->" in the custom view, "Custom list ->" in the sorted one.
  const char* ToggleText() const;
  // The names as the current view shows them.
  std::vector<std::string> Names() const;
  const std::vector<std::string>& CustomOrder() const { return order_; }
  const std::string* Find(std::string_view name) const;

  // What a double click appends to the edited text: the item as a marker in
  // braces; a right click appends its expression in braces.
  static std::string MarkerText(std::string_view name);
  std::string ExpressionText(std::string_view name) const;

  // Replaces every `$name$` by its saved expression, also inside inserted
  // expressions. False with the message on a marker without its end, an
  // unknown name, or a text growing past kMaxExpandedLength (which is also
  // what ends a name that refers to itself).
  bool ExpandNameMarkers(std::string_view text, std::string& out, std::string& message) const;

 private:
  std::map<std::string, std::string, std::less<>> items_;
  std::vector<std::string> order_;
  View view_ = View::Custom;
};

}  // namespace korvanel
