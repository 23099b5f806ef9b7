// Python objects of the values of a column.
#pragma once

#include <Python.h>

#include <string>
#include <utility>

#include "tools/column/columnTable.h"

/// A reference that is given back with its block.
class object_t {
public:
    object_t() = default;
    /// Takes over a new reference, or null.
    explicit object_t(PyObject* object) : m_object(object) {}
    object_t(object_t&& other) noexcept : m_object(other.release()) {}
    object_t& operator=(object_t&& other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    object_t(const object_t&) = delete;
    object_t& operator=(const object_t&) = delete;
    ~object_t() { Py_XDECREF(m_object); }

    explicit operator bool() const { return m_object != nullptr; }
    PyObject* get() const { return m_object; }
    PyObject* release() {
        PyObject* const object = m_object;
        m_object = nullptr;
        return object;
    }

private:
    PyObject* m_object = nullptr;
};

inline PyObject* textOf(const std::string& text) {
    return PyUnicode_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size()));
}

/// A list of the values of a column: None, bool, int, float, str, bytes, list or dict. An instant
/// is the number of its microseconds, a date that of its days. Null with an exception if memory
/// runs out.
PyObject* listOfValues(const columnType_t& type, const array_t& array);
