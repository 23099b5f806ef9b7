// `kalo fields`: the record table for people.
#pragma once

/// Returns the exit status.
int fieldsCommand();
