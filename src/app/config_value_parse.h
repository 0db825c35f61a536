#pragma once

// Turns the text of one configuration key into its value. Every rejection is
// one line "[section]::key: ..." appended to the report; a rejected value
// leaves the field as it was.

#include <string>
#include <string_view>
#include <vector>

#include "app/config_keys.h"

namespace korvanel {

// `text` is the trimmed value; `value` holds the field's current content on
// entry, because lists keep it where the text gives nothing usable. Returns
// true when `value` is to be stored.
bool ParseConfigValue(const KeyEntry& entry, std::string_view text, ConfigValue& value,
                      std::vector<std::string>& report);

}  // namespace korvanel
