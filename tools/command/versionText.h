// What `kalo --version` prints.
#pragma once

#include <string>

/// The version; with what the program was built; the libraries that it uses; the compressed inputs
/// that it reads.
std::string versionText();
