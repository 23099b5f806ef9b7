// Bytes as a JSON string.
#pragma once

#include <string_view>

#include "tools/output/buffer.h"

/// Appends `bytes` as a JSON string. Valid UTF-8 stays as it is, any other byte becomes the four
/// characters \xHH, and a backslash is doubled, so that the bytes can be restored.
void writeJsonString(buffer_t& out, std::string_view bytes);
