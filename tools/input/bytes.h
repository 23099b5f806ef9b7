// Where the bytes of an input come from.
#pragma once

#include <string>
#include <string_view>

class bytes_t {
public:
    virtual ~bytes_t() = default;

    /// What can be had now, at least one byte, waiting for it if need be; empty at the end, after a
    /// failure, and when the run is to stop. The bytes live until the next `read`.
    virtual std::string_view read() = 0;

    /// Why there are no more bytes, for people; empty when the end was reached.
    virtual std::string fault() const = 0;
};
