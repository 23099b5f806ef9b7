#include "tests/column/arrowValues.h"

#include <cstdio>

#include "tools/output/utf8.h"

namespace {

template <typename T>
const T* buffer(const arrowArray_t& array, std::size_t index) {
    return static_cast<const T*>(array.buffers[index]);
}

bool bit(const arrowArray_t& array, std::size_t index, std::int64_t row) {
    return (buffer<unsigned char>(array, index)[row / 8] >> row % 8 & 1) != 0;
}

bool isPresent(const arrowArray_t& array, std::int64_t row) {
    return array.buffers[0] == nullptr || bit(array, 0, row);
}

std::string_view bytesOf(const arrowArray_t& array, std::int64_t row) {
    const auto* offsets = buffer<std::int32_t>(array, 1);
    return {buffer<char>(array, 2) + offsets[row],
            static_cast<std::size_t>(offsets[row + 1] - offsets[row])};
}

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length =
            static_cast<unsigned char>(text[i]) < 0x80 ? 1 : utf8Length(text.substr(i));
        if (length == 0) {
            return false;
        }
        i += length;
    }
    return true;
}

struct layout_t {
    std::string_view format;
    std::int64_t buffers;
    std::int64_t children; // -1: any number
};
constexpr layout_t layouts[] = {{"b", 2, 0},   {"l", 2, 0},       {"g", 2, 0},
                                {"tdD", 2, 0}, {"tsu:UTC", 2, 0}, {"u", 3, 0},
                                {"z", 3, 0},   {"+l", 2, 1},      {"+s", 1, -1}};

const layout_t* layoutOf(std::string_view format) {
    for (const layout_t& layout : layouts) {
        if (layout.format == format) {
            return &layout;
        }
    }
    return nullptr;
}

// Reads every row, so that a sanitizer sees every byte.
std::string faultOfRows(std::string_view format, const arrowArray_t& array) {
    std::int64_t nulls = 0;
    for (std::int64_t row = 0; row < array.length; ++row) {
        nulls += isPresent(array, row) ? 0 : 1;
        if (array.bufferCount == 3 || format == "+l") {
            const auto* offsets = buffer<std::int32_t>(array, 1);
            if (offsets[row] > offsets[row + 1]) {
                return "an offset that falls";
            }
        }
        if (format == "u" && !isUtf8(bytesOf(array, row))) {
            return "text that is not UTF-8";
        }
    }
    return nulls == array.nullCount ? "" : "a wrong number of nulls";
}

} // namespace

std::string valueText(const arrowSchema_t& schema, const arrowArray_t& array, std::int64_t row) {
    const std::string_view format = schema.format;
    if (!isPresent(array, row)) {
        return "null";
    }
    if (format == "b") {
        return bit(array, 1, row) ? "true" : "false";
    }
    if (format == "l" || format == "tsu:UTC") {
        return std::to_string(buffer<std::int64_t>(array, 1)[row]);
    }
    if (format == "tdD") {
        return std::to_string(buffer<std::int32_t>(array, 1)[row]);
    }
    if (format == "g") {
        char text[32];
        std::snprintf(text, sizeof text, "%.15g", buffer<double>(array, 1)[row]);
        return text;
    }
    if (format == "u" || format == "z") {
        return '"' + std::string(bytesOf(array, row)) + '"';
    }
    std::string text;
    if (format == "+l") {
        const auto* offsets = buffer<std::int32_t>(array, 1);
        for (std::int32_t item = offsets[row]; item < offsets[row + 1]; ++item) {
            text += (text.empty() ? "" : ",") +
                    valueText(*schema.children[0], *array.children[0], item);
        }
        return '[' + text + ']';
    }
    for (std::int64_t i = 0; i < schema.childCount; ++i) {
        const arrowSchema_t& member = *schema.children[i];
        const std::string value = valueText(member, *array.children[i], row);
        if (value != "null") {
            text += (text.empty() ? "\"" : ",\"") + std::string(member.name) + "\":" + value;
        }
    }
    return '{' + text + '}';
}

std::string faultOf(const arrowSchema_t& schema, const arrowArray_t& array) {
    const std::string name = std::string(schema.name) + ": ";
    const layout_t* const layout = layoutOf(schema.format);
    if (layout == nullptr || array.bufferCount != layout->buffers ||
        schema.childCount != array.childCount ||
        (layout->children >= 0 && array.childCount != layout->children)) {
        return name + "not the layout of its format";
    }
    if (array.offset != 0 || array.dictionary != nullptr || schema.dictionary != nullptr ||
        array.release == nullptr || schema.release == nullptr) {
        return name + "members that should not be so";
    }
    if (const std::string fault = faultOfRows(schema.format, array); !fault.empty()) {
        return name + fault;
    }
    const bool isList = std::string_view(schema.format) == "+l";
    for (std::int64_t i = 0; i < array.childCount; ++i) {
        const arrowArray_t& child = *array.children[i];
        const std::int64_t rows =
            isList ? buffer<std::int32_t>(array, 1)[array.length] : array.length;
        if (child.length != rows) {
            return name + "a child of another length";
        }
        if (const std::string fault = faultOf(*schema.children[i], child); !fault.empty()) {
            return name + fault;
        }
    }
    return {};
}

const arrowArray_t* childOf(const arrowSchema_t& schema, const arrowArray_t& array,
                            std::string_view name) {
    for (std::int64_t i = 0; i < schema.childCount; ++i) {
        if (schema.children[i]->name == name) {
            return array.children[i];
        }
    }
    return nullptr;
}

std::string childText(const arrowSchema_t& schema, const arrowArray_t& array, std::string_view name,
                      std::int64_t row) {
    for (std::int64_t i = 0; i < schema.childCount; ++i) {
        if (schema.children[i]->name == name) {
            return valueText(*schema.children[i], *array.children[i], row);
        }
    }
    return "no column";
}
