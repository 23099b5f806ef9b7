#include "python/instance.h"

PyTypeObject* addType(PyObject* module, const char* name, PyType_Spec& spec) {
    object_t type(PyType_FromSpec(&spec));
    if (!type || PyObject_SetAttrString(module, name, type.get()) != 0) {
        return nullptr;
    }
    return reinterpret_cast<PyTypeObject*>(type.release());
}

PyObject* refuseNew(PyTypeObject* /*type*/, PyObject* /*arguments*/, PyObject* /*keywords*/) {
    PyErr_SetString(PyExc_TypeError, "objects of this class cannot be made by hand");
    return nullptr;
}
