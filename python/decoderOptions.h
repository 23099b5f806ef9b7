// The arguments of the class kalo._kalo.Decoder.
#pragma once

#include "python/object.h"
#include "tools/column/columnReader.h"

/// Throws `raised_t` or `usageError_t` if they are wrong.
columnReaderOptions_t decoderOptions(PyObject* arguments, PyObject* keywords);
