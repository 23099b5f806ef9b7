// The module kalo._kalo: a reader that makes columns of bytes, batches of columns, and their
// memory. The classes and functions for users are in the Python files beside it.
#include "python/batchType.h"
#include "python/decoderType.h"
#include "python/memoryType.h"

namespace {

PyMethodDef functions[] = {
    {"stream", streamOfBatches, METH_O, "Batches of the same columns, as a stream of Arrow data."},
    {nullptr, nullptr, 0, nullptr}};

PyModuleDef definition = {PyModuleDef_HEAD_INIT,
                          "kalo._kalo",
                          "The part of kalo that is written in C++.",
                          -1,
                          functions,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr};

} // namespace

// CPython looks for this name.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl*,readability-identifier-naming)
PyMODINIT_FUNC PyInit__kalo() {
    object_t module(PyModule_Create(&definition));
    if (!module || !addMemoryType(module.get()) || !addBatchType(module.get()) ||
        !addDecoderType(module.get()) ||
        PyModule_AddStringConstant(module.get(), "version", KALO_VERSION) != 0) {
        return nullptr;
    }
    return module.release();
}
