#include "python/decoderType.h"

#include <mutex>

#include "python/batchType.h"
#include "python/decoderOptions.h"
#include "python/instance.h"
#include "python/placedObject.h"
#include "tools/record/range.h"

namespace {

constexpr std::size_t blockSize = 65536; // as much as the tool reads at a time

struct reading_t {
    columnReaderOptions_t options;
    std::unique_ptr<columnReader_t> reader;
    std::unique_ptr<std::mutex> inUse = std::make_unique<std::mutex>();
    bool isBegun = false;
    bool hasFailed = false; // memory ran out in the middle of a row
};
using decoderObject_t = instance_t<reading_t>;

PyObject* newDecoder(PyTypeObject* type, PyObject* arguments, PyObject* keywords) {
    return guarded([&] {
        reading_t reading;
        reading.options = decoderOptions(arguments, keywords);
        reading.reader = std::make_unique<columnReader_t>(reading.options);
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
    if (reading.hasFailed) {
        throw usageError_t("the decoder ran out of memory before; make a new one");
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
        reading.hasFailed = true;
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

// The arguments: a name, a function that reads a number of bytes at an offset, the size of the
// input, and where the range begins and ends. Returns the offsets of its first line and behind its
// last one, and whether the input ends with it.
PyObject* decoderBeginRange(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        reading_t& reading = decoderObject_t::of(self);
        PyObject* source = nullptr;
        PyObject* readAt = nullptr;
        unsigned long long size = 0;
        unsigned long long begin = 0;
        unsigned long long end = 0;
        if (PyArg_ParseTuple(arguments, "OOKKK", &source, &readAt, &size, &begin, &end) == 0) {
            throw raised_t();
        }
        const std::string name = textOfObject(source);
        placedObject_t input(readAt, size);
        lineRange_t lines;
        unlocked(reading, [&] {
            lines = linesOf(input, {begin, end});
            reading.reader->begin(name, stateAt(input, lines.begin, reading.options.read));
        });
        if (input.hasRaised()) {
            throw raised_t();
        }
        reading.isBegun = true;
        return Py_BuildValue("KKO", static_cast<unsigned long long>(lines.begin),
                             static_cast<unsigned long long>(lines.end),
                             lines.isLast ? Py_True : Py_False);
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

template <void (columnReader_t::*end)()>
PyObject* decoderEnd(PyObject* self, PyObject* /*unused*/) {
    return guarded([&] {
        reading_t& reading = decoderObject_t::of(self);
        if (reading.isBegun) {
            unlocked(reading, [&] { (*reading.reader.*end)(); });
            reading.isBegun = false;
        }
        return none();
    });
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
                append(list, batchObject(batch));
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
        reading_t& reading = decoderObject_t::of(self);
        std::vector<std::pair<std::string, std::shared_ptr<const batch_t>>> batches;
        unlocked(reading, [&] { // the first look into the dictionary changes it
            const columnReaderOptions_t& options = reading.options;
            dictionaryHolder_t& dictionary = *options.read.dictionary;
            for (const std::string& name :
                 options.tables.empty() ? columnReader_t::names(dictionary) : options.tables) {
                auto types = std::make_shared<const columnTypes_t>(
                    columnTypes(columnReader_t::tableOf(name, dictionary), options.columns));
                if (!types->empty()) {
                    batches.emplace_back(name, emptyBatch(std::move(types)));
                }
            }
        });
        object_t tables = owned(PyDict_New());
        for (const auto& [name, batch] : batches) {
            setItem(tables, name, batchObject(batch));
        }
        return tables.release();
    });
}

PyMethodDef decoderMethods[] = {
    {"begin", decoderBegin, METH_O, "Names the input that follows."},
    {"begin_range", decoderBeginRange, METH_VARARGS, "Names the input of the range that follows."},
    {"feed", decoderFeed, METH_O, "Decodes more bytes of the input."},
    {"end", decoderEnd<&columnReader_t::end>, METH_NOARGS, "The input has no more bytes."},
    {"end_range", decoderEnd<&columnReader_t::endRange>, METH_NOARGS,
     "The range has no more bytes."},
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

} // namespace

bool addDecoderType(PyObject* module) { return addType(module, "Decoder", decoderSpec) != nullptr; }
