#include "python/memoryType.h"

#include <cstdint>

#include "python/instance.h"

namespace {

struct memoryView_t {
    std::shared_ptr<const batch_t> batch;
    const char* data;
    std::size_t count;
    const char* type;
};
using memoryObject_t = instance_t<memoryView_t>;
PyTypeObject* memoryType = nullptr;

PyObject* arrayInterface(PyObject* self, void* /*closure*/) {
    return guarded([&] {
        const memoryView_t& memory = memoryObject_t::of(self);
        const std::uint16_t one = 1;
        const bool isLittle = *reinterpret_cast<const unsigned char*>(&one) == 1;
        const char* const order = memory.type[1] == '1' ? "|" : isLittle ? "<" : ">";
        return Py_BuildValue("{s:i,s:(n),s:N,s:(N,O)}", "version", 3, "shape",
                             static_cast<Py_ssize_t>(memory.count), "typestr",
                             PyUnicode_FromFormat("%s%s", order, memory.type), "data",
                             PyLong_FromVoidPtr(const_cast<char*>(memory.data)), Py_True);
    });
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

} // namespace

bool addMemoryType(PyObject* module) {
    memoryType = addType(module, "Memory", memorySpec);
    return memoryType != nullptr;
}

object_t memoryObject(const std::shared_ptr<const batch_t>& batch, const memory_t& memory,
                      std::size_t count, const char* type) {
    return memoryObject_t::make(memoryType, {batch, memory.data(), count, type});
}
