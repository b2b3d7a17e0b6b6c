// Signatures of library routines, delivered with the program in "help\autocomplete.txt".
#pragma once

#include <string>
#include <vector>

namespace tavrel {

/// Every line of the list exactly as it stands. Throws RuntimeError: 53 or 76 when the file is missing, 62
/// when it is empty. `AppDir` is the program folder with its trailing backslash.
std::vector<std::string> readAutocompleteList(const std::string& AppDir);

} // namespace tavrel
