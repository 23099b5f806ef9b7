#include "python/object.h"

object_t owned(PyObject* object) {
    if (object == nullptr) {
        throw raised_t();
    }
    return object_t(object);
}

PyObject* none() {
    Py_INCREF(Py_None);
    return Py_None;
}

PyObject* textOf(std::string_view text) {
    return PyUnicode_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size()));
}

void append(const object_t& list, const object_t& item) {
    if (PyList_Append(list.get(), item.get()) != 0) {
        throw raised_t();
    }
}

void setItem(const object_t& dictionary, std::string_view key, const object_t& value) {
    const object_t name = owned(textOf(key));
    if (PyDict_SetItem(dictionary.get(), name.get(), value.get()) != 0) {
        throw raised_t();
    }
}

std::string textOfObject(PyObject* object) {
    const object_t bytes = owned(PyUnicode_AsEncodedString(object, "utf-8", "surrogateescape"));
    char* data = nullptr;
    Py_ssize_t size = 0;
    if (PyBytes_AsStringAndSize(bytes.get(), &data, &size) != 0) {
        throw raised_t();
    }
    return {data, static_cast<std::size_t>(size)};
}

std::vector<std::string> textsOfObject(PyObject* sequence) {
    const Py_ssize_t count = PySequence_Size(sequence);
    if (count < 0) {
        throw raised_t();
    }
    std::vector<std::string> texts;
    for (Py_ssize_t i = 0; i < count; ++i) {
        texts.push_back(textOfObject(owned(PySequence_GetItem(sequence, i)).get()));
    }
    return texts;
}
