#include "python/batchType.h"

#include "python/instance.h"
#include "python/memoryType.h"
#include "python/values.h"
#include "tools/column/arrowExport.h"

namespace {

using batchObject_t = instance_t<std::shared_ptr<const batch_t>>;
PyTypeObject* batchType = nullptr;

const char* nameOfForm(form_t form) {
    switch (form) {
    case form_t::boolean: return "boolean";
    case form_t::integer: return "integer";
    case form_t::number: return "number";
    case form_t::date: return "date";
    case form_t::instant: return "instant";
    case form_t::text: return "text";
    case form_t::bytes: return "bytes";
    case form_t::list: return "list";
    case form_t::object: return "object";
    }
    return "";
}

// Releases a structure of Arrow, unless its receiver has taken it over.
template <typename T>
struct dropping_t {
    void operator()(T* structure) const {
        if (structure->release != nullptr) {
            structure->release(structure);
        }
        delete structure;
    }
};

template <typename T, typename Fill>
object_t capsuleOf(const char* name, Fill fill) {
    std::unique_ptr<T, dropping_t<T>> structure(new T());
    fill(*structure);
    object_t capsule = owned(PyCapsule_New(structure.get(), name, [](PyObject* self) {
        dropping_t<T>()(static_cast<T*>(PyCapsule_GetPointer(self, PyCapsule_GetName(self))));
    }));
    static_cast<void>(structure.release());
    return capsule;
}

object_t schemaCapsule(const batch_t& batch) {
    return capsuleOf<arrowSchema_t>(
        "arrow_schema", [&](arrowSchema_t& schema) { exportTypes(*batch.types, schema); });
}

PyObject* batchSchema(PyObject* self, PyObject* /*unused*/) {
    return guarded([&] { return schemaCapsule(*batchObject_t::of(self)).release(); });
}

// A receiver may ask for other types; what it gets says that the types are these.
PyObject* batchArray(PyObject* self, PyObject* arguments, PyObject* keywords) {
    static const char* names[] = {"requested_schema", nullptr};
    PyObject* requested = nullptr;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "|O:__arrow_c_array__",
                                     const_cast<char**>(names), &requested)) {
        return nullptr;
    }
    return guarded([&] {
        const std::shared_ptr<const batch_t>& batch = batchObject_t::of(self);
        object_t schema = schemaCapsule(*batch);
        object_t array = capsuleOf<arrowArray_t>(
            "arrow_array", [&](arrowArray_t& out) { exportBatch(batch, out); });
        return PyTuple_Pack(2, schema.get(), array.get());
    });
}

PyObject* batchColumns(PyObject* self, void* /*closure*/) {
    return guarded([&] {
        const columnTypes_t& types = *batchObject_t::of(self)->types;
        object_t columns = owned(PyList_New(0));
        for (const columnType_t& type : types) {
            append(columns, owned(Py_BuildValue("(ssss)", type.name.c_str(), nameOfForm(type.form),
                                                type.unit.c_str(), type.meaning.c_str())));
        }
        return columns.release();
    });
}

PyObject* batchPlace(PyObject* self, void* /*closure*/) {
    return guarded([&] {
        const batchPlace_t& place = batchObject_t::of(self)->place;
        const object_t source = owned(PyBytes_FromStringAndSize(
            place.source.data(), static_cast<Py_ssize_t>(place.source.size())));
        return Py_BuildValue("OKKK", source.get(),
                             static_cast<unsigned long long>(place.firstOffset),
                             static_cast<unsigned long long>(place.lastOffset),
                             static_cast<unsigned long long>(place.rowsInFront));
    });
}

PyObject* batchDigest(PyObject* self, PyObject* /*unused*/) {
    return guarded([&] {
        std::uint64_t digest = 0;
        for (const array_t& column : batchObject_t::of(self)->columns) {
            digest = column.digest(digest);
        }
        return PyLong_FromUnsignedLongLong(digest);
    });
}

Py_ssize_t batchLength(PyObject* self) {
    return static_cast<Py_ssize_t>(batchObject_t::of(self)->rows);
}

std::size_t placeOfArgument(const batch_t& batch, PyObject* argument) {
    const std::size_t place = PyLong_AsSize_t(argument);
    if (PyErr_Occurred() != nullptr) {
        throw raised_t();
    }
    if (place >= batch.columns.size()) {
        throw usageError_t("no such column");
    }
    return place;
}

PyObject* batchObjects(PyObject* self, PyObject* argument) {
    return guarded([&] {
        const batch_t& batch = *batchObject_t::of(self);
        const std::size_t place = placeOfArgument(batch, argument);
        return listOfValues((*batch.types)[place], batch.columns[place]);
    });
}

PyObject* batchMemory(PyObject* self, PyObject* argument) {
    return guarded([&] {
        const std::shared_ptr<const batch_t>& batch = batchObject_t::of(self);
        const array_t& array = batch->columns[placeOfArgument(*batch, argument)];
        const char* const type = array.form() == form_t::number    ? "f8"
                                 : array.form() == form_t::date    ? "i4"
                                 : array.form() == form_t::boolean ? "u1"
                                                                   : "i8";
        if (array.hasOffsets() || array.form() == form_t::object || array.rows() == 0) {
            throw usageError_t("the column has no memory of values with a fixed size");
        }
        constexpr std::size_t bits = 8;
        const std::size_t bytes = (array.rows() + bits - 1) / bits;
        object_t validity = array.nullCount() > 0
                                ? memoryObject(batch, array.validity(), bytes, "u1")
                                : object_t(none());
        object_t values = memoryObject(
            batch, array.values(), array.form() == form_t::boolean ? bytes : array.rows(), type);
        return PyTuple_Pack(2, validity.get(), values.get());
    });
}

PyMethodDef batchMethods[] = {
    {"__arrow_c_schema__", batchSchema, METH_NOARGS, "The columns, as Arrow data."},
    {"__arrow_c_array__", method(batchArray), METH_VARARGS | METH_KEYWORDS,
     "The columns and their values, as Arrow data."},
    {"digest", batchDigest, METH_NOARGS, "A number that differs, as a rule, if the values do."},
    {"objects", batchObjects, METH_O,
     "The values of a column as a list; an instant in microseconds, a date in days."},
    {"memory", batchMemory, METH_O,
     "The bits that tell which values are there, or None for all, and the values of a column."},
    {nullptr, nullptr, 0, nullptr}};
PyGetSetDef batchMembers[] = {
    {"columns", batchColumns, nullptr, "Name, form, unit and meaning of each column.", nullptr},
    {"place", batchPlace, nullptr,
     "Source and offset of the first row, offset of the last one, rows in front of the batch.",
     nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};
PyType_Slot batchSlots[] = {{Py_tp_doc, const_cast<char*>("Rows of a table. They do not change.")},
                            {Py_tp_new, slot(refuseNew)},
                            {Py_tp_dealloc, slot(batchObject_t::destroy)},
                            {Py_tp_methods, batchMethods},
                            {Py_tp_getset, batchMembers},
                            {Py_sq_length, slot(batchLength)},
                            {0, nullptr}};
PyType_Spec batchSpec = {"kalo._kalo.Batch", sizeof(batchObject_t), 0, Py_TPFLAGS_DEFAULT,
                         batchSlots};

} // namespace

bool addBatchType(PyObject* module) {
    batchType = addType(module, "Batch", batchSpec);
    return batchType != nullptr;
}

object_t batchObject(const std::shared_ptr<const batch_t>& batch) {
    return batchObject_t::make(batchType, batch);
}

PyObject* streamOfBatches(PyObject* /*module*/, PyObject* batches) {
    return guarded([&] {
        const Py_ssize_t count = PySequence_Size(batches);
        if (count < 0) {
            throw raised_t();
        }
        if (count == 0) {
            throw usageError_t("a stream needs a batch, if only one without rows");
        }
        std::vector<std::shared_ptr<const batch_t>> list;
        for (Py_ssize_t i = 0; i < count; ++i) {
            const object_t batch = owned(PySequence_GetItem(batches, i));
            if (Py_TYPE(batch.get()) != batchType) {
                throw usageError_t("not a batch");
            }
            list.push_back(batchObject_t::of(batch.get()));
        }
        return capsuleOf<arrowStream_t>("arrow_array_stream",
                                        [&](arrowStream_t& stream) {
                                            auto types = list[0]->types;
                                            exportBatches(std::move(types), std::move(list),
                                                          stream);
                                        })
            .release();
    });
}
