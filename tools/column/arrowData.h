// The structures by which programs hand columns of data to each other within a process: the Arrow C
// data interface and the Arrow C stream interface. Their layout is fixed by
// https://arrow.apache.org/docs/format/CDataInterface.html and CStreamInterface.html. Whoever
// receives such a structure calls its `release`, which also sets `release` to null.
#pragma once

#include <cstdint>

/// The type of a column.
struct arrowSchema_t {
    const char* format;
    const char* name;
    const char* metadata;
    std::int64_t flags;
    std::int64_t childCount;
    arrowSchema_t** children;
    arrowSchema_t* dictionary;
    void (*release)(arrowSchema_t*);
    void* owner; ///< belongs to who filled the structure
};

constexpr std::int64_t arrowNullable = 2; ///< a flag of `arrowSchema_t`

/// The values of a column.
struct arrowArray_t {
    std::int64_t length;
    std::int64_t nullCount;
    std::int64_t offset;
    std::int64_t bufferCount;
    std::int64_t childCount;
    const void** buffers;
    arrowArray_t** children;
    arrowArray_t* dictionary;
    void (*release)(arrowArray_t*);
    void* owner; ///< belongs to who filled the structure
};

/// Arrays of one type, one after another. The functions return 0, or a number of `errno`. At the
/// end `getNext` gives an array whose `release` is null.
struct arrowStream_t {
    int (*getSchema)(arrowStream_t*, arrowSchema_t* out);
    int (*getNext)(arrowStream_t*, arrowArray_t* out);
    const char* (*getLastError)(arrowStream_t*);
    void (*release)(arrowStream_t*);
    void* owner; ///< belongs to who filled the structure
};
