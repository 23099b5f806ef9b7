#include "python/values.h"

namespace {

std::string_view bytesOf(const array_t& array, std::size_t row) {
    const std::size_t begin = array.begin(row);
    return {array.values().data() + begin, array.end(row) - begin};
}

// Makes the objects of one column.
class maker_t {
public:
    maker_t(const columnType_t& type, const array_t& array) : m_array(array) {
        for (std::size_t i = 0; i < type.members.size(); ++i) {
            m_members.emplace_back(type.members[i], array.members()[i]);
            m_names.emplace_back(textOf(type.members[i].name));
        }
    }

    PyObject* makeList(std::size_t begin, std::size_t end) {
        object_t list(PyList_New(static_cast<Py_ssize_t>(end - begin)));
        for (std::size_t row = begin; list && row < end; ++row) {
            PyObject* const value = make(row); // the list takes it over, even if that fails
            if (value == nullptr ||
                PyList_SetItem(list.get(), static_cast<Py_ssize_t>(row - begin), value) != 0) {
                return nullptr;
            }
        }
        return list.release();
    }

private:
    PyObject* make(std::size_t row) {
        if (!m_array.isPresent(row)) {
            Py_INCREF(Py_None);
            return Py_None;
        }
        switch (m_array.form()) {
        case form_t::boolean: return PyBool_FromLong(m_array.flag(row) ? 1 : 0);
        case form_t::integer:
        case form_t::instant: return PyLong_FromLongLong(at<std::int64_t>(row));
        case form_t::date: return PyLong_FromLong(at<std::int32_t>(row));
        case form_t::number: return PyFloat_FromDouble(at<double>(row));
        case form_t::bytes: {
            const std::string_view bytes = bytesOf(m_array, row);
            return PyBytes_FromStringAndSize(bytes.data(), static_cast<Py_ssize_t>(bytes.size()));
        }
        case form_t::text: return makeText(bytesOf(m_array, row));
        case form_t::list: return m_members[0].makeList(m_array.begin(row), m_array.end(row));
        case form_t::object: return makeObject(row);
        }
        return nullptr;
    }

    template <typename T>
    T at(std::size_t row) const {
        return m_array.values().as<T>()[row];
    }

    // Texts in neighbouring rows are often the same, and are then one object.
    PyObject* makeText(std::string_view text) {
        if (!m_text || text != m_lastText) {
            m_text = object_t(textOf(text));
            m_lastText = text;
        }
        Py_XINCREF(m_text.get());
        return m_text.get();
    }

    PyObject* makeObject(std::size_t row) {
        object_t object(PyDict_New());
        for (std::size_t i = 0; object && i < m_members.size(); ++i) {
            const object_t value(m_members[i].make(row));
            if (!value || !m_names[i] ||
                PyDict_SetItem(object.get(), m_names[i].get(), value.get()) != 0) {
                return nullptr;
            }
        }
        return object.release();
    }

    const array_t& m_array;
    std::vector<maker_t> m_members;
    std::vector<object_t> m_names; // of the members
    object_t m_text;
    std::string_view m_lastText;
};

} // namespace

PyObject* listOfValues(const columnType_t& type, const array_t& array) {
    return maker_t(type, array).makeList(0, array.rows());
}
