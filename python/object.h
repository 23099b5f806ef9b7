// References to Python objects, and how functions of the module fail.
#pragma once

#include <Python.h>

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

/// Wrong use of the module, a ValueError.
class usageError_t : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An exception of Python that is already set.
class raised_t : public std::exception {};

/// Runs a function of the module. No exception of C++ leaves it.
template <typename Run>
PyObject* guarded(Run run) {
    try {
        return run();
    } catch (const raised_t&) {
        return nullptr;
    } catch (const std::bad_alloc&) {
        return PyErr_NoMemory();
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_ValueError, error.what());
        return nullptr;
    }
}

/// Takes over a new reference. Throws `raised_t` for null.
object_t owned(PyObject* object);

/// New references.
PyObject* none();
PyObject* textOf(std::string_view text);

/// Throw `raised_t` for null and when memory runs out.
void append(const object_t& list, const object_t& item);
void setItem(const object_t& dictionary, std::string_view key, const object_t& value);

/// A text of an argument. What Python read from bytes that are not UTF-8 becomes those bytes again.
std::string textOfObject(PyObject* object);
std::vector<std::string> textsOfObject(PyObject* sequence);
