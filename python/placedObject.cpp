#include "python/placedObject.h"

#include <algorithm>
#include <cstring>

std::size_t placedObject_t::readAt(std::uint64_t offset, char* out, std::size_t size) {
    if (m_hasRaised) {
        return 0;
    }
    const PyGILState_STATE lock = PyGILState_Ensure();
    char* data = nullptr;
    Py_ssize_t count = 0;
    {
        const object_t bytes(PyObject_CallFunction(m_readAt, "KK",
                                                   static_cast<unsigned long long>(offset),
                                                   static_cast<unsigned long long>(size)));
        m_hasRaised = !bytes || PyBytes_AsStringAndSize(bytes.get(), &data, &count) != 0;
        if (!m_hasRaised) {
            std::memcpy(out, data, std::min(size, static_cast<std::size_t>(count)));
        }
    }
    PyGILState_Release(lock);
    return m_hasRaised ? 0 : std::min(size, static_cast<std::size_t>(count));
}
