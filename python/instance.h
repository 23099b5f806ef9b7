// Classes of Python whose objects hold a value of C++.
#pragma once

#include "python/object.h"

/// An object of a class of this module: a value of C++ behind what every object of Python has.
template <typename T>
struct instance_t {
    PyObject_HEAD T value;

    static T& of(PyObject* object) { return reinterpret_cast<instance_t*>(object)->value; }

    static object_t make(PyTypeObject* type, T value) {
        const auto allocate = reinterpret_cast<allocfunc>(PyType_GetSlot(type, Py_tp_alloc));
        object_t object = owned(allocate(type, 0));
        new (&of(object.get())) T(std::move(value));
        return object;
    }

    static void destroy(PyObject* object) {
        PyTypeObject* const type = Py_TYPE(object);
        of(object).~T();
        reinterpret_cast<freefunc>(PyType_GetSlot(type, Py_tp_free))(object);
        Py_DECREF(type); // each object of such a class holds a reference to it
    }
};

/// Makes a class and puts it into the module; it lives as long as the process. Null with an
/// exception if that fails.
PyTypeObject* addType(PyObject* module, const char* name, PyType_Spec& spec);

/// A constructor for classes whose objects only this module makes: raises TypeError.
PyObject* refuseNew(PyTypeObject* type, PyObject* arguments, PyObject* keywords);

/// Functions in the form in which the tables of a class hold them.
template <typename Function>
void* slot(Function* function) {
    return reinterpret_cast<void*>(function);
}

template <typename Function>
PyCFunction method(Function* function) {
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}
