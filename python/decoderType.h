// The class kalo._kalo.Decoder: turns bytes into batches of columns.
#pragma once

#include "python/object.h"

/// Adds the class to the module. False with an exception if that fails.
bool addDecoderType(PyObject* module);
