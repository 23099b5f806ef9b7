// What the words of the command line mean.
#pragma once

#include <string>
#include <vector>

/// Runs the program with these arguments, its own name left out. Returns the exit status.
int runCommandLine(const std::vector<std::string>& arguments);
