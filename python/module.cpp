// The module kalo._kalo: a reader that makes columns of bytes, batches of columns, and their
// memory. The classes and functions for users are in the Python files beside it.
#include <Python.h>

#include <algorithm>
#include <exception>
#include <mutex>
#include <new>

#include "python/objects.h"
#include "tools/column/arrowExport.h"
#include "tools/column/columnReader.h"
#include "tools/input/pieces.h"
#include "tools/time/calendarDate.h"

namespace {

constexpr std::size_t blockSize = 65536; // as much as the tool reads at a time

// Wrong use of the module.
class usageError_t : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// An exception of Python that is already set.
class raised_t : public std::exception {};

// Runs a function of the module. No exception of C++ leaves it.
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

// A text of an argument. What Python read from bytes that are not UTF-8 becomes those bytes again.
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
    std::vector<std::string> texts;
    const Py_ssize_t count = PySequence_Size(sequence);
    for (Py_ssize_t i = 0; i < count; ++i) {
        texts.push_back(textOfObject(owned(PySequence_GetItem(sequence, i)).get()));
    }
    if (count < 0) {
        throw raised_t();
    }
    return texts;
}

// An object of a class of this module: a value of C++ behind what every object of Python has.
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

// Memory of a column, which NumPy reads by its array interface.

struct memoryView_t {
    std::shared_ptr<const batch_t> batch;
    const char* data;
    std::size_t count;
    const char* type; // in NumPy's notation, without the order of bytes
};
using memoryObject_t = instance_t<memoryView_t>;
PyTypeObject* memoryType = nullptr;

PyObject* arrayInterface(PyObject* self, void* /*closure*/) {
    const memoryView_t& memory = memoryObject_t::of(self);
    const std::uint16_t one = 1;
    const bool isLittle = *reinterpret_cast<const unsigned char*>(&one) == 1;
    const std::string type = (memory.type[1] == '1' ? "|"
                              : isLittle            ? "<"
                                                    : ">") +
                             std::string(memory.type);
    return Py_BuildValue("{s:i,s:(n),s:s,s:(N,O)}", "version", 3, "shape",
                         static_cast<Py_ssize_t>(memory.count), "typestr", type.c_str(), "data",
                         PyLong_FromVoidPtr(const_cast<char*>(memory.data)), Py_True);
}

object_t memoryObject(const std::shared_ptr<const batch_t>& batch, const memory_t& memory,
                      std::size_t count, const char* type) {
    return memoryObject_t::make(memoryType, {batch, memory.data(), count, type});
}

// A batch.

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
            const object_t column =
                owned(Py_BuildValue("(ssss)", type.name.c_str(), nameOfForm(type.form),
                                    type.unit.c_str(), type.meaning.c_str()));
            if (PyList_Append(columns.get(), column.get()) != 0) {
                throw raised_t();
            }
        }
        return columns.release();
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

PyObject* streamOf(PyObject* /*module*/, PyObject* batches) {
    return guarded([&] {
        const Py_ssize_t count = PySequence_Size(batches);
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
        if (count < 0) {
            throw raised_t();
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

// The reader.

struct reading_t {
    columnReaderOptions_t options;
    std::unique_ptr<columnReader_t> reader;
    std::unique_ptr<std::mutex> inUse = std::make_unique<std::mutex>();
    bool isBegun = false;
};
using decoderObject_t = instance_t<reading_t>;
PyTypeObject* decoderType = nullptr;

kalo::date_t dateOfText(const char* text) {
    kalo::date_t date;
    if (!parseDate(text, date)) {
        throw usageError_t("no such date: " + std::string(text) + " (expected YYYY-MM-DD)");
    }
    return date;
}

template <typename T>
struct word_t {
    std::string_view word;
    T value;
};
constexpr word_t<kind_t> kinds[] = {{"nmea", kind_t::sentence},
                                    {"tss1", kind_t::motion},
                                    {"ats", kind_t::tracking},
                                    {"ntrip", kind_t::table}};
constexpr word_t<dateOrder_t> dateOrders[] = {{"dmy", dateOrder_t::dayFirst},
                                              {"mdy", dateOrder_t::monthFirst}};

// What a word stands for; `what` is that of which it is none.
template <typename T, std::size_t count>
T valueOfWord(std::string_view word, const word_t<T> (&words)[count], const char* what) {
    std::string known;
    for (const word_t<T>& row : words) {
        if (row.word == word) {
            return row.value;
        }
        known.append(known.empty() ? "" : ", ").append(row.word);
    }
    throw usageError_t("no such " + std::string(what) + ": " + std::string(word) + " (expected " +
                       known + ")");
}

std::vector<std::string> tablesOfObject(PyObject* names, dictionaryHolder_t& dictionary) {
    std::vector<std::string> tables;
    for (const std::string& name : textsOfObject(names)) {
        tables.push_back(columnReader_t::nameOf(name, dictionary));
        if (tables.back().empty()) {
            throw usageError_t("no such type: " + name);
        }
    }
    return tables;
}

// A column that no table has is a slip.
void checkColumns(const columnReaderOptions_t& options) {
    dictionaryHolder_t& dictionary = *options.read.dictionary;
    columnOptions_t all = options.columns;
    all.columns.clear();
    std::vector<std::string> known;
    for (const std::string& name :
         options.tables.empty() ? columnReader_t::names(dictionary) : options.tables) {
        for (const columnType_t& type :
             columnTypes(columnReader_t::tableOf(name, dictionary), all)) {
            known.push_back(type.name);
        }
    }
    for (const std::string& name : options.columns.columns) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            throw usageError_t("no such column: " + name);
        }
    }
}

PyObject* newDecoder(PyTypeObject* type, PyObject* arguments, PyObject* keywords) {
    static const char* names[] = {"types",  "columns",          "radians",    "raw",
                                  "strict", "require_checksum", "kind",       "date",
                                  "begin",  "not_before",       "date_order", "sentences",
                                  nullptr};
    PyObject* types = nullptr;
    PyObject* columns = nullptr;
    int radians = 0;
    int raw = 0;
    int strict = 0;
    int requireChecksum = 0;
    const char* kind = nullptr;
    const char* date = nullptr;
    PyObject* begin = nullptr;
    const char* notBefore = nullptr;
    const char* dateOrder = nullptr;
    PyObject* sentences = nullptr;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "|$OOppppzzOzzO:Decoder",
                                     const_cast<char**>(names), &types, &columns, &radians, &raw,
                                     &strict, &requireChecksum, &kind, &date, &begin, &notBefore,
                                     &dateOrder, &sentences)) {
        return nullptr;
    }
    const auto isGiven = [](PyObject* object) { return object != nullptr && object != Py_None; };
    return guarded([&] {
        reading_t reading;
        columnReaderOptions_t& options = reading.options;
        options.columns.radians = radians != 0;
        options.columns.raw = raw != 0;
        options.read.split.strict = strict != 0;
        options.read.split.requireChecksum = requireChecksum != 0;
        if (kind != nullptr) {
            options.read.split.only = valueOfWord(kind, kinds, "kind");
        }
        if (date != nullptr) {
            options.read.dating.date = dateOfText(date);
        }
        if (isGiven(begin)) {
            options.read.dating.begin = PyFloat_AsDouble(begin);
            if (PyErr_Occurred() != nullptr) {
                throw raised_t();
            }
        }
        if (notBefore != nullptr) {
            options.read.dating.notBefore = dateOfText(notBefore);
        }
        if (dateOrder != nullptr) {
            options.read.dateOrder = valueOfWord(dateOrder, dateOrders, "order");
        }
        if (isGiven(sentences)) { // name and text of one file after another
            const std::vector<std::string> files = textsOfObject(sentences);
            for (std::size_t i = 0; i + 1 < files.size(); i += 2) {
                options.read.dictionary->add(files[i + 1], files[i]);
            }
        }
        if (isGiven(types)) {
            options.tables = tablesOfObject(types, *options.read.dictionary);
        }
        if (isGiven(columns)) {
            options.columns.columns = textsOfObject(columns);
            checkColumns(options);
        }
        reading.reader = std::make_unique<columnReader_t>(options);
        return decoderObject_t::make(type, std::move(reading)).release();
    });
}

// Runs without the lock of the interpreter, so that other threads of the program go on.
template <typename Run>
void unlocked(reading_t& reading, Run run) {
    const std::unique_lock<std::mutex> lock(*reading.inUse, std::try_to_lock);
    if (!lock.owns_lock()) {
        throw usageError_t("the decoder is in use by another thread");
    }
    std::exception_ptr failure;
    PyThreadState* const state = PyEval_SaveThread();
    try {
        run();
    } catch (...) {
        failure = std::current_exception();
    }
    PyEval_RestoreThread(state);
    if (failure) {
        std::rethrow_exception(failure);
    }
}

PyObject* decoderBegin(PyObject* self, PyObject* source) {
    return guarded([&] {
        reading_t& reading = decoderObject_t::of(self);
        const std::string name = textOfObject(source);
        unlocked(reading, [&] { reading.reader->begin(name); });
        reading.isBegun = true;
        return none();
    });
}

PyObject* decoderFeed(PyObject* self, PyObject* bytes) {
    return guarded([&] {
        reading_t& reading = decoderObject_t::of(self);
        char* data = nullptr;
        Py_ssize_t size = 0;
        if (PyBytes_AsStringAndSize(bytes, &data, &size) != 0) {
            throw raised_t();
        }
        if (!reading.isBegun) {
            throw usageError_t("no input was begun");
        }
        unlocked(reading, [&, left = std::string_view(data, static_cast<std::size_t>(size))] {
            for (std::size_t i = 0; i < left.size(); i += blockSize) {
                reading.reader->feed(left.substr(i, blockSize));
            }
        });
        return none();
    });
}

PyObject* decoderEnd(PyObject* self, PyObject* /*unused*/) {
    return guarded([&] {
        reading_t& reading = decoderObject_t::of(self);
        if (reading.isBegun) {
            unlocked(reading, [&] { reading.reader->end(); });
            reading.isBegun = false;
        }
        return none();
    });
}

void setItem(const object_t& dictionary, const std::string& key, const object_t& value) {
    const object_t name = owned(textOf(key));
    if (PyDict_SetItem(dictionary.get(), name.get(), value.get()) != 0) {
        throw raised_t();
    }
}

object_t batchOf(const std::shared_ptr<const batch_t>& batch) {
    return batchObject_t::make(batchType, batch);
}

PyObject* decoderTake(PyObject* self, PyObject* /*unused*/) {
    return guarded([&] {
        reading_t& reading = decoderObject_t::of(self);
        std::vector<namedBatches_t> taken;
        unlocked(reading, [&] { taken = reading.reader->take(); });
        object_t tables = owned(PyDict_New());
        for (namedBatches_t& table : taken) {
            if (table.batches.empty()) {
                table.batches.push_back(emptyBatch(table.types));
            }
            object_t list = owned(PyList_New(0));
            for (const std::shared_ptr<const batch_t>& batch : table.batches) {
                if (PyList_Append(list.get(), batchOf(batch).get()) != 0) {
                    throw raised_t();
                }
            }
            setItem(tables, table.name, list);
        }
        return tables.release();
    });
}

PyObject* decoderSize(PyObject* self, PyObject* /*unused*/) {
    return guarded([&] {
        reading_t& reading = decoderObject_t::of(self);
        std::size_t size = 0;
        unlocked(reading, [&] { size = reading.reader->bytes(); });
        return PyLong_FromSize_t(size);
    });
}

// The columns of each table that the decoder can give, as batches without rows.
PyObject* decoderTables(PyObject* self, PyObject* /*unused*/) {
    return guarded([&] {
        const columnReaderOptions_t& options = decoderObject_t::of(self).options;
        dictionaryHolder_t& dictionary = *options.read.dictionary;
        object_t tables = owned(PyDict_New());
        for (const std::string& name :
             options.tables.empty() ? columnReader_t::names(dictionary) : options.tables) {
            auto types = std::make_shared<const columnTypes_t>(
                columnTypes(columnReader_t::tableOf(name, dictionary), options.columns));
            if (!types->empty()) {
                setItem(tables, name, batchOf(emptyBatch(std::move(types))));
            }
        }
        return tables.release();
    });
}

// Objects of most classes come from their reader only.
PyObject* refuseNew(PyTypeObject* /*type*/, PyObject* /*arguments*/, PyObject* /*keywords*/) {
    PyErr_SetString(PyExc_TypeError, "objects of this class cannot be made by hand");
    return nullptr;
}

// What is said to Python of each class.

template <typename Function>
void* slot(Function* function) {
    return reinterpret_cast<void*>(function);
}

template <typename Function>
PyCFunction method(Function* function) {
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

PyGetSetDef memoryMembers[] = {
    {"__array_interface__", arrayInterface, nullptr, "What NumPy needs to know.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};
PyType_Slot memorySlots[] = {
    {Py_tp_doc, const_cast<char*>("Memory of a column, for numpy.asarray.")},
    {Py_tp_new, slot(refuseNew)},
    {Py_tp_dealloc, slot(memoryObject_t::destroy)},
    {Py_tp_getset, memoryMembers},
    {0, nullptr}};
PyType_Spec memorySpec = {"kalo._kalo.Memory", sizeof(memoryObject_t), 0, Py_TPFLAGS_DEFAULT,
                          memorySlots};

PyMethodDef batchMethods[] = {
    {"__arrow_c_schema__", batchSchema, METH_NOARGS, "The columns, as Arrow data."},
    {"__arrow_c_array__", method(batchArray), METH_VARARGS | METH_KEYWORDS,
     "The columns and their values, as Arrow data."},
    {"objects", batchObjects, METH_O,
     "The values of a column as a list; an instant in microseconds, a date in days."},
    {"memory", batchMemory, METH_O,
     "The bits that tell which values are there, or None for all, and the values of a column."},
    {nullptr, nullptr, 0, nullptr}};
PyGetSetDef batchMembers[] = {
    {"columns", batchColumns, nullptr, "Name, form, unit and meaning of each column.", nullptr},
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

PyMethodDef decoderMethods[] = {
    {"begin", decoderBegin, METH_O, "Names the input that follows."},
    {"feed", decoderFeed, METH_O, "Decodes more bytes of the input."},
    {"end", decoderEnd, METH_NOARGS, "The input has no more bytes."},
    {"take", decoderTake, METH_NOARGS, "The batches of each table since the last call."},
    {"size", decoderSize, METH_NOARGS, "How many bytes the batches take that take() returns."},
    {"tables", decoderTables, METH_NOARGS, "A batch without rows for each table."},
    {nullptr, nullptr, 0, nullptr}};
PyType_Slot decoderSlots[] = {
    {Py_tp_doc, const_cast<char*>("Turns bytes into batches of columns.")},
    {Py_tp_new, slot(newDecoder)},
    {Py_tp_dealloc, slot(decoderObject_t::destroy)},
    {Py_tp_methods, decoderMethods},
    {0, nullptr}};
PyType_Spec decoderSpec = {"kalo._kalo.Decoder", sizeof(decoderObject_t), 0, Py_TPFLAGS_DEFAULT,
                           decoderSlots};

PyMethodDef functions[] = {
    {"stream", streamOf, METH_O, "Batches of the same columns, as a stream of Arrow data."},
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

bool addType(const object_t& module, const char* name, PyType_Spec& spec, PyTypeObject*& type) {
    PyObject* const object = PyType_FromSpec(&spec); // it lives as long as the process
    type = reinterpret_cast<PyTypeObject*>(object);
    return object != nullptr && PyObject_SetAttrString(module.get(), name, object) == 0;
}

} // namespace

PyMODINIT_FUNC PyInit__kalo() {
    object_t module(PyModule_Create(&definition));
    if (!module || !addType(module, "Memory", memorySpec, memoryType) ||
        !addType(module, "Batch", batchSpec, batchType) ||
        !addType(module, "Decoder", decoderSpec, decoderType) ||
        PyModule_AddStringConstant(module.get(), "version", KALO_VERSION) != 0) {
        return nullptr;
    }
    return module.release();
}
