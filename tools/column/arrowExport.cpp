#include "tools/column/arrowExport.h"

#include <array>
#include <cerrno>
#include <new>

namespace {

const char* formatOf(form_t form) {
    switch (form) {
    case form_t::boolean: return "b";
    case form_t::integer: return "l";
    case form_t::number: return "g";
    case form_t::date: return "tdD";
    case form_t::instant: return "tsu:UTC";
    case form_t::text: return "u";
    case form_t::bytes: return "z";
    case form_t::list: return "+l";
    case form_t::object: return "+s";
    }
    return "n";
}

void appendNumber(std::string& out, std::size_t number) {
    const auto value = static_cast<std::int32_t>(number);
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

// Pairs of a key and a text, each with its length in front, and their number in front of all.
std::string metadataOf(const columnType_t& type) {
    std::string pairs;
    std::size_t count = 0;
    for (const auto& [key, text] :
         {std::pair<std::string_view, const std::string&>{"unit", type.unit},
          {"meaning", type.meaning}}) {
        if (!text.empty()) {
            ++count;
            appendNumber(pairs, key.size());
            pairs.append(key);
            appendNumber(pairs, text.size());
            pairs.append(text);
        }
    }
    std::string metadata;
    if (count > 0) {
        appendNumber(metadata, count);
    }
    return metadata + pairs;
}

// The children of a schema or an array. A receiver may move them out; those are then released by
// themselves.
template <typename T>
class children_t {
public:
    explicit children_t(std::size_t count) : m_children(count), m_pointers(count) {
        for (std::size_t i = 0; i < count; ++i) {
            m_pointers[i] = &m_children[i];
        }
    }
    children_t(const children_t&) = delete;
    children_t& operator=(const children_t&) = delete;
    ~children_t() {
        for (T& child : m_children) {
            if (child.release != nullptr) {
                child.release(&child);
            }
        }
    }

    T& operator[](std::size_t index) { return m_children[index]; }
    T** pointers() { return m_pointers.data(); }

private:
    std::vector<T> m_children;
    std::vector<T*> m_pointers;
};

template <typename T, typename Owner>
void release(T* structure) {
    delete static_cast<Owner*>(structure->owner);
    structure->release = nullptr;
}

struct schemaOwner_t {
    std::string name;
    std::string metadata;
    children_t<arrowSchema_t> children;
};

void exportType(std::string name, form_t form, std::string metadata,
                const std::vector<columnType_t>& members, arrowSchema_t& out) {
    std::unique_ptr<schemaOwner_t> owner(new schemaOwner_t{
        std::move(name), std::move(metadata), children_t<arrowSchema_t>(members.size())});
    for (std::size_t i = 0; i < members.size(); ++i) {
        const columnType_t& member = members[i];
        exportType(member.name, member.form, metadataOf(member), member.members,
                   owner->children[i]);
    }
    out = {};
    out.format = formatOf(form);
    out.name = owner->name.c_str();
    out.metadata = owner->metadata.empty() ? nullptr : owner->metadata.data();
    out.flags = arrowNullable;
    out.childCount = static_cast<std::int64_t>(members.size());
    out.children = owner->children.pointers();
    out.release = release<arrowSchema_t, schemaOwner_t>;
    out.owner = owner.release();
}

struct arrayOwner_t {
    std::shared_ptr<const batch_t> batch;
    std::array<const void*, 3> buffers;
    children_t<arrowArray_t> children;
};

void exportColumns(const std::shared_ptr<const batch_t>& batch, const std::vector<array_t>& columns,
                   std::size_t rows, std::unique_ptr<arrayOwner_t>& owner, arrowArray_t& out);

void exportColumn(const std::shared_ptr<const batch_t>& batch, const array_t& column,
                  arrowArray_t& out) {
    auto owner = std::unique_ptr<arrayOwner_t>(
        new arrayOwner_t{batch, {}, children_t<arrowArray_t>(column.members().size())});
    const bool hasNulls = column.nullCount() > 0;
    owner->buffers[0] = hasNulls ? column.validity().data() : nullptr;
    std::int64_t bufferCount = 1;
    for (const memory_t* memory : {&column.offsets(), &column.values()}) {
        const bool isOfForm =
            memory == &column.offsets() ? column.hasOffsets() : column.hasMemory();
        if (isOfForm) {
            owner->buffers[static_cast<std::size_t>(bufferCount++)] = memory->data();
        }
    }
    exportColumns(batch, column.members(), column.rows(), owner, out);
    out.nullCount = static_cast<std::int64_t>(column.nullCount());
    out.bufferCount = bufferCount;
}

// Fills what is the same for a column and for the whole batch.
void exportColumns(const std::shared_ptr<const batch_t>& batch, const std::vector<array_t>& columns,
                   std::size_t rows, std::unique_ptr<arrayOwner_t>& owner, arrowArray_t& out) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        exportColumn(batch, columns[i], owner->children[i]);
    }
    out = {};
    out.length = static_cast<std::int64_t>(rows);
    out.bufferCount = 1;
    out.childCount = static_cast<std::int64_t>(columns.size());
    out.buffers = owner->buffers.data();
    out.children = owner->children.pointers();
    out.release = release<arrowArray_t, arrayOwner_t>;
    out.owner = owner.release();
}

struct streamOwner_t {
    std::shared_ptr<const columnTypes_t> types;
    std::vector<std::shared_ptr<const batch_t>> batches;
    std::size_t next = 0;
};

// No exception may leave a function that another program calls; only memory can run out.
template <typename Export>
int numberOfError(Export run) {
    try {
        run();
    } catch (const std::bad_alloc&) {
        return ENOMEM;
    }
    return 0;
}

int getSchema(arrowStream_t* stream, arrowSchema_t* out) {
    const auto& owner = *static_cast<streamOwner_t*>(stream->owner);
    return numberOfError([&] { exportTypes(*owner.types, *out); });
}

int getNext(arrowStream_t* stream, arrowArray_t* out) {
    auto& owner = *static_cast<streamOwner_t*>(stream->owner);
    *out = {};
    if (owner.next == owner.batches.size()) {
        return 0;
    }
    return numberOfError([&] {
        exportBatch(owner.batches[owner.next], *out);
        owner.batches[owner.next++].reset(); // its receiver decides how long it lives
    });
}

} // namespace

void exportTypes(const columnTypes_t& types, arrowSchema_t& out) {
    exportType({}, form_t::object, {}, types, out);
    out.flags = 0; // a row is never null
}

void exportBatch(const std::shared_ptr<const batch_t>& batch, arrowArray_t& out) {
    auto owner = std::unique_ptr<arrayOwner_t>(
        new arrayOwner_t{batch, {}, children_t<arrowArray_t>(batch->columns.size())});
    exportColumns(batch, batch->columns, batch->rows, owner, out);
}

void exportBatches(std::shared_ptr<const columnTypes_t> types,
                   std::vector<std::shared_ptr<const batch_t>> batches, arrowStream_t& out) {
    auto owner =
        std::unique_ptr<streamOwner_t>(new streamOwner_t{std::move(types), std::move(batches)});
    out.getSchema = getSchema;
    out.getNext = getNext;
    out.getLastError = [](arrowStream_t*) -> const char* { return nullptr; };
    out.release = release<arrowStream_t, streamOwner_t>;
    out.owner = owner.release();
}
